#include "FloatSamples.h"

#include <cmath>

namespace verdin::sndfile {

void FloatsToPcm16(const float* in, size_t count, int16_t* out) {
    for (size_t i = 0; i < count; ++i) {
        const float scaled = in[i] * 32768.0f;
        if (scaled >= 32767.0f) out[i] = 32767;
        else if (scaled <= -32768.0f) out[i] = -32768;
        else if (std::isnan(scaled)) out[i] = 0;
        else out[i] = static_cast<int16_t>(std::lrint(scaled));
    }
}

}  // namespace verdin::sndfile
