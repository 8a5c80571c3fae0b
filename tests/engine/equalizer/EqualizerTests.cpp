// The transform against its defining sum; the batched hops, whose every lane width and
// batch size must give the same bits (each lane computes alone); the gain curve at chosen
// bins; and the equalizer against the plain evaluation of its processing call by call:
// every format, uneven cuts, gains changed between 0 dB (where the transforms are
// skipped) and real curves, switched off and on.
#include "engine/equalizer/EqualizedHops.h"
#include "engine/equalizer/Equalizer.h"
#include "engine/equalizer/HartleyTransform.h"

#include "EqualizerReference.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <optional>
#include <random>

namespace verdin {
namespace {

using test::DirectBlock;
using test::PackSamples;
using test::UnpackSamples;

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

EqualizerValues Bands(std::initializer_list<std::pair<int, int32_t>> bands) {
    EqualizerValues v{};
    for (auto [band, dB] : bands) v.gain[band] = dB;
    return v;
}

EqualizerValues Uniform(int32_t dB) {
    EqualizerValues v{};
    std::ranges::fill(v.gain, dB);
    return v;
}

TEST(EqualizerGains, BinsAndTheCurveBetweenThem) {
    // Centre x 512 / rate in integers, each raised to one above the previous where needed.
    const std::pair<uint32_t, EqualizerBandBins> bins[] = {
        {44100, {1, 2, 3, 4, 5, 6, 9, 13, 19, 27, 38, 54, 77, 109, 154, 218}},
        {48000, {1, 2, 3, 4, 5, 6, 8, 12, 17, 25, 35, 50, 71, 100, 141, 200}},
        {22050, {1, 3, 5, 6, 9, 13, 19, 26, 39, 55, 77, 108, 155, 218, 308, 436}},
        {8000, {3, 8, 14, 19, 27, 38, 52, 74, 107, 151, 212, 300, 427, 603, 851, 1203}},
        {1000000, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}},
    };
    for (const auto& [rate, expected] : bins) EXPECT_EQ(ComputeEqualizerBandBins(rate), expected) << rate;
    EXPECT_FALSE(ComputeEqualizerBandBins(0).has_value());

    // Band j's value sits at the bin of band j-1 (bin 0 for band 0); the dB run linearly
    // from bin to bin, and the last band's value holds up to bin 255.
    const struct {
        uint32_t rate;
        EqualizerValues values;
        std::vector<std::pair<int, double>> binDb;
    } curves[] = {
        {44100, {}, {{0, 0}, {100, 0}, {255, 0}}},
        {44100, Bands({{9, 12}}), {{12, 0}, {13, 0}, {16, 6}, {19, 12}, {23, 6}, {26, 1.5}, {27, 0}, {28, 0}}},
        {48000, Bands({{0, -6}, {1, 6}}), {{0, -6}, {1, 6}, {2, 0}}},
        {44100, Bands({{14, 3}, {15, -9}}), {{109, 3}, {131, 3 - 12.0 * 22 / 45}, {154, -9}, {200, -9}, {255, -9}}},
        {8000, Bands({{12, 12}, {13, 40}, {14, 40}, {15, 40}}), {{212, 0}, {255, 12.0 * 43 / 88}}},
        // 100 Hz: one segment from band 0 at bin 0 to band 1 at bin 256, without overflow.
        {100, Bands({{0, INT32_MIN}, {1, INT32_MAX}}), {{0, -1e9}, {128, -0.5}}},
    };
    for (const auto& c : curves) {
        std::array<double, 512> g{};
        ASSERT_TRUE(ComputeEqualizerGains(c.values, c.rate, g));
        for (auto [bin, dB] : c.binDb) EXPECT_NEAR(g[bin], std::pow(10.0, dB / 20), 1e-12) << c.rate << " Hz, bin " << bin;
        for (int k = 0; k < 256; ++k) ASSERT_EQ(g[511 - k], g[k]) << k;  // the mirror is off by one
    }
    std::array<double, 512> kept;
    kept.fill(7.0);
    EXPECT_FALSE(ComputeEqualizerGains(Bands({{3, 6}}), 0, kept));
    EXPECT_TRUE(std::all_of(kept.begin(), kept.end(), [](double g) { return g == 7.0; }));
}

constexpr uint32_t kRate = 44100;
const EqualizerValues kFlat{};
const EqualizerValues kCurve{{9, 6, -4, 3, 12, -12, 2, 0, 5, 11, -6, 4, 1, -9, 7, 3}};
const EqualizerValues kLoud = Uniform(12);

struct Step {
    uint32_t frames;
    std::optional<EqualizerValues> values;  // set before the call
    bool enabled = true;
};

std::vector<Step> Calls(uint32_t frames, int count, std::vector<std::pair<int, EqualizerValues>> changes) {
    std::vector<Step> steps(count, Step{frames, std::nullopt, true});
    for (const auto& [call, values] : changes) steps[call].values = values;
    return steps;
}
Step Off(uint32_t frames) { return {frames, std::nullopt, false}; }

// Tones at several bins plus noise at a quarter of full scale: a 12 dB boost clips now and then.
std::vector<int32_t> Signal(size_t frames, int bits, int channels, uint32_t seed) {
    std::mt19937 rng(seed);
    std::normal_distribution<double> noise(0, 0.05);
    std::vector<int32_t> s(frames * channels);
    for (size_t n = 0; n < frames; ++n)
        for (int c = 0; c < channels; ++c) {
            const double t = double(n) / 512 * 2 * std::numbers::pi;
            const double v = 0.5 * std::sin(3 * t + c) + 0.3 * std::cos(19 * t) + 0.2 * std::sin(150.5 * t) + noise(rng);
            s[n * channels + c] = static_cast<int32_t>(std::lround(double(test::SampleMax(bits)) / 4 * v));
        }
    return s;
}

void RunAgainstReference(int bits, int channels, const std::vector<Step>& steps) {
    size_t total = 0;
    for (const Step& step : steps) total += step.frames;
    const std::vector<int32_t> input = Signal(total, bits, channels, 7);
    const uint32_t frameBytes = bits / 8 * channels;
    Equalizer eq(true);
    test::ReferenceEqualizer reference(bits, channels);
    std::array<double, 512> table{};
    ASSERT_TRUE(ComputeEqualizerGains(kFlat, kRate, table));
    size_t at = 0;
    for (size_t i = 0; i < steps.size(); ++i) {
        const Step& step = steps[i];
        SCOPED_TRACE(::testing::Message() << "call " << i);
        if (step.values) {
            eq.SetEqualizerValues(*step.values, kRate);
            ASSERT_TRUE(ComputeEqualizerGains(*step.values, kRate, table));
        }
        eq.SetEqualizerEnabled(step.enabled);
        const std::vector<int32_t> block(input.begin() + at * channels, input.begin() + (at + step.frames) * channels);
        at += step.frames;
        std::vector<uint8_t> pcm = PackSamples(block, bits);
        pcm.resize(pcm.size() + Equalizer::kOutputHeadroom);
        uint32_t r = eq.Process(pcm.data(), step.frames * frameBytes, bits, channels);
        if (eq.ReturnedFrameCount()) r *= frameBytes;
        const std::vector<int32_t> got = UnpackSamples({pcm.begin(), pcm.begin() + r}, bits);
        const std::vector<int32_t> expected = reference.Process(block, step.enabled, table);
        ASSERT_EQ(got.size(), expected.size());
        for (size_t j = 0; j < got.size(); ++j)
            ASSERT_LE(std::llabs(int64_t{got[j]} - expected[j]), 1) << "frame " << j / channels << ", channel " << j % channels;
    }
}

TEST(Equalizer, AgreesWithThePlainEvaluationCallByCall) {
    const std::vector<Step> uneven{{1152}, {77}, {4000}, {511}};
    const struct {
        const char* name;
        int bits, channels;
        std::vector<Step> steps;
    } rows[] = {
        {"16-bit stereo", 16, 2, Calls(1152, 8, {{0, kCurve}})},
        {"16-bit mono", 16, 1, Calls(1152, 6, {{0, kCurve}})},
        {"8-bit mono", 8, 1, Calls(1000, 5, {{0, kCurve}})},
        {"8-bit stereo, a boost that clips", 8, 2, Calls(1000, 4, {{0, kLoud}})},
        {"24-bit stereo, a boost that clips", 24, 2, Calls(700, 6, {{0, kLoud}})},
        {"32-bit mono", 32, 1, Calls(2000, 3, {{0, kCurve}})},
        {"32-bit stereo, clipping, blocks larger than the input buffer", 32, 2, Calls(9000, 2, {{0, kLoud}})},
        {"8-bit stereo at 0 dB, cut unevenly", 8, 2, uneven},
        {"24-bit mono at 0 dB, cut unevenly", 24, 1, uneven},
        {"32-bit stereo at 0 dB, cut unevenly", 32, 2, uneven},
        {"held back until 512 frames, then large blocks while frames are held", 16, 2,
         {{511, kCurve}, {1}, {255}, {1}, {9000}, {3}, {8191}}},
        {"flat, a curve, flat, a curve", 16, 2, Calls(1152, 12, {{3, kCurve}, {6, kFlat}, {9, kCurve}})},
        {"a curve from the start, then flat", 16, 1, Calls(1152, 6, {{0, kCurve}, {3, kFlat}})},
        {"a switch at every hop", 16, 2,
         Calls(256, 14, {{2, kCurve}, {3, kFlat}, {4, kCurve}, {5, kFlat}, {7, kLoud}, {8, kFlat}, {11, kCurve}})},
        {"a switch while frames are held, 24-bit", 24, 1, Calls(300, 12, {{2, kCurve}, {5, kFlat}, {9, kCurve}})},
        {"large blocks taken in pieces", 16, 2, Calls(20000, 3, {{1, kCurve}, {2, kFlat}})},
        {"flat, off, on with a curve", 16, 2, {{1152}, {1152}, Off(500), Off(500), {1152, kCurve}, {1152}, {1152}}},
        {"a curve, off, on flat", 16, 2, {{1152, kCurve}, {1152}, Off(700), {1152, kFlat}, {1152}, {1152, kCurve}, {1152}}},
        {"flat, off, on flat", 8, 1, {{900}, {900}, Off(10), {900}, {900}}},
        {"off from the start", 16, 1, {{700, kLoud, false}, Off(300)}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        RunAgainstReference(row.bits, row.channels, row.steps);
    }
}

TEST(Equalizer, ZeroDecibelsAfterACurveGivesTheInputFramesBackExactly) {
    // Not just up to truncation: from the second hop after the switch (the first fades out
    // of the curve) the frames come back as they went in.
    const std::vector<uint8_t> bytes = PackSamples(Signal(8 * 1152, 16, 2, 9), 16);
    Equalizer eq(true);
    eq.SetEqualizerValues(kCurve, kRate);
    std::vector<uint8_t> out;
    size_t curveFrames = 0;
    for (int call = 0; call < 8; ++call) {
        if (call == 3) {
            eq.SetEqualizerValues(kFlat, kRate);
            curveFrames = out.size() / 4;
        }
        std::vector<uint8_t> pcm(bytes.begin() + call * 1152 * 4, bytes.begin() + (call + 1) * 1152 * 4);
        pcm.resize(pcm.size() + Equalizer::kOutputHeadroom);
        out.insert(out.end(), pcm.begin(), pcm.begin() + eq.Process(pcm.data(), 1152 * 4, 16, 2));
    }
    const size_t exactFrom = (curveFrames + 256) * 4;
    ASSERT_GT(out.size(), exactFrom + 4 * 1152 * 4);
    EXPECT_TRUE(std::equal(out.begin() + exactFrom, out.end(), bytes.begin() + exactFrom));
    EXPECT_FALSE(std::equal(out.begin(), out.begin() + curveFrames * 4, bytes.begin()));  // the curve did act
}

TEST(Equalizer, AFormatChangeDropsTheHeldFrames) {
    Equalizer eq(true);
    std::vector<uint8_t> pcm = PackSamples(Signal(300, 16, 2, 10), 16);
    pcm.resize(pcm.size() + Equalizer::kOutputHeadroom);
    ASSERT_EQ(eq.Process(pcm.data(), 1200, 16, 2), 0u);
    const std::vector<int32_t> mono = Signal(600, 16, 1, 11);
    pcm = PackSamples(mono, 16);
    pcm.resize(pcm.size() + Equalizer::kOutputHeadroom);
    ASSERT_EQ(eq.Process(pcm.data(), 1200, 16, 1), 512u);  // one hop of the mono frames alone
    const std::vector<int32_t> out = UnpackSamples({pcm.begin(), pcm.begin() + 512}, 16);
    for (size_t i = 0; i < out.size(); ++i) ASSERT_LE(std::abs(out[i] - mono[i]), 1) << i;  // 0 dB: up to truncation
}

TEST(Equalizer, WhatItCannotUseChangesNothing) {
    const std::vector<uint8_t> in = PackSamples(Signal(300, 16, 2, 4), 16);
    for (const auto& [bits, channels] : {std::pair{12, 1}, {16, 3}, {0, 1}, {16, 0}, {40, 2}, {7, 1}}) {
        Equalizer eq(true);
        std::vector<uint8_t> pcm = in;
        pcm.resize(in.size() + Equalizer::kOutputHeadroom);
        EXPECT_EQ(eq.Process(pcm.data(), 1200, bits, channels), 1200u) << bits << " bits, " << channels << " channels";
        EXPECT_TRUE(std::equal(in.begin(), in.end(), pcm.begin()));
    }
    Equalizer eq(true);
    EXPECT_EQ(eq.Process(nullptr, 100, 16, 2), 0u);
    // A rate of 0 keeps the -6 dB table: a constant block comes out halved.
    ASSERT_TRUE(eq.SetEqualizerValues(Uniform(-6), kRate));
    EXPECT_FALSE(eq.SetEqualizerValues(kLoud, 0));
    std::vector<uint8_t> pcm = PackSamples(std::vector<int32_t>(512, 1000), 16);
    pcm.resize(pcm.size() + Equalizer::kOutputHeadroom);
    ASSERT_EQ(eq.Process(pcm.data(), 1024, 16, 1), 512u);
    EXPECT_NEAR(UnpackSamples(pcm, 16)[0], 1000 * std::pow(10.0, -6 / 20.0), 1.0);
}

}  // namespace
}  // namespace verdin
