#include "TreeCommands.h"

#include "playlist/Playlist.h"
#include "base/Text.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>

namespace verdin {

namespace {

// The distinct items at the given rows, in row order, leaving out items whose playlist is
// among them too.
std::vector<RowRef> OutermostItems(Playlist& main, std::vector<int> rows) {
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    std::vector<RowRef> chosen;
    std::unordered_set<const Playlist*> chosenPlaylists;
    for (int row : rows) {
        const RowRef ref = main.ItemAtRow(row);
        if (!ref) continue;
        bool inside = false;
        for (const Playlist* p = ref.holder; p && !inside; p = p->Parent()) inside = chosenPlaylists.contains(p);
        if (inside) continue;
        chosen.push_back(ref);
        if (ref.item->Kind() == ItemKind::kPlaylist) chosenPlaylists.insert(static_cast<Playlist*>(ref.item));
    }
    return chosen;
}

// Takes the chosen items out of their holders, one pass per holder, and returns them in
// the order of `chosen`. Every ref must still describe the tree as it is.
std::vector<std::unique_ptr<PlaylistItem>> TakeChosen(const std::vector<RowRef>& chosen) {
    // Positions in `chosen` of each holder's items; row order gives increasing indices
    // within one holder.
    std::unordered_map<Playlist*, std::vector<size_t>> byHolder;
    for (size_t i = 0; i < chosen.size(); ++i) byHolder[chosen[i].holder].push_back(i);
    std::vector<std::unique_ptr<PlaylistItem>> taken(chosen.size());
    for (auto& [holder, positions] : byHolder) {
        std::vector<size_t> indices;
        indices.reserve(positions.size());
        for (size_t position : positions) indices.push_back(chosen[position].index);
        auto items = holder->TakeItems(indices);
        for (size_t k = 0; k < items.size(); ++k) taken[positions[k]] = std::move(items[k]);
    }
    return taken;
}

// Appends the tracks and random entries of items, and of every playlist among them at
// any depth, in row order.
void AppendFlattened(std::vector<std::unique_ptr<PlaylistItem>> items,
                     std::vector<std::unique_ptr<PlaylistItem>>& out) {
    for (auto& item : items) {
        if (item->Kind() == ItemKind::kPlaylist)
            AppendFlattened(static_cast<Playlist&>(*item).TakeAllItems(), out);
        else
            out.push_back(std::move(item));
    }
}

}  // namespace

std::string UntitledPlaylistName(std::string_view userDirectory) {
    std::string name(userDirectory);
    if (name.empty() || name.back() != '/') name += '/';
    return name + "Untitled";
}

int AddNewPlaylist(Playlist& main, int row, std::string_view fileName) {
    auto playlist = std::make_unique<Playlist>(fileName);
    Playlist* added = playlist.get();
    const RowRef ref = main.ItemAtRow(row);
    if (ref) ref.holder->InsertItem(ref.index, std::move(playlist));
    else main.AppendItem(std::move(playlist));
    added->SetModified(false);
    return RowOfItem(main, added);
}

int IncorporateIntoNewPlaylist(Playlist& main, const std::vector<int>& rows, std::string_view fileName) {
    const std::vector<RowRef> chosen = OutermostItems(main, rows);
    if (chosen.empty()) return -1;
    Playlist* holder = chosen.front().holder;
    const size_t at = chosen.front().index;
    auto playlist = std::make_unique<Playlist>(fileName);
    std::vector<std::unique_ptr<PlaylistItem>> taken = TakeChosen(chosen);
    playlist->InsertItems(0, std::move(taken));
    Playlist* made = playlist.get();
    // The first chosen item comes first in row order, so nothing before its place in its
    // holder was taken: the new playlist goes exactly where that item was.
    holder->InsertItem(at, std::move(playlist));
    return RowOfItem(main, made);
}

bool DropPlaylist(Playlist& main, int row) {
    const RowRef ref = main.ItemAtRow(row);
    if (!ref || ref.item->Kind() != ItemKind::kPlaylist) return false;
    std::unique_ptr<PlaylistItem> taken = ref.holder->TakeItem(ref.index);
    ref.holder->InsertItems(ref.index, static_cast<Playlist&>(*taken).TakeAllItems());
    return true;
}

void FlattenMainPlaylist(Playlist& main) {
    bool nested = false;
    for (size_t i = 0; i < main.ItemCount() && !nested; ++i) nested = main.ItemAt(i)->Kind() == ItemKind::kPlaylist;
    if (!nested) return;  // nothing changes, so nothing is marked modified
    std::vector<std::unique_ptr<PlaylistItem>> flat;
    flat.reserve(static_cast<size_t>(main.PlayableCount()));
    AppendFlattened(main.TakeAllItems(), flat);
    main.InsertItems(0, std::move(flat));
}

void SortPlaylist(Playlist& playlist, const SortKey& key) {
    struct Keyed {
        std::string key;
        std::unique_ptr<PlaylistItem> item;
    };
    std::vector<Keyed> items;
    for (auto& item : playlist.TakeAllItems()) {
        std::string k = key(*item);
        items.push_back(Keyed{std::move(k), std::move(item)});
    }
    std::stable_sort(items.begin(), items.end(),
                     [](const Keyed& a, const Keyed& b) { return LessIgnoreCase(a.key, b.key) && !EqualsIgnoreCase(a.key, b.key); });
    std::vector<std::unique_ptr<PlaylistItem>> sorted;
    sorted.reserve(items.size());
    for (auto& k : items) {
        if (k.item->Kind() == ItemKind::kPlaylist) SortPlaylist(static_cast<Playlist&>(*k.item), key);
        sorted.push_back(std::move(k.item));
    }
    playlist.InsertItems(0, std::move(sorted));
}

int DeleteRows(Playlist& main, const std::vector<int>& rows) {
    const std::vector<RowRef> chosen = OutermostItems(main, rows);
    int deleted = 0;
    for (const auto& item : TakeChosen(chosen))
        if (item) ++deleted;
    return deleted;
}

int RowOfItem(const Playlist& main, const PlaylistItem* item) {
    if (!item) return -1;
    // A nested playlist knows its holder: climb instead of searching every row.
    if (item->Kind() == ItemKind::kPlaylist) {
        const Playlist* holder = static_cast<const Playlist*>(item)->Parent();
        const int index = holder ? holder->IndexOf(item) : -1;
        return index < 0 ? -1 : main.RowOf(holder, static_cast<size_t>(index));
    }
    const int count = main.RowCount();
    for (int row = 0; row < count; ++row)
        if (main.ItemAtRow(row).item == item) return row;
    return -1;
}

}  // namespace verdin
