// Stereo widener: makes the difference between the channels louder and leaves what they
// have in common alone.
//
// Each frame is taken apart into mid (L+R)/2 and side (L-R)/2; the side is doubled and
// the frame put back together. A centred sound (no side) comes out unchanged; a sound
// panned to one side moves further out. Mono and other channel counts pass unchanged.
#include "Modules.h"
#include "PcmSamples.h"

namespace verdin_dsp {

namespace {

constexpr float kSideGain = 2.0f;

int ModifySamples(winampDSPModule*, short* samples, int frames, int bitsPerSample, int channels, int) {
    if (channels != 2 || !Supported(bitsPerSample)) return frames;
    for (long frame = 0; frame < frames; ++frame) {
        const float left = ReadSample(samples, bitsPerSample, 2 * frame);
        const float right = ReadSample(samples, bitsPerSample, 2 * frame + 1);
        const float mid = (left + right) * 0.5f;
        const float side = (left - right) * 0.5f * kSideGain;
        WriteSample(samples, bitsPerSample, 2 * frame, mid + side);
        WriteSample(samples, bitsPerSample, 2 * frame + 1, mid - side);
    }
    return frames;
}

char description[] = "Stereo widener";
winampDSPModule module = {description, nullptr, nullptr, nullptr, nullptr, ModifySamples, nullptr, nullptr};

}  // namespace

winampDSPModule* StereoWidenerModule() { return &module; }

}  // namespace verdin_dsp
