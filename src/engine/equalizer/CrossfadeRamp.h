#pragma once
// The weights of the linear crossfade between overlapping blocks: ramp[k] = k / 256. The
// values are exact in binary, so the table is made by the compiler and shared by every
// equalizer.
#include <array>

namespace verdin {

inline constexpr std::array<double, 256> kCrossfadeRamp = [] {
    std::array<double, 256> ramp{};
    for (int k = 0; k < 256; ++k) ramp[k] = k * 0.00390625;
    return ramp;
}();

// Two transforms scale a block by 512; the output is scaled back by this.
inline constexpr double kInverseBlockScale = 0.001953125;

}  // namespace verdin
