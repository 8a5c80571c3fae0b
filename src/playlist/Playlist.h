#pragma once
// A playlist: an ordered list of owned items (tracks, random entries, nested playlists)
// and the name of its file. All playlists form one tree whose root is the main playlist
// (no parent, no file of its own).
//
// Rows: the tree flattened depth first. Every item is a row; a nested playlist's row is
// followed at once by the rows of its items. Rows number from 0 in the main playlist.
// Row lookups are fast on trees of 100,000 rows: each playlist caches where each of its
// items' rows begin, and a change invalidates only the caches on the way to the root.
//
// The tree belongs to the user-interface thread.
#include "playlist/PlaylistItem.h"
#include "playlist/TrackName.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

class Playlist;

// What a row holds: the item, the playlist that holds it and its index there. A row of a
// const tree gives const items.
template <typename Item, typename Holder>
struct BasicRowRef {
    Item* item = nullptr;
    Holder* holder = nullptr;
    size_t index = 0;
    explicit operator bool() const { return item != nullptr; }
};
using RowRef = BasicRowRef<PlaylistItem, Playlist>;
using ConstRowRef = BasicRowRef<const PlaylistItem, const Playlist>;

class Playlist final : public PlaylistItem {
public:
    explicit Playlist(std::string_view fileName = {});
    ~Playlist() override;

    uint32_t Duration() const override;
    uint32_t FileSize() const override;
    ItemKind Kind() const override { return ItemKind::kPlaylist; }
    std::string Path() const override { return name_.path; }
    std::string Body() const override { return name_.body; }
    std::string Extension() const override { return name_.extension; }

    const TrackName& Name() const { return name_; }
    std::string FileName() const { return name_.Full(); }
    void SetFileName(std::string_view fileName) { name_ = SplitTrackName(fileName); }

    Playlist* Parent() { return parent_; }
    const Playlist* Parent() const { return parent_; }
    bool Modified() const { return modified_; }
    void SetModified(bool modified) { modified_ = modified; }

    // Direct items.
    size_t ItemCount() const { return items_.size(); }
    PlaylistItem* ItemAt(size_t index) { return index < items_.size() ? items_[index].get() : nullptr; }
    const PlaylistItem* ItemAt(size_t index) const { return index < items_.size() ? items_[index].get() : nullptr; }
    void AppendItem(std::unique_ptr<PlaylistItem> item);
    // Inserts before the item at index (at the end when index is past it).
    void InsertItem(size_t index, std::unique_ptr<PlaylistItem> item);
    // Takes an item out without deleting it; null when index is out of range.
    std::unique_ptr<PlaylistItem> TakeItem(size_t index);
    // Deletes the item (a track item its record, a playlist its items).
    void RemoveItem(size_t index);
    // Deletes every item.
    void Clear();

    // Bulk forms, linear in the item count however many items move (sorting, dropping,
    // flattening or deleting a 100,000-item playlist must not be quadratic).
    // Inserts the items, in order, before the item at index (at the end when past it).
    void InsertItems(size_t index, std::vector<std::unique_ptr<PlaylistItem>> items);
    // Takes the items at the given indices out, in index order; indices must be
    // increasing, and those out of range are passed over.
    std::vector<std::unique_ptr<PlaylistItem>> TakeItems(const std::vector<size_t>& increasingIndices);
    // Takes every item out, in order.
    std::vector<std::unique_ptr<PlaylistItem>> TakeAllItems();
    // The index of an item held directly, or -1.
    int IndexOf(const PlaylistItem* item) const;

    // The number of rows below this playlist: its items plus the rows of its nested
    // playlists.
    int RowCount() const;
    // The item at a row of this playlist's subtree (rows counted from 0 at its first item);
    // empty for a row outside 0..RowCount()-1.
    RowRef ItemAtRow(int row);
    ConstRowRef ItemAtRow(int row) const;
    // The row of the item at index of holder within this subtree, or -1 when holder is
    // not in it.
    int RowOf(const Playlist* holder, size_t index) const;
    // Tracks and random entries in the subtree.
    int PlayableCount() const;

private:
    void Changed();
    void EnsureRows() const;
    void Adopt(PlaylistItem& item);
    static void Disown(PlaylistItem& item);

    std::vector<std::unique_ptr<PlaylistItem>> items_;
    Playlist* parent_ = nullptr;
    TrackName name_;
    bool modified_ = false;

    // Cached: rowStart_[i] is the row (relative to this playlist's first item) of item i;
    // rowStart_.back() is the row count. Rebuilt on demand after a change.
    mutable std::vector<int> rowStart_;
    mutable int playable_ = 0;
    mutable bool rowsValid_ = false;
};

// Whether a row of the main playlist is a nested playlist's row (also true for -1 and for
// any row outside the tree, so that walkers skip it).
bool IsPlaylistRow(const Playlist& main, int row);
bool IsRandomEntryRow(const Playlist& main, int row);
// Whether the row holds a track or a random entry.
bool IsPlayableRow(const Playlist& main, int row);

// Whether any nested playlist of the tree has unsaved changes.
bool HasUnsavedPlaylists(const Playlist& main);
// Inserts an item before the item at row, into the playlist that holds that row; at the
// end of the main playlist when row names no item.
void InsertItemAtRow(Playlist& main, int row, std::unique_ptr<PlaylistItem> item);

}  // namespace verdin
