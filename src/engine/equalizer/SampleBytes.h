#pragma once
// Little-endian signed integer samples of 1 to 4 bytes, read from and written to byte
// buffers that need not be aligned. Byte-wise assembly keeps the code independent of the
// host's byte order; compilers turn it into single loads and stores. Always inlined: the
// equalizer uses them in code built for different instruction sets, which must never end
// up sharing one out-of-line copy.
#include <cmath>
#include <cstdint>

namespace verdin {

template <int Bytes>
struct SampleRange {
    static_assert(Bytes >= 1 && Bytes <= 4);
    static constexpr int32_t kMin = static_cast<int32_t>(-(int64_t{1} << (8 * Bytes - 1)));
    static constexpr int32_t kMax = static_cast<int32_t>((int64_t{1} << (8 * Bytes - 1)) - 1);
};

// The sample at p, sign-extended from its top byte.
template <int Bytes>
[[gnu::always_inline]] inline int32_t ReadSignedSample(const uint8_t* p) {
    uint32_t bits = 0;
    for (int i = 0; i < Bytes; ++i) bits |= uint32_t{p[i]} << (8 * i);
    constexpr int kUnused = 32 - 8 * Bytes;
    return static_cast<int32_t>(bits << kUnused) >> kUnused;  // arithmetic shift (C++20)
}

template <int Bytes>
[[gnu::always_inline]] inline void WriteSignedSample(uint8_t* p, int32_t value) {
    const auto bits = static_cast<uint32_t>(value);
    for (int i = 0; i < Bytes; ++i) p[i] = static_cast<uint8_t>(bits >> (8 * i));
}

// A computed value as a sample: truncated toward zero and clipped to the sample's range;
// a value that is not a number (only reachable through absurd gains) becomes silence.
template <int Bytes>
[[gnu::always_inline]] inline int32_t ToSample(double value) {
    constexpr double kLow = SampleRange<Bytes>::kMin;
    constexpr double kHigh = SampleRange<Bytes>::kMax;
    if (std::isnan(value)) return 0;
    if (value <= kLow) return SampleRange<Bytes>::kMin;
    if (value >= kHigh) return SampleRange<Bytes>::kMax;
    return static_cast<int32_t>(value);  // conversion truncates toward zero
}

}  // namespace verdin
