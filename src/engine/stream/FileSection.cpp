#include "FileSection.h"

#include <algorithm>
#include <numeric>

namespace verdin {

namespace {

constexpr int64_t kCdFramesPerSecond = 75;

}  // namespace

SectionCursor::SectionCursor(const FileSection& section, uint32_t sampleRate)
    : active_(sampleRate > 0),
      rate_(std::max<int64_t>(1, sampleRate)),
      first_(std::max<int64_t>(0, section.begin) * rate_ / kCdFramesPerSecond),
      end_(section.end < 0 ? -1 : std::max(first_, section.end * rate_ / kCdFramesPerSecond)) {}

uint32_t SectionCursor::LengthMs(uint32_t fileDurationMs) const {
    const int64_t end = end_ >= 0 ? end_ * 1000 / rate_ : fileDurationMs;
    return static_cast<uint32_t>(std::clamp<int64_t>(end - first_ * 1000 / rate_, 0, UINT32_MAX));
}

uint32_t SectionCursor::SeekTarget(uint32_t offsetMs) const {
    // Milliseconds that fall on a whole frame are the multiples of this step.
    const int64_t step = 1000 / std::gcd<int64_t>(rate_, 1000);
    const int64_t frame = first_ + FrameOfMs(offsetMs);
    return static_cast<uint32_t>(std::min<int64_t>(frame * 1000 / rate_ / step * step, UINT32_MAX));
}

uint32_t SectionCursor::Landed(uint32_t offsetMs, uint32_t landedMs) {
    int64_t want = first_ + FrameOfMs(offsetMs);
    if (end_ >= 0) want = std::min(want, end_);
    const int64_t landed = FrameOfMs(landedMs);
    // A decoder that landed past the point asked for plays on from where it is.
    const int64_t from = std::max(want, landed);
    skip_ = from - landed;
    left_ = end_ >= 0 ? std::max<int64_t>(0, end_ - from) : -1;
    return static_cast<uint32_t>((from - first_) * 1000 / rate_);
}

uint32_t SectionCursor::Drop(uint32_t frames) {
    const auto dropped = static_cast<uint32_t>(std::min<int64_t>(skip_, frames));
    skip_ -= dropped;
    return dropped;
}

uint32_t SectionCursor::Keep(uint32_t frames) {
    if (left_ < 0) return frames;
    const auto kept = static_cast<uint32_t>(std::min<int64_t>(left_, frames));
    left_ -= kept;
    return kept;
}

}  // namespace verdin
