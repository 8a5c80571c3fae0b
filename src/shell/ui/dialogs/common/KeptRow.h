#pragma once
// One entry of the main list, followed while a modal dialog about it is open. The list
// may change under the dialog: the progress tick deletes played entries, a D-Bus "/PLAY"
// replaces the list, the sample space is made anew. The entry's row follows edits above
// it; when the entry goes (or, for a random entry, its pick changes) the row becomes -1
// and the dialog it guards is closed, so nothing is done to another entry or through a
// freed track.
#include <QPointer>

class QDialog;

namespace verdin {

class Player;
class PlaylistItem;
class TrackRecord;

class KeptRow {
public:
    // picked: the random entry's pick the dialog shows, if it shows one.
    KeptRow(Player& player, int row, const TrackRecord* picked = nullptr);
    ~KeptRow();
    KeptRow(const KeptRow&) = delete;
    KeptRow& operator=(const KeptRow&) = delete;

    // The entry's row now, -1 once it is gone.
    int Row() const { return row_; }
    // Closes (rejects) the dialog when the entry goes.
    void Guard(QDialog& dialog);

private:
    void Follow();

    Player& player_;
    const PlaylistItem* item_;
    const TrackRecord* picked_;
    int row_;
    int listener_;
    QPointer<QDialog> dialog_;
};

}  // namespace verdin
