#include "TreeCommands.h"

#include "playlist/Playlist.h"
#include "settings/Text.h"

#include <algorithm>
#include <memory>

namespace verdin {

namespace {

// The distinct items at the given rows, in row order, leaving out items whose playlist is
// among them too.
std::vector<RowRef> OutermostItems(const Playlist& main, std::vector<int> rows) {
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    std::vector<RowRef> chosen;
    std::vector<const Playlist*> chosenPlaylists;
    for (int row : rows) {
        const RowRef ref = main.ItemAtRow(row);
        if (!ref) continue;
        bool inside = false;
        for (const Playlist* p = ref.holder; p && !inside; p = p->Parent())
            inside = std::find(chosenPlaylists.begin(), chosenPlaylists.end(), p) != chosenPlaylists.end();
        if (inside) continue;
        chosen.push_back(ref);
        if (ref.item->Kind() == ItemKind::kPlaylist) chosenPlaylists.push_back(static_cast<Playlist*>(ref.item));
    }
    return chosen;
}

// Takes an item out of its holder wherever it now is (indices move as items leave).
std::unique_ptr<PlaylistItem> Detach(const RowRef& ref) {
    const int index = ref.holder->IndexOf(ref.item);
    return index < 0 ? nullptr : ref.holder->TakeItem(static_cast<size_t>(index));
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
    for (const RowRef& ref : chosen)
        if (auto item = Detach(ref)) playlist->AppendItem(std::move(item));
    Playlist* made = playlist.get();
    // The first chosen item was the first of its holder's chosen items, so everything
    // taken from before its place came from other playlists: it goes where that item was.
    holder->InsertItem(std::min(at, holder->ItemCount()), std::move(playlist));
    return RowOfItem(main, made);
}

bool DropPlaylist(Playlist& main, int row) {
    const RowRef ref = main.ItemAtRow(row);
    if (!ref || ref.item->Kind() != ItemKind::kPlaylist) return false;
    std::unique_ptr<PlaylistItem> taken = ref.holder->TakeItem(ref.index);
    auto& dropped = static_cast<Playlist&>(*taken);
    size_t at = ref.index;
    while (dropped.ItemCount() > 0) ref.holder->InsertItem(at++, dropped.TakeItem(0));
    return true;
}

void FlattenMainPlaylist(Playlist& main) {
    for (size_t i = 0; i < main.ItemCount();) {
        if (main.ItemAt(i)->Kind() != ItemKind::kPlaylist) {
            ++i;
            continue;
        }
        std::unique_ptr<PlaylistItem> taken = main.TakeItem(i);
        auto& nested = static_cast<Playlist&>(*taken);
        size_t at = i;
        while (nested.ItemCount() > 0) main.InsertItem(at++, nested.TakeItem(0));
        // The items now at i are looked at again: nested playlists inside it dissolve too.
    }
}

void SortPlaylist(Playlist& playlist, const SortKey& key) {
    struct Keyed {
        std::string key;
        std::unique_ptr<PlaylistItem> item;
    };
    std::vector<Keyed> items;
    while (playlist.ItemCount() > 0) {
        auto item = playlist.TakeItem(0);
        std::string k = key(*item);
        items.push_back(Keyed{std::move(k), std::move(item)});
    }
    std::stable_sort(items.begin(), items.end(),
                     [](const Keyed& a, const Keyed& b) { return LessIgnoreCase(a.key, b.key) && !EqualsIgnoreCase(a.key, b.key); });
    for (auto& k : items) {
        if (k.item->Kind() == ItemKind::kPlaylist) SortPlaylist(static_cast<Playlist&>(*k.item), key);
        playlist.AppendItem(std::move(k.item));
    }
}

int DeleteRows(Playlist& main, const std::vector<int>& rows) {
    int deleted = 0;
    for (const RowRef& ref : OutermostItems(main, rows))
        if (Detach(ref)) ++deleted;
    return deleted;
}

int RowOfItem(const Playlist& main, const PlaylistItem* item) {
    const int count = main.RowCount();
    for (int row = 0; row < count; ++row)
        if (main.ItemAtRow(row).item == item) return row;
    return -1;
}

}  // namespace verdin
