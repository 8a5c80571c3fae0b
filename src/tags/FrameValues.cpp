#include "tags/FrameValues.h"

#include "base/Text.h"
#include "tags/GenreTable.h"

namespace verdin {
namespace {

std::string_view ValueOf(const FrameView& frame) {
    switch (frame.id) {
        case FrameId::Picture:
            return frame.description;
        case FrameId::GeneralObject:
            return frame.description.empty() ? frame.fileName : frame.description;
        default:
            return frame.text;
    }
}

// Cuts to at most `limit` bytes without splitting a UTF-8 sequence.
void CutAtCharacter(std::string& text, std::size_t limit) {
    if (text.size() <= limit) return;
    std::size_t end = limit;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    text.resize(end);
}

}  // namespace

void FrameStringValue(const TrackTag& tag, FrameId id, std::string& out) {
    out.clear();
    const auto frame = tag.Find(id);
    if (!frame) return;
    if (id == FrameId::ContentType) ResolveContentType(frame->text, out);
    else out.assign(ValueOf(*frame));
    CutAtCharacter(out, kFrameValueLimit);
}

std::string FrameStringValue(const TrackTag& tag, FrameId id) {
    std::string out;
    FrameStringValue(tag, id, out);
    return out;
}

int FrameIntegerValue(const TrackTag& tag, FrameId id) {
    const auto frame = tag.Find(id);
    return frame ? ParseDecimal(ValueOf(*frame)) : 0;
}

}  // namespace verdin
