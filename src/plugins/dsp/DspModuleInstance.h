#pragma once
// One DSP module in use: the module record of a library loaded for it alone.
//
// Every instance loads its library again, so the library stays mapped for as long as
// any instance of one of its modules lives, whatever happens to the others. Releasing
// the instance (destroying it) calls the module's Quit when, and only when, the
// instance was initialised, and then lets go of the library.
#include "plugins/library/PluginLibrary.h"

#include <verdin/dsp.h>

namespace verdin {

class DspModuleInstance {
public:
    // Takes the loaded library with the header and module it handed out. The module's
    // hDllInstance and hwndParent are set here; the instance is not initialised.
    DspModuleInstance(PluginLibrary library, winampDSPHeader* header, winampDSPModule* module, void* parentWindow);
    ~DspModuleInstance();
    DspModuleInstance(const DspModuleInstance&) = delete;
    DspModuleInstance& operator=(const DspModuleInstance&) = delete;

    winampDSPHeader* header() const { return header_; }
    winampDSPModule* module() const { return module_; }
    bool initialised() const { return initialised_; }

    // Marks the instance initialised and calls the module's Init. Its answer is not
    // acted on: a module that failed to initialise is expected to pass samples through.
    void Initialise();
    // Calls the module's Config (when it has one).
    void Configure();

private:
    PluginLibrary library_;  // declared first: closed after Quit has run
    winampDSPHeader* header_;
    winampDSPModule* module_;
    bool initialised_ = false;
};

}  // namespace verdin
