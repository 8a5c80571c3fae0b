#include "engine/equalizer/FlatHops.h"

#include "engine/equalizer/CrossfadeRamp.h"
#include "engine/equalizer/SampleBytes.h"

#include <array>
#include <cstring>

namespace verdin {
namespace {

constexpr int kHop = 256;
constexpr double kBlockScale = 512.0;

template <int Bytes>
void FadeIn(const HopBatch& b, uint32_t channels) {
    const uint32_t frameBytes = Bytes * channels;
    for (int k = 0; k < kHop; ++k) {
        for (uint32_t c = 0; c < channels; ++c) {
            const uint32_t at = k * frameBytes + c * Bytes;
            const double previous = b.overlap[OverlapIndex(b.lanes, channels, k, c)];
            const double current = ReadSignedSample<Bytes>(b.in + at) * kBlockScale;
            const double value = (previous + (current - previous) * kCrossfadeRamp[k]) * kInverseBlockScale;
            WriteSignedSample<Bytes>(b.out + at, ToSample<Bytes>(value));
        }
    }
}

template <int Bytes>
void KeepFrames(const uint8_t* frames, int lanes, double* overlap, uint32_t channels) {
    const uint32_t frameBytes = Bytes * channels;
    for (int k = 0; k < kHop; ++k)
        for (uint32_t c = 0; c < channels; ++c)
            overlap[OverlapIndex(lanes, channels, k, c)] =
                ReadSignedSample<Bytes>(frames + k * frameBytes + c * Bytes) * kBlockScale;
}

struct FlatCodec {
    void (*fadeIn)(const HopBatch& b, uint32_t channels);
    void (*keepFrames)(const uint8_t* frames, int lanes, double* overlap, uint32_t channels);
};

constexpr std::array<FlatCodec, 4> kCodecs = {{
    {FadeIn<1>, KeepFrames<1>},
    {FadeIn<2>, KeepFrames<2>},
    {FadeIn<3>, KeepFrames<3>},
    {FadeIn<4>, KeepFrames<4>},
}};

bool IsKnown(uint32_t bytesPerSample) { return bytesPerSample >= 1 && bytesPerSample <= 4; }

}  // namespace

void RunFlatHops(const HopBatch& batch, bool overlapIsInput, uint32_t bytesPerSample, uint32_t channels) {
    if (batch.hops == 0 || !IsKnown(bytesPerSample)) return;
    const uint32_t hopBytes = kHop * bytesPerSample * channels;
    // Without an overlap yet the block is its own predecessor, and the frames come back
    // as they are, as they do from an overlap that stands for them.
    if (batch.firstBlock || overlapIsInput) std::memcpy(batch.out, batch.in, hopBytes);
    else kCodecs[bytesPerSample - 1].fadeIn(batch, channels);
    std::memcpy(batch.out + hopBytes, batch.in + hopBytes, (batch.hops - 1) * hopBytes);
}

void OverlapFromInput(const uint8_t* frames, int lanes, double* overlap, uint32_t bytesPerSample, uint32_t channels) {
    if (IsKnown(bytesPerSample)) kCodecs[bytesPerSample - 1].keepFrames(frames, lanes, overlap, channels);
}

}  // namespace verdin
