#pragma once
// A playlist tree written as one line, for building fixtures and checking results:
//
//   a           a track named /m/a.mp3 (shown by its body)
//   ?expr       a random entry with the expression expr
//   P[ ... ]    a nested playlist /lists/P.vdp holding what stands between the brackets
//
// Tokens are separated by single spaces: "a P[ b Q[ c ] ] ?x d".
#include "playlist/Playlist.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace verdin::test {

// The tree described; every playlist in it has no unsaved changes afterwards.
std::unique_ptr<Playlist> BuildTree(std::string_view text);
// The playlist's items in the same notation.
std::string DescribeTree(const Playlist& playlist);
// The label of one item: a track's body, "?expr", or a playlist's body.
std::string Label(const PlaylistItem& item);
// The labels of the rows, in row order, found through ItemAtRow.
std::vector<std::string> RowLabels(const Playlist& main);
// The row of the first item with that label (searching the tree itself, not the row
// caches), or -1.
int RowOfLabel(const Playlist& main, std::string_view label);

}  // namespace verdin::test
