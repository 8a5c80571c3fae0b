#include "GeneralPluginHost.h"

#include "base/DirectoryListing.h"
#include "base/SearchPath.h"
#include "plugins/library/PluginCallScope.h"

namespace verdin {

GeneralPluginHost::~GeneralPluginHost() {
    // Without an orderly exit (a quit that did not come through QuitAll) nothing is told,
    // and nothing is unloaded under a plug-in that still runs.
    for (Plugin& plugin : plugins_) plugin.library.KeepLoaded();
}

void GeneralPluginHost::LoadAll(std::string_view searchPath, void* hostWindow) {
    for (const std::string& directory : SplitSearchPath(searchPath)) {
        for (const std::string& name : ListFilesWithExtension(directory, ".so")) {
            PluginLibrary library = PluginLibrary::Open(JoinPath(directory, name));
            auto entry = library.Entry<winampGeneralPurposePluginGetter>(VERDIN_GENERAL_ENTRY_POINT);
            winampGeneralPurposePlugin* record = entry ? entry() : nullptr;
            if (!record || !record->init) continue;
            record->hDllInstance = library.handle();
            record->hwndParent = hostWindow;
            int refused = 0;
            {
                PluginCallScope call;
                refused = record->init();
            }
            if (refused == 0) plugins_.push_back({std::move(library), record});
        }
    }
}

void GeneralPluginHost::QuitAll() {
    for (Plugin& plugin : plugins_) {
        if (plugin.record->quit) {
            PluginCallScope call;
            plugin.record->quit();
        }
        plugin.library.KeepLoaded();
    }
    plugins_.clear();
}

std::vector<std::string> GeneralPluginHost::Descriptions() const {
    std::vector<std::string> descriptions;
    for (const Plugin& plugin : plugins_)
        descriptions.emplace_back(plugin.record->description ? plugin.record->description : "");
    return descriptions;
}

bool GeneralPluginHost::Configure(size_t index) {
    if (index >= plugins_.size() || !plugins_[index].record->config) return false;
    PluginCallScope call;
    plugins_[index].record->config();
    return true;
}

}  // namespace verdin
