#pragma once
// The batch functions of each width, one translation unit each: the four-wide one is
// compiled for AVX2 on x86-64 and must only run where HopLanes() is 4.
#include "engine/equalizer/EqualizedHops.h"

namespace verdin {

// Both take bytes per sample 1..4 and channels 1..2 (checked by the caller).
HopBatchFunction TwoWideHopsFor(uint32_t bytesPerSample, uint32_t channels);
HopBatchFunction FourWideHopsFor(uint32_t bytesPerSample, uint32_t channels);

}  // namespace verdin
