#pragma once
// Marks the user-interface thread as being inside a call into a plug-in (Init, Config,
// Quit, Render, a general-purpose init, config or quit) for as long as the object lives.
//
// A plug-in may wait inside such a call for a thread of its own, and that thread may be
// sending the player a message meanwhile: whoever answers those messages on the
// user-interface thread must not wait for it then. The one watcher (the host window)
// learns of each entry and exit. User-interface thread only; scopes nest.
namespace verdin {

class PluginCallScope {
public:
    using Watcher = void (*)(void* context, bool entering);

    PluginCallScope();
    ~PluginCallScope();
    PluginCallScope(const PluginCallScope&) = delete;
    PluginCallScope& operator=(const PluginCallScope&) = delete;

    // Sets (or, with null, clears) the watcher.
    static void Watch(Watcher watcher, void* context);
};

}  // namespace verdin
