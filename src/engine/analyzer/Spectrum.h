#pragma once
// The analyzer's spectrum: 128 level values of a 512-sample block, and their stretch to
// the 576 display values per channel.
#include "engine/equalizer/HartleyTransform.h"

#include <cstdint>
#include <span>

namespace verdin {

inline constexpr int kSpectrumBins = 128;
inline constexpr int kAnalyzerValues = 576;

// Transforms the block (in place, scaled to about +-64) and gives, for bins 0..127,
// trunc(20 ln(re^2 + im^2) - 80) clipped to 0..255, or 0 where the power is below 1.
void ComputeSpectrumBins(std::span<double, kHartleySize> block, std::span<int32_t, kSpectrumBins> bins);

// Stretches 128 bin values to 576 (output i lies at bin 2i/9) with a cubic through the
// bin values; results are truncated and clipped to 0..255.
void StretchSpectrum(std::span<const int32_t, kSpectrumBins> bins, std::span<int32_t, kAnalyzerValues> out);

}  // namespace verdin
