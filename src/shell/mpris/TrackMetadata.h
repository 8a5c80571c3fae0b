#pragma once
// The metadata map media controllers show for a track: its id, length, title, artist,
// album, file URL, track number and cover picture, under the xesam and mpris keys.
#include <QDBusObjectPath>
#include <QString>
#include <QVariantMap>
#include <string>

namespace verdin {

class TrackRecord;

// track may be null (a nested playlist's row, a random entry that picked nothing): the
// map then holds the id and the title only. title: what to show when the tags name none.
QVariantMap TrackMetadata(const QDBusObjectPath& id, const TrackRecord* track, const std::string& title,
                          const QString& artUrl);

}  // namespace verdin
