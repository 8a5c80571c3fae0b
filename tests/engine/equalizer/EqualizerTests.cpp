// The gain curve; the batched hops, the same bits in every lane width and batch size; the
// equalizer against its plain evaluation (EqualizerReference.h) call by call, in every
// format, cut unevenly, with curves, 0 dB and the switch changed; and changed by another
// thread while it processes (run under ThreadSanitizer with the other engine tests).
#include "engine/equalizer/EqualizedHops.h"
#include "engine/equalizer/Equalizer.h"

#include "EqualizerReference.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <random>
#include <thread>

namespace verdin {
namespace {


// The samples packed, with room for what Process may write past them.
std::vector<uint8_t> Padded(const std::vector<int32_t>& samples, int bits) {
    std::vector<uint8_t> pcm = test::PackSamples(samples, bits);
    return pcm.resize(pcm.size() + Equalizer::kOutputHeadroom), pcm;
}

TEST(EqualizerGains, BinsAndTheCurveBetweenThem) {
    // Centre x 512 / rate in integers, each raised to one above the previous where needed
    // (at 8000 Hz the bins run past 255: the 8000 Hz curve below).
    EXPECT_EQ(ComputeEqualizerBandBins(44100), (EqualizerBandBins{1, 2, 3, 4, 5, 6, 9, 13, 19, 27, 38, 54, 77, 109, 154, 218}));
    const auto Bands = [](std::initializer_list<std::pair<int, int32_t>> bands) {
        EqualizerValues v{};
        return std::ranges::for_each(bands, [&v](auto b) { v.gain[b.first] = b.second; }), v;
    };
    // Band j's value sits at the bin of band j-1 (bin 0 for band 0); the dB run linearly
    // from bin to bin, and the last band's value holds up to bin 255.
    const std::tuple<uint32_t, EqualizerValues, std::vector<std::pair<int, double>>> curves[] = {
        {44100, Bands({{9, 12}}), {{12, 0}, {13, 0}, {16, 6}, {19, 12}, {23, 6}, {26, 1.5}, {27, 0}, {28, 0}}},
        {48000, Bands({{0, -6}, {1, 6}}), {{0, -6}, {1, 6}, {2, 0}}},
        {44100, Bands({{14, 3}, {15, -9}}), {{109, 3}, {131, 3 - 12.0 * 22 / 45}, {154, -9}, {200, -9}, {255, -9}}},
        {8000, Bands({{12, 12}, {13, 40}, {14, 40}, {15, 40}}), {{212, 0}, {255, 12.0 * 43 / 88}}},
        {100, Bands({{0, INT32_MIN}, {1, INT32_MAX}}), {{0, -1e9}, {128, -0.5}}},  // 100 Hz: one segment to bin 256, no overflow
    };
    for (const auto& [rate, values, binDb] : curves) {
        std::array<double, 512> g{};
        ASSERT_TRUE(ComputeEqualizerGains(values, rate, g));
        for (auto [bin, dB] : binDb) EXPECT_NEAR(g[bin], std::pow(10.0, dB / 20), 1e-12) << rate << " Hz, bin " << bin;
        for (int k = 0; k < 256; ++k) ASSERT_EQ(g[511 - k], g[k]) << k;  // the mirror is off by one
    }
}

constexpr uint32_t kRate = 44100;
const EqualizerValues kFlat{}, kCurve{{9, 6, -4, 3, 12, -12, 2, 0, 5, 11, -6, 4, 1, -9, 7, 3}}, kLoud{{12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12}},
                      kQuiet{{-6, -6, -6, -6, -6, -6, -6, -6, -6, -6, -6, -6, -6, -6, -6, -6}};

struct Step { uint32_t frames; std::optional<EqualizerValues> values; bool enabled = true; };  // values: set before the call
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
    for (size_t i = 0; i < s.size(); ++i) {
        const double t = double(i / channels) / 512 * 2 * std::numbers::pi;
        s[i] = std::lround(test::SampleMax(bits) / 4.0 * (0.5 * std::sin(3 * t + i % channels) + 0.3 * std::cos(19 * t) + 0.2 * std::sin(150.5 * t) + noise(rng)));
    }
    return s;
}

TEST(EqualizedHops, EveryWidthAndBatchSizeWritesTheSameBytes) {
    std::array<double, 512> gains{};
    ASSERT_TRUE(ComputeEqualizerGains(kCurve, kRate, gains));
    SpectrumWeights weights;
    ComputeSpectrumWeights(gains, weights);
    for (uint32_t bytes = 1; bytes <= 4; ++bytes) {
        for (uint32_t channels = 1; channels <= 2; ++channels) {
            SCOPED_TRACE(::testing::Message() << bytes * 8 << " bits, " << channels << " channels");
            const std::vector<uint8_t> in = test::PackSamples(Signal(12 * 256, bytes * 8, channels, bytes), bytes * 8);
            const uint32_t hopBytes = 256 * bytes * channels;
            std::vector<uint8_t> reference;
            // Eleven hops in batches of the sizes given (cycled, and at most what the lanes hold).
            for (const auto& [lanes, sizes] : {std::pair{2, std::vector<uint32_t>{1}}, {2, {2, 1}}, {4, {1}}, {4, {4}}, {4, {3, 2, 4}}}) {
                if (lanes > HopLanes()) continue;  // without AVX2 only the two-wide functions run
                const HopBatchFunction function = EqualizedHopsFor(lanes, bytes, channels);
                ASSERT_NE(function, nullptr);
                std::vector<uint8_t> out(11 * hopBytes, 0x5A);
                std::vector<double> block(512 * lanes), overlap(256 * lanes);
                HopBatch batch{in.data(), out.data(), 0, true, lanes, &weights, block.data(), overlap.data()};
                for (uint32_t done = 0, i = 0; done < 11; ++i, done += batch.hops, batch.firstBlock = false) {
                    batch.hops = std::min({sizes[i % sizes.size()], lanes / channels, 11 - done});
                    function(batch);
                    batch.in += batch.hops * hopBytes, batch.out += batch.hops * hopBytes;
                }
                if (reference.empty()) reference = out;
                EXPECT_EQ(out, reference) << lanes << " lanes";
            }
        }
    }
}

// Within one step of the reference; and at 0 dB not just up to truncation: from the start,
// and from the second hop after a switch to 0 dB (the first fades out of the curve), the
// frames come back exactly as they went in.
TEST(Equalizer, AgreesWithThePlainEvaluationCallByCall) {
    const auto uneven = [](int bits, int channels) {  // flat, a curve, flat again
        return std::tuple{bits, channels, std::vector<Step>{{1152}, {77, kCurve}, {4000}, {511, kFlat}, {1300}, {2000}}};
    };
    const std::pair<const char*, std::tuple<int, int, std::vector<Step>>> rows[] = {
        {"32-bit stereo, clipping, blocks larger than the input buffer", {32, 2, Calls(9000, 2, {{0, kLoud}})}},
        {"8-bit stereo, cut unevenly", uneven(8, 2)}, {"24-bit mono, cut unevenly", uneven(24, 1)}, {"32-bit stereo, cut unevenly", uneven(32, 2)},
        {"held back until 512 frames, then large blocks while frames are held", {16, 2, {{511, kCurve}, {1}, {255}, {1}, {9000}, {3}, {8191}}}},
        {"a switch at every hop", {16, 2, Calls(256, 14, {{2, kCurve}, {3, kFlat}, {4, kCurve}, {5, kFlat}, {7, kLoud}, {8, kFlat}, {11, kCurve}})}},
        {"flat, off, on with a curve", {16, 2, {{1152}, {1152}, Off(500), Off(500), {1152, kCurve}, {1152}, {1152}}}},
        {"a curve, off, on flat", {16, 2, {{1152, kCurve}, {1152}, Off(700), {1152, kFlat}, {1152}, {1152, kCurve}, {1152}}}},
        {"off from the start", {16, 1, {{700, kLoud, false}, Off(300)}}},
    };
    for (const auto& [name, row] : rows) {
        SCOPED_TRACE(name);
        const auto& [bits, channels, steps] = row;
        size_t exactFrom = 0;  // SIZE_MAX while a curve is in place
        const std::vector<int32_t> input = Signal(20000, bits, channels, 7);  // more than any row takes
        std::vector<int32_t> output;
        Equalizer eq(true);
        test::ReferenceEqualizer reference(bits, channels);
        std::array<double, 512> table{};
        ASSERT_TRUE(ComputeEqualizerGains(kFlat, kRate, table));
        for (size_t i = 0, at = 0; i < steps.size(); at += steps[i++].frames) {
            SCOPED_TRACE(::testing::Message() << "call " << i);
            if (steps[i].values) {
                eq.SetEqualizerValues(*steps[i].values, kRate);
                ASSERT_TRUE(ComputeEqualizerGains(*steps[i].values, kRate, table));
                const bool flat = std::ranges::all_of(steps[i].values->gain, [](int32_t g) { return g == 0; });
                exactFrom = !flat ? SIZE_MAX : exactFrom == SIZE_MAX ? output.size() + 256 * channels : exactFrom;
            }
            eq.SetEqualizerEnabled(steps[i].enabled);
            const std::vector<int32_t> block(input.begin() + at * channels, input.begin() + (at + steps[i].frames) * channels);
            std::vector<uint8_t> pcm = Padded(block, bits);
            const uint32_t r = eq.Process(pcm.data(), steps[i].frames * bits / 8 * channels, bits, channels) * (eq.ReturnedFrameCount() ? bits / 8 * channels : 1);
            const std::vector<int32_t> got = test::UnpackSamples({pcm.begin(), pcm.begin() + r}, bits), expected = reference.Process(block, steps[i].enabled, table);
            ASSERT_EQ(got.size(), expected.size());
            for (size_t j = 0; j < got.size(); ++j)
                ASSERT_LE(std::llabs(int64_t{got[j]} - expected[j]), 1) << "frame " << j / channels << ", channel " << j % channels;
            output.insert(output.end(), got.begin(), got.end());
        }
        if (exactFrom < output.size()) { EXPECT_TRUE(std::equal(output.begin() + exactFrom, output.end(), input.begin() + exactFrom)) << "from " << exactFrom; }
    }
}

TEST(Equalizer, WhatItCannotUseChangesNothing) {
    const std::vector<uint8_t> in = Padded(Signal(300, 16, 2, 4), 16);
    for (const auto& [bits, channels] : {std::pair{12, 1}, {16, 3}, {0, 1}, {16, 0}, {40, 2}, {7, 1}}) {
        Equalizer eq(true);
        std::vector<uint8_t> pcm = in;
        EXPECT_EQ(eq.Process(pcm.data(), 1200, bits, channels), 1200u) << bits << " bits, " << channels << " channels";
        EXPECT_TRUE(pcm == in);
    }
    Equalizer eq(true);
    EXPECT_EQ(eq.Process(nullptr, 100, 16, 2), 0u);
    // A rate of 0 keeps the -6 dB table: a constant block comes out halved.
    ASSERT_TRUE(eq.SetEqualizerValues(kQuiet, kRate));
    EXPECT_FALSE(eq.SetEqualizerValues(kLoud, 0));
    std::vector<uint8_t> pcm = Padded(std::vector<int32_t>(600, 1000), 16);
    ASSERT_EQ(eq.Process(pcm.data(), 600, 16, 2), 0u);  // held
    // Mono now: the held stereo frames are dropped, one hop of the mono frames alone comes out.
    pcm = Padded(std::vector<int32_t>(600, 2000), 16);
    ASSERT_EQ(eq.Process(pcm.data(), 1200, 16, 1), 512u);
    EXPECT_EQ(test::UnpackSamples({pcm.begin(), pcm.begin() + 512}, 16), std::vector<int32_t>(256, 1002));
}

TEST(EqualizerConcurrency, GainsAndSwitchingChangedDuringProcessingLoseNoFrameAndAddNoLoudness) {
    // Every table in play is 0 dB or -6 dB, so whatever mix of them a hop sees, a cosine
    // tone at a bin centre comes out at most as loud as it went in. 300-frame stereo
    // blocks tell the three answers apart: pass-through returns 1200 bytes, processing a
    // multiple of 1024 bytes (at most 2048), a flush the held frames plus 300 (301 to 811 frames).
    std::vector<int32_t> tone(2 * 4800);  // 16 blocks, 75 whole periods
    for (size_t n = 0; n < tone.size(); ++n) tone[n] = std::lround(10000 * std::cos(2 * std::numbers::pi * 8 * double(n / 2) / 512));
    const std::vector<uint8_t> bytes = test::PackSamples(tone, 16);
    Equalizer eq(true);
    std::atomic<int> changes{0};    // written by the changer (release), read here (acquire)
    std::atomic<bool> done{false};  // written here (release), read by the changer (acquire)
    std::thread changer([&] {
        for (int i = 0; !done.load(std::memory_order_acquire); ++i) {
            if (i % 2) eq.SetEqualizerValues(i % 4 == 1 ? kFlat : kQuiet, kRate);
            else eq.SetEqualizerEnabled(i % 6 != 0);
            changes.fetch_add(1, std::memory_order_release);
        }
    });
    std::vector<uint8_t> pcm(1200 + Equalizer::kOutputHeadroom);
    uint64_t framesIn = 0, framesOut = 0;
    int loudest = 0;
    bool answersMadeSense = true;
    while (changes.load(std::memory_order_acquire) == 0) std::this_thread::yield();
    for (int round = 0; round < 300 || changes.load(std::memory_order_acquire) < 3000; ++round) {
        std::copy_n(bytes.begin() + (round % 16) * 1200, 1200, pcm.begin());
        const uint32_t r = eq.Process(pcm.data(), 1200, 16, 2);
        const bool flushed = eq.ReturnedFrameCount();
        if (flushed ? r > 300 && r < 300 + 512 : r == 1200 || (r % 1024 == 0 && r <= 2048)) framesOut += flushed ? r : r / 4;
        else answersMadeSense = false;
        framesIn += 300;
        for (int32_t s : test::UnpackSamples({pcm.begin(), pcm.begin() + (flushed ? 4 * r : r)}, 16)) loudest = std::max(loudest, std::abs(s));
    }
    done.store(true, std::memory_order_release);
    changer.join();
    eq.SetEqualizerEnabled(false);  // for good: an empty block brings back what is still held
    const uint32_t rest = eq.Process(pcm.data(), 0, 16, 2);
    EXPECT_TRUE(answersMadeSense && rest < 512);
    EXPECT_EQ(framesOut + rest, framesIn);
    EXPECT_TRUE(loudest > 4998 && loudest <= 10002) << loudest;
}

}  // namespace
}  // namespace verdin
