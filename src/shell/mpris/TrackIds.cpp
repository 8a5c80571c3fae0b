#include "TrackIds.h"

#include "playlist/Playlist.h"

#include <unordered_set>

namespace verdin {

namespace {

constexpr const char* kTrackPrefix = "/org/brimfell/Verdin/track/";

}  // namespace

QDBusObjectPath TrackIds::NoTrack() { return QDBusObjectPath(QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack")); }

QDBusObjectPath TrackIds::IdOfRow(const Playlist& list, int row) {
    const PlaylistItem* item = list.ItemAtRow(row).item;
    if (!item) return NoTrack();
    auto [at, added] = ids_.try_emplace(item, next_);
    if (added) ++next_;
    return QDBusObjectPath(QLatin1String(kTrackPrefix) + QString::number(at->second));
}

int TrackIds::RowOf(const Playlist& list, const QDBusObjectPath& id) const {
    const QString path = id.path();
    if (!path.startsWith(QLatin1String(kTrackPrefix))) return -1;
    bool number = false;
    const uint64_t wanted = path.mid(static_cast<int>(qstrlen(kTrackPrefix))).toULongLong(&number);
    if (!number) return -1;
    const int rows = list.RowCount();
    for (int row = 0; row < rows; ++row) {
        const auto found = ids_.find(list.ItemAtRow(row).item);
        if (found != ids_.end() && found->second == wanted) return row;
    }
    return -1;
}

void TrackIds::Forget(const Playlist& list) {
    std::unordered_set<const PlaylistItem*> present;
    const int rows = list.RowCount();
    present.reserve(static_cast<size_t>(rows));
    for (int row = 0; row < rows; ++row) present.insert(list.ItemAtRow(row).item);
    std::erase_if(ids_, [&](const auto& entry) { return !present.contains(entry.first); });
}

}  // namespace verdin
