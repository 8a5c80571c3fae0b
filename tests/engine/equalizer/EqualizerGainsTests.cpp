#include "engine/equalizer/EqualizerGains.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>

namespace verdin {
namespace {

using Gains = std::array<double, kEqualizerGainCount>;

double FromDb(double dB) { return std::pow(10.0, dB / 20.0); }

EqualizerValues Values(std::initializer_list<std::pair<int, int32_t>> bands) {
    EqualizerValues v{};
    for (auto [band, dB] : bands) v.gain[band] = dB;
    return v;
}

Gains Compute(const EqualizerValues& values, uint32_t sampleRate) {
    Gains g{};
    EXPECT_TRUE(ComputeEqualizerGains(values, sampleRate, g));
    return g;
}

TEST(EqualizerBandBins, FollowTheCentresAndStrictlyIncrease) {
    struct Case {
        uint32_t rate;
        EqualizerBandBins bins;
    };
    // Centre x 512 / rate in integers, each raised to one above the previous where needed.
    const Case cases[] = {
        {44100, {1, 2, 3, 4, 5, 6, 9, 13, 19, 27, 38, 54, 77, 109, 154, 218}},
        {48000, {1, 2, 3, 4, 5, 6, 8, 12, 17, 25, 35, 50, 71, 100, 141, 200}},
        {22050, {1, 3, 5, 6, 9, 13, 19, 26, 39, 55, 77, 108, 155, 218, 308, 436}},
        {8000, {3, 8, 14, 19, 27, 38, 52, 74, 107, 151, 212, 300, 427, 603, 851, 1203}},
        {1000000, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.rate);
        const auto bins = ComputeEqualizerBandBins(c.rate);
        ASSERT_TRUE(bins.has_value());
        EXPECT_EQ(*bins, c.bins);
    }
}

TEST(EqualizerBandBins, RateZeroHasNoBins) { EXPECT_FALSE(ComputeEqualizerBandBins(0).has_value()); }

TEST(EqualizerGains, RateZeroLeavesTheTableAlone) {
    Gains g;
    g.fill(7.0);
    EXPECT_FALSE(ComputeEqualizerGains(Values({{3, 6}}), 0, g));
    for (double v : g) ASSERT_EQ(v, 7.0);
}

TEST(EqualizerGains, ZeroDecibelsIsUnityEverywhere) {
    const Gains g = Compute(EqualizerValues{}, 44100);
    for (double v : g) ASSERT_DOUBLE_EQ(v, 1.0);
}

TEST(EqualizerGains, BandValueSitsAtTheBinOfTheBandBelow) {
    // 44100 Hz: band 8 at bin 19, band 9 at bin 27, band 7 at bin 13. Band 9's value is
    // reached at bin 19 and falls linearly (in dB) to band 10's value at bin 27.
    const Gains g = Compute(Values({{9, 12}}), 44100);
    EXPECT_DOUBLE_EQ(g[19], FromDb(12));
    EXPECT_DOUBLE_EQ(g[27], 1.0);
    EXPECT_DOUBLE_EQ(g[13], 1.0);
    EXPECT_NEAR(g[16], FromDb(12.0 * 3 / 6), 1e-12);      // rising through segment 8 (13..19)
    EXPECT_NEAR(g[23], FromDb(12.0 - 12.0 * 4 / 8), 1e-12);  // falling through segment 9 (19..27)
    EXPECT_NEAR(g[26], FromDb(12.0 - 12.0 * 7 / 8), 1e-12);
    EXPECT_DOUBLE_EQ(g[12], 1.0);
    EXPECT_DOUBLE_EQ(g[28], 1.0);
}

TEST(EqualizerGains, BandZeroStartsAtBinZero) {
    // 48000 Hz: bin[0] = 1, so segment 0 is bin 0 alone and carries band 0's value.
    const Gains g = Compute(Values({{0, -6}, {1, 6}}), 48000);
    EXPECT_DOUBLE_EQ(g[0], FromDb(-6));
    EXPECT_DOUBLE_EQ(g[1], FromDb(6));  // band 1's value at bin[0] = 1
    EXPECT_DOUBLE_EQ(g[2], 1.0);
}

TEST(EqualizerGains, LastGainHoldsAboveTheLastBand) {
    // 44100 Hz: bins 109 (band 13), 154 (band 14), 218 (band 15).
    const Gains g = Compute(Values({{14, 3}, {15, -9}}), 44100);
    EXPECT_DOUBLE_EQ(g[109], FromDb(3));
    EXPECT_NEAR(g[131], FromDb(3.0 - 12.0 * 22 / 45), 1e-12);
    for (int k = 154; k < 256; ++k) ASSERT_DOUBLE_EQ(g[k], FromDb(-9)) << k;
}

TEST(EqualizerGains, LowRatesStopAtBin255) {
    // 8000 Hz: band 10 at bin 212, band 11 at 300. Bin 255 lies 43/88 of the way from
    // band 11's value to band 12's; the bands above never come into play.
    const Gains g = Compute(Values({{11, 0}, {12, 12}, {13, 40}, {14, 40}, {15, 40}}), 8000);
    EXPECT_DOUBLE_EQ(g[212], 1.0);
    EXPECT_NEAR(g[255], FromDb(12.0 * 43 / 88), 1e-12);
    EXPECT_EQ(g[256], g[255]);
}

TEST(EqualizerGains, MirrorIsOffByOne) {
    const Gains g = Compute(Values({{0, 5}, {3, -4}, {8, 9}, {12, -11}, {15, 2}}), 44100);
    for (int k = 0; k < 256; ++k) ASSERT_EQ(g[511 - k], g[k]) << k;
    EXPECT_EQ(g[256], g[255]);
    EXPECT_EQ(g[511], g[0]);
}

TEST(EqualizerGains, ExtremeValuesInterpolateWithoutOverflow) {
    // 100 Hz puts bin[0] at 256: the whole table is segment 0, running from band 0's value
    // at bin 0 towards band 1's at bin 256. Halfway between INT32_MIN and INT32_MAX is -0.5.
    const Gains g = Compute(Values({{0, INT32_MIN}, {1, INT32_MAX}}), 100);
    EXPECT_NEAR(g[128], FromDb(-0.5), 1e-12);
    EXPECT_EQ(g[0], 0.0);
}

}  // namespace
}  // namespace verdin
