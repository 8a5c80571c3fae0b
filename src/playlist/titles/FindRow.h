#pragma once
// "Find In Playlist": the search itself (the dialog and the selection are the view's).
//
// A row matches when one of its texts contains the search text: the title the view shows
// (for a track, its track title), and besides it the file name without its directory for
// tracks and nested playlists, and the expression for random entries. The directory is
// left out on purpose: a search for "Music" should not match every track kept under
// ~/Music. Without "Case sensitive" both sides are upper-cased first. An empty search
// text matches the first row looked at.
//
// The search starts at firstRow (FirstRowToSearch) and goes down; after the last row it
// wraps to row 0 and stops before firstRow, so a repeated search walks through every
// match and comes back round to the first.
#include <functional>
#include <string>
#include <string_view>

namespace verdin {

class Playlist;
class PlaylistItem;

// The title the view shows for an item.
using RowTitleFunction = std::function<std::string(const PlaylistItem&)>;

// The row after the focused one, or 0 when no row has the focus (focusedRow -1) or the
// focused row is the last.
int FirstRowToSearch(int focusedRow, int rowCount);

// The first matching row, or -1 when no row matches.
int FindRow(const Playlist& main, int firstRow, std::string_view text, bool caseSensitive,
            const RowTitleFunction& titleOf);

// The warning when nothing matched: Cannot find the string "text".
std::string CannotFindMessage(std::string_view text);

}  // namespace verdin
