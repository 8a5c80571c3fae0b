#pragma once
// Test tones for the sound-server tests, and finding them again in a recording.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <vector>

namespace verdin::test {

// Interleaved stereo 16-bit cosine (so the very first sample is loud and marks the start
// in a recording), each channel its own frequency.
inline std::vector<int16_t> StereoTone(int frames, double left, double right, double amplitude,
                                       int rate = 44100) {
    std::vector<int16_t> out(static_cast<size_t>(frames) * 2);
    for (int i = 0; i < frames; ++i) {
        const double t = 2.0 * std::numbers::pi * i / rate;
        out[2 * i] = static_cast<int16_t>(std::lround(amplitude * 32767 * std::cos(left * t)));
        out[2 * i + 1] = static_cast<int16_t>(std::lround(amplitude * 32767 * std::cos(right * t)));
    }
    return out;
}

inline void CopyToRing(std::vector<uint8_t>& ring, size_t atFrame, const std::vector<int16_t>& tone) {
    std::memcpy(ring.data() + atFrame * 4, tone.data(), tone.size() * 2);
}

// Index of the first non-zero sample, or -1.
inline long FirstSound(const std::vector<int16_t>& samples) {
    for (size_t i = 0; i < samples.size(); ++i)
        if (samples[i] != 0) return static_cast<long>(i);
    return -1;
}

}  // namespace verdin::test
