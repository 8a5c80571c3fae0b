#include "RowMove.h"

#include "playlist/Playlist.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>

namespace verdin {

namespace {

bool InsideAny(const Playlist* holder, const std::unordered_set<const Playlist*>& playlists) {
    for (const Playlist* p = holder; p; p = p->Parent())
        if (playlists.contains(p)) return true;
    return false;
}

}  // namespace

int MoveRows(Playlist& main, std::vector<int> rows, int beforeRow) {
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());

    // The outermost items, in row order.
    std::vector<RowRef> chosen;
    std::unordered_set<const PlaylistItem*> chosenItems;
    std::unordered_set<const Playlist*> chosenPlaylists;
    for (int row : rows) {
        const RowRef ref = main.ItemAtRow(row);
        if (!ref || InsideAny(ref.holder, chosenPlaylists)) continue;
        chosen.push_back(ref);
        chosenItems.insert(ref.item);
        if (ref.item->Kind() == ItemKind::kPlaylist) chosenPlaylists.insert(static_cast<Playlist*>(ref.item));
    }
    if (chosen.empty()) return -1;

    // The item the moved ones go before (null: the end of the main playlist).
    RowRef anchor;
    const int rowCount = main.RowCount();
    for (int row = std::max(beforeRow, 0); row < rowCount; ++row) {
        const RowRef ref = main.ItemAtRow(row);
        if (chosenItems.contains(ref.item) || InsideAny(ref.holder, chosenPlaylists)) continue;
        anchor = ref;
        break;
    }

    // Out of their holders, one pass per holder (indices increase with rows in a holder).
    std::unordered_map<Playlist*, std::vector<size_t>> byHolder;
    for (size_t i = 0; i < chosen.size(); ++i) byHolder[chosen[i].holder].push_back(i);
    std::vector<std::unique_ptr<PlaylistItem>> moving(chosen.size());
    for (auto& [holder, positions] : byHolder) {
        std::vector<size_t> indices;
        for (size_t position : positions) indices.push_back(chosen[position].index);
        auto taken = holder->TakeItems(indices);
        for (size_t k = 0; k < taken.size(); ++k) moving[positions[k]] = std::move(taken[k]);
    }

    Playlist& target = anchor ? *anchor.holder : main;
    const int at = anchor ? target.IndexOf(anchor.item) : static_cast<int>(target.ItemCount());
    target.InsertItems(static_cast<size_t>(at), std::move(moving));
    return main.RowOf(&target, static_cast<size_t>(at));
}

}  // namespace verdin
