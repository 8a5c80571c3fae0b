#include "RandomEntryWalk.h"

#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"

namespace verdin {

bool ContainsRandomEntry(const Playlist& playlist) {
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem* item = playlist.ItemAt(i);
        if (item->Kind() == ItemKind::kRandomEntry) return true;
        if (item->Kind() == ItemKind::kPlaylist && ContainsRandomEntry(static_cast<const Playlist&>(*item)))
            return true;
    }
    return false;
}

void ResetRandomEntries(Playlist& playlist) {
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        PlaylistItem* item = playlist.ItemAt(i);
        if (item->Kind() == ItemKind::kRandomEntry) static_cast<RandomEntry*>(item)->Reset();
        else if (item->Kind() == ItemKind::kPlaylist) ResetRandomEntries(static_cast<Playlist&>(*item));
    }
}

}  // namespace verdin
