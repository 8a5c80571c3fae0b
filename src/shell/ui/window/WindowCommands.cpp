#include "WindowCommands.h"

#include "playlist/Playlist.h"
#include "settings/Settings.h"
#include "shell/ui/MainWindow.h"
#include "shell/ui/WindowHost.h"
#include "shell/ui/compact/Presentation.h"
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/common/KeptRow.h"
#include "shell/ui/files/FileDialogs.h"
#include "shell/ui/playlist/PlaylistView.h"

namespace verdin {

WindowCommands::WindowCommands(MainWindow& window)
    : window_(window), player_(window.GetPlayer()), adding_(window.GetPlayer(), window) {}

QWidget* WindowCommands::Owner() { return window_.Application().DialogOwner(); }

bool WindowCommands::Run(Action action, const CommandContext& context) {
    const int atRow = context.FirstSelectedRow();
    const int selected = context.selectedRows.empty() ? -1 : context.selectedRows.front();
    switch (action) {
        case Action::kToggleAnalyzer: Toggle(&Settings::frequencyAnalyzer); return true;
        case Action::kToggleOscilloscope: Toggle(&Settings::oscilloscope); return true;
        case Action::kTogglePlaylist: Toggle(&Settings::showPlaylist); return true;
        case Action::kMiniWindow: window_.Compact().MiniOrMinimize(); return true;
        case Action::kNormalWindow: window_.Compact().NormalWindow(); return true;
        case Action::kOptions:
        case Action::kPlugIns:
            ShowOptions(Owner(), player_, action == Action::kPlugIns ? "Digital Signal Processing (DSP)" : "");
            return true;
        case Action::kEqualizer: ShowEqualizer(Owner(), player_); return true;
        case Action::kAbout: ShowAbout(Owner()); return true;
        case Action::kResetOptions:
            // What the user arranged goes into the settings first, so that after a "No" the
            // window stays as it was and after a "Yes" every default differs from it visibly.
            window_.StoreLayout();
            player_.Execute(Action::kResetOptions, context);
            return true;
        case Action::kOpenFiles: adding_.OpenFiles(); return true;
        case Action::kOpenDirectory: adding_.OpenDirectory(); return true;
        case Action::kOpenUrl: adding_.OpenUrl(); return true;
        case Action::kAddFiles: adding_.AddFiles(atRow); return true;
        case Action::kAddDirectory: adding_.AddDirectory(atRow); return true;
        case Action::kAddUrl: adding_.AddUrl(atRow); return true;
        case Action::kAddRandomEntry:
            if (const auto expression = AskRandomExpression(Owner(), player_, ""); expression && !expression->empty())
                player_.AddRandomEntry(atRow, *expression);
            return true;
        case Action::kSaveMainPlaylistAs: adding_.SaveMainPlaylistAs(); return true;
        case Action::kIncorporateItems:
            if (!context.selectedRows.empty()) player_.IncorporateRows(context.selectedRows);
            return true;
        case Action::kSaveSelectedPlaylistAs: SaveSelectedPlaylist(selected); return true;
        case Action::kDropPlaylist: player_.DropPlaylist(selected); return true;
        case Action::kDelete:
            // Only what the user sees selected in the view it is working in.
            if (context.viewHasFocus) player_.DeleteRows(context.selectedRows);
            return true;
        case Action::kPlaySelected:
            if (selected >= 0) player_.PlayRow(selected);
            return true;
        case Action::kProperties: ShowTrackProperties(Owner(), player_, selected); return true;
        case Action::kEvaluatedProperties: ShowEvaluatedTrackProperties(Owner(), player_, selected); return true;
        case Action::kFindInPlaylist: Find(true); return true;
        case Action::kFindNext: Find(false); return true;
        case Action::kSelectAll: window_.View().selectAll(); return true;
        default: return false;
    }
}

void WindowCommands::Toggle(int32_t Settings::*setting) {
    player_.ChangeSettings([setting](Settings& settings) { settings.*setting = settings.*setting ? 0 : 1; });
}

void WindowCommands::SaveSelectedPlaylist(int row) {
    const ConstRowRef ref = player_.List().ItemAtRow(row);
    if (!ref || ref.item->Kind() != ItemKind::kPlaylist) return;
    const KeptRow kept(player_, row);
    std::string directory = player_.GetSettings().initialDirectory;
    const std::optional<PlaylistSaveChoice> choice = AskPlaylistFile(Owner(), directory);
    if (!choice) return;
    if (directory != player_.GetSettings().initialDirectory)
        player_.ChangeSettings([&](Settings& settings) { settings.initialDirectory = directory; });
    if (kept.Row() >= 0) player_.SavePlaylist(kept.Row(), choice->fileName, choice->format);
}

void WindowCommands::Find(bool askFirst) {
    PlaylistView& view = window_.View();
    const int focused = view.currentIndex().isValid() ? view.currentIndex().row() : -1;
    const int row = FindInPlaylist(Owner(), player_, lastFind_, askFirst, focused);
    if (row < 0) return;
    view.SelectRows({row});
    view.setFocus();
}

}  // namespace verdin
