#pragma once
// Every command the player knows, as data: one row per action with the identifiers that
// reach it (menu entries, keys, toolbar and notification-menu buttons, and the command
// identifiers hosted plug-ins send), its menu text, its key and its tool tip. Menus,
// shortcuts, toolbar buttons, the tray menu, D-Bus and plug-in messages all dispatch
// through this one table.
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace verdin {

enum class Action {
    kPreviousTrack, kStop, kPauseResume, kPlay, kNextTrack, kNextTrackCrossfade,
    kToggleLoop, kToggleShuffle, kToggleAnalyzer, kToggleOscilloscope, kToggleVisualization,
    kTogglePlaylist, kMiniWindow, kNormalWindow, kOptions, kPlugIns, kEqualizer,
    kResetOptions, kAbout, kExit,
    kOpenFiles, kOpenDirectory, kOpenUrl, kAddFiles, kAddDirectory, kAddUrl,
    kAddRandomEntry, kAddNewPlaylist, kIncorporateItems, kSaveMainPlaylistAs,
    kSaveSelectedPlaylistAs, kDropPlaylist, kDelete, kSortPlaylist, kFlattenMainPlaylist,
    kPlaySelected, kProperties, kEvaluatedProperties, kFindInPlaylist, kFindNext,
    kRefreshInformation, kRecreateSampleSpace, kSelectAll,
    kSeekBack, kSeekForward, kVolumeUp, kVolumeDown, kFirstRow, kLastRow,
    kIgnored,
};

struct CommandEntry {
    Action action;
    std::span<const uint32_t> ids;  // every identifier that runs this action
    std::string_view menuText;      // "Previous Track\t1" (empty: no menu entry)
    std::string_view key;           // the shortcut in Qt's portable form ("Ctrl+Q", "Num+-")
    bool needsWindow;               // does nothing without windows (headless)
};

std::span<const CommandEntry> CommandTable();

// Where a command that inserts or deletes acts: the playlist view's selection when the
// view has the keyboard focus, else the end of the main playlist.
struct CommandContext {
    bool viewHasFocus = false;
    std::vector<int> selectedRows;  // rows of the main playlist, in any order
    int FirstSelectedRow() const;
};
// The row that handles an identifier, or null for an unknown identifier.
const CommandEntry* FindCommand(uint32_t id);
// The row of an action.
const CommandEntry& CommandFor(Action action);

// The tool tip of a toolbar or notification-menu button, by the button's identifier
// (empty for an unknown button).
std::string_view ButtonToolTip(uint32_t buttonId);

}  // namespace verdin
