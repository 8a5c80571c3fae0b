#include "WindowCommands.h"

#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TreeCommands.h"
#include "playlist/files/PlaylistFileTexts.h"
#include "playlist/files/PlaylistWriter.h"
#include "shell/ui/MainWindow.h"
#include "shell/ui/WindowHost.h"
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/files/FileDialogs.h"
#include "shell/ui/playlist/PlaylistView.h"
#include "shell/ui/playlist/RowMove.h"

namespace verdin {

WindowCommands::WindowCommands(MainWindow& window)
    : window_(window), core_(window.Core()), adding_(window.Core(), window) {}

QWidget* WindowCommands::Owner() { return window_.Application().DialogOwner(); }

bool WindowCommands::Run(Action action, const CommandContext& context) {
    Settings& settings = core_.GetSettings();
    const int atRow = context.FirstSelectedRow();
    const int selected = context.selectedRows.empty() ? -1 : context.selectedRows.front();
    switch (action) {
        case Action::kToggleAnalyzer: ToggleSetting(settings.frequencyAnalyzer); return true;
        case Action::kToggleOscilloscope: ToggleSetting(settings.oscilloscope); return true;
        case Action::kToggleVisualization: ToggleSetting(settings.enableVisualizationPlugins); return true;
        case Action::kTogglePlaylist: ToggleSetting(settings.showPlaylist); return true;
        case Action::kMiniWindow: window_.showMinimized(); return true;
        case Action::kNormalWindow:
            window_.showNormal();
            window_.raise();
            window_.activateWindow();
            return true;
        case Action::kOptions:
        case Action::kPlugIns:
            ShowOptions(Owner(), core_, action == Action::kPlugIns ? "Digital Signal Processing (DSP)" : "");
            window_.RefreshDisplays(true);
            return true;
        case Action::kEqualizer:
            ShowEqualizer(Owner(), core_);
            return true;
        case Action::kAbout:
            ShowAbout(Owner());
            return true;
        case Action::kResetOptions: ResetOptions(context); return true;
        case Action::kOpenFiles: adding_.OpenFiles(); return true;
        case Action::kOpenDirectory: adding_.OpenDirectory(); return true;
        case Action::kOpenUrl: adding_.OpenUrl(); return true;
        case Action::kAddFiles: adding_.AddFiles(atRow); return true;
        case Action::kAddDirectory: adding_.AddDirectory(atRow); return true;
        case Action::kAddUrl: adding_.AddUrl(atRow); return true;
        case Action::kAddRandomEntry: AddRandomEntry(atRow); return true;
        case Action::kSaveMainPlaylistAs: adding_.SaveMainPlaylistAs(); return true;
        case Action::kIncorporateItems: IncorporateItems(context); return true;
        case Action::kSaveSelectedPlaylistAs: SaveSelectedPlaylist(selected); return true;
        case Action::kDropPlaylist: DropPlaylist(selected); return true;
        case Action::kDelete:
            // Only what the user sees selected in the view it is working in.
            if (context.viewHasFocus) core_.DeleteRows(context.selectedRows);
            return true;
        case Action::kPlaySelected:
            if (selected >= 0) core_.PlayRow(selected);
            return true;
        case Action::kProperties: ShowProperties(selected); return true;
        case Action::kEvaluatedProperties: ShowEvaluatedProperties(selected); return true;
        case Action::kFindInPlaylist: Find(true); return true;
        case Action::kFindNext: Find(false); return true;
        case Action::kSelectAll: window_.View().selectAll(); return true;
        default: return false;
    }
}

void WindowCommands::ToggleSetting(int32_t& setting) {
    setting = setting ? 0 : 1;
    window_.RefreshDisplays(false);
}

void WindowCommands::ResetOptions(const CommandContext& context) {
    // What the user arranged goes into the settings first, so that after a "No" the
    // window stays as it was and after a "Yes" every default differs from it visibly.
    window_.StoreLayout();
    core_.ExecuteAction(Action::kResetOptions, context);
    window_.RefreshDisplays(true);
}

void WindowCommands::AddRandomEntry(int atRow) {
    auto entry = std::make_unique<RandomEntry>("");
    if (!EditRandomEntry(Owner(), core_, *entry)) return;
    const bool wasEmpty = core_.MainPlaylist().PlayableCount() == 0;
    InsertItemAtRow(core_.MainPlaylist(), atRow, std::move(entry));
    core_.ListChanged();
    core_.CommitAdditions(wasEmpty);
}

void WindowCommands::IncorporateItems(const CommandContext& context) {
    if (context.selectedRows.empty()) return;
    if (IncorporateIntoNewPlaylist(core_.MainPlaylist(), context.selectedRows,
                                   UntitledPlaylistName(core_.Environment().userDirectory)) < 0)
        return;
    core_.RebuildShuffleOrder();
    core_.ListChanged();
}

void WindowCommands::SaveSelectedPlaylist(int row) {
    const RowRef ref = core_.MainPlaylist().ItemAtRow(row);
    if (!ref || ref.item->Kind() != ItemKind::kPlaylist) return;
    const std::optional<PlaylistSaveChoice> choice = AskPlaylistFile(Owner(), core_.GetSettings().initialDirectory);
    if (!choice) return;
    if (!SavePlaylist(static_cast<Playlist&>(*ref.item), choice->fileName, static_cast<PlaylistFormat>(choice->format)))
        window_.Application().ShowMessage(kUnableToSavePlaylist, MessageIcon::kError);
    window_.RefreshDisplays(true);
}

void WindowCommands::DropPlaylist(int row) {
    if (!verdin::DropPlaylist(core_.MainPlaylist(), row)) return;
    core_.RebuildShuffleOrder();
    core_.ListChanged();
}

void WindowCommands::ShowProperties(int row) {
    const RowRef ref = core_.MainPlaylist().ItemAtRow(row);
    if (!ref) return;
    if (ref.item->Kind() == ItemKind::kTrack) {
        ShowTrackProperties(Owner(), core_, row);
        window_.RefreshDisplays(true);
    } else if (ref.item->Kind() == ItemKind::kRandomEntry) {
        if (EditRandomEntry(Owner(), core_, static_cast<RandomEntry&>(*ref.item))) core_.ListChanged();
    }
}

void WindowCommands::ShowEvaluatedProperties(int row) {
    if (!IsRandomEntryRow(core_.MainPlaylist(), row)) return;
    ShowEvaluatedTrackProperties(Owner(), core_, row);
}

void WindowCommands::Find(bool askFirst) {
    PlaylistView& view = window_.View();
    const int focused = view.currentIndex().isValid() ? view.currentIndex().row() : -1;
    const int row = FindInPlaylist(Owner(), core_, lastFind_, askFirst, focused);
    if (row < 0) return;
    view.SelectRows({row});
    view.setFocus();
}

void WindowCommands::MoveRows(const std::vector<int>& rows, int beforeRow) {
    Playlist& main = core_.MainPlaylist();
    const PlaylistItem* current = main.ItemAtRow(core_.CurrentRow()).item;
    if (verdin::MoveRows(main, rows, beforeRow) < 0) return;
    core_.RebuildShuffleOrder();
    const int currentRow = RowOfItem(main, current);
    core_.SetCurrentRow(currentRow >= 0 ? currentRow : core_.CurrentRow());
    core_.ListChanged();
}

}  // namespace verdin
