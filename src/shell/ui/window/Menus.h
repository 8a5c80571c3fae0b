#pragma once
// The menus. Resource 120: the popups "File", "Miscellaneous", "Notify Icon" and
// "Playlist"; the default (bold) items are "Open File(s)...", "Options..." and "Show
// Playlist"; "Notify Icon" carries the other three popups followed by the five transport
// commands. Resource 155: the playlist view's context popups "Track", "Playlist",
// "General" and "Random entry".
//
// Every entry is a command-table identifier with that entry's text; choosing it runs the
// identifier.
#include <QMenu>
#include <cstdint>
#include <functional>
#include <map>

namespace verdin {

struct MainMenus {
    QMenu* file = nullptr;
    QMenu* miscellaneous = nullptr;
    QMenu* notifyIcon = nullptr;
    QMenu* playlist = nullptr;
    QMenu* trackContext = nullptr;
    QMenu* playlistContext = nullptr;
    QMenu* generalContext = nullptr;
    QMenu* randomEntryContext = nullptr;
    // The checkable entries (modes and what is shown), by identifier, in every popup.
    std::multimap<uint32_t, QAction*> checkable;
};

using CommandSink = std::function<void(uint32_t id)>;

// The menus, owned by owner.
MainMenus BuildMenus(QWidget* owner, const CommandSink& run);

// The entry's text: the command table's menu text, or the entry's own where one
// identifier has two ("Insert File(s)...\tInsert" beside "Add File(s)...\tInsert").
QString MenuEntryText(uint32_t id);

}  // namespace verdin
