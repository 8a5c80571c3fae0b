#pragma once
// Folds a frame of three or more channels into the two the player carries.
//
// Each speaker feeds the side it stands on: the front pair at full weight, the centre
// and the surrounds at 0.7071 (-3 dB) on their side, a back centre half on each side,
// the low-frequency channel not at all (the usual ITU downmix: L' = L + 0.7071 C +
// 0.7071 Ls). The weights are then divided by the larger of the two sums of a side's
// weights, so that no input, however loud on every channel at once, can clip.
#include <cstddef>
#include <cstdint>
#include <vector>

namespace verdin {

enum class Speaker {
    kFrontLeft, kFrontRight, kFrontCenter, kLowFrequency, kBackLeft, kBackRight,
    kFrontLeftOfCenter, kFrontRightOfCenter, kBackCenter, kSideLeft, kSideRight,
    kTopLeft, kTopRight, kTopCenter,
    kUnknown,  // no known place: fed to both sides like a centre
};

// Channel orders of files that name no speakers: WAVE's (and FLAC's), or that of Vorbis
// and Opus, which put the centre second and the low-frequency channel last.
enum class ChannelOrder { kWave, kVorbis };

// The speakers of a file of `channels` channels that does not say which they are: mono,
// stereo, 3.0, quad, 5.0, 5.1, 6.1 and 7.1 in the given order; channels past eight are
// of no known place.
std::vector<Speaker> DefaultSpeakers(int channels, ChannelOrder order);

class StereoDownmix {
public:
    // One speaker per channel of the input frame, in order.
    explicit StereoDownmix(const std::vector<Speaker>& speakers);

    int inputChannels() const { return static_cast<int>(left_.size()); }
    // The normalised weight of an input channel on the left or right output.
    float leftWeight(int channel) const { return left_[static_cast<size_t>(channel)]; }
    float rightWeight(int channel) const { return right_[static_cast<size_t>(channel)]; }

    // frames of interleaved 16-bit input into interleaved stereo; rounded to the nearest
    // step. in and out must not overlap.
    void Mix(const int16_t* in, size_t frames, int16_t* out) const;

private:
    std::vector<float> left_, right_;
};

}  // namespace verdin
