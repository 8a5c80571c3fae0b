#pragma once
// The 44-byte header of a canonical PCM WAV file, little-endian throughout.
#include "engine/PcmFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace verdin {

constexpr size_t kWavHeaderSize = 44;

// "RIFF", data bytes + 36, "WAVEfmt ", 16, 1 (PCM), channels, rate, bytes per second,
// block alignment, bits per sample, "data", data bytes. Block alignment and bytes per
// second use the engine's (bits / 8) x channels.
std::array<uint8_t, kWavHeaderSize> MakeWavHeader(const PcmFormat& format, uint32_t dataBytes);

}  // namespace verdin
