#pragma once
// What the tag page of the properties dialog shows about a frame besides its value, and
// saving an attached picture or object to a file.
#include "tags/TrackTag.h"

#include <string>
#include <string_view>
#include <vector>

namespace verdin {

inline constexpr std::string_view kLanguageLabel = "Language: ";
inline constexpr std::string_view kDescriptionLabel = "Description: ";
inline constexpr std::string_view kPictureTypeLabel = "Picture type: ";
inline constexpr std::string_view kMimeTypeLabel = "MIME type: ";
inline constexpr std::string_view kFileNameLabel = "File name: ";
inline constexpr std::string_view kDetailSeparator = " - ";

struct FrameDetail {
    std::string_view label;  // one of the labels above
    std::string value;
};

// The details a frame of its kind carries, in the order language, description, picture
// type, MIME type, file name; empty ones are left out except a picture's type.
std::vector<FrameDetail> FrameDetails(const FrameView& frame);

// Label and value of each detail, joined with " - ":
// "Language: eng - Description: ID3v1 comment field".
std::string JoinFrameDetails(const std::vector<FrameDetail>& details);

// Whether the frame carries a payload that can be saved (pictures, objects).
bool HasAttachment(const FrameView& frame);

// Writes the frame's payload to `path`. Returns an error text, empty on success. The tag
// must have been read with attachments kept.
std::string SaveAttachment(const FrameView& frame, const std::string& path);

}  // namespace verdin
