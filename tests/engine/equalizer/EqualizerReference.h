#pragma once
// Test-side references for the equalizer, sharing nothing with the code under test:
// little-endian packing of samples of 1 to 4 bytes, the 512-point Hartley transform by its
// defining sum, and the equalizer's documented processing written out plainly.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace verdin::test {

inline int64_t SampleMax(int bits) { return (int64_t{1} << (bits - 1)) - 1; }

inline std::vector<uint8_t> PackSamples(const std::vector<int32_t>& samples, int bits) {
    std::vector<uint8_t> out;
    for (int32_t s : samples)
        for (int b = 0; b < bits / 8; ++b) out.push_back(static_cast<uint8_t>(static_cast<uint32_t>(s) >> (8 * b)));
    return out;
}

inline std::vector<int32_t> UnpackSamples(const std::vector<uint8_t>& data, int bits) {
    std::vector<int32_t> out;
    for (size_t i = 0; i + bits / 8 <= data.size(); i += bits / 8) {
        uint32_t v = 0;
        for (int b = 0; b < bits / 8; ++b) v |= uint32_t{data[i + b]} << (8 * b + 32 - bits);
        out.push_back(static_cast<int32_t>(v) >> (32 - bits));
    }
    return out;
}

// H[k] = sum over n of x[n] cas(2 pi n k / 512), cas(t) = cos(t) + sin(t), in long double.
using DirectBlock = std::array<double, 512>;
inline DirectBlock DirectHartley(const DirectBlock& x) {
    static const auto cas = [] {
        std::array<long double, 512> t{};
        for (int m = 0; m < 512; ++m) t[m] = std::cos(2 * std::numbers::pi_v<long double> * m / 512) + std::sin(2 * std::numbers::pi_v<long double> * m / 512);
        return t;
    }();
    DirectBlock h{};
    for (int k = 0; k < 512; ++k) {
        long double sum = 0;
        for (int n = 0; n < 512; ++n) sum += x[n] * cas[(n * k) % 512];
        h[k] = static_cast<double>(sum);
    }
    return h;
}

// The equalizer one hop and one channel at a time: blocks of 512 frames hopping by 256,
// the transform, the real part of frequency k scaled by gain[k] and the imaginary part by
// gain[512-k], the transform back, a linear fade from the previous block's second half,
// truncation toward zero and clipping. Switched off, the held frames come back first.
class ReferenceEqualizer {
public:
    ReferenceEqualizer(int bits, int channels) : bits_(bits), channels_(channels), previous_(channels) {}

    std::vector<int32_t> Process(const std::vector<int32_t>& block, bool enabled, const std::array<double, 512>& gains) {
        std::vector<int32_t> out;
        if (!enabled) return out.swap(held_), out.insert(out.end(), block.begin(), block.end()), out;
        held_.insert(held_.end(), block.begin(), block.end());
        for (; held_.size() >= 512u * channels_; held_.erase(held_.begin(), held_.begin() + 256 * channels_)) {
            const size_t first = out.size();
            out.resize(first + 256 * channels_);
            for (int c = 0; c < channels_; ++c) {
                DirectBlock x{};
                for (int n = 0; n < 512; ++n) x[n] = held_[n * channels_ + c];
                DirectBlock h = DirectHartley(x);
                h[0] *= gains[0], h[256] *= gains[256];
                for (int k = 1; k < 256; ++k) {
                    const double re = (h[k] + h[512 - k]) * 0.5 * gains[k], im = (h[k] - h[512 - k]) * 0.5 * gains[512 - k];
                    h[k] = re + im, h[512 - k] = re - im;
                }
                const DirectBlock y = DirectHartley(h);
                DirectBlock& previous = previous_[c];
                if (first_) std::copy(y.begin(), y.begin() + 256, previous.begin() + 256);
                for (int k = 0; k < 256; ++k) {
                    const double v = std::trunc((previous[256 + k] + (y[k] - previous[256 + k]) * (k / 256.0)) / 512);
                    out[first + k * channels_ + c] = std::isnan(v) ? 0 : static_cast<int32_t>(std::clamp(v, -1.0 - SampleMax(bits_), double(SampleMax(bits_))));
                }
                previous = y;
            }
            first_ = false;
        }
        return out;
    }

private:
    int bits_, channels_;
    std::vector<int32_t> held_;
    std::vector<DirectBlock> previous_;
    bool first_ = true;
};

}  // namespace verdin::test
