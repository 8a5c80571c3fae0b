#pragma once
// The equalizer's gain table in the form its spectrum needs.
//
// The gains act on frequencies: bins k and 512-k of a Hartley spectrum make the real part
// (a + b) / 2 and the imaginary part (a - b) / 2 of frequency k; the real part takes
// gain[k], the imaginary part gain[512-k], and the parts are turned back into bins. Put
// together, with g = gain[k] and h = gain[512-k]:
//
//   a' = a (g + h) / 2 + b (g - h) / 2        b' = b (g + h) / 2 + a (g - h) / 2
//
// so each pair needs two factors, the same for both of its bins. Bins 0 and 256 pair
// with themselves and take their own gain.
//
// The equalizer's spectrum is in bit-reversed order (HartleyLanes.h), where the partners
// sit close together: bins 0 and 256 at positions 0 and 1, and every other pair inside a
// group of positions [B, 2B), B = 2, 4, ..., 256, mirrored: p and 3B - 1 - p. The pairs
// are numbered in the order the groups are walked: group B, then p = B .. B + B/2 - 1.
#include <array>
#include <span>

namespace verdin {

inline constexpr int kSpectrumPairs = 255;

struct SpectrumWeights {
    std::array<double, 2> alone{};                    // positions 0 and 1: gain[0], gain[256]
    alignas(64) std::array<double, kSpectrumPairs> same{};   // (g + h) / 2, for a bin's own value
    alignas(64) std::array<double, kSpectrumPairs> cross{};  // (g - h) / 2, for its partner's
    bool flat = true;  // every gain exactly 1 (0 dB): the spectrum needs no change at all
};

void ComputeSpectrumWeights(std::span<const double, 512> gains, SpectrumWeights& weights);

}  // namespace verdin
