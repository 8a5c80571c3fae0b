#include "playlist/titles/TitleState.h"

#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"

namespace verdin {
namespace {

const TrackRecord* TrackOfItem(const PlaylistItem* item) {
    if (!item) return nullptr;
    switch (item->Kind()) {
        case ItemKind::kTrack:
            return &static_cast<const TrackItem*>(item)->Track();
        case ItemKind::kRandomEntry: {
            const auto* entry = static_cast<const RandomEntry*>(item);
            return entry->Picked() ? entry->PickedTrack() : nullptr;
        }
        case ItemKind::kPlaylist:
            break;
    }
    return nullptr;
}

// Depth first over the rows of a playlist, adding whole seconds until `rows` rows are
// passed. Returns false once the row is reached.
bool AddSecondsBefore(const Playlist& playlist, int& rows, std::int64_t& seconds) {
    for (std::size_t i = 0; i < playlist.ItemCount(); ++i) {
        if (rows-- <= 0) return false;
        const PlaylistItem& item = *playlist.ItemAt(i);
        if (item.Kind() == ItemKind::kPlaylist) {
            if (!AddSecondsBefore(static_cast<const Playlist&>(item), rows, seconds)) return false;
        } else {
            seconds += item.Duration() / 1000;
        }
    }
    return true;
}

}  // namespace

std::int64_t WholeSecondsBeforeRow(const Playlist& main, int row) {
    std::int64_t seconds = 0;
    AddSecondsBefore(main, row, seconds);
    return seconds;
}

TitleState MakeTitleState(const Playlist& main, int currentRow, const TrackRecord* loadedTrack,
                          std::uint32_t positionMs, PlayerStatus status, const TitleTemplates& templates) {
    TitleState state;
    state.templates = templates;
    state.status = status;
    state.mainPlaylistEmpty = main.ItemCount() == 0;
    state.mainPlaylistMs = main.Duration();
    state.trackLoaded = loadedTrack != nullptr;
    state.positionMs = loadedTrack ? positionMs : 0;

    const ConstRowRef row = main.ItemAtRow(currentRow);
    state.track = loadedTrack ? loadedTrack : TrackOfItem(row.item);
    if (row) {
        state.number = currentRow + 1;
        state.holder = row.holder;
        state.currentEntryMs = row.item->Duration();
        state.secondsBeforeCurrent = WholeSecondsBeforeRow(main, currentRow);
    }
    return state;
}

}  // namespace verdin
