#pragma once
// Moving rows of the playlist view by drag and drop. Toolkit-free.
#include <vector>

namespace verdin {

class Playlist;

// Moves the items at rows, in row order, to just before the item at beforeRow, into the
// playlist that holds that item; to the end of the main playlist when beforeRow names no
// item. An item inside a moved nested playlist moves with its playlist. A target that is
// one of the moved items, or lies inside a moved playlist, gives way to the next row that
// is neither (a playlist cannot be moved into itself). Returns the new row of the first
// moved item, or -1 when no row named an item.
int MoveRows(Playlist& main, std::vector<int> rows, int beforeRow);

}  // namespace verdin
