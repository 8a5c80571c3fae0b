#pragma once
// The general-purpose plug-ins. There is no choice of active ones: at start-up every
// library on the search path that exports "winampGetGeneralPurposePlugin" is loaded,
// handed the host window record and its own handle, and started with init. One whose
// init answers 0 stays loaded and listed; any other is unloaded again at once, as is a
// library that cannot be loaded or lacks the entry point (all without a word).
//
// QuitAll, at an orderly exit, calls each kept plug-in's quit once, in the order they
// were found; the libraries stay loaded until the process ends, since a plug-in's own
// thread may still be on its way out of their code. User-interface thread only.
#include "plugins/library/PluginLibrary.h"

#include <verdin/gen.h>

#include <string>
#include <string_view>
#include <vector>

namespace verdin {

class GeneralPluginHost {
public:
    GeneralPluginHost() = default;
    ~GeneralPluginHost();
    GeneralPluginHost(const GeneralPluginHost&) = delete;
    GeneralPluginHost& operator=(const GeneralPluginHost&) = delete;

    // Once, at start-up: hostWindow is the VerdinHostWindow the plug-ins talk to.
    void LoadAll(std::string_view searchPath, void* hostWindow);
    void QuitAll();

    // The kept plug-ins' descriptions, in the order found (empty after QuitAll).
    std::vector<std::string> Descriptions() const;
    // The plug-in's config; false for an index that names none.
    bool Configure(size_t index);

private:
    struct Plugin {
        PluginLibrary library;
        winampGeneralPurposePlugin* record;
    };
    std::vector<Plugin> plugins_;
};

}  // namespace verdin
