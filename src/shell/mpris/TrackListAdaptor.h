#pragma once
// org.mpris.MediaPlayer2.TrackList: the rows of the main list, each named by its entry's
// id (TrackIds), nested playlists' rows and random entries included. Only the first
// kListedRows rows are listed: controllers show the list whole, and a list of 100,000
// rows would be a message no controller wants. Edits of one row are told as TrackAdded or
// TrackRemoved; anything larger (a sort, a move, a drop of many rows, a new list) as one
// TrackListReplaced. TrackMetadataChanged tells of listed rows whose information changed.
#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QHash>
#include <QList>
#include <QVariantMap>

namespace verdin {

class MprisObject;

class TrackListAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.TrackList")
    Q_PROPERTY(QList<QDBusObjectPath> Tracks READ Tracks)
    Q_PROPERTY(bool CanEditTracks READ CanEditTracks)
public:
    static constexpr int kListedRows = 1000;

    explicit TrackListAdaptor(MprisObject& object);

    QList<QDBusObjectPath> Tracks() const;
    bool CanEditTracks() const { return true; }

    // After an announcement: the signals for what changed among the listed rows.
    void Follow(unsigned changes);

public slots:
    QList<QVariantMap> GetTracksMetadata(const QList<QDBusObjectPath>& trackIds);
    // Adds what the file URI names after the row of afterTrack (at the start for NoTrack),
    // and plays it when setAsCurrent.
    void AddTrack(const QString& uri, const QDBusObjectPath& afterTrack, bool setAsCurrent);
    void RemoveTrack(const QDBusObjectPath& trackId);
    void GoTo(const QDBusObjectPath& trackId);

signals:
    void TrackListReplaced(const QList<QDBusObjectPath>& Tracks, const QDBusObjectPath& CurrentTrack);
    void TrackAdded(const QVariantMap& Metadata, const QDBusObjectPath& AfterTrack);
    void TrackRemoved(const QDBusObjectPath& TrackId);
    void TrackMetadataChanged(const QDBusObjectPath& TrackId, const QVariantMap& Metadata);

private:
    void TellRowChanges(const QList<QDBusObjectPath>& now, bool replaced);
    void RefreshMetadata(const QList<QDBusObjectPath>& now, bool tell);

    MprisObject& object_;
    QList<QDBusObjectPath> listed_;                    // as controllers were last told
    QHash<QString, QVariantMap> metadata_;  // of the listed rows, by id
};

}  // namespace verdin
