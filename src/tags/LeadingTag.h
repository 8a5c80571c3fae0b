#pragma once
// The ID3v2 tag at the very start of a file: the decoder is handed the offset just past
// it (header, frames, padding and footer), so it starts on audio.
#include "tags/TagVersion.h"

#include <cstdint>
#include <span>

namespace verdin {

struct LeadingTag {
    bool found = false;
    TagVersion version;          // 2, major, revision
    std::uint32_t completeSize = 0;  // bytes from the file's start to the first byte after the tag
};

// Reads the 10-byte ID3v2 header from the first bytes of a file ("ID3", two version
// bytes other than 0xFF, flags, a size of four 7-bit bytes). Anything else is no tag.
LeadingTag ParseLeadingTag(std::span<const std::uint8_t> head);

}  // namespace verdin
