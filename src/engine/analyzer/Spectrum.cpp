#include "engine/analyzer/Spectrum.h"

#include <algorithm>
#include <cmath>

namespace verdin {
namespace {

int32_t ClipLevel(double value) {
    if (!(value > 0.0)) return 0;  // also catches a value that is not a number
    if (value >= 255.0) return 255;
    return static_cast<int32_t>(value);  // truncates toward zero
}

}  // namespace

void ComputeSpectrumBins(std::span<double, kHartleySize> block, std::span<int32_t, kSpectrumBins> bins) {
    FastHartleyTransform(block);
    for (int k = 0; k < kSpectrumBins; ++k) {
        // Bins k and 512-k give the real and imaginary parts; bin 0 pairs with itself.
        const double a = block[k];
        const double b = block[(kHartleySize - k) % kHartleySize];
        const double re = (a + b) * 0.5;
        const double im = (a - b) * 0.5;
        const double power = re * re + im * im;
        // The natural logarithm is part of the look of the display, so it stays.
        bins[k] = power >= 1.0 ? ClipLevel(20.0 * std::log(power) - 80.0) : 0;
    }
}

void StretchSpectrum(std::span<const int32_t, kSpectrumBins> bins, std::span<int32_t, kAnalyzerValues> out) {
    constexpr int kLast = kSpectrumBins - 1;
    // Bin values, continued past either end by repeating the difference at that end.
    auto value = [&](int n) -> double {
        if (n < 0) return bins[0] + n * double(bins[1] - bins[0]);
        if (n > kLast) return bins[kLast] + (n - kLast) * double(bins[kLast] - bins[kLast - 1]);
        return bins[n];
    };
    // Each bin's slope: a quarter of the difference between its neighbours.
    auto slope = [&](int n) { return (value(n + 1) - value(n - 1)) * 0.25; };

    for (int i = 0; i < kAnalyzerValues; ++i) {
        // Output i lies at bin 2i/9: 4.5 outputs per bin, exact in integers.
        const int n = 2 * i / 9;
        const double t = (2 * i % 9) / 9.0;
        const double t2 = t * t, t3 = t2 * t;
        // Cubic Hermite segment from bin n to bin n+1.
        const double curve = value(n) * (2 * t3 - 3 * t2 + 1) + slope(n) * (t3 - 2 * t2 + t) +
                             value(n + 1) * (3 * t2 - 2 * t3) + slope(n + 1) * (t3 - t2);
        out[i] = ClipLevel(curve);
    }
}

}  // namespace verdin
