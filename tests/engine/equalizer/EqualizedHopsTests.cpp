// The batch functions of both widths, run over the same hops in batches of every size
// they take, must write the same bytes: each lane computes alone, so where a hop lands
// in a batch and how wide the batch is may not matter.
#include "engine/equalizer/EqualizedHops.h"
#include "engine/equalizer/EqualizerGains.h"

#include "PcmPacking.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace verdin {
namespace {

struct Run {
    int lanes;
    std::vector<uint32_t> batchSizes;  // hops per batch, cycled
};

// Runs `hops` hops of `in` through batches of the given sizes; returns the bytes written.
std::vector<uint8_t> RunHops(const Run& run, const std::vector<uint8_t>& in, uint32_t hops, uint32_t bytes,
                             uint32_t channels, const SpectrumWeights& weights) {
    const HopBatchFunction function = EqualizedHopsFor(run.lanes, bytes, channels);
    EXPECT_NE(function, nullptr);
    const uint32_t hopBytes = 256 * bytes * channels;
    std::vector<uint8_t> out(hops * hopBytes, 0x5A);
    std::vector<double> block(512 * run.lanes), overlap(256 * run.lanes);
    HopBatch batch{in.data(), out.data(), 0, true, run.lanes, &weights, block.data(), overlap.data()};
    for (uint32_t done = 0, i = 0; done < hops; ++i) {
        batch.hops = std::min(run.batchSizes[i % run.batchSizes.size()], hops - done);
        function(batch);
        batch.firstBlock = false;
        batch.in += batch.hops * hopBytes;
        batch.out += batch.hops * hopBytes;
        done += batch.hops;
    }
    return out;
}

TEST(EqualizedHops, EveryWidthAndBatchSizeWritesTheSameBytes) {
    std::array<double, 512> gains{};
    ASSERT_TRUE(ComputeEqualizerGains(EqualizerValues{{9, -6, 3, 12, -12, 0, 4, 7, -3, 2, 11, -9, 5, 1, -4, 8}}, 44100, gains));
    SpectrumWeights weights;
    ComputeSpectrumWeights(gains, weights);
    ASSERT_FALSE(weights.flat);
    const bool fourWide = HopLanes() == 4;
    for (uint32_t bytes = 1; bytes <= 4; ++bytes) {
        for (uint32_t channels = 1; channels <= 2; ++channels) {
            SCOPED_TRACE(::testing::Message() << bytes * 8 << " bits, " << channels << " channels");
            const uint32_t hops = 11;
            std::mt19937 rng(bytes * 10 + channels);
            std::uniform_int_distribution<int64_t> d(test::SampleMin(bytes * 8), test::SampleMax(bytes * 8));
            std::vector<int32_t> samples((hops + 1) * 256 * channels);
            for (auto& s : samples) s = static_cast<int32_t>(d(rng) / 3);
            const std::vector<uint8_t> in = test::PackSamples(samples, bytes * 8);

            const std::vector<uint8_t> reference = RunHops({2, {1}}, in, hops, bytes, channels, weights);
            if (channels == 1) { EXPECT_EQ(RunHops({2, {2, 1}}, in, hops, bytes, channels, weights), reference); }
            if (!fourWide) continue;  // no AVX2 here: only the two-wide functions run
            EXPECT_EQ(RunHops({4, {1}}, in, hops, bytes, channels, weights), reference);
            EXPECT_EQ(RunHops({4, {4 / channels}}, in, hops, bytes, channels, weights), reference);
            if (channels == 1) { EXPECT_EQ(RunHops({4, {3, 2, 4}}, in, hops, bytes, channels, weights), reference); }
        }
    }
}

TEST(EqualizedHops, WidthsThatDoNotRunHereAreRefused) {
    EXPECT_EQ(EqualizedHopsFor(3, 2, 2), nullptr);
    EXPECT_EQ(EqualizedHopsFor(8, 2, 2), nullptr);
    EXPECT_EQ(EqualizedHopsFor(2, 5, 2), nullptr);
    EXPECT_EQ(EqualizedHopsFor(2, 2, 3), nullptr);
    EXPECT_EQ(EqualizedHopsFor(4, 2, 2) != nullptr, HopLanes() == 4);
}

}  // namespace
}  // namespace verdin
