#include "tags/TagBuilder.h"

namespace verdin {

void TagBuilder::BeginSource(TagSource source) {
    before_ |= addedNow_;
    addedNow_.reset();
    tag_.AddSource(source);
}

void TagBuilder::Add(FrameView frame) {
    const std::size_t index = FrameIndex(frame.id);
    if (frame.id == FrameId::NoFrame || index >= kFrameCount || before_.test(index)) return;
    if (!keepAttachments_) frame.data = {};
    addedNow_.set(index);
    tag_.Add(frame);
}

void TagBuilder::AddText(FrameId id, std::string_view text) {
    if (text.empty()) return;
    FrameView frame;
    frame.id = id;
    frame.text = text;
    Add(frame);
}

}  // namespace verdin
