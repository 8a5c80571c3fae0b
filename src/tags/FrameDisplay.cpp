#include "tags/FrameDisplay.h"

#include "tags/PictureTypes.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace verdin {
namespace {

enum Detail : unsigned {
    kLanguage = 1,
    kDescription = 2,
    kPictureType = 4,
    kMimeType = 8,
    kFileName = 16,
};

struct DetailRow {
    FrameId frame;
    unsigned details;
};

constexpr std::array<DetailRow, 8> kDetailRows{{
    {FrameId::Comment, kLanguage | kDescription},
    {FrameId::UnsyncedLyrics, kLanguage | kDescription},
    {FrameId::UserText, kDescription},
    {FrameId::WwwUser, kDescription},
    {FrameId::UniqueFileId, kDescription},
    {FrameId::Popularimeter, kDescription},
    {FrameId::Picture, kDescription | kPictureType | kMimeType},
    {FrameId::GeneralObject, kDescription | kMimeType | kFileName},
}};

unsigned DetailsOf(FrameId id) {
    for (const DetailRow& row : kDetailRows)
        if (row.frame == id) return row.details;
    return 0;
}

}  // namespace

std::vector<FrameDetail> FrameDetails(const FrameView& frame) {
    const unsigned details = DetailsOf(frame.id);
    std::vector<FrameDetail> out;
    auto add = [&](unsigned detail, std::string_view label, std::string_view value) {
        if ((details & detail) && !value.empty()) out.push_back({label, std::string(value)});
    };
    add(kLanguage, kLanguageLabel, frame.language);
    add(kDescription, kDescriptionLabel, frame.description);
    add(kPictureType, kPictureTypeLabel, PictureTypeName(frame.pictureType));
    add(kMimeType, kMimeTypeLabel, frame.mimeType);
    add(kFileName, kFileNameLabel, frame.fileName);
    return out;
}

std::string JoinFrameDetails(const std::vector<FrameDetail>& details) {
    std::string joined;
    for (const FrameDetail& detail : details) {
        if (!joined.empty()) joined += kDetailSeparator;
        joined += detail.label;
        joined += detail.value;
    }
    return joined;
}

bool HasAttachment(const FrameView& frame) {
    return (frame.id == FrameId::Picture || frame.id == FrameId::GeneralObject) && frame.dataSize > 0;
}

std::string SaveAttachment(const FrameView& frame, const std::string& path) {
    if (!HasAttachment(frame)) return "The frame has no attachment";
    if (!frame.dataKept()) return "The attachment was not read from the file";
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return std::strerror(errno);
    const bool written = std::fwrite(frame.data.data(), 1, frame.data.size(), file) == frame.data.size();
    const int writeError = errno;
    const bool closed = std::fclose(file) == 0;  // a full disk may only show here
    // A partly written file is left for the user to see; the path may be a device.
    if (!written || !closed) return std::strerror(!written ? writeError : errno);
    return {};
}

}  // namespace verdin
