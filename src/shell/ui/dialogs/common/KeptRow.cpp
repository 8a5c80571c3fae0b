#include "shell/ui/dialogs/common/KeptRow.h"

#include "playlist/RandomEntry.h"
#include "shell/Player.h"

#include <QDialog>

namespace verdin {

KeptRow::KeptRow(Player& player, int row, const TrackRecord* picked)
    : player_(player), item_(player.List().ItemAtRow(row).item), picked_(picked), row_(item_ ? row : -1) {
    listener_ = player_.Listen([this](unsigned changes) {
        if (changes & (kRowsChanged | kListReplaced | kTextsChanged)) Follow();
    });
}

KeptRow::~KeptRow() { player_.StopListening(listener_); }

void KeptRow::Guard(QDialog& dialog) { dialog_ = &dialog; }

void KeptRow::Follow() {
    if (row_ < 0) return;
    // Compared by address only while the entry is known to be in the list: every change
    // is followed as it is announced, so a gone entry is noticed before its memory can
    // be reused.
    const Playlist& list = player_.List();
    if (list.ItemAtRow(row_).item != item_) {
        row_ = -1;
        for (int row = 0, rows = list.RowCount(); row < rows && row_ < 0; ++row)
            if (list.ItemAtRow(row).item == item_) row_ = row;
    }
    if (row_ >= 0 && picked_ && static_cast<const RandomEntry*>(item_)->PickedTrack() != picked_) row_ = -1;
    if (row_ < 0 && dialog_) dialog_->reject();
}

}  // namespace verdin
