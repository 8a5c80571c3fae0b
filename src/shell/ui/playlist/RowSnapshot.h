#pragma once
// The rows of the main playlist as the view last showed them (the item of each row), and
// how two such snapshots differ, so that a change of the tree is told to the view as the
// few rows it touched instead of a reset of 100,000 rows. Toolkit-free.
#include <vector>

namespace verdin {

class Playlist;
class PlaylistItem;

// The item of every row, depth first (a nested playlist's row, then its items' rows).
std::vector<const PlaylistItem*> RowItems(const Playlist& main);

// How the rows changed, in one of three shapes:
//   kSame      the same items in the same rows (texts may still have changed);
//   kReordered the rows from `first` on (`removed` == `inserted` of them) hold the same
//              items as before, in another order: sorting, or a move by drag and drop;
//   kReplaced  from `first` on, `removed` old rows went and `inserted` new rows came.
// Rows before `first` and the rows after the changed block are unchanged.
struct RowChange {
    enum class Kind { kSame, kReordered, kReplaced };
    Kind kind = Kind::kSame;
    int first = 0;
    int removed = 0;
    int inserted = 0;
};

// Items are compared by address; null stands for a row without an item (the one line an
// empty list shows).
RowChange CompareRows(const std::vector<const PlaylistItem*>& before, const std::vector<const PlaylistItem*>& after);

}  // namespace verdin
