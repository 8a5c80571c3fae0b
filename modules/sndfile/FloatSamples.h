#pragma once
// Floating-point samples to the player's 16-bit samples.
#include <cstddef>
#include <cstdint>

namespace verdin::sndfile {

// Full scale is 1.0 = 32768, the inverse of libsndfile's own 16-bit-to-float reading, so
// 16-bit audio stored as floats comes back unchanged. Values beyond full scale are clipped
// to the 16-bit range instead of wrapping round; NaN becomes silence.
void FloatsToPcm16(const float* in, size_t count, int16_t* out);

}  // namespace verdin::sndfile
