#pragma once
// Filling a track's tag from its file: the frames of every tag container the file
// carries (ID3v2, ID3v1, APE, Vorbis comments, RIFF INFO), the version of its ID3 tag,
// where the audio starts after a leading ID3v2 tag, and the file's size.
//
// Reading never stops anything: a damaged tag is read as far as it goes, and what
// TagLib or this layer found wrong is returned as text in `error` (see
// TagErrorMessage.h for when to show it). Safe to call from several threads at once
// for different tags.
#include "tags/TagFileKind.h"
#include "tags/TagVersion.h"
#include "tags/TrackTag.h"

#include <cstdint>
#include <string>

namespace verdin {

enum class TagMode {
    Read,    // fill the tag
    Ignore,  // the player's "ignore ID3 tags" setting: no frames, no version, but the
             // audio start and file size are still measured
};

struct TagReadOptions {
    TagMode mode = TagMode::Read;
    // Keep the payloads of pictures and objects (the tag page, to save them); a scan
    // leaves them out and records only their sizes.
    bool keepAttachments = false;
};

struct TagReadResult {
    bool opened = false;          // false: no such file, no permission, or not a regular file
    TagVersion version;           // 0.0.0 in ignoring mode and without an ID3 tag
    std::uint32_t audioStart = 0; // bytes of the leading ID3v2 tag (footer included), 0 without
    std::uint64_t fileSize = 0;
    std::string error;            // empty when the file and its tags read cleanly
};

// Opens the file at `path`, chooses the layout by its extension, reads, closes.
TagReadResult ReadTrackTag(const std::string& path, const TagReadOptions& options, TrackTag& tag);

// The same on a file the caller has open (it stays open; its offset is not used).
TagReadResult ReadTrackTag(int fd, TagFileKind kind, const TagReadOptions& options, TrackTag& tag);

}  // namespace verdin
