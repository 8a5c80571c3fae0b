#include "RingWriter.h"

#include <algorithm>
#include <cstring>

namespace verdin {

uint32_t CopyIntoRing(uint8_t* ring, uint32_t ringBytes, uint32_t position, const uint8_t* data, uint32_t bytes) {
    if (ringBytes == 0) return 0;
    while (bytes > 0) {
        const uint32_t chunk = std::min(bytes, ringBytes - position);
        std::memcpy(ring + position, data, chunk);
        data += chunk;
        bytes -= chunk;
        position = (position + chunk) % ringBytes;
    }
    return position;
}

namespace {

int64_t ReadSample(const uint8_t* p, uint32_t bytes) {
    switch (bytes) {
        case 1: return static_cast<int64_t>(p[0]) - 128;
        case 2: return static_cast<int16_t>(p[0] | (p[1] << 8));
        case 3: return static_cast<int32_t>((p[0] << 8) | (p[1] << 16) | (static_cast<uint32_t>(p[2]) << 24)) >> 8;
        default: return static_cast<int32_t>(p[0] | (p[1] << 8) | (p[2] << 16) | (static_cast<uint32_t>(p[3]) << 24));
    }
}

void WriteSample(uint8_t* p, uint32_t bytes, int64_t v) {
    if (bytes == 1) v += 128;
    const auto u = static_cast<uint32_t>(v);
    for (uint32_t i = 0; i < bytes; ++i) p[i] = static_cast<uint8_t>(u >> (8 * i));
}

}  // namespace

uint32_t MixIntoRing(uint8_t* ring, uint32_t ringBytes, uint32_t position, const uint8_t* block,
                     uint32_t frames, const PcmFormat& format, Crossfade& fade) {
    const uint32_t sampleBytes = format.bitsPerSample / 8;
    const uint32_t frameBytes = format.BytesPerFrame();
    if (fade.length == 0 || frameBytes == 0 || ringBytes == 0) return 0;
    const auto length = static_cast<int64_t>(fade.length);
    uint32_t mixed = 0;
    for (; mixed < frames && fade.remaining > 0; ++mixed) {
        const auto r = static_cast<int64_t>(fade.remaining);
        for (uint32_t c = 0; c < format.channels; ++c) {
            uint8_t* o = ring + position + c * sampleBytes;
            const int64_t oldSample = ReadSample(o, sampleBytes);
            const int64_t newSample = ReadSample(block + mixed * frameBytes + c * sampleBytes, sampleBytes);
            WriteSample(o, sampleBytes, (newSample * length + (oldSample - newSample) * r) / length);
        }
        position = (position + frameBytes) % ringBytes;
        --fade.remaining;
    }
    return mixed;
}

}  // namespace verdin
