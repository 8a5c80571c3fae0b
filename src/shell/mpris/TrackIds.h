#pragma once
// The object paths media controllers use to name rows of the main list
// ("/org/brimfell/Verdin/track/<n>"). An id belongs to an entry, not to a row: it follows
// the entry when rows move, sort or get inserted before it, and it is never handed to
// another entry during a run. Entries are told apart by their address in the tree, which
// is theirs for as long as they live; Forget drops the ids of entries that went, so an
// address a later entry happens to reuse gets a fresh number. Ids do not survive a
// restart of the player. User-interface thread only.
#include <QDBusObjectPath>
#include <cstdint>
#include <unordered_map>

namespace verdin {

class Playlist;
class PlaylistItem;

class TrackIds {
public:
    // The path that stands for "no track" (an empty list, or "insert at the start").
    static QDBusObjectPath NoTrack();

    // The id of the entry at a row, numbered on first sight; NoTrack outside the list.
    QDBusObjectPath IdOfRow(const Playlist& list, int row);
    // The row of the entry an id names, or -1 when it names none (any more).
    int RowOf(const Playlist& list, const QDBusObjectPath& id) const;
    // After rows came, went or moved: the ids of entries no longer in the list are dropped.
    void Forget(const Playlist& list);

private:
    std::unordered_map<const PlaylistItem*, uint64_t> ids_;
    uint64_t next_ = 1;
};

}  // namespace verdin
