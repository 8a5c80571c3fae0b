#pragma once
// The equalizer's documented processing written out plainly, one hop and one channel at
// a time: the input buffer, the transform by its defining sum, the gains applied to the
// real and imaginary parts in natural order, the fade, truncation and clipping, and the
// flush when switched off. Slow and simple, to compare the real one against.
#include "DirectHartley.h"
#include "PcmPacking.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace verdin::test {

using GainTable = std::array<double, 512>;

class ReferenceEqualizer {
public:
    ReferenceEqualizer(int bits, int channels) : bits_(bits), channels_(channels), previous_(channels) {}

    // One call with a block of interleaved samples; returns the samples it gives back.
    std::vector<int32_t> Process(const std::vector<int32_t>& block, bool enabled, const GainTable& gains) {
        if (!enabled) {
            std::vector<int32_t> out = held_;  // empty unless just switched off
            out.insert(out.end(), block.begin(), block.end());
            held_.clear();
            return out;
        }
        held_.insert(held_.end(), block.begin(), block.end());
        std::vector<int32_t> out;
        while (held_.size() >= 512u * channels_) {
            Hop(gains, out);
            held_.erase(held_.begin(), held_.begin() + 256 * channels_);
        }
        return out;
    }

private:
    void Hop(const GainTable& gains, std::vector<int32_t>& out) {
        const size_t first = out.size();
        out.resize(first + 256 * channels_);
        for (int c = 0; c < channels_; ++c) {
            DirectBlock x{};
            for (int n = 0; n < 512; ++n) x[n] = held_[n * channels_ + c];
            DirectBlock h = DirectHartley(x);
            h[0] *= gains[0];
            h[256] *= gains[256];
            for (int k = 1; k < 256; ++k) {
                const double re = (h[k] + h[512 - k]) * 0.5 * gains[k];
                const double im = (h[k] - h[512 - k]) * 0.5 * gains[512 - k];
                h[k] = re + im;
                h[512 - k] = re - im;
            }
            const DirectBlock y = DirectHartley(h);
            DirectBlock& previous = previous_[c];
            if (first_)
                for (int k = 0; k < 256; ++k) previous[256 + k] = y[k];
            for (int k = 0; k < 256; ++k) {
                const double value = (previous[256 + k] + (y[k] - previous[256 + k]) * (k / 256.0)) / 512;
                out[first + k * channels_ + c] = Sample(value);
            }
            previous = y;
        }
        first_ = false;
    }

    int32_t Sample(double value) const {
        if (std::isnan(value)) return 0;
        if (value <= double(SampleMin(bits_))) return static_cast<int32_t>(SampleMin(bits_));
        if (value >= double(SampleMax(bits_))) return static_cast<int32_t>(SampleMax(bits_));
        return static_cast<int32_t>(std::trunc(value));
    }

    int bits_;
    int channels_;
    std::vector<int32_t> held_;
    std::vector<DirectBlock> previous_;
    bool first_ = true;
};

}  // namespace verdin::test
