#pragma once
// Test-side packing of integer samples into little-endian PCM bytes of 1 to 4 bytes per
// sample, written independently of the engine's own sample code.
#include <cstdint>
#include <vector>

namespace verdin::test {

inline int64_t SampleMax(int bits) { return (int64_t{1} << (bits - 1)) - 1; }
inline int64_t SampleMin(int bits) { return -(int64_t{1} << (bits - 1)); }

inline std::vector<uint8_t> PackSamples(const std::vector<int32_t>& samples, int bits) {
    const int bytes = bits / 8;
    std::vector<uint8_t> out;
    out.reserve(samples.size() * bytes);
    for (int32_t s : samples) {
        const auto u = static_cast<uint32_t>(s);
        for (int b = 0; b < bytes; ++b) out.push_back(static_cast<uint8_t>(u >> (8 * b)));
    }
    return out;
}

inline std::vector<int32_t> UnpackSamples(const std::vector<uint8_t>& data, int bits) {
    const int bytes = bits / 8;
    std::vector<int32_t> out;
    for (size_t i = 0; i + bytes <= data.size(); i += bytes) {
        int64_t v = 0;
        for (int b = 0; b < bytes; ++b) v |= int64_t{data[i + b]} << (8 * b);
        if (v > SampleMax(bits)) v -= int64_t{1} << bits;
        out.push_back(static_cast<int32_t>(v));
    }
    return out;
}

}  // namespace verdin::test
