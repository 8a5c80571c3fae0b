#include "engine/analyzer/Spectrum.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace verdin {
namespace {

using Bins = std::array<int32_t, kSpectrumBins>;
using Stretched = std::array<int32_t, kAnalyzerValues>;

Stretched Stretch(const Bins& bins) {
    Stretched out{};
    StretchSpectrum(bins, out);
    return out;
}

TEST(StretchSpectrum, PassesThroughTheBinValues) {
    // Output i lies at bin 2i/9, so every ninth output lands on an even bin.
    std::mt19937 rng(3);
    std::uniform_int_distribution<int32_t> level(0, 255);
    Bins bins{};
    for (auto& b : bins) b = level(rng);
    const Stretched out = Stretch(bins);
    for (int j = 0; j * 9 < kAnalyzerValues; ++j) ASSERT_EQ(out[9 * j], bins[2 * j]) << j;
}

TEST(StretchSpectrum, ConstantStaysConstant) {
    Bins bins;
    bins.fill(77);
    for (int32_t v : Stretch(bins)) ASSERT_EQ(v, 77);
}

TEST(StretchSpectrum, RisingBinsRiseSmoothlyAndContinuePastTheLastBin) {
    // Bins 0, 2, 4, ..., 254. Past bin 127 the last difference repeats, so the final
    // output (at bin 127.78) is above 255 before clipping; a curve that stopped rising
    // at the last bin would end at 254.
    Bins bins;
    for (int n = 0; n < kSpectrumBins; ++n) bins[n] = 2 * n;
    const Stretched out = Stretch(bins);
    for (int i = 1; i < kAnalyzerValues; ++i) ASSERT_GE(out[i], out[i - 1]) << i;
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[575], 255);
}

TEST(StretchSpectrum, StaysWithinTheLevelRange) {
    // Alternating extremes overshoot the cubic both ways; results are clipped to 0..255.
    Bins bins;
    for (int n = 0; n < kSpectrumBins; ++n) bins[n] = n % 2 ? 255 : 0;
    const Stretched out = Stretch(bins);
    bool sawTop = false, sawBottom = false;
    for (int32_t v : out) {
        ASSERT_GE(v, 0);
        ASSERT_LE(v, 255);
        sawTop |= v == 255;
        sawBottom |= v == 0;
    }
    EXPECT_TRUE(sawTop);
    EXPECT_TRUE(sawBottom);
}

TEST(StretchSpectrum, BetweenBinsTheCurveUsesQuarterSlopes) {
    // A single raised bin: output 91 lies at bin 20 + 2/9, on the cubic from bin 20
    // (value 100, slope 0) to bin 21 (value 0, slope (0 - 100) / 4 = -25), which is
    // 100 h00(t) - 25 h11(t) at t = 2/9.
    Bins bins{};
    bins[20] = 100;
    const Stretched out = Stretch(bins);
    const double t = 2.0 / 9;
    const double expected = 100 * (2 * t * t * t - 3 * t * t + 1) - 25 * (t * t * t - t * t);
    EXPECT_EQ(out[91], static_cast<int32_t>(expected));
    EXPECT_EQ(out[90], 100);
}

TEST(ComputeSpectrumBins, SilenceAndTinySignalsGiveZero) {
    std::array<double, kHartleySize> block{};
    Bins bins;
    bins.fill(9);
    ComputeSpectrumBins(block, bins);
    for (int32_t v : bins) ASSERT_EQ(v, 0);
    // A DC level of 1/512 gives power (1/512 x 512)^2 = 1: exactly at the threshold,
    // 20 ln 1 - 80 < 0, clipped to 0; the rest of the bins have no power at all.
    block.fill(1.0 / 512);
    ComputeSpectrumBins(block, bins);
    for (int32_t v : bins) ASSERT_EQ(v, 0);
}

}  // namespace
}  // namespace verdin
