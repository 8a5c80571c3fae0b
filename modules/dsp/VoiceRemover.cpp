// Voice remover (centre cancel): takes away whatever sounds the same in both channels,
// which in most mixes is the lead voice.
//
// Both channels become L-R: a centred sound cancels exactly, a sound panned to one side
// stays (in both channels, as the difference has no direction of its own). Mono has no
// centre to tell apart and passes unchanged, as do other channel counts.
#include "Modules.h"
#include "PcmSamples.h"

namespace verdin_dsp {

namespace {

int ModifySamples(winampDSPModule*, short* samples, int frames, int bitsPerSample, int channels, int) {
    if (channels != 2 || !Supported(bitsPerSample)) return frames;
    for (long frame = 0; frame < frames; ++frame) {
        const float difference =
            ReadSample(samples, bitsPerSample, 2 * frame) - ReadSample(samples, bitsPerSample, 2 * frame + 1);
        WriteSample(samples, bitsPerSample, 2 * frame, difference);
        WriteSample(samples, bitsPerSample, 2 * frame + 1, difference);
    }
    return frames;
}

char description[] = "Voice remover (centre cancel)";
winampDSPModule module = {description, nullptr, nullptr, nullptr, nullptr, ModifySamples, nullptr, nullptr};

}  // namespace

winampDSPModule* VoiceRemoverModule() { return &module; }

}  // namespace verdin_dsp
