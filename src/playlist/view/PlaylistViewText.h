#pragma once
// What the playlist view shows: the eight cell texts of each row and the summary lines.
// Toolkit-free, so the window's model and the D-Bus interface show exactly the same.
//
// Columns: "Title", "No", "Duration", "Bitrate", "Sample rate", "Bit resolution",
// "File size", "ID3 Tag". A nested playlist's row shows its name ("mix *" when it has
// unsaved changes) with its total duration and size; a track shows its title, its number
// and, once its information is retrieved, its format; a random entry shows "Random
// entry: <expression>".
//
// Numbering: the "No" column is the row's running number, row + 1 (every row counts, as
// "%num%" in the title templates does); a nested playlist's row shows none.
#include "playlist/titles/DurationText.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace verdin {

class Playlist;
class PlaylistItem;
class TrackRecord;

inline constexpr int kPlaylistColumns = 8;
extern const std::array<const char*, kPlaylistColumns> kPlaylistColumnHeaders;

// How a track's title is made (the track title template, applied by the caller).
using TrackTitleFunction = std::function<std::string(const TrackRecord&)>;

using RowCells = std::array<std::string, kPlaylistColumns>;

// The cells of the item at a row, with its running number (row + 1).
RowCells CellsOfItem(const PlaylistItem& item, int number, const TrackTitleFunction& titleOf);
// The cells of a row of the main playlist (all empty for a row that names no item).
RowCells CellsOfRow(const Playlist& main, int row, const TrackTitleFunction& titleOf);

// "%d KB" under 10 MB (10,485,760 bytes), else "%d MB".
std::string FormatFileSize(uint32_t bytes);

// The whole list: "No tracks", "One track (3:20)", "%d tracks (%s)".
std::string ListSummary(const Playlist& main);
// The selection (rows of the main playlist): "No items selected", or "One distinct item
// (one track) selected (3:20)" / "%d distinct items (%s) selected (%s)". Distinct items
// are the selected items not inside a selected playlist; the tracks are the tracks and
// random entries they hold (a selected playlist counts with everything in it).
std::string SelectionSummary(const Playlist& main, const std::vector<int>& selectedRows);

// The single line an empty tree shows.
inline constexpr const char* kEmptyPlaylistText = "Empty playlist";

}  // namespace verdin
