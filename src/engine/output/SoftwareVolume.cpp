#include "SoftwareVolume.h"

#include <cstring>

namespace verdin {

namespace {

int64_t Scale(int64_t sample, uint32_t volume) { return sample * volume / int64_t{kFullVolume}; }

void Scale8(uint8_t* data, size_t count, uint32_t volume) {
    for (size_t i = 0; i < count; ++i)
        data[i] = static_cast<uint8_t>(128 + Scale(int64_t{data[i]} - 128, volume));
}

void Scale16(uint8_t* data, size_t count, uint32_t volume) {
    for (size_t i = 0; i < count; ++i, data += 2) {
        const auto s = static_cast<int16_t>(data[0] | (data[1] << 8));
        const auto v = static_cast<uint16_t>(Scale(s, volume));
        data[0] = static_cast<uint8_t>(v);
        data[1] = static_cast<uint8_t>(v >> 8);
    }
}

void Scale24(uint8_t* data, size_t count, uint32_t volume) {
    for (size_t i = 0; i < count; ++i, data += 3) {
        int32_t s = data[0] | (data[1] << 8) | (data[2] << 16);
        if (s & 0x800000) s -= 0x1000000;
        const auto v = static_cast<uint32_t>(Scale(s, volume));
        data[0] = static_cast<uint8_t>(v);
        data[1] = static_cast<uint8_t>(v >> 8);
        data[2] = static_cast<uint8_t>(v >> 16);
    }
}

void Scale32(uint8_t* data, size_t count, uint32_t volume) {
    for (size_t i = 0; i < count; ++i, data += 4) {
        int32_t s;
        std::memcpy(&s, data, 4);  // the engine runs on little-endian machines only
        s = static_cast<int32_t>(Scale(s, volume));
        std::memcpy(data, &s, 4);
    }
}

}  // namespace

void ApplySoftwareVolume(uint8_t* data, size_t bytes, uint32_t bitsPerSample, uint32_t volume) {
    if (volume > kFullVolume) volume = kFullVolume;
    switch (bitsPerSample) {
        case 8: Scale8(data, bytes, volume); break;
        case 16: Scale16(data, bytes / 2, volume); break;
        case 24: Scale24(data, bytes / 3, volume); break;
        case 32: Scale32(data, bytes / 4, volume); break;
        default: break;
    }
}

}  // namespace verdin
