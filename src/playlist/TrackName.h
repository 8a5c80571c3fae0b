#pragma once
// A track's or playlist's file name split into path, body and extension.
//
//   extension  from the last "." of the name to its end (empty without one, and empty
//              when the last "." lies in a directory part: "/a.b/track" has none)
//   path       the name up to and including its last "/" (empty without one)
//   body       what lies between
// The full name is always path + body + extension.
#include <string>
#include <string_view>

namespace verdin {

struct TrackName {
    std::string path;
    std::string body;
    std::string extension;

    std::string Full() const { return path + body + extension; }
};

TrackName SplitTrackName(std::string_view fullName);

}  // namespace verdin
