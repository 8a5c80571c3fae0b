#pragma once
// Hops through the transforms: the blocks of up to lanes / channels consecutive hops, all
// their channels, go through the Hartley transform side by side (HartleyLanes.h), their
// spectra are weighted, transformed back, faded into each other and written out as
// samples, truncated toward zero and clipped.
#include "engine/equalizer/HopBatch.h"

#include <cstdint>

namespace verdin {

// 4 where the processor runs four-wide double vectors (AVX2), else 2.
int HopLanes();

using HopBatchFunction = void (*)(const HopBatch& batch);

// The function for a width (HopLanes(), or 2) and sample format (1 to 4 bytes, 1 or 2
// channels); null for anything else.
HopBatchFunction EqualizedHopsFor(int lanes, uint32_t bytesPerSample, uint32_t channels);

}  // namespace verdin
