#pragma once
// Fills a TrackTag from the tag containers of one file, one container after the other,
// best first. A container adds only frames of kinds no earlier container supplied: an
// ID3v2 title beats the ID3v1 title, while an ID3v1 year still fills a missing ID3v2
// year. Within one container every frame is kept (several comments, several pictures).
#include "tags/TrackTag.h"

#include <bitset>
#include <string>
#include <string_view>

namespace verdin {

class TagBuilder {
public:
    TagBuilder(TrackTag& tag, bool keepAttachments) : tag_(tag), keepAttachments_(keepAttachments) {}

    // Starts the next container; the tag records that the file carries it.
    void BeginSource(TagSource source);
    // Adds the frame unless an earlier container supplied its kind. A payload is kept
    // only when attachments are kept; its size is always recorded.
    void Add(FrameView frame);
    // Adds a text frame; an empty text adds nothing.
    void AddText(FrameId id, std::string_view text);
    // Whether the current container already added a frame of this kind.
    bool AddedByThisSource(FrameId id) const { return addedNow_.test(FrameIndex(id)); }

private:
    TrackTag& tag_;
    bool keepAttachments_;
    std::bitset<kFrameCount> before_;    // kinds present before the current container
    std::bitset<kFrameCount> addedNow_;  // kinds the current container added
};

}  // namespace verdin
