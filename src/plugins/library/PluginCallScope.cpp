#include "PluginCallScope.h"

namespace verdin {

namespace {
// Set and used on the user-interface thread only.
PluginCallScope::Watcher watcher = nullptr;
void* watcherContext = nullptr;
}  // namespace

PluginCallScope::PluginCallScope() {
    if (watcher) watcher(watcherContext, true);
}

PluginCallScope::~PluginCallScope() {
    if (watcher) watcher(watcherContext, false);
}

void PluginCallScope::Watch(Watcher newWatcher, void* context) {
    watcher = newWatcher;
    watcherContext = context;
}

}  // namespace verdin
