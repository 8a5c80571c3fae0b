// The equalizer against a plain evaluation of its processing (ReferenceEqualizer.h), call
// by call, while gains change between 0 dB everywhere (where the equalizer skips the
// transforms) and real curves, and while it is switched off and on. The two may differ
// by the truncation step only.
#include "engine/equalizer/Equalizer.h"

#include "PcmPacking.h"
#include "ReferenceEqualizer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numbers>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace verdin {
namespace {

using test::GainTable;
using test::PackSamples;
using test::ReferenceEqualizer;
using test::SampleMax;
using test::UnpackSamples;

constexpr uint32_t kRate = 44100;
const EqualizerValues kFlat{};
const EqualizerValues kCurve{{9, 6, -4, 3, 12, -12, 2, 0, 5, 11, -6, 4, 1, -9, 7, 3}};
const EqualizerValues kLoud{{12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12}};

struct Step {
    uint32_t frames;
    std::optional<EqualizerValues> values;  // set before the call
    bool enabled = true;
};

struct Scenario {
    std::string name;
    int bits;
    int channels;
    std::vector<Step> steps;
};

// Tones at several bins plus noise, at a quarter of full scale: loud enough that a
// 12 dB boost clips now and then.
std::vector<int32_t> Signal(size_t frames, int bits, int channels, uint32_t seed) {
    std::mt19937 rng(seed);
    std::normal_distribution<double> noise(0, 0.05);
    const double scale = double(SampleMax(bits)) / 4;
    std::vector<int32_t> s(frames * channels);
    for (size_t n = 0; n < frames; ++n)
        for (int c = 0; c < channels; ++c) {
            const double t = double(n) / 512 * 2 * std::numbers::pi;
            const double v = 0.5 * std::sin(3 * t + c) + 0.3 * std::cos(19 * t) + 0.2 * std::sin(150.5 * t) + noise(rng);
            s[n * channels + c] = static_cast<int32_t>(std::lround(scale * v));
        }
    return s;
}

GainTable TableOf(const EqualizerValues& values) {
    GainTable table{};
    EXPECT_TRUE(ComputeEqualizerGains(values, kRate, table));
    return table;
}

void RunAgainstReference(const Scenario& s) {
    SCOPED_TRACE(s.name);
    size_t total = 0;
    for (const Step& step : s.steps) total += step.frames;
    const std::vector<int32_t> input = Signal(total, s.bits, s.channels, 7);
    const uint32_t frameBytes = s.bits / 8 * s.channels;

    Equalizer eq(true);
    ReferenceEqualizer reference(s.bits, s.channels);
    GainTable table = TableOf(kFlat);
    size_t at = 0;
    for (size_t i = 0; i < s.steps.size(); ++i) {
        const Step& step = s.steps[i];
        SCOPED_TRACE(::testing::Message() << "call " << i);
        if (step.values) {
            eq.SetEqualizerValues(*step.values, kRate);
            table = TableOf(*step.values);
        }
        eq.SetEqualizerEnabled(step.enabled);
        const std::vector<int32_t> block(input.begin() + at * s.channels, input.begin() + (at + step.frames) * s.channels);
        at += step.frames;

        std::vector<uint8_t> pcm = PackSamples(block, s.bits);
        pcm.resize(pcm.size() + Equalizer::kOutputHeadroom);
        uint32_t r = eq.Process(pcm.data(), step.frames * frameBytes, s.bits, s.channels);
        if (eq.ReturnedFrameCount()) r *= frameBytes;
        const std::vector<int32_t> got = UnpackSamples({pcm.begin(), pcm.begin() + r}, s.bits);
        const std::vector<int32_t> expected = reference.Process(block, step.enabled, table);

        ASSERT_EQ(got.size(), expected.size());
        for (size_t j = 0; j < got.size(); ++j)
            ASSERT_LE(std::llabs(int64_t{got[j]} - expected[j]), 1)
                << "frame " << j / s.channels << " of the call, channel " << j % s.channels;
    }
}

// Steps of one size with values set at chosen calls.
std::vector<Step> Calls(uint32_t frames, int count, std::vector<std::pair<int, EqualizerValues>> changes) {
    std::vector<Step> steps(count, Step{frames, std::nullopt, true});
    for (const auto& [call, values] : changes) steps[call].values = values;
    return steps;
}

TEST(EqualizerAgainstReference, RealCurvesInEveryFormat) {
    const Scenario scenarios[] = {
        {"16-bit stereo", 16, 2, Calls(1152, 8, {{0, kCurve}})},
        {"16-bit mono", 16, 1, Calls(1152, 6, {{0, kCurve}})},
        {"8-bit mono", 8, 1, Calls(1000, 5, {{0, kCurve}})},
        {"24-bit stereo, boost that clips", 24, 2, Calls(700, 6, {{0, kLoud}})},
        {"32-bit mono", 32, 1, Calls(2000, 3, {{0, kCurve}})},
        {"32-bit stereo, one block larger than the input buffer", 32, 2, Calls(9000, 2, {{0, kCurve}})},
    };
    for (const Scenario& s : scenarios) RunAgainstReference(s);
}

TEST(EqualizerAgainstReference, GainsSwitchedBetweenFlatAndRealContinueSmoothly) {
    const Scenario scenarios[] = {
        {"flat, then a curve, then flat, then a curve", 16, 2,
         Calls(1152, 12, {{3, kCurve}, {6, kFlat}, {9, kCurve}})},
        {"a curve from the start, then flat", 16, 1, Calls(1152, 6, {{0, kCurve}, {3, kFlat}})},
        {"a switch at every hop", 16, 2,
         Calls(256, 14, {{2, kCurve}, {3, kFlat}, {4, kCurve}, {5, kFlat}, {7, kLoud}, {8, kFlat}, {11, kCurve}})},
        {"a switch while frames are held, 24-bit", 24, 1, Calls(300, 12, {{2, kCurve}, {5, kFlat}, {9, kCurve}})},
        {"large blocks taken in pieces", 16, 2, Calls(20000, 3, {{1, kCurve}, {2, kFlat}})},
    };
    for (const Scenario& s : scenarios) RunAgainstReference(s);
}

TEST(EqualizerAgainstReference, SwitchedOffAndOnKeepsTheOverlapOfEitherPath) {
    auto off = [](uint32_t frames) { return Step{frames, std::nullopt, false}; };
    const Scenario scenarios[] = {
        {"flat, off, on with a curve", 16, 2,
         {{1152}, {1152}, off(500), off(500), {1152, kCurve}, {1152}, {1152}}},
        {"a curve, off, on flat", 16, 2,
         {{1152, kCurve}, {1152}, off(700), {1152, kFlat}, {1152}, {1152, kCurve}, {1152}}},
        {"flat, off, on flat", 8, 1, {{900}, {900}, off(10), {900}, {900}}},
    };
    for (const Scenario& s : scenarios) RunAgainstReference(s);
}

TEST(Equalizer, FlatGainsGiveTheInputFramesBackExactly) {
    // Not just up to truncation: at 0 dB the frames are handed back as they came, also
    // after a curve, from the second hop on (the first fades out of the curve).
    const int channels = 2;
    const std::vector<int32_t> in = Signal(8 * 1152, 16, channels, 9);
    const std::vector<uint8_t> bytes = PackSamples(in, 16);
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
        const uint32_t r = eq.Process(pcm.data(), 1152 * 4, 16, channels);
        out.insert(out.end(), pcm.begin(), pcm.begin() + r);
    }
    const size_t exactFrom = (curveFrames + 256) * 4;
    ASSERT_GT(out.size(), exactFrom + 4 * 1152 * 4);
    EXPECT_TRUE(std::equal(out.begin() + exactFrom, out.end(), bytes.begin() + exactFrom));
    // The curve did change the frames before the switch.
    EXPECT_FALSE(std::equal(out.begin(), out.begin() + curveFrames * 4, bytes.begin()));
}

}  // namespace
}  // namespace verdin
