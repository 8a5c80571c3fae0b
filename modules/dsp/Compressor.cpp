// Compressor: turns loud passages down and leaves quiet ones alone.
//
// A peak follower over all channels (linked, so the stereo image does not wander)
// rises within a few milliseconds and falls within a few hundred. Where it is above the
// threshold the gain brings the level down by the ratio: 4 dB over the threshold come
// out as 1 dB over. Below the threshold the gain is exactly 1, and there is no make-up
// gain, so quiet material is untouched.
//
// The follower's state lives in the module, which the library has only once: if the
// same module is active twice, both entries share it (each still compresses, the second
// seeing the first one's output). The first Init starts it afresh. No allocation happens while
// processing; the time constants are recomputed only when the sample rate changes.
#include "Modules.h"
#include "PcmSamples.h"

#include <cmath>

namespace verdin_dsp {

namespace {

constexpr float kThreshold = 0.1f;  // -20 dBFS
constexpr float kRatio = 4.0f;
constexpr float kAttackSeconds = 0.005f;
constexpr float kReleaseSeconds = 0.150f;

struct Follower {
    float envelope = 0.0f;
    int sampleRate = 0;    // the rate the coefficients were made for
    float attack = 0.0f;   // per-frame smoothing towards a higher peak
    float release = 0.0f;  // per-frame smoothing towards a lower one
};

Follower follower;

float Smoothing(float seconds, int sampleRate) { return std::exp(-1.0f / (seconds * static_cast<float>(sampleRate))); }

float GainFor(float envelope) {
    if (envelope <= kThreshold) return 1.0f;
    return std::pow(kThreshold / envelope, 1.0f - 1.0f / kRatio);
}

// Active entries of this module. Init and Quit both run on the player's user-interface
// thread, so a plain counter does; the follower is only started afresh when no entry is
// running it, because only then can no stream be reading it.
int activeEntries = 0;

int Init(winampDSPModule*) {
    if (activeEntries++ == 0) follower = Follower{};
    return 0;
}

void Quit(winampDSPModule*) {
    if (activeEntries > 0) --activeEntries;
}

int ModifySamples(winampDSPModule*, short* samples, int frames, int bitsPerSample, int channels, int sampleRate) {
    if (channels < 1 || sampleRate <= 0 || !Supported(bitsPerSample)) return frames;
    if (follower.sampleRate != sampleRate) {
        follower.sampleRate = sampleRate;
        follower.attack = Smoothing(kAttackSeconds, sampleRate);
        follower.release = Smoothing(kReleaseSeconds, sampleRate);
    }
    for (long frame = 0; frame < frames; ++frame) {
        const long first = frame * channels;
        float peak = 0.0f;
        for (int channel = 0; channel < channels; ++channel)
            peak = std::fmax(peak, std::fabs(ReadSample(samples, bitsPerSample, first + channel)));
        const float smoothing = peak > follower.envelope ? follower.attack : follower.release;
        follower.envelope = peak + smoothing * (follower.envelope - peak);
        const float gain = GainFor(follower.envelope);
        if (gain == 1.0f) continue;
        for (int channel = 0; channel < channels; ++channel)
            WriteSample(samples, bitsPerSample, first + channel,
                        ReadSample(samples, bitsPerSample, first + channel) * gain);
    }
    return frames;
}

char description[] = "Compressor";
winampDSPModule module = {description, nullptr, nullptr, nullptr, Init, ModifySamples, Quit, nullptr};

}  // namespace

winampDSPModule* CompressorModule() { return &module; }

}  // namespace verdin_dsp
