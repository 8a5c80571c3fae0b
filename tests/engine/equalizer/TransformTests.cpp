// The fast Hartley transform against its defining sum, and the batched hops: every lane
// width and batch size must give the same bits, since each lane computes alone.
#include "engine/equalizer/EqualizedHops.h"
#include "engine/equalizer/EqualizerGains.h"
#include "engine/equalizer/HartleyTransform.h"

#include "EqualizerReference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

namespace verdin {
namespace {

using test::DirectBlock;

TEST(HartleyTransform, EveryWidthMatchesTheDefiningSumAndTheOthersBitForBit) {
    // Impulses, a constant, alternating signs, a cosine at bin 5, noise at two scales.
    std::mt19937 rng(1234);
    std::uniform_real_distribution<double> noise(-1, 1);
    std::vector<DirectBlock> signals(7);
    for (int n = 0; n < 512; ++n) {
        signals[0][n] = n == 0;
        signals[1][n] = n == 37;
        signals[2][n] = 3;
        signals[3][n] = n % 2 ? -1 : 1;
        signals[4][n] = std::cos(2 * std::numbers::pi * 5 * n / 512);
        signals[5][n] = noise(rng);
        signals[6][n] = 8388607 * noise(rng);
    }
    for (size_t s = 0; s < signals.size(); ++s) {
        SCOPED_TRACE(::testing::Message() << "signal " << s);
        const DirectBlock& x = signals[s];
        const DirectBlock expected = test::DirectHartley(x);
        double scale = 0;
        for (double v : x) scale += std::fabs(v);
        DirectBlock two = x, four = x, chosen = x;
        ASSERT_TRUE(FastHartleyTransformWithLanes(two, 2));
        for (int k = 0; k < 512; ++k) ASSERT_NEAR(two[k], expected[k], 1e-13 * scale) << "bin " << k;
        FastHartleyTransform(chosen);
        EXPECT_EQ(std::memcmp(two.data(), chosen.data(), sizeof two), 0);
        if (FastHartleyTransformWithLanes(four, 4)) { EXPECT_EQ(std::memcmp(two.data(), four.data(), sizeof two), 0); }
    }
    DirectBlock x{};
    x[3] = 1;
    EXPECT_FALSE(FastHartleyTransformWithLanes(x, 3));
    EXPECT_FALSE(FastHartleyTransformWithLanes(x, 8));
    EXPECT_EQ(x[3], 1);
}

TEST(EqualizedHops, EveryWidthAndBatchSizeWritesTheSameBytes) {
    std::array<double, 512> gains{};
    ASSERT_TRUE(ComputeEqualizerGains(EqualizerValues{{9, -6, 3, 12, -12, 0, 4, 7, -3, 2, 11, -9, 5, 1, -4, 8}}, 44100, gains));
    SpectrumWeights weights;
    ComputeSpectrumWeights(gains, weights);
    ASSERT_FALSE(weights.flat);
    // Runs the hops in batches of the given sizes (cycled); returns the bytes written.
    const auto run = [&](int lanes, std::vector<uint32_t> sizes, const std::vector<uint8_t>& in, uint32_t hops,
                         uint32_t bytes, uint32_t channels) {
        const HopBatchFunction function = EqualizedHopsFor(lanes, bytes, channels);
        EXPECT_NE(function, nullptr);
        const uint32_t hopBytes = 256 * bytes * channels;
        std::vector<uint8_t> out(hops * hopBytes, 0x5A);
        std::vector<double> block(512 * lanes), overlap(256 * lanes);
        HopBatch batch{in.data(), out.data(), 0, true, lanes, &weights, block.data(), overlap.data()};
        for (uint32_t done = 0, i = 0; done < hops; ++i, done += batch.hops) {
            batch.hops = std::min(sizes[i % sizes.size()], hops - done);
            if (function) function(batch);
            batch.firstBlock = false;
            batch.in += batch.hops * hopBytes;
            batch.out += batch.hops * hopBytes;
        }
        return out;
    };
    const bool fourWide = HopLanes() == 4;
    for (uint32_t bytes = 1; bytes <= 4; ++bytes) {
        for (uint32_t channels = 1; channels <= 2; ++channels) {
            SCOPED_TRACE(::testing::Message() << bytes * 8 << " bits, " << channels << " channels");
            const uint32_t hops = 11;
            std::mt19937 rng(bytes * 10 + channels);
            std::uniform_int_distribution<int64_t> d(test::SampleMin(bytes * 8) / 3, test::SampleMax(bytes * 8) / 3);
            std::vector<int32_t> samples((hops + 1) * 256 * channels);
            for (auto& s : samples) s = static_cast<int32_t>(d(rng));
            const std::vector<uint8_t> in = test::PackSamples(samples, bytes * 8);
            const std::vector<uint8_t> reference = run(2, {1}, in, hops, bytes, channels);
            if (channels == 1) { EXPECT_EQ(run(2, {2, 1}, in, hops, bytes, channels), reference); }
            if (!fourWide) continue;  // no AVX2 here: only the two-wide functions run
            EXPECT_EQ(run(4, {1}, in, hops, bytes, channels), reference);
            EXPECT_EQ(run(4, {4 / channels}, in, hops, bytes, channels), reference);
            if (channels == 1) { EXPECT_EQ(run(4, {3, 2, 4}, in, hops, bytes, channels), reference); }
        }
    }
    for (const auto& [lanes, bytes, channels] : {std::tuple{3, 2u, 2u}, {8, 2u, 2u}, {2, 5u, 2u}, {2, 2u, 3u}})
        EXPECT_EQ(EqualizedHopsFor(lanes, bytes, channels), nullptr) << lanes << " " << bytes << " " << channels;
    EXPECT_EQ(EqualizedHopsFor(4, 2, 2) != nullptr, fourWide);
}

}  // namespace
}  // namespace verdin
