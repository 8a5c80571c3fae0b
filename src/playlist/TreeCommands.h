#pragma once
// The commands that reshape the playlist tree. Rows are rows of the main playlist. Each
// command marks the playlists whose items it changes as modified.
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

class Playlist;
class PlaylistItem;

// The name a playlist carries until it is saved: "Untitled" in the user directory (body
// "Untitled", no extension). Saving it then gives "Untitled.vdp" (or .m3u, .pls), where a
// name ending in a bare "." would give "Untitled..vdp".
std::string UntitledPlaylistName(std::string_view userDirectory);

// "Add New Playlist" / "Insert New Playlist": a new, empty nested playlist named fileName,
// inserted before the item at row (into the playlist that holds it), or appended to the
// main playlist when row names no item. Returns its row.
int AddNewPlaylist(Playlist& main, int row, std::string_view fileName);

// "Incorporate Item(s) Into New Playlist": the items at the given rows move, in row order,
// into a new nested playlist named fileName, which takes the place of the first of them.
// An item inside a nested playlist that is itself among the rows moves with that
// playlist. Returns the new playlist's row, or -1 when no row names an item.
int IncorporateIntoNewPlaylist(Playlist& main, const std::vector<int>& rows, std::string_view fileName);

// "Drop Playlist": the nested playlist at row is dissolved into the playlist that holds
// it; its items take its place, in order. False when row is not a nested playlist.
bool DropPlaylist(Playlist& main, int row);

// "Flatten Main Playlist": every nested playlist, at every depth, is replaced by its
// items; the main playlist then holds only tracks and random entries, in row order.
void FlattenMainPlaylist(Playlist& main);

// "Sort Playlist": the items of the playlist, and of each playlist nested in it, are put in
// order of the given key (what the view shows in its title column), compared without
// regard to case; items with equal keys keep their order.
using SortKey = std::function<std::string(const PlaylistItem&)>;
void SortPlaylist(Playlist& playlist, const SortKey& key);

// "Delete": the items at the given rows are deleted (a nested playlist with everything in
// it; rows inside a deleted playlist need not be named). Returns how many items went.
int DeleteRows(Playlist& main, const std::vector<int>& rows);

// The row of an item anywhere in the tree, or -1.
int RowOfItem(const Playlist& main, const PlaylistItem* item);

}  // namespace verdin
