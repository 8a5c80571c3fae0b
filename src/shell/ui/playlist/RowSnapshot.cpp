#include "RowSnapshot.h"

#include "playlist/Playlist.h"

#include <algorithm>
#include <unordered_set>

namespace verdin {

namespace {

void AppendRows(const Playlist& playlist, std::vector<const PlaylistItem*>& rows) {
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem* item = playlist.ItemAt(i);
        rows.push_back(item);
        if (item->Kind() == ItemKind::kPlaylist) AppendRows(static_cast<const Playlist&>(*item), rows);
    }
}

}  // namespace

std::vector<const PlaylistItem*> RowItems(const Playlist& main) {
    std::vector<const PlaylistItem*> rows;
    rows.reserve(static_cast<size_t>(main.RowCount()));
    AppendRows(main, rows);
    return rows;
}

RowChange CompareRows(const std::vector<const PlaylistItem*>& before, const std::vector<const PlaylistItem*>& after) {
    const size_t shorter = std::min(before.size(), after.size());
    size_t prefix = 0;
    while (prefix < shorter && before[prefix] == after[prefix]) ++prefix;
    size_t suffix = 0;
    while (suffix < shorter - prefix && before[before.size() - 1 - suffix] == after[after.size() - 1 - suffix]) ++suffix;

    RowChange change;
    change.first = static_cast<int>(prefix);
    change.removed = static_cast<int>(before.size() - prefix - suffix);
    change.inserted = static_cast<int>(after.size() - prefix - suffix);
    if (change.removed == 0 && change.inserted == 0) {
        change.kind = RowChange::Kind::kSame;
        return change;
    }
    change.kind = RowChange::Kind::kReplaced;
    if (change.removed != change.inserted) return change;
    // The same items in another order: every old item of the block is among the new ones,
    // and none twice (a block holding one item twice cannot be a mere reordering).
    const auto oldBegin = before.begin() + static_cast<std::ptrdiff_t>(prefix);
    const auto newBegin = after.begin() + static_cast<std::ptrdiff_t>(prefix);
    std::unordered_set<const PlaylistItem*> moved(newBegin, newBegin + change.inserted);
    if (moved.size() != static_cast<size_t>(change.inserted)) return change;
    for (auto it = oldBegin; it != oldBegin + change.removed; ++it)
        if (moved.erase(*it) == 0) return change;
    change.kind = RowChange::Kind::kReordered;
    return change;
}

}  // namespace verdin
