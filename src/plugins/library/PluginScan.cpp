#include "plugins/library/PluginScan.h"

#include "plugins/library/PluginLibrary.h"
#include "base/DirectoryListing.h"
#include "base/SearchPath.h"

#include <verdin/vis.h>

#include <optional>

namespace verdin {
namespace {

constexpr int kMaxModulesPerLibrary = 1024;

std::string TextOf(const char* text) { return text ? std::string(text) : std::string(); }

winampVisHeader* VisHeaderOf(const PluginLibrary& library) {
    auto entry = library.Entry<winampVisGetHeaderType>(VERDIN_VIS_ENTRY_POINT);
    return entry ? entry() : nullptr;
}

std::optional<FoundPluginLibrary> ReadVisualization(const std::string& path) {
    PluginLibrary library = PluginLibrary::Open(path);
    const winampVisHeader* header = VisHeaderOf(library);
    if (!header) return std::nullopt;
    FoundPluginLibrary found{path, TextOf(header->description), {}};
    for (int index = 0; header->getModule && index < kMaxModulesPerLibrary; ++index) {
        const winampVisModule* module = header->getModule(index);
        if (!module) break;
        found.modules.push_back(TextOf(module->description));
    }
    return found;
}

template <typename Reader>
std::vector<FoundPluginLibrary> Scan(std::string_view searchPath, Reader read) {
    std::vector<FoundPluginLibrary> found;
    for (const std::string& directory : SplitSearchPath(searchPath))
        for (const std::string& name : ListFilesWithExtension(directory, ".so"))
            if (auto library = read(JoinPath(directory, name))) found.push_back(std::move(*library));
    return found;
}

}  // namespace

std::vector<FoundPluginLibrary> FindVisualizationLibraries(std::string_view searchPath) {
    return Scan(searchPath, ReadVisualization);
}

bool ConfigureVisualizationModule(const std::string& path, int moduleIndex, void* parentWindow) {
    PluginLibrary library = PluginLibrary::Open(path);
    const winampVisHeader* header = VisHeaderOf(library);
    if (!header || !header->getModule || moduleIndex < 0) return false;
    winampVisModule* module = header->getModule(moduleIndex);
    if (!module || !module->Config) return false;
    module->hDllInstance = library.handle();
    module->hwndParent = parentWindow;
    module->Config(module);
    return true;  // the library is released here
}

}  // namespace verdin
