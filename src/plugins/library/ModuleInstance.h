#pragma once
// One module in use, of a module kind (DSP, visualization): the module record of a
// library loaded for it alone.
//
// Every instance loads its library again, so the library stays mapped for as long as
// any instance of one of its modules lives, whatever happens to the others. Releasing
// the instance (destroying it) calls the module's Quit when, and only when, the
// instance was initialised, and then lets go of the library.
//
// Kind names the interface: its Header and Module records, the GetHeader type of its
// entry point and the entry point's name kEntryPoint. Both kinds' modules begin with
// description, hwndParent and hDllInstance and have Config, Init and Quit.
#include "plugins/library/PluginCallScope.h"
#include "plugins/library/PluginLibrary.h"

#include <utility>

namespace verdin {

template <typename Kind>
class ModuleInstance {
public:
    using Header = typename Kind::Header;
    using Module = typename Kind::Module;

    // Takes the loaded library with the header and module it handed out. The module's
    // hDllInstance and hwndParent are set here; the instance is not initialised.
    ModuleInstance(PluginLibrary library, Header* header, Module* module, void* parentWindow)
        : library_(std::move(library)), header_(header), module_(module) {
        // The record is the library's own static data, shared by every load of it: when
        // the module is active already, a stream may be reading it right now. The values
        // would be the same, so they are only written when they differ, which keeps that
        // a pure read.
        if (module_->hDllInstance != library_.handle()) module_->hDllInstance = library_.handle();
        if (module_->hwndParent != parentWindow) module_->hwndParent = parentWindow;
    }
    ~ModuleInstance() {
        if (initialised_ && module_->Quit) {
            PluginCallScope call;
            module_->Quit(module_);
        }
        // library_ is destroyed after this body: the module's code stays mapped through Quit.
    }
    ModuleInstance(const ModuleInstance&) = delete;
    ModuleInstance& operator=(const ModuleInstance&) = delete;

    Header* header() const { return header_; }
    Module* module() const { return module_; }
    bool initialised() const { return initialised_; }

    // Marks the instance initialised and calls the module's Init. Its answer is not
    // acted on: a DSP module that failed to initialise is expected to pass samples
    // through, and a visualization module is still rendered and quit.
    void Initialise() {
        initialised_ = true;
        if (module_->Init) {
            PluginCallScope call;
            module_->Init(module_);
        }
    }
    // Calls the module's Config (when it has one).
    void Configure() {
        if (module_->Config) {
            PluginCallScope call;
            module_->Config(module_);
        }
    }

private:
    PluginLibrary library_;  // declared first: closed after Quit has run
    Header* header_;
    Module* module_;
    bool initialised_ = false;
};

}  // namespace verdin
