#include "tags/LeadingTag.h"

namespace verdin {

LeadingTag ParseLeadingTag(std::span<const std::uint8_t> head) {
    constexpr std::size_t kHeaderSize = 10;
    constexpr std::uint8_t kFooterPresent = 0x10;  // a flag of ID3v2.4 only
    LeadingTag tag;
    if (head.size() < kHeaderSize || head[0] != 'I' || head[1] != 'D' || head[2] != '3') return tag;
    if (head[3] == 0xFF || head[4] == 0xFF) return tag;
    std::uint32_t size = 0;
    for (std::size_t i = 6; i < kHeaderSize; ++i) {
        if (head[i] & 0x80) return tag;  // not a synchsafe integer: not a tag header
        size = (size << 7) | head[i];
    }
    tag.found = true;
    tag.version = {2, head[3], head[4]};
    tag.completeSize = static_cast<std::uint32_t>(kHeaderSize) + size +
                       ((head[3] >= 4 && (head[5] & kFooterPresent)) ? static_cast<std::uint32_t>(kHeaderSize) : 0);
    return tag;
}

}  // namespace verdin
