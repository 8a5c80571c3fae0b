#pragma once
// Finding silence in PCM: a sample is silent when its magnitude does not exceed the
// threshold. 8-bit samples are read as signed bytes here, as everywhere the silence rules
// look at them; 16-, 24- and 32-bit samples as signed little-endian values.
#include "engine/PcmFormat.h"

#include <cstdint>

namespace verdin {

// 10^(level dB / 20) x 2^(bits - 1), truncated: the threshold for a silence level.
int64_t SilenceThreshold(int32_t levelDb, uint32_t bitsPerSample);

// The index of the first frame of the block that holds a sample louder than the
// threshold, or `frames` when the whole block is silent.
uint32_t FirstLoudFrame(const uint8_t* pcm, uint32_t frames, const PcmFormat& format, int64_t threshold);

// Whether every sample of one frame is silent.
bool FrameIsSilent(const uint8_t* frame, const PcmFormat& format, int64_t threshold);

}  // namespace verdin
