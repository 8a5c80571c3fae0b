#include "engine/analyzer/AnalyzerSnapshot.h"

#include "../equalizer/PcmPacking.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace verdin {
namespace {

using test::PackSamples;

// Interleaved frames; channel c of frame n is wave[c](n). Samples are in the format's own
// signed range (8-bit values are stored as unsigned bytes, value + 128).
template <class... Waves>
std::vector<uint8_t> Ring(size_t frames, int bits, Waves... waves) {
    std::vector<int32_t> samples;
    for (size_t n = 0; n < frames; ++n) (samples.push_back(waves(n)), ...);
    std::vector<uint8_t> ring = PackSamples(samples, bits);
    if (bits == 8)
        for (auto& b : ring) b = static_cast<uint8_t>(b + 128);
    return ring;
}

auto Cosine(double amplitude, int bin) {
    return [=](size_t n) {
        return static_cast<int32_t>(std::lround(amplitude * std::cos(2 * std::numbers::pi * bin * double(n) / 512)));
    };
}
auto Constant(int32_t v) {
    return [=](size_t) { return v; };
}

std::vector<int32_t> SpectrumOf(const AnalyzerSnapshot& s, uint32_t channel) {
    std::vector<int32_t> v(kAnalyzerValues);
    for (int i = 0; i < kAnalyzerValues; ++i) v[i] = s.GetAnalyzerValue(channel, i);
    return v;
}
std::vector<int32_t> WaveformOf(const AnalyzerSnapshot& s, uint32_t channel) {
    std::vector<int32_t> v(kAnalyzerValues);
    for (int i = 0; i < kAnalyzerValues; ++i) v[i] = s.GetWaveformValue(channel, i);
    return v;
}
bool AllZero(const std::vector<int32_t>& v) {
    return std::all_of(v.begin(), v.end(), [](int32_t x) { return x == 0; });
}

TEST(AnalyzerSnapshot, IsAllZeroUntilTakenAndAfterClear) {
    AnalyzerSnapshot s;
    for (uint32_t c = 0; c < 2; ++c) {
        EXPECT_TRUE(AllZero(SpectrumOf(s, c)));
        EXPECT_TRUE(AllZero(WaveformOf(s, c)));
    }
    const std::vector<uint8_t> ring = Ring(1024, 16, Cosine(30000, 20), Cosine(30000, 60));
    ASSERT_TRUE(s.Take(ring, 0, PcmFormat{44100, 2, 16}));
    ASSERT_FALSE(AllZero(SpectrumOf(s, 0)));
    ASSERT_FALSE(AllZero(WaveformOf(s, 1)));
    s.Clear();
    for (uint32_t c = 0; c < 2; ++c) {
        EXPECT_TRUE(AllZero(SpectrumOf(s, c)));
        EXPECT_TRUE(AllZero(WaveformOf(s, c)));
    }
}

TEST(AnalyzerSnapshot, SilenceGivesZeros) {
    for (int bits : {8, 16, 24, 32}) {
        SCOPED_TRACE(bits);
        AnalyzerSnapshot s;
        // Quiet noise below one step of the 16-bit scale still counts as silence.
        const std::vector<uint8_t> ring = Ring(600, bits, Constant(0), Constant(0));
        ASSERT_TRUE(s.TakeSpectrum(ring, 0, PcmFormat{44100, 2, uint32_t(bits)}));
        EXPECT_TRUE(AllZero(SpectrumOf(s, 0)));
        EXPECT_TRUE(AllZero(SpectrumOf(s, 1)));
    }
}

TEST(AnalyzerSnapshot, FullScaleSineClipsAt255NearItsBin) {
    // Bin 20 falls on output value 90 (4.5 values per bin). Its neighbours in the
    // spectrum are silent, so the curve reaches 255 only close to output 90.
    AnalyzerSnapshot s;
    const std::vector<uint8_t> ring = Ring(512, 16, Cosine(32767, 20));
    ASSERT_TRUE(s.TakeSpectrum(ring, 0, PcmFormat{44100, 1, 16}));
    EXPECT_EQ(s.GetAnalyzerValue(0, 90), 255);
    for (int i = 0; i < kAnalyzerValues; ++i) {
        if (i >= 86 && i <= 94) continue;
        ASSERT_LT(s.GetAnalyzerValue(0, i), 255) << i;
    }
    EXPECT_EQ(s.GetAnalyzerValue(0, 450), 0);
    EXPECT_EQ(s.GetAnalyzerValue(0, 0), 0);
}

TEST(AnalyzerSnapshot, LevelFollowsTheNaturalLogOfThePower) {
    // A cosine of amplitude A (16-bit) is A/512 after scaling; at its bin the transform
    // holds A/512 x 256 as the real part, so power = (A/2)^2.
    for (double a : {100.0, 1000.0, 6000.0}) {
        SCOPED_TRACE(a);
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.TakeSpectrum(Ring(512, 16, Cosine(a, 20)), 0, PcmFormat{44100, 1, 16}));
        const int expected = static_cast<int>(std::trunc(20 * std::log((a / 2) * (a / 2)) - 80));
        EXPECT_EQ(s.GetAnalyzerValue(0, 90), expected);  // output 90 lies exactly on bin 20
    }
}

TEST(AnalyzerSnapshot, StereoChannelsAreIndependentAndMonoFillsBoth) {
    AnalyzerSnapshot s;
    ASSERT_TRUE(s.Take(Ring(600, 16, Cosine(30000, 10), Constant(0)), 0, PcmFormat{44100, 2, 16}));
    EXPECT_EQ(s.GetAnalyzerValue(0, 45), 255);
    EXPECT_TRUE(AllZero(SpectrumOf(s, 1)));
    EXPECT_TRUE(AllZero(WaveformOf(s, 1)));
    EXPECT_FALSE(AllZero(WaveformOf(s, 0)));

    ASSERT_TRUE(s.Take(Ring(600, 16, Constant(0), Cosine(30000, 40)), 0, PcmFormat{44100, 2, 16}));
    EXPECT_TRUE(AllZero(SpectrumOf(s, 0)));
    EXPECT_EQ(s.GetAnalyzerValue(1, 180), 255);

    ASSERT_TRUE(s.Take(Ring(600, 16, Cosine(30000, 10)), 0, PcmFormat{44100, 1, 16}));
    EXPECT_EQ(SpectrumOf(s, 0), SpectrumOf(s, 1));
    EXPECT_EQ(WaveformOf(s, 0), WaveformOf(s, 1));
    EXPECT_EQ(s.GetAnalyzerValue(1, 45), 255);
}

TEST(AnalyzerSnapshot, ReadingWrapsAtTheRingsEnd) {
    // The same 600 frames, once from the ring's start and once starting 250 frames before
    // its end, give the same tables.
    const size_t ringFrames = 1000, start = 750;
    auto left = [](size_t n) { return int32_t(std::lround(20000 * std::sin(0.05 * n) + 5000 * std::cos(1.3 * n))); };
    auto right = [](size_t n) { return int32_t(std::lround(15000 * std::cos(0.4 * n))); };
    const std::vector<uint8_t> straight = Ring(ringFrames, 16, left, right);
    auto shiftedLeft = [&](size_t n) { return left((n + ringFrames - start) % ringFrames); };
    auto shiftedRight = [&](size_t n) { return right((n + ringFrames - start) % ringFrames); };
    const std::vector<uint8_t> wrapped = Ring(ringFrames, 16, shiftedLeft, shiftedRight);

    AnalyzerSnapshot a, b;
    const PcmFormat format{44100, 2, 16};
    ASSERT_TRUE(a.Take(straight, 0, format));
    ASSERT_TRUE(b.Take(wrapped, start * 4, format));
    for (uint32_t c = 0; c < 2; ++c) {
        EXPECT_EQ(SpectrumOf(a, c), SpectrumOf(b, c));
        EXPECT_EQ(WaveformOf(a, c), WaveformOf(b, c));
    }
    EXPECT_FALSE(AllZero(SpectrumOf(a, 0)));
    // A position past the end counts modulo the ring size.
    AnalyzerSnapshot c;
    ASSERT_TRUE(c.Take(wrapped, (start + 3 * ringFrames) * 4, format));
    EXPECT_EQ(WaveformOf(c, 1), WaveformOf(a, 1));
}

TEST(AnalyzerSnapshot, WaveformIsTheSampleLeftAlignedIn32Bits) {
    struct Case {
        int bits;
        int32_t sample;    // in the format's own range (8-bit: unsigned byte - 128)
        int32_t expected;  // left-aligned
    };
    const Case cases[] = {
        {16, 0x4000, 0x40000000}, {16, -1, -65536},      {16, -32768, INT32_MIN},
        {8, 0x40, 0x40000000},    {8, -128, INT32_MIN},  {8, 127, 0x7F000000},
        {24, 0x123456, 0x12345600}, {24, -8388608, INT32_MIN},
        {32, 0x12345678, 0x12345678}, {32, -5, -5},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.bits << " bits, sample " << c.sample);
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.TakeWaveform(Ring(576, c.bits, Constant(c.sample)), 0, PcmFormat{44100, 1, uint32_t(c.bits)}));
        EXPECT_EQ(s.GetWaveformValue(0, 0), c.expected);
        EXPECT_EQ(s.GetWaveformValue(1, 575), c.expected);
    }
    // What the displays take: the oscilloscope >> 21, a visualization plug-in >> 24.
    AnalyzerSnapshot s;
    ASSERT_TRUE(s.TakeWaveform(Ring(576, 16, Constant(0x4000)), 0, PcmFormat{44100, 1, 16}));
    EXPECT_EQ(s.GetWaveformValue(0, 10) >> 21, 512);
    EXPECT_EQ(s.GetWaveformValue(0, 10) >> 24, 64);
}

TEST(AnalyzerSnapshot, EveryWidthIsAnalysedFromItsTopSixteenBits) {
    // One signal in 16-bit steps, written in each width: identical spectra. Bits below
    // the top sixteen (here 0x7F / 0xFF noise) make no difference.
    auto signal = [](size_t n) { return int32_t(std::lround(9000 * std::sin(0.21 * n) + 3000 * std::cos(2.0 * n))) & ~0xFF; };
    AnalyzerSnapshot reference;
    ASSERT_TRUE(reference.TakeSpectrum(Ring(512, 16, signal), 0, PcmFormat{44100, 1, 16}));
    ASSERT_FALSE(AllZero(SpectrumOf(reference, 0)));
    struct Width {
        int bits;
        std::function<int32_t(size_t)> sample;
    };
    const Width widths[] = {
        {8, [&](size_t n) { return signal(n) >> 8; }},
        {24, [&](size_t n) { return signal(n) * 256 + int32_t(n % 2 ? 0x7F : 0); }},
        {32, [&](size_t n) { return signal(n) * 65536 + int32_t(n % 2 ? 0xFFFF : 0); }},
    };
    for (const Width& w : widths) {
        SCOPED_TRACE(w.bits);
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.TakeSpectrum(Ring(512, w.bits, w.sample), 0, PcmFormat{44100, 1, uint32_t(w.bits)}));
        EXPECT_EQ(SpectrumOf(s, 0), SpectrumOf(reference, 0));
    }
}

TEST(AnalyzerSnapshot, RefusesWhatItCannotRead) {
    const std::vector<uint8_t> ring = Ring(600, 16, Cosine(30000, 10), Cosine(30000, 10));
    struct Case {
        std::vector<uint8_t> ring;
        PcmFormat format;
    };
    const Case cases[] = {
        {{}, PcmFormat{44100, 2, 16}},
        {ring, PcmFormat{44100, 3, 16}},
        {ring, PcmFormat{44100, 0, 16}},
        {ring, PcmFormat{44100, 2, 12}},
        {ring, PcmFormat{44100, 2, 0}},
    };
    for (const Case& c : cases) {
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.Take(ring, 0, PcmFormat{44100, 2, 16}));
        EXPECT_FALSE(s.Take(c.ring, 0, c.format));
        EXPECT_TRUE(AllZero(SpectrumOf(s, 0)));
        EXPECT_TRUE(AllZero(WaveformOf(s, 0)));
    }
}

TEST(AnalyzerSnapshot, OutOfRangeQueriesGiveZero) {
    AnalyzerSnapshot s;
    ASSERT_TRUE(s.Take(Ring(600, 16, Constant(20000)), 0, PcmFormat{44100, 1, 16}));
    EXPECT_NE(s.GetWaveformValue(1, 575), 0);
    EXPECT_EQ(s.GetWaveformValue(2, 0), 0);
    EXPECT_EQ(s.GetWaveformValue(0, s.WaveformLength()), 0);
    EXPECT_EQ(s.GetAnalyzerValue(2, 0), 0);
    EXPECT_EQ(s.GetAnalyzerValue(0, 576), 0);
}

TEST(AnalyzerSnapshot, TinyRingsWrapRepeatedly) {
    // A ring of 3 frames read 576 times round: the pattern repeats every 3 values.
    AnalyzerSnapshot s;
    const std::vector<uint8_t> ring = Ring(3, 16, [](size_t n) { return int32_t(n * 1000 + 1); });
    ASSERT_TRUE(s.Take(ring, 4, PcmFormat{44100, 1, 16}));
    for (int i = 0; i < kAnalyzerValues; ++i) ASSERT_EQ(s.GetWaveformValue(0, i), int32_t(((i + 2) % 3) * 1000 + 1) << 16) << i;
}

}  // namespace
}  // namespace verdin

namespace verdin {
namespace {

TEST(AnalyzerSnapshot, TheWaveformSpansTheThirtyMillisecondsTheOscilloscopeDraws) {
    EXPECT_EQ(AnalyzerSnapshot::WaveformLengthFor(44100), 1324u);
    EXPECT_EQ(AnalyzerSnapshot::WaveformLengthFor(8000), 576u);  // never fewer than plug-ins take
    EXPECT_EQ(AnalyzerSnapshot::WaveformLengthFor(384000), AnalyzerSnapshot::kMaxWaveformValues);
    // A ramp: every frame holds its own index, so each value says which frame it came from.
    const auto ramp = [](size_t n) { return static_cast<int32_t>(n); };
    AnalyzerSnapshot s;
    const std::vector<uint8_t> ring = Ring(4000, 16, ramp);
    ASSERT_TRUE(s.TakeWaveform(ring, 100 * 2, PcmFormat{44100, 1, 16}));
    // The oscilloscope's last column at 44.1 kHz: 44100 x 95 x 30 / 96000 = 1309.
    EXPECT_EQ(s.GetWaveformValue(0, 1309), (100 + 1309) << 16);
    EXPECT_EQ(s.GetWaveformValue(1, 1323), (100 + 1323) << 16);
    EXPECT_EQ(s.GetWaveformValue(0, 1324), 0);
}

}  // namespace
}  // namespace verdin
