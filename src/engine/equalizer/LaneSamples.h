#pragma once
// Moving samples between PCM bytes and the lanes of the transform (HartleyLanes.h): lane l
// of a batch holds hop l / channels, channel l % channels.
//
// Where the code is compiled for AVX2 (the four-wide translation unit on x86-64), the
// four-wide forms widen and narrow whole vectors with single instructions: the compiler's
// own conversion between vectors of integers and of doubles goes lane by lane.
#include "engine/equalizer/HartleyLanes.h"
#include "engine/equalizer/SampleBytes.h"

#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__AVX2__)
#include <immintrin.h>
#endif

namespace verdin::lanes {

inline constexpr int kHopFrames = 256;

inline constexpr bool kLittleEndian = std::endian::native == std::endian::little;

// Each lane's sample at position n: hops[h] points at hop h's first frame.
template <int W, int Bytes, int Channels>
[[gnu::always_inline]] inline void GatherSamples(const uint8_t* const* hops, int n,
                                                 typename LaneVector<W>::Integers& samples) {
    constexpr int kFrameBytes = Bytes * Channels;
#if defined(__AVX2__)
    if constexpr (W == 4 && Bytes == 2 && Channels == 2 && kLittleEndian) {
        // Each hop's frame is one 32-bit word of two samples.
        int32_t first, second;
        std::memcpy(&first, hops[0] + n * kFrameBytes, 4);
        std::memcpy(&second, hops[1] + n * kFrameBytes, 4);
        const __m128i frames = _mm_insert_epi32(_mm_cvtsi32_si128(first), second, 1);
        samples = reinterpret_cast<typename LaneVector<W>::Integers>(_mm_cvtepi16_epi32(frames));
        return;
    }
#endif
    for (int h = 0; h < W / Channels; ++h)
        for (int c = 0; c < Channels; ++c)
            samples[h * Channels + c] = ReadSignedSample<Bytes>(hops[h] + n * kFrameBytes + c * Bytes);
}

template <int W>
[[gnu::always_inline]] inline void ToDoubles(const typename LaneVector<W>::Integers& samples,
                                             typename LaneVector<W>::Type& v) {
#if defined(__AVX2__)
    if constexpr (W == 4) {
        v = reinterpret_cast<typename LaneVector<W>::Type>(_mm256_cvtepi32_pd(reinterpret_cast<__m128i>(samples)));
        return;
    }
#endif
    v = __builtin_convertvector(samples, typename LaneVector<W>::Type);
}

// Frame k of the first `hops` hops from the lanes' samples, which are in range.
template <int W, int Bytes, int Channels>
[[gnu::always_inline]] inline void ScatterSamples(uint8_t* out, int k, uint32_t hops,
                                                  const typename LaneVector<W>::Integers& samples) {
    constexpr int kFrameBytes = Bytes * Channels;
#if defined(__AVX2__)
    if constexpr (W == 4 && Bytes == 2 && Channels == 2 && kLittleEndian) {
        const __m128i wide = reinterpret_cast<__m128i>(samples);
        const __m128i packed = _mm_packs_epi32(wide, wide);
        const int32_t first = _mm_cvtsi128_si32(packed);
        std::memcpy(out + k * kFrameBytes, &first, 4);
        if (hops > 1) {
            const int32_t second = _mm_extract_epi32(packed, 1);
            std::memcpy(out + (kHopFrames + k) * kFrameBytes, &second, 4);
        }
        return;
    }
#endif
    for (uint32_t h = 0; h < hops; ++h)
        for (int c = 0; c < Channels; ++c)
            WriteSignedSample<Bytes>(out + (h * kHopFrames + k) * kFrameBytes + c * Bytes, samples[h * Channels + c]);
}

}  // namespace verdin::lanes
