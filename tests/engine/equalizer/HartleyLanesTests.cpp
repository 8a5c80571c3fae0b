// The transform on interleaved blocks: each lane is a transform of its own (checked
// against the defining sum), lanes never mix, and both widths give the same bits.
#include "engine/equalizer/HartleyLanes.h"

#include "DirectHartley.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace verdin {
namespace {

using test::DirectBlock;
using test::DirectHartley;

int Reverse9(int i) {
    int r = 0;
    for (int bit = 0; bit < 9; ++bit) r |= ((i >> bit) & 1) << (8 - bit);
    return r;
}

// Signals of different kinds and scales, one per lane.
std::vector<DirectBlock> Signals(int count, uint32_t seed) {
    std::mt19937 rng(seed);
    std::vector<DirectBlock> blocks(count);
    for (int l = 0; l < count; ++l) {
        std::uniform_real_distribution<double> d(-1, 1);
        const double scale = l % 2 ? 8388607 : 1;
        for (int n = 0; n < 512; ++n) blocks[l][n] = scale * d(rng) + (n == 37 * l ? 5 * scale : 0);
    }
    return blocks;
}

std::vector<double> Interleave(const std::vector<DirectBlock>& blocks) {
    const int w = static_cast<int>(blocks.size());
    std::vector<double> x(512 * w);
    for (int l = 0; l < w; ++l)
        for (int n = 0; n < 512; ++n) x[n * w + l] = blocks[l][n];
    return x;
}

double Scale(const DirectBlock& x) {
    double s = 0;
    for (double v : x) s += std::fabs(v);
    return s;
}

template <int W>
void ExpectBitReversedSpectra(uint32_t seed) {
    const std::vector<DirectBlock> blocks = Signals(W, seed);
    std::vector<double> x = Interleave(blocks);
    lanes::ToBitReversed<W>(x.data(), SharedHartleyFactors());
    for (int l = 0; l < W; ++l) {
        SCOPED_TRACE(::testing::Message() << "lane " << l << " of " << W);
        const DirectBlock expected = DirectHartley(blocks[l]);
        const double tolerance = 1e-13 * Scale(blocks[l]);
        for (int k = 0; k < 512; ++k) ASSERT_NEAR(x[Reverse9(k) * W + l], expected[k], tolerance) << "bin " << k;
    }
    lanes::FromBitReversed<W>(x.data(), SharedHartleyFactors());
    for (int l = 0; l < W; ++l) {
        SCOPED_TRACE(::testing::Message() << "lane " << l << " of " << W << ", there and back");
        const double tolerance = 1e-12 * Scale(blocks[l]);
        for (int n = 0; n < 512; ++n) ASSERT_NEAR(x[n * W + l], 512 * blocks[l][n], tolerance) << "sample " << n;
    }
}

TEST(HartleyLanes, ForwardLeavesEachLanesSpectrumInBitReversedOrderAndBackRestoresIt) {
    ExpectBitReversedSpectra<2>(1);
    ExpectBitReversedSpectra<4>(2);
}

TEST(HartleyLanes, InverseTakesABitReversedSpectrum) {
    // From a spectrum made by the defining sum, placed in bit-reversed order.
    const std::vector<DirectBlock> blocks = Signals(4, 3);
    std::vector<double> x(512 * 4);
    for (int l = 0; l < 4; ++l) {
        const DirectBlock h = DirectHartley(blocks[l]);
        for (int k = 0; k < 512; ++k) x[Reverse9(k) * 4 + l] = h[k];
    }
    lanes::FromBitReversed<4>(x.data(), SharedHartleyFactors());
    for (int l = 0; l < 4; ++l)
        for (int n = 0; n < 512; ++n) ASSERT_NEAR(x[n * 4 + l], 512 * blocks[l][n], 1e-12 * Scale(blocks[l])) << l << " " << n;
}

TEST(HartleyLanes, BothWidthsGiveEveryLaneTheSameBits) {
    // The same four blocks as one four-wide group and as two two-wide groups, in
    // different lanes: every block must come out bit for bit the same.
    const std::vector<DirectBlock> blocks = Signals(4, 4);
    std::vector<double> four = Interleave(blocks);
    lanes::ToBitReversed<4>(four.data(), SharedHartleyFactors());
    lanes::FromBitReversed<4>(four.data(), SharedHartleyFactors());
    const std::vector<std::vector<DirectBlock>> pairs = {{blocks[3], blocks[0]}, {blocks[1], blocks[2]}};
    const int laneOf[2][2] = {{3, 0}, {1, 2}};
    for (int p = 0; p < 2; ++p) {
        std::vector<double> two = Interleave(pairs[p]);
        lanes::ToBitReversed<2>(two.data(), SharedHartleyFactors());
        lanes::FromBitReversed<2>(two.data(), SharedHartleyFactors());
        for (int l = 0; l < 2; ++l)
            for (int n = 0; n < 512; ++n)
                ASSERT_EQ(std::memcmp(&two[n * 2 + l], &four[n * 4 + laneOf[p][l]], sizeof(double)), 0)
                    << "pair " << p << ", lane " << l << ", sample " << n;
    }
}

}  // namespace
}  // namespace verdin
