#pragma once
// Sample access for the modules: the block as ModifySamples receives it, read and
// written as floating-point values in [-1, 1), whatever its sample width.
//
// 16-bit samples are signed; 8-bit ones unsigned with silence at 128. Writing rounds to
// the nearest step and saturates, so a module may overshoot without wrapping round.
// Only these two widths are supported: Supported() tells the modules to pass anything
// else through untouched.
#include <cmath>
#include <cstdint>

namespace verdin_dsp {

inline bool Supported(int bitsPerSample) { return bitsPerSample == 16 || bitsPerSample == 8; }

inline float ReadSample(const void* block, int bitsPerSample, long index) {
    if (bitsPerSample == 16) return static_cast<const int16_t*>(block)[index] / 32768.0f;
    return (static_cast<const uint8_t*>(block)[index] - 128) / 128.0f;
}

inline void WriteSample(void* block, int bitsPerSample, long index, float value) {
    if (bitsPerSample == 16) {
        const float scaled = std::nearbyint(value * 32768.0f);
        static_cast<int16_t*>(block)[index] =
            static_cast<int16_t>(scaled > 32767.0f ? 32767.0f : (scaled < -32768.0f ? -32768.0f : scaled));
    } else {
        const float scaled = std::nearbyint(value * 128.0f) + 128.0f;
        static_cast<uint8_t*>(block)[index] =
            static_cast<uint8_t>(scaled > 255.0f ? 255.0f : (scaled < 0.0f ? 0.0f : scaled));
    }
}

}  // namespace verdin_dsp
