#include "DspLibraryList.h"

#include "base/DirectoryListing.h"
#include "base/SearchPath.h"

#include <optional>
#include <string>

namespace verdin {

namespace {

std::string TextOf(const char* text) { return text ? std::string(text) : std::string(); }

// The header of a loaded library, or null when it has no entry point or the entry
// point gives none.
winampDSPHeader* HeaderOf(const PluginLibrary& library) {
    auto entry = library.Entry<winampDSPGetHeaderType>(VERDIN_DSP_ENTRY_POINT);
    return entry ? entry() : nullptr;
}

// Loads one library, reads its descriptions and unloads it again.
std::optional<DspLibrary> ReadLibrary(const std::string& path) {
    PluginLibrary library = PluginLibrary::Open(path);
    winampDSPHeader* header = HeaderOf(library);
    if (!header) return std::nullopt;
    DspLibrary found{path, TextOf(header->description), {}};
    for (int index = 0; header->getModule && index < DspLibraryList::kMaxModulesPerLibrary; ++index) {
        const winampDSPModule* module = header->getModule(index);
        if (!module) break;
        found.moduleDescriptions.push_back(TextOf(module->description));
    }
    return found;  // the library closes here: enumeration leaves nothing loaded
}

}  // namespace

DspLibraryList::DspLibraryList(VerdinHostWindow* parentWindow, std::string_view searchPath)
    : parentWindow_(parentWindow) {
    for (const std::string& directory : SplitSearchPath(searchPath)) {
        for (const std::string& name : ListFilesWithExtension(directory, ".so")) {
            if (auto library = ReadLibrary(JoinPath(directory, name))) libraries_.push_back(std::move(*library));
        }
    }
}

const DspLibrary* DspLibraryList::LibraryAt(size_t index) const {
    return index < libraries_.size() ? &libraries_[index] : nullptr;
}

const DspLibrary* DspLibraryList::LibraryByPath(std::string_view path) const {
    for (const DspLibrary& library : libraries_)
        if (library.path == path) return &library;
    return nullptr;
}

std::unique_ptr<DspModuleInstance> DspLibraryList::Activate(size_t libraryIndex, int moduleIndex) {
    const DspLibrary* library = LibraryAt(libraryIndex);
    return library ? ActivateLibrary(*library, moduleIndex) : nullptr;
}

std::unique_ptr<DspModuleInstance> DspLibraryList::ActivateByPath(std::string_view path, int moduleIndex) {
    const DspLibrary* library = LibraryByPath(path);
    return library ? ActivateLibrary(*library, moduleIndex) : nullptr;
}

std::unique_ptr<DspModuleInstance> DspLibraryList::ActivateLibrary(const DspLibrary& library, int moduleIndex) {
    PluginLibrary loaded = PluginLibrary::Open(library.path);
    winampDSPHeader* header = HeaderOf(loaded);
    if (!header) return nullptr;  // closes the library again
    // A well-made plug-in answers NULL for a negative index; a careless one would index
    // an array with it, so the host does not ask.
    winampDSPModule* module = moduleIndex >= 0 && header->getModule ? header->getModule(moduleIndex) : nullptr;
    if (!module) {
        keptLoaded_.push_back(std::move(loaded));
        return nullptr;
    }
    return std::make_unique<DspModuleInstance>(std::move(loaded), header, module, parentWindow_);
}

}  // namespace verdin
