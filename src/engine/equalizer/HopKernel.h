#pragma once
// The work of one batch of hops (EqualizedHops.h), written once for both widths: the
// width's own translation unit instantiates it with the instructions it may use.
// Everything here is inlined into those instantiations.
#include "engine/equalizer/CrossfadeRamp.h"
#include "engine/equalizer/HartleyLanes.h"
#include "engine/equalizer/HopBatch.h"
#include "engine/equalizer/LaneSamples.h"

#include <algorithm>
#include <cstdint>

namespace verdin::hop_kernel {

using lanes::Load;
using lanes::Splat;
using lanes::Store;

inline constexpr int kHop = lanes::kHopFrames;

// Lanes past the last hop repeat it: their work is wasted, but every lane stays an
// ordinary block.
template <int W, int Bytes, int Channels>
[[gnu::always_inline]] inline void ReadBlocks(const HopBatch& batch, double* x) {
    using V = typename lanes::LaneVector<W>::Type;
    using I = typename lanes::LaneVector<W>::Integers;
    constexpr int kHops = W / Channels;
    constexpr uint32_t kFrameBytes = Bytes * Channels;
    const uint8_t* hops[kHops];
    for (int h = 0; h < kHops; ++h) hops[h] = batch.in + std::min<uint32_t>(h, batch.hops - 1) * kHop * kFrameBytes;
    for (int n = 0; n < lanes::kPoints; ++n) {
        I samples;
        lanes::GatherSamples<W, Bytes, Channels>(hops, n, samples);
        V v;
        lanes::ToDoubles<W>(samples, v);
        Store(x + n * W, v);
    }
}

// The overlap in lanes: the channels of the hop before each lane's hop. For the batch's
// first hop that is the kept overlap (in the top lanes of `kept`), for the others the
// second half of the hop before in this batch (the lower lanes of `second`).
template <int W, int Channels, class V>
[[gnu::always_inline]] inline void PreviousHops(const V& kept, const V& second, V& previous) {
    if constexpr (W == 4 && Channels == 2) previous = __builtin_shufflevector(kept, second, 2, 3, 4, 5);
    else if constexpr (W == 4 && Channels == 1) previous = __builtin_shufflevector(kept, second, 3, 4, 5, 6);
    else if constexpr (W == 2 && Channels == 2) previous = kept;
    else previous = __builtin_shufflevector(kept, second, 1, 2);
}

template <int W, int Bytes, int Channels>
[[gnu::always_inline]] inline void WriteHops(const HopBatch& batch, const double* x) {
    using V = typename lanes::LaneVector<W>::Type;
    using I = typename lanes::LaneVector<W>::Integers;
    constexpr int kHops = W / Channels;
    double* overlap = batch.overlap;
    if (batch.firstBlock) {
        // The first block is its own predecessor: its first half, so that the fade
        // changes nothing and 0 dB gives the input back.
        for (int k = 0; k < kHop; ++k)
            for (int c = 0; c < Channels; ++c) overlap[OverlapIndex(W, Channels, k, c)] = x[k * W + c];
    }
    V low, high, scale;
    Splat(low, SampleRange<Bytes>::kMin);
    Splat(high, SampleRange<Bytes>::kMax);
    Splat(scale, kInverseBlockScale);
    const V zero{};
    const uint32_t last = batch.hops - 1;
    for (int k = 0; k < kHop; ++k) {
        V current, second, kept, previous, ramp;
        Load(current, x + k * W);
        Load(second, x + (kHop + k) * W);
        Load(kept, overlap + k * W);
        PreviousHops<W, Channels>(kept, second, previous);
        Splat(ramp, kCrossfadeRamp[k]);
        V value = (previous + (current - previous) * ramp) * scale;
        // Truncation toward zero and clipping; not a number (only from absurd gains) is silence.
        value = value == value ? value : zero;
        value = value < low ? low : value;
        value = value > high ? high : value;
        lanes::ScatterSamples<W, Bytes, Channels>(batch.out, k, batch.hops, __builtin_convertvector(value, I));
        // The last hop's second half is the next batch's overlap.
        if (last == kHops - 1) {
            Store(overlap + k * W, second);
        } else {
            for (int c = 0; c < Channels; ++c) overlap[OverlapIndex(W, Channels, k, c)] = second[last * Channels + c];
        }
    }
}

// Bins 0 and 256 alone, then every pair (p, 3B - 1 - p) of each group [B, 2B).
template <int W>
[[gnu::always_inline]] inline void WeighSpectrum(double* x, const SpectrumWeights& weights) {
    using V = typename lanes::LaneVector<W>::Type;
    for (int p = 0; p < 2; ++p) {
        V v, g;
        Load(v, x + p * W);
        Splat(g, weights.alone[p]);
        Store(x + p * W, v * g);
    }
    int pair = 0;
    for (int group = 2; group <= lanes::kPoints / 2; group *= 2) {
        for (int p = group; p < group + group / 2; ++p, ++pair) {
            const int q = 3 * group - 1 - p;
            V a, b, same, cross;
            Load(a, x + p * W);
            Load(b, x + q * W);
            Splat(same, weights.same[pair]);
            Splat(cross, weights.cross[pair]);
            Store(x + p * W, a * same + b * cross);
            Store(x + q * W, b * same + a * cross);
        }
    }
}

// Reads the blocks, transforms them, weighs the spectra, transforms them back and writes
// the hops out.
template <int W, int Bytes, int Channels>
[[gnu::always_inline]] inline void RunBatch(const HopBatch& batch) {
    const HartleyFactors& factors = SharedHartleyFactors();
    double* x = batch.block;
    ReadBlocks<W, Bytes, Channels>(batch, x);
    lanes::ToBitReversed<W>(x, factors);
    WeighSpectrum<W>(x, *batch.weights);
    lanes::FromBitReversed<W>(x, factors);
    WriteHops<W, Bytes, Channels>(batch, x);
}

}  // namespace verdin::hop_kernel
