#include "CommandTable.h"

#include <algorithm>
#include <array>

namespace verdin {

namespace {

// Identifier lists, one per action: menu (resource), key (accelerator), button, and the
// command identifiers of hosted plug-ins. A plug-in's "options" (40012), "open files"
// (40029, and 40145: play with Shift), "playlist" (40040), transport (40044..40048),
// volume (40058/40059), seek 5 s (40144/40148), first and last row (40154/40158) and
// "open URL" (40155) are mapped onto the player's own actions; 40146, 40156 and 40157
// are accepted and ignored.
constexpr uint32_t kPrevious[] = {104, 50076, 40044};
constexpr uint32_t kStop[] = {106, 50077, 40047, 40147};
constexpr uint32_t kPause[] = {107, 50078, 40046};
constexpr uint32_t kPlay[] = {108, 50079, 40045};
constexpr uint32_t kNext[] = {110, 50080, 40048};
constexpr uint32_t kNextCrossfade[] = {50117};
constexpr uint32_t kLoop[] = {50052, 50081, 114};
constexpr uint32_t kShuffle[] = {50053, 50082, 119};
constexpr uint32_t kAnalyzer[] = {50054, 50083, 118};
constexpr uint32_t kOscilloscope[] = {50075, 50084, 128};
constexpr uint32_t kVisualization[] = {50114, 50113, 131};
constexpr uint32_t kPlaylist[] = {50089, 50085, 121, 40040};
constexpr uint32_t kMini[] = {50086, 122, 125};
constexpr uint32_t kNormal[] = {50087, 123};
constexpr uint32_t kOptions[] = {50031, 50041, 113, 40012};
constexpr uint32_t kPlugIns[] = {50111, 50110};
constexpr uint32_t kEqualizer[] = {50096, 50097};
constexpr uint32_t kReset[] = {50095};
constexpr uint32_t kAbout[] = {50003, 50040};
constexpr uint32_t kExit[] = {50001, 50063, 124};
constexpr uint32_t kOpenFiles[] = {50012, 50037, 50032, 40029, 40145};
constexpr uint32_t kOpenDirectory[] = {50070, 50073, 50069};
constexpr uint32_t kOpenUrl[] = {50058, 50061, 50062, 40155};
constexpr uint32_t kAddFiles[] = {50013, 50021, 50033};
constexpr uint32_t kAddDirectory[] = {50071, 50072, 50068};
constexpr uint32_t kAddUrl[] = {50059, 50060, 58112};
constexpr uint32_t kAddRandom[] = {50103, 50101, 50102};
constexpr uint32_t kAddPlaylist[] = {50030, 50029, 50035};
constexpr uint32_t kIncorporate[] = {50091, 50092};
constexpr uint32_t kSaveMain[] = {50014, 50051, 50038};
constexpr uint32_t kSaveSelected[] = {50017, 50039};
constexpr uint32_t kDrop[] = {50093, 50094};
constexpr uint32_t kDelete[] = {50023, 50034};
constexpr uint32_t kSort[] = {50118};
constexpr uint32_t kFlatten[] = {50119};
constexpr uint32_t kPlaySelected[] = {50019};
constexpr uint32_t kProperties[] = {50056, 50055, 50057};
constexpr uint32_t kEvaluated[] = {50122, 50123};
constexpr uint32_t kFind[] = {50108, 50106};
constexpr uint32_t kFindNext[] = {50109, 50107};
constexpr uint32_t kRefresh[] = {50098, 50099};
constexpr uint32_t kRecreate[] = {50104, 50105};
constexpr uint32_t kSelectAll[] = {50100};
constexpr uint32_t kSeekBack[] = {50116, 40144};
constexpr uint32_t kSeekForward[] = {50115, 40148};
constexpr uint32_t kVolumeUp[] = {50120, 40058};
constexpr uint32_t kVolumeDown[] = {50121, 40059};
constexpr uint32_t kFirstRow[] = {40154};
constexpr uint32_t kLastRow[] = {40158};
constexpr uint32_t kIgnored[] = {40146, 40156, 40157};

constexpr bool kWindow = true;
constexpr bool kCore = false;

// clang-format off
constexpr std::array kCommands = {
    CommandEntry{Action::kPreviousTrack, kPrevious, "Previous Track\t1", "1", kCore},
    CommandEntry{Action::kStop, kStop, "Stop\t2", "2", kCore},
    CommandEntry{Action::kPauseResume, kPause, "Pause\t3", "3", kCore},
    CommandEntry{Action::kPlay, kPlay, "Play\t4", "4", kCore},
    CommandEntry{Action::kNextTrack, kNext, "Next Track\t5", "5", kCore},
    CommandEntry{Action::kNextTrackCrossfade, kNextCrossfade, "", "Shift+5", kCore},
    CommandEntry{Action::kToggleLoop, kLoop, "Loop Mode\t6", "6", kCore},
    CommandEntry{Action::kToggleShuffle, kShuffle, "Shuffle Mode\t7", "7", kCore},
    CommandEntry{Action::kToggleAnalyzer, kAnalyzer, "Show Frequency Analyzer\t8", "8", kWindow},
    CommandEntry{Action::kToggleOscilloscope, kOscilloscope, "Show Oscilloscope\t9", "9", kWindow},
    CommandEntry{Action::kToggleVisualization, kVisualization, "Enable Visualization Plug-in(s)\t0", "0", kCore},
    CommandEntry{Action::kTogglePlaylist, kPlaylist, " \tShow Playlist (P)", "P", kWindow},
    CommandEntry{Action::kMiniWindow, kMini, "", "Num+-", kWindow},
    CommandEntry{Action::kNormalWindow, kNormal, "", "Num++", kWindow},
    CommandEntry{Action::kOptions, kOptions, "Options...\tO", "O", kWindow},
    CommandEntry{Action::kPlugIns, kPlugIns, "Plug-ins...\tCtrl + P", "Ctrl+P", kWindow},
    CommandEntry{Action::kEqualizer, kEqualizer, "Graphic Equalizer...\tE", "E", kWindow},
    CommandEntry{Action::kResetOptions, kReset, "Reset All Options", "", kCore},
    CommandEntry{Action::kAbout, kAbout, "About Verdin...\tF1", "F1", kWindow},
    CommandEntry{Action::kExit, kExit, "Exit\tCtrl + Q", "Ctrl+Q", kCore},
    CommandEntry{Action::kOpenFiles, kOpenFiles, "Open File(s)...\tL", "L", kWindow},
    CommandEntry{Action::kOpenDirectory, kOpenDirectory, "Open Directory...\tShift + L", "Shift+L", kWindow},
    CommandEntry{Action::kOpenUrl, kOpenUrl, "Open URL...\tCtrl + L", "Ctrl+L", kWindow},
    CommandEntry{Action::kAddFiles, kAddFiles, "Add File(s)...\tInsert", "Ins", kWindow},
    CommandEntry{Action::kAddDirectory, kAddDirectory, "Add Directory...\tShift + Insert", "Shift+Ins", kWindow},
    CommandEntry{Action::kAddUrl, kAddUrl, "Add URL...\tCtrl + Insert", "Ctrl+Ins", kWindow},
    CommandEntry{Action::kAddRandomEntry, kAddRandom, "Add Random Entry...\tCtrl + Shift + Insert", "Ctrl+Shift+Ins", kWindow},
    CommandEntry{Action::kAddNewPlaylist, kAddPlaylist, "Add New Playlist\tAlt + Insert", "Alt+Ins", kCore},
    CommandEntry{Action::kIncorporateItems, kIncorporate, "Incorporate Item(s) Into New Playlist\tAlt + Ctrl + Insert", "Ctrl+Alt+Ins", kWindow},
    CommandEntry{Action::kSaveMainPlaylistAs, kSaveMain, "Save Main Playlist As...\tShift + S", "Shift+S", kWindow},
    CommandEntry{Action::kSaveSelectedPlaylistAs, kSaveSelected, "Save As...\tS", "S", kWindow},
    CommandEntry{Action::kDropPlaylist, kDrop, "Drop Playlist\tShift + Delete", "Shift+Del", kWindow},
    CommandEntry{Action::kDelete, kDelete, "Delete\tDelete", "Del", kWindow},
    CommandEntry{Action::kSortPlaylist, kSort, "Sort Playlist", "", kCore},
    CommandEntry{Action::kFlattenMainPlaylist, kFlatten, "Flatten Main Playlist", "", kCore},
    CommandEntry{Action::kPlaySelected, kPlaySelected, "Play\tEnter", "", kWindow},
    CommandEntry{Action::kProperties, kProperties, "Properties...\tAlt + Enter", "Alt+Return", kWindow},
    CommandEntry{Action::kEvaluatedProperties, kEvaluated, "Evaluated Track Properties...\tAlt + Ctrl + Enter", "Ctrl+Alt+Return", kWindow},
    CommandEntry{Action::kFindInPlaylist, kFind, "Find In Playlist\tCtrl + F", "Ctrl+F", kWindow},
    CommandEntry{Action::kFindNext, kFindNext, "Find Next\tF3", "F3", kWindow},
    CommandEntry{Action::kRefreshInformation, kRefresh, " \tRefresh Playlist Information (F5)", "F5", kCore},
    CommandEntry{Action::kRecreateSampleSpace, kRecreate, " \t(Re)create Sample Space (Shift + F5)", "Shift+F5", kCore},
    CommandEntry{Action::kSelectAll, kSelectAll, "", "Ctrl+A", kWindow},
    CommandEntry{Action::kSeekBack, kSeekBack, "", "Ctrl+Left", kCore},
    CommandEntry{Action::kSeekForward, kSeekForward, "", "Ctrl+Right", kCore},
    CommandEntry{Action::kVolumeUp, kVolumeUp, "", "Ctrl+Up", kCore},
    CommandEntry{Action::kVolumeDown, kVolumeDown, "", "Ctrl+Down", kCore},
    CommandEntry{Action::kFirstRow, kFirstRow, "", "", kCore},
    CommandEntry{Action::kLastRow, kLastRow, "", "", kCore},
    CommandEntry{Action::kIgnored, kIgnored, "", "", kCore},
};
// clang-format on

}  // namespace

std::span<const CommandEntry> CommandTable() { return kCommands; }

const CommandEntry* FindCommand(uint32_t id) {
    for (const CommandEntry& entry : kCommands)
        for (uint32_t candidate : entry.ids)
            if (candidate == id) return &entry;
    return nullptr;
}

const CommandEntry& CommandFor(Action action) {
    for (const CommandEntry& entry : kCommands)
        if (entry.action == action) return entry;
    return kCommands.back();
}

std::string_view ButtonToolTip(uint32_t buttonId) {
    struct Tip {
        uint32_t button;
        std::string_view text;
    };
    static constexpr Tip kTips[] = {
        {104, "Previous track in playlist, shortcut key: 1"},
        {106, "Stop playback, shortcut key: 2"},
        {107, "Pause/Resume playback, shortcut key: 3"},
        {108, "(Re)start playback, shortcut key: 4"},
        {110, "Next track in playlist, shortcut key: 5\nHold down shift to crossfade"},
        {112, "File menu"},
        {113, "Miscellaneous menu"},
        {114, "Toggle loop mode, shortcut key: 6"},
        {118, "Show/Hide the frequency analyzer, shortcut key: 8"},
        {119, "Toggle shuffle mode, shortcut key: 7"},
        {121, "Playlist"},
        {122, "Mini window, shortcut key: - (numeric keypad)"},
        {123, "Normal window, shortcut key: + (numeric keypad)"},
        {124, "Exit Verdin"},
        {125, "Minimize window, shortcut key: - (numeric keypad)"},
        {128, "Show/Hide the oscilloscope, shortcut key: 9"},
        {131, "Enable visualization plug-in(s), shortcut key: 0"},
    };
    for (const Tip& tip : kTips)
        if (tip.button == buttonId) return tip.text;
    return {};
}

int CommandContext::FirstSelectedRow() const {
    if (!viewHasFocus || selectedRows.empty()) return -1;
    return *std::min_element(selectedRows.begin(), selectedRows.end());
}

}  // namespace verdin
