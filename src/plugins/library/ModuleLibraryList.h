#pragma once
// The plug-in libraries of one module kind (DSP, visualization) found on a search path,
// and activation of their modules.
//
// Enumeration loads each "*.so" of each directory (in the directory listing's stable
// order), asks its header for the description and the modules' descriptions, and
// unloads it again: the list holds texts only. Activation loads a library anew for one
// module and hands out a ModuleInstance that owns that load. Kind is as for
// ModuleInstance; the kinds differ only in their records and entry point.
//
// All of it runs on the user-interface thread.
#include "base/DirectoryListing.h"
#include "base/SearchPath.h"
#include "plugins/library/ModuleInstance.h"
#include "plugins/library/ModuleLibrary.h"
#include "plugins/library/PluginLibrary.h"

#include <verdin/window.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

template <typename Kind>
class ModuleLibraryList {
public:
    using Header = typename Kind::Header;
    using Module = typename Kind::Module;
    using Instance = ModuleInstance<Kind>;

    // getModule is asked for at most this many modules per library, so that a library
    // that never answers NULL cannot hang enumeration.
    static constexpr int kMaxModulesPerLibrary = 1024;

    // Enumerates the directories of searchPath (";"-separated, empty pieces skipped).
    // Libraries that do not load, lack the kind's entry point or whose entry point
    // returns no header are skipped; one whose getModule(0) is NULL is listed with no
    // modules. parentWindow becomes every activated module's hwndParent.
    ModuleLibraryList(VerdinHostWindow* parentWindow, std::string_view searchPath) : parentWindow_(parentWindow) {
        for (const std::string& directory : SplitSearchPath(searchPath))
            for (const std::string& name : ListFilesWithExtension(directory, ".so"))
                if (auto library = ReadLibrary(JoinPath(directory, name))) libraries_.push_back(std::move(*library));
    }
    ModuleLibraryList(const ModuleLibraryList&) = delete;
    ModuleLibraryList& operator=(const ModuleLibraryList&) = delete;

    VerdinHostWindow* parentWindow() const { return parentWindow_; }
    const std::vector<ModuleLibrary>& libraries() const { return libraries_; }
    size_t LibraryCount() const { return libraries_.size(); }
    // The library at index in the order found, or null.
    const ModuleLibrary* LibraryAt(size_t index) const {
        return index < libraries_.size() ? &libraries_[index] : nullptr;
    }
    // The first library whose path equals path byte for byte, or null.
    const ModuleLibrary* LibraryByPath(std::string_view path) const {
        for (const ModuleLibrary& library : libraries_)
            if (library.path == path) return &library;
        return nullptr;
    }

    // A new instance of module moduleIndex of the library at libraryIndex (or of the
    // library with that path): null when the library is not in the list, cannot be
    // loaded again, lacks the entry point, or has no such module (a negative index
    // never names one). The instance is not initialised.
    std::unique_ptr<Instance> Activate(size_t libraryIndex, int moduleIndex) {
        const ModuleLibrary* library = LibraryAt(libraryIndex);
        return library ? ActivateLibrary(*library, moduleIndex) : nullptr;
    }
    std::unique_ptr<Instance> ActivateByPath(std::string_view path, int moduleIndex) {
        const ModuleLibrary* library = LibraryByPath(path);
        return library ? ActivateLibrary(*library, moduleIndex) : nullptr;
    }

private:
    static std::string TextOf(const char* text) { return text ? std::string(text) : std::string(); }

    // The header of a loaded library, or null when it has no entry point or the entry
    // point gives none.
    static Header* HeaderOf(const PluginLibrary& library) {
        auto entry = library.Entry<typename Kind::GetHeader>(Kind::kEntryPoint);
        return entry ? entry() : nullptr;
    }

    // Loads one library, reads its descriptions and unloads it again.
    static std::optional<ModuleLibrary> ReadLibrary(const std::string& path) {
        PluginLibrary library = PluginLibrary::Open(path);
        Header* header = HeaderOf(library);
        if (!header) return std::nullopt;
        ModuleLibrary found{path, TextOf(header->description), {}};
        for (int index = 0; header->getModule && index < kMaxModulesPerLibrary; ++index) {
            const Module* module = header->getModule(index);
            if (!module) break;
            found.moduleDescriptions.push_back(TextOf(module->description));
        }
        return found;  // the library closes here: enumeration leaves nothing loaded
    }

    std::unique_ptr<Instance> ActivateLibrary(const ModuleLibrary& library, int moduleIndex) {
        PluginLibrary loaded = PluginLibrary::Open(library.path);
        Header* header = HeaderOf(loaded);
        if (!header) return nullptr;  // closes the library again
        // A well-made plug-in answers NULL for a negative index; a careless one would
        // index an array with it, so the host does not ask.
        Module* module = moduleIndex >= 0 && header->getModule ? header->getModule(moduleIndex) : nullptr;
        if (!module) {
            keptLoaded_.push_back(std::move(loaded));
            return nullptr;
        }
        return std::make_unique<Instance>(std::move(loaded), header, module, parentWindow_);
    }

    VerdinHostWindow* parentWindow_;
    std::vector<ModuleLibrary> libraries_;
    // Loads made by an activation whose module index named no module. They are kept
    // loaded on purpose, as the player always did, until the list itself goes away.
    std::vector<PluginLibrary> keptLoaded_;
};

}  // namespace verdin
