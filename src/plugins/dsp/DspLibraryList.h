#pragma once
// The DSP plug-in libraries found on a search path, and activation of their modules.
//
// Enumeration loads each "*.so" of each directory (in the directory listing's stable
// order), asks its header for the description and the modules' descriptions, and
// unloads it again: the list holds texts only. Activation loads a library anew for one
// module and hands out a DspModuleInstance that owns that load.
//
// All of it runs on the user-interface thread.
#include "plugins/dsp/DspLibrary.h"
#include "plugins/dsp/DspModuleInstance.h"
#include "plugins/library/PluginLibrary.h"

#include <verdin/window.h>

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace verdin {

class DspLibraryList {
public:
    // getModule is asked for at most this many modules per library, so that a library
    // that never answers NULL cannot hang enumeration.
    static constexpr int kMaxModulesPerLibrary = 1024;

    // Enumerates the directories of searchPath (";"-separated, empty pieces skipped).
    // Libraries that do not load, lack "winampDSPGetHeader2" or whose entry point
    // returns no header are skipped; one whose getModule(0) is NULL is listed with no
    // modules. parentWindow becomes every activated module's hwndParent.
    DspLibraryList(VerdinHostWindow* parentWindow, std::string_view searchPath);
    DspLibraryList(const DspLibraryList&) = delete;
    DspLibraryList& operator=(const DspLibraryList&) = delete;

    VerdinHostWindow* parentWindow() const { return parentWindow_; }
    const std::vector<DspLibrary>& libraries() const { return libraries_; }
    size_t LibraryCount() const { return libraries_.size(); }
    // The library at index in the order found, or null.
    const DspLibrary* LibraryAt(size_t index) const;
    // The first library whose path equals path byte for byte, or null.
    const DspLibrary* LibraryByPath(std::string_view path) const;

    // A new instance of module moduleIndex of the library at libraryIndex (or of the
    // library with that path): null when the library is not in the list, cannot be
    // loaded again, lacks the entry point, or has no such module (a negative index
    // never names one). The instance is not initialised.
    std::unique_ptr<DspModuleInstance> Activate(size_t libraryIndex, int moduleIndex);
    std::unique_ptr<DspModuleInstance> ActivateByPath(std::string_view path, int moduleIndex);

private:
    std::unique_ptr<DspModuleInstance> ActivateLibrary(const DspLibrary& library, int moduleIndex);

    VerdinHostWindow* parentWindow_;
    std::vector<DspLibrary> libraries_;
    // Loads made by an activation whose module index named no module. They are kept
    // loaded on purpose, as the player always did, until the list itself goes away.
    std::vector<PluginLibrary> keptLoaded_;
};

}  // namespace verdin
