#pragma once
// A linear gain on decoded samples, in place: the track's ReplayGain, applied before the
// equalizer. 16-bit signed and 8-bit unsigned samples are rounded to the nearest step and
// held to their range instead of wrapping round. A gain of exactly 1 leaves the bytes
// untouched (nothing is multiplied).
#include <cstdint>

namespace verdin {

void ApplySampleGain(uint8_t* samples, uint32_t bytes, uint32_t bitsPerSample, float gain);

}  // namespace verdin
