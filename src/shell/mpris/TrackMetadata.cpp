#include "TrackMetadata.h"

#include "playlist/TrackRecord.h"
#include "tags/FrameValues.h"

#include <QUrl>

namespace verdin {

namespace {

QString Text(const TrackRecord& track, FrameId id) {
    return QString::fromStdString(FrameStringValue(track.Tag(), id)).trimmed();
}

}  // namespace

QVariantMap TrackMetadata(const QDBusObjectPath& id, const TrackRecord* track, const std::string& title,
                          const QString& artUrl) {
    QVariantMap map;
    map.insert(QStringLiteral("mpris:trackid"), QVariant::fromValue(id));
    QString shownTitle = track ? Text(*track, FrameId::Title) : QString();
    if (shownTitle.isEmpty()) shownTitle = QString::fromStdString(title);
    map.insert(QStringLiteral("xesam:title"), shownTitle);
    if (!track) return map;

    if (track->Duration() > 0)
        map.insert(QStringLiteral("mpris:length"), static_cast<qlonglong>(track->Duration()) * 1000);
    if (const QString artist = Text(*track, FrameId::LeadArtist); !artist.isEmpty())
        map.insert(QStringLiteral("xesam:artist"), QStringList{artist});
    if (const QString album = Text(*track, FrameId::Album); !album.isEmpty())
        map.insert(QStringLiteral("xesam:album"), album);
    if (const int number = FrameIntegerValue(track->Tag(), FrameId::TrackNum); number > 0)
        map.insert(QStringLiteral("xesam:trackNumber"), number);
    const QString name = QString::fromStdString(track->FullName());
    map.insert(QStringLiteral("xesam:url"), track->IsUrl() ? name : QUrl::fromLocalFile(name).toString());
    if (!artUrl.isEmpty()) map.insert(QStringLiteral("mpris:artUrl"), artUrl);
    return map;
}

}  // namespace verdin
