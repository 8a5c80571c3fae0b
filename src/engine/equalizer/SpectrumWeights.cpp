#include "engine/equalizer/SpectrumWeights.h"

#include <algorithm>

namespace verdin {
namespace {

int Reversed9(int position) {
    int reversed = 0;
    for (int bit = 0; bit < 9; ++bit) reversed |= ((position >> bit) & 1) << (8 - bit);
    return reversed;
}

}  // namespace

void ComputeSpectrumWeights(std::span<const double, 512> gains, SpectrumWeights& weights) {
    weights.alone = {gains[0], gains[256]};
    int pair = 0;
    for (int group = 2; group <= 256; group *= 2) {
        for (int p = group; p < group + group / 2; ++p, ++pair) {
            // One of p and its partner holds bin k < 256; the factors are the same for both.
            const int bin = Reversed9(p);
            const int k = std::min(bin, 512 - bin);
            const double g = gains[k], h = gains[512 - k];
            weights.same[pair] = (g + h) * 0.5;
            weights.cross[pair] = (g - h) * 0.5;
        }
    }
    weights.flat = std::all_of(gains.begin(), gains.end(), [](double gain) { return gain == 1.0; });
}

}  // namespace verdin
