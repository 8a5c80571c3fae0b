#include "playlist/TrackItem.h"
#include "playlist/titles/FindRow.h"
#include "playlist/view/PlaylistViewText.h"
#include "shell/Player.h"
#include "shell/ui/MessageBoxes.h"
#include "shell/ui/dialogs/Dialogs.h"

namespace verdin {

int FindInPlaylist(QWidget* parent, const Player& player, FindRequest& last, bool askFirst, int focusedRow) {
    if (askFirst || last.text.empty()) {
        std::optional<FindRequest> request = AskFind(parent, last);
        if (!request) return -1;
        last = std::move(*request);
    }
    const Playlist& main = player.List();
    const auto titleOf = [&player](const PlaylistItem& item) {
        if (item.Kind() == ItemKind::kTrack) return player.TrackTitle(static_cast<const TrackItem&>(item).Track());
        return CellsOfItem(item, 0, nullptr)[0];
    };
    const int row = FindRow(main, FirstRowToSearch(focusedRow, main.RowCount()), last.text, last.caseSensitive, titleOf);
    if (row < 0) ShowMessageBox(parent, CannotFindMessage(last.text), MessageIcon::kWarning);
    return row;
}

}  // namespace verdin
