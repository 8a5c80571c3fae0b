#include "TrackListAdaptor.h"

#include "shell/Player.h"
#include "shell/mpris/MprisObject.h"

#include <QUrl>

namespace verdin {

namespace {

// The one id whose removal (or insertion) turns `longer` into `shorter`; -1 when they
// differ by more than that.
qsizetype SingleDifference(const QList<QDBusObjectPath>& longer, const QList<QDBusObjectPath>& shorter) {
    if (longer.size() != shorter.size() + 1) return -1;
    qsizetype at = 0;
    while (at < shorter.size() && longer[at] == shorter[at]) ++at;
    for (qsizetype i = at; i < shorter.size(); ++i)
        if (longer[i + 1] != shorter[i]) return -1;
    return at;
}

}  // namespace

TrackListAdaptor::TrackListAdaptor(MprisObject& object) : QDBusAbstractAdaptor(&object), object_(object) {}

QList<QDBusObjectPath> TrackListAdaptor::Tracks() const {
    const Player& player = object_.Ready();
    const int rows = std::min(player.List().RowCount(), kListedRows);
    QList<QDBusObjectPath> ids;
    ids.reserve(rows);
    for (int row = 0; row < rows; ++row) ids << object_.Ids().IdOfRow(player.List(), row);
    return ids;
}

QList<QVariantMap> TrackListAdaptor::GetTracksMetadata(const QList<QDBusObjectPath>& trackIds) {
    const Player& player = object_.Ready();
    QList<QVariantMap> list;
    for (const QDBusObjectPath& id : trackIds)
        if (const int row = object_.Ids().RowOf(player.List(), id); row >= 0) list << object_.RowMetadata(row);
    return list;
}

void TrackListAdaptor::AddTrack(const QString& uri, const QDBusObjectPath& afterTrack, bool setAsCurrent) {
    Player& player = object_.Ready();
    const QUrl url(uri);
    const int after = object_.Ids().RowOf(player.List(), afterTrack);
    if (after < 0 && afterTrack != TrackIds::NoTrack()) return;  // the track went meanwhile
    const int row = after + 1;
    if (!url.isLocalFile() || player.AddPaths({url.toLocalFile().toStdString()}, row) == 0) {
        object_.RefuseCall(QStringLiteral("Cannot add \"%1\": not a playable local file").arg(uri));
        return;
    }
    if (setAsCurrent) player.PlayRow(row);
}

void TrackListAdaptor::RemoveTrack(const QDBusObjectPath& trackId) {
    Player& player = object_.Ready();
    if (const int row = object_.Ids().RowOf(player.List(), trackId); row >= 0) player.DeleteRows({row});
}

void TrackListAdaptor::GoTo(const QDBusObjectPath& trackId) {
    Player& player = object_.Ready();
    if (const int row = object_.Ids().RowOf(player.List(), trackId); row >= 0) player.PlayRow(row);
}

void TrackListAdaptor::Follow(unsigned changes) {
    if (!(changes & (kRowsChanged | kListReplaced | kTextsChanged))) return;
    const QList<QDBusObjectPath> now = Tracks();
    if (changes & (kRowsChanged | kListReplaced)) TellRowChanges(now, (changes & kListReplaced) != 0);
    RefreshMetadata(now, (changes & kTextsChanged) != 0);
    listed_ = now;
}

void TrackListAdaptor::TellRowChanges(const QList<QDBusObjectPath>& now, bool replaced) {
    if (!replaced && now == listed_) return;
    const Player& player = object_.Ready();
    if (!replaced) {
        if (const qsizetype added = SingleDifference(now, listed_); added >= 0) {
            const int row = object_.Ids().RowOf(player.List(), now[added]);
            emit TrackAdded(object_.RowMetadata(row), added == 0 ? TrackIds::NoTrack() : now[added - 1]);
            return;
        }
        if (const qsizetype removed = SingleDifference(listed_, now); removed >= 0) {
            emit TrackRemoved(listed_[removed]);
            return;
        }
    }
    emit TrackListReplaced(now, object_.Ids().IdOfRow(player.List(), player.CurrentRow()));
}

void TrackListAdaptor::RefreshMetadata(const QList<QDBusObjectPath>& now, bool tell) {
    QHash<QString, QVariantMap> fresh;
    fresh.reserve(now.size());
    for (int row = 0; row < now.size(); ++row) {
        QVariantMap metadata = object_.RowMetadata(row);
        const auto before = metadata_.constFind(now[row].path());
        if (tell && before != metadata_.constEnd() && *before != metadata) emit TrackMetadataChanged(now[row], metadata);
        fresh.insert(now[row].path(), std::move(metadata));
    }
    metadata_ = std::move(fresh);
}

}  // namespace verdin
