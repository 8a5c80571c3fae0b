#include "engine/stream/SampleGain.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace verdin {

void ApplySampleGain(uint8_t* samples, uint32_t bytes, uint32_t bitsPerSample, float gain) {
    if (gain == 1.0f) return;
    if (bitsPerSample == 8) {
        for (uint32_t i = 0; i < bytes; ++i) {
            const long scaled = std::lrint(static_cast<float>(samples[i] - 128) * gain);
            samples[i] = static_cast<uint8_t>(std::clamp(scaled, -128L, 127L) + 128);
        }
        return;
    }
    // The work buffer holds whole samples, but not necessarily 2-byte aligned ones.
    for (uint32_t i = 0; i + 1 < bytes; i += 2) {
        int16_t sample;
        std::memcpy(&sample, samples + i, 2);
        sample = static_cast<int16_t>(std::clamp(std::lrint(static_cast<float>(sample) * gain), -32768L, 32767L));
        std::memcpy(samples + i, &sample, 2);
    }
}

}  // namespace verdin
