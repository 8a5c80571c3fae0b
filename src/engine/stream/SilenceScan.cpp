#include "SilenceScan.h"

#include <cmath>
#include <cstdlib>

namespace verdin {

int64_t SilenceThreshold(int32_t levelDb, uint32_t bitsPerSample) {
    if (bitsPerSample == 0) return 0;
    return static_cast<int64_t>(std::pow(10.0, levelDb / 20.0) * std::ldexp(1.0, static_cast<int>(bitsPerSample) - 1));
}

namespace {

int64_t SampleMagnitude(const uint8_t* p, uint32_t bytesPerSample) {
    int64_t v = 0;
    switch (bytesPerSample) {
        case 1: v = static_cast<int8_t>(p[0]); break;
        case 2: v = static_cast<int16_t>(p[0] | (p[1] << 8)); break;
        case 3: v = static_cast<int32_t>((p[0] << 8) | (p[1] << 16) | (static_cast<uint32_t>(p[2]) << 24)) >> 8; break;
        case 4: v = static_cast<int32_t>(p[0] | (p[1] << 8) | (p[2] << 16) | (static_cast<uint32_t>(p[3]) << 24)); break;
        default: return 0;
    }
    return std::llabs(v);
}

}  // namespace

bool FrameIsSilent(const uint8_t* frame, const PcmFormat& format, int64_t threshold) {
    const uint32_t bytes = format.bitsPerSample / 8;
    for (uint32_t c = 0; c < format.channels; ++c)
        if (SampleMagnitude(frame + c * bytes, bytes) > threshold) return false;
    return true;
}

uint32_t FirstLoudFrame(const uint8_t* pcm, uint32_t frames, const PcmFormat& format, int64_t threshold) {
    const uint32_t frameBytes = format.BytesPerFrame();
    if (frameBytes == 0) return frames;
    for (uint32_t f = 0; f < frames; ++f)
        if (!FrameIsSilent(pcm + f * frameBytes, format, threshold)) return f;
    return frames;
}

}  // namespace verdin
