#include "StereoDownmix.h"

#include <algorithm>
#include <cmath>

namespace verdin {

namespace {

constexpr float kHalfPower = 0.70710678f;  // -3 dB

struct Weights {
    float left, right;
};

Weights WeightsOf(Speaker speaker) {
    switch (speaker) {
    case Speaker::kFrontLeft: return {1, 0};
    case Speaker::kFrontRight: return {0, 1};
    case Speaker::kLowFrequency: return {0, 0};
    case Speaker::kBackCenter: return {0.5f, 0.5f};
    case Speaker::kFrontLeftOfCenter:
    case Speaker::kBackLeft:
    case Speaker::kSideLeft:
    case Speaker::kTopLeft: return {kHalfPower, 0};
    case Speaker::kFrontRightOfCenter:
    case Speaker::kBackRight:
    case Speaker::kSideRight:
    case Speaker::kTopRight: return {0, kHalfPower};
    case Speaker::kFrontCenter:
    case Speaker::kTopCenter:
    case Speaker::kUnknown: break;
    }
    return {kHalfPower, kHalfPower};
}

using S = Speaker;
// Layouts for three to eight channels, WAVE order first.
const std::vector<Speaker> kWaveLayouts[] = {
    {S::kFrontLeft, S::kFrontRight, S::kFrontCenter},
    {S::kFrontLeft, S::kFrontRight, S::kBackLeft, S::kBackRight},
    {S::kFrontLeft, S::kFrontRight, S::kFrontCenter, S::kBackLeft, S::kBackRight},
    {S::kFrontLeft, S::kFrontRight, S::kFrontCenter, S::kLowFrequency, S::kBackLeft, S::kBackRight},
    {S::kFrontLeft, S::kFrontRight, S::kFrontCenter, S::kLowFrequency, S::kBackCenter, S::kSideLeft, S::kSideRight},
    {S::kFrontLeft, S::kFrontRight, S::kFrontCenter, S::kLowFrequency, S::kBackLeft, S::kBackRight, S::kSideLeft,
     S::kSideRight},
};
const std::vector<Speaker> kVorbisLayouts[] = {
    {S::kFrontLeft, S::kFrontCenter, S::kFrontRight},
    {S::kFrontLeft, S::kFrontRight, S::kBackLeft, S::kBackRight},
    {S::kFrontLeft, S::kFrontCenter, S::kFrontRight, S::kBackLeft, S::kBackRight},
    {S::kFrontLeft, S::kFrontCenter, S::kFrontRight, S::kBackLeft, S::kBackRight, S::kLowFrequency},
    {S::kFrontLeft, S::kFrontCenter, S::kFrontRight, S::kSideLeft, S::kSideRight, S::kBackCenter, S::kLowFrequency},
    {S::kFrontLeft, S::kFrontCenter, S::kFrontRight, S::kSideLeft, S::kSideRight, S::kBackLeft, S::kBackRight,
     S::kLowFrequency},
};

}  // namespace

std::vector<Speaker> DefaultSpeakers(int channels, ChannelOrder order) {
    if (channels <= 0) return {};
    if (channels == 1) return {S::kFrontCenter};
    if (channels == 2) return {S::kFrontLeft, S::kFrontRight};
    const auto& layouts = order == ChannelOrder::kVorbis ? kVorbisLayouts : kWaveLayouts;
    std::vector<Speaker> speakers = layouts[std::min(channels, 8) - 3];
    speakers.resize(static_cast<size_t>(channels), Speaker::kUnknown);
    return speakers;
}

StereoDownmix::StereoDownmix(const std::vector<Speaker>& speakers) {
    float leftSum = 0, rightSum = 0;
    for (const Speaker speaker : speakers) {
        const Weights w = WeightsOf(speaker);
        left_.push_back(w.left), right_.push_back(w.right);
        leftSum += w.left, rightSum += w.right;
    }
    const float largest = std::max(leftSum, rightSum);
    if (largest <= 0) return;  // only low-frequency channels: silence
    for (float& w : left_) w /= largest;
    for (float& w : right_) w /= largest;
}

void StereoDownmix::Mix(const int16_t* in, size_t frames, int16_t* out) const {
    const size_t channels = left_.size();
    for (size_t f = 0; f < frames; ++f, in += channels, out += 2) {
        float left = 0, right = 0;
        for (size_t c = 0; c < channels; ++c) left += left_[c] * in[c], right += right_[c] * in[c];
        out[0] = static_cast<int16_t>(std::clamp(std::lrint(left), -32768L, 32767L));
        out[1] = static_cast<int16_t>(std::clamp(std::lrint(right), -32768L, 32767L));
    }
}

}  // namespace verdin
