#pragma once
// The version of the ID3 tag a track carries, as three bytes: ID3v2 tags give 2, the
// major version and the revision (2.3.0); a file with only an ID3v1 trailer gives 1.0.0,
// or 1.1.0 when the trailer holds a track number; a file without either gives 0.0.0.
// Vorbis comments, APE and RIFF INFO tags are not ID3 tags: they fill frames but leave
// the version alone, so TrackTag::empty(), not the version, says whether a track has a
// tag to build its title from.
#include <cstdint>
#include <string>

namespace verdin {

struct TagVersion {
    std::uint8_t version = 0;
    std::uint8_t revision = 0;
    std::uint8_t subRevision = 0;

    bool found() const { return version != 0; }
    friend bool operator==(const TagVersion&, const TagVersion&) = default;
};

// "ID3 Tag version 2.3.0", or "No ID3 Tag found".
std::string DescribeTagVersion(TagVersion version);

}  // namespace verdin
