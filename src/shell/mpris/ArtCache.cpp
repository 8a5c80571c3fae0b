#include "ArtCache.h"

#include "playlist/TrackRecord.h"
#include "tags/TagReader.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>
#include <optional>

namespace verdin {

namespace {

// The front cover among the pictures, else the first picture with its bytes.
std::optional<FrameView> ChoosePicture(const TrackTag& tag) {
    constexpr std::uint8_t kFrontCover = 3;
    std::optional<FrameView> chosen;
    for (std::size_t i = 0; i < tag.size(); ++i) {
        const FrameView frame = tag[i];
        if (frame.id != FrameId::Picture || frame.data.empty()) continue;
        if (frame.pictureType == kFrontCover) return frame;
        if (!chosen) chosen = frame;
    }
    return chosen;
}

QString ExtensionFor(std::string_view mimeType) {
    if (mimeType == "image/png" || mimeType == "PNG") return QStringLiteral("png");
    if (mimeType == "image/gif") return QStringLiteral("gif");
    return QStringLiteral("jpg");
}

// Keeps the cache from growing without bound in a long run over a large library.
constexpr std::size_t kRememberedTracks = 4096;

}  // namespace

QString ArtCache::UrlFor(const TrackRecord& track) {
    // The scan records pictures without their bytes: only such a track is read again.
    if (track.IsUrl() || !track.Tag().Has(FrameId::Picture)) return {};
    const std::string path = track.FullName();
    if (const auto known = urls_.find(path); known != urls_.end()) return known->second;
    if (urls_.size() >= kRememberedTracks) urls_.clear();
    return urls_[path] = WritePicture(path);
}

QString ArtCache::WritePicture(const std::string& path) {
    TrackTag tag;
    TagReadOptions options;
    options.keepAttachments = true;
    if (!ReadTrackTag(path, options, tag).opened) return {};
    const std::optional<FrameView> picture = ChoosePicture(tag);
    if (!picture) return {};
    const QByteArray bytes(picture->data.data(), static_cast<qsizetype>(picture->data.size()));
    const QString directory =
        QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + QStringLiteral("/verdin/art");
    const QString name = QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex()) +
                         QLatin1Char('.') + ExtensionFor(picture->mimeType);
    const QString file = directory + QLatin1Char('/') + name;
    if (!QFileInfo::exists(file)) {
        // Written beside and renamed: a controller never reads half a picture.
        QSaveFile out(file);
        if (!QDir().mkpath(directory) || !out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() ||
            !out.commit())
            return {};
    }
    return QUrl::fromLocalFile(file).toString();
}

}  // namespace verdin
