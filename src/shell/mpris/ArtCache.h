#pragma once
// Cover pictures for media controllers, which want a URL, not bytes: the picture a
// track's tags hold (the front cover, else the first one) is written once to
// $XDG_CACHE_HOME/verdin/art/, named by a hash of its bytes, so tracks of one album share
// one file and a picture is never written twice. The answer for each track is kept for
// the run, so asking again reads nothing. A picture that cannot be read or written is
// left out (no URL); nothing is reported. User-interface thread only.
#include <QString>
#include <string>
#include <unordered_map>

namespace verdin {

class TrackRecord;

class ArtCache {
public:
    // The file:// URL of the track's picture, or empty when its tags hold none.
    QString UrlFor(const TrackRecord& track);

private:
    QString WritePicture(const std::string& path);

    std::unordered_map<std::string, QString> urls_;  // by the track's full name
};

}  // namespace verdin
