// The analyzer's spectrum and waveform tables, read from rings made by the test.
#include "engine/analyzer/AnalyzerSnapshot.h"
#include "engine/analyzer/Spectrum.h"

#include "../equalizer/EqualizerReference.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace verdin {
namespace {

using Wave = std::function<int32_t(size_t)>;

// Interleaved frames, channel c of frame n being waves[c](n), in the format's signed range
// (8-bit samples are stored as unsigned bytes, value + 128).
std::vector<uint8_t> Ring(size_t frames, int bits, std::vector<Wave> waves) {
    std::vector<int32_t> samples;
    for (size_t n = 0; n < frames; ++n)
        for (const Wave& wave : waves) samples.push_back(wave(n));
    std::vector<uint8_t> ring = test::PackSamples(samples, bits);
    if (bits == 8)
        for (auto& b : ring) b = static_cast<uint8_t>(b + 128);
    return ring;
}
Wave Cosine(double amplitude, int bin) {
    return [=](size_t n) { return int32_t(std::lround(amplitude * std::cos(2 * std::numbers::pi * bin * double(n) / 512))); };
}
Wave Constant(int32_t v) { return [=](size_t) { return v; }; }

PcmFormat Format(int channels, int bits = 16) { return PcmFormat{44100, uint32_t(channels), uint32_t(bits)}; }
std::vector<int32_t> Spectrum(const AnalyzerSnapshot& s, uint32_t channel) {
    std::vector<int32_t> v(kAnalyzerValues);
    for (int i = 0; i < kAnalyzerValues; ++i) v[i] = s.GetAnalyzerValue(channel, i);
    return v;
}
std::vector<int32_t> Waveform(const AnalyzerSnapshot& s, uint32_t channel) {
    std::vector<int32_t> v(kAnalyzerValues);
    for (int i = 0; i < kAnalyzerValues; ++i) v[i] = s.GetWaveformValue(channel, i);
    return v;
}
bool AllZero(const std::vector<int32_t>& v) { return std::all_of(v.begin(), v.end(), [](int32_t x) { return x == 0; }); }

TEST(StretchSpectrum, PassesBinsThroughAndCurvesBetweenThemWithinTheLevels) {
    using Bins = std::array<int32_t, kSpectrumBins>;
    std::array<int32_t, kAnalyzerValues> out{};
    std::mt19937 rng(3);
    Bins bins{};
    for (auto& b : bins) b = int32_t(rng() % 256);
    StretchSpectrum(bins, out);
    for (int j = 0; j * 9 < kAnalyzerValues; ++j) ASSERT_EQ(out[9 * j], bins[2 * j]) << j;  // output i lies at bin 2i/9

    // One raised bin: output 91 lies at bin 20 + 2/9 on the cubic from (100, slope 0) to
    // (0, slope (0 - 100) / 4), which is 100 h00(t) - 25 h11(t) at t = 2/9.
    bins.fill(0);
    bins[20] = 100;
    StretchSpectrum(bins, out);
    const double t = 2.0 / 9;
    EXPECT_EQ(out[91], static_cast<int32_t>(100 * (2 * t * t * t - 3 * t * t + 1) - 25 * (t * t * t - t * t)));

    // Rising bins go on rising past the last bin (the final output, at bin 127.78, would
    // be above 255 before clipping); alternating extremes overshoot both ways and clip.
    for (int n = 0; n < kSpectrumBins; ++n) bins[n] = 2 * n;
    StretchSpectrum(bins, out);
    EXPECT_TRUE(std::is_sorted(out.begin(), out.end()));
    EXPECT_EQ(out[575], 255);
    for (int n = 0; n < kSpectrumBins; ++n) bins[n] = n % 2 ? 255 : 0;
    StretchSpectrum(bins, out);
    EXPECT_EQ(*std::min_element(out.begin(), out.end()), 0);
    EXPECT_EQ(*std::max_element(out.begin(), out.end()), 255);

    // A DC level of 1/512 has power 1: 20 ln 1 - 80 < 0 clips to 0, like silence.
    std::array<double, kHartleySize> block{};
    block.fill(1.0 / 512);
    bins.fill(9);
    ComputeSpectrumBins(block, bins);
    EXPECT_TRUE(std::all_of(bins.begin(), bins.end(), [](int32_t b) { return b == 0; }));
}

TEST(AnalyzerSnapshot, LevelIsTheLogOfThePowerAtTheBin) {
    // A cosine of amplitude A at bin 20 (output 90) has power (A/2)^2; full scale clips at
    // 255 only near output 90, its silent neighbours keep the curve below.
    for (double a : {100.0, 1000.0, 6000.0, 32767.0}) {
        SCOPED_TRACE(a);
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.TakeSpectrum(Ring(512, 16, {Cosine(a, 20)}), 0, Format(1)));
        EXPECT_EQ(s.GetAnalyzerValue(0, 90), std::min(255, static_cast<int>(20 * std::log((a / 2) * (a / 2)) - 80)));
        EXPECT_EQ(s.GetAnalyzerValue(0, 450), 0);
        for (int i = 0; i < kAnalyzerValues; ++i) ASSERT_TRUE(s.GetAnalyzerValue(0, i) < 255 || (i >= 86 && i <= 94)) << i;
    }
}

TEST(AnalyzerSnapshot, ChannelsAreIndependentMonoFillsBothAndClearEmpties) {
    AnalyzerSnapshot s;
    EXPECT_TRUE(AllZero(Spectrum(s, 0)) && AllZero(Waveform(s, 1)));  // nothing taken yet
    ASSERT_TRUE(s.Take(Ring(600, 16, {Cosine(30000, 10), Constant(0)}), 0, Format(2)));
    EXPECT_EQ(s.GetAnalyzerValue(0, 45), 255);
    EXPECT_FALSE(AllZero(Waveform(s, 0)));
    EXPECT_TRUE(AllZero(Spectrum(s, 1)) && AllZero(Waveform(s, 1)));
    ASSERT_TRUE(s.Take(Ring(600, 16, {Constant(0), Cosine(30000, 40)}), 0, Format(2)));
    EXPECT_TRUE(AllZero(Spectrum(s, 0)));
    EXPECT_EQ(s.GetAnalyzerValue(1, 180), 255);
    ASSERT_TRUE(s.Take(Ring(600, 16, {Cosine(30000, 10)}), 0, Format(1)));
    EXPECT_EQ(Spectrum(s, 0), Spectrum(s, 1));
    EXPECT_EQ(Waveform(s, 0), Waveform(s, 1));
    EXPECT_EQ(s.GetAnalyzerValue(1, 45), 255);
    s.Clear();
    EXPECT_TRUE(AllZero(Spectrum(s, 1)) && AllZero(Waveform(s, 0)));
}

TEST(AnalyzerSnapshot, ReadingWrapsAtTheRingsEnd) {
    // The same frames from the ring's start, and starting 250 frames before its end (or
    // that position plus whole rings) give the same tables.
    const size_t frames = 1000, start = 750;
    const Wave left = [](size_t n) { return int32_t(std::lround(20000 * std::sin(0.05 * n) + 5000 * std::cos(1.3 * n))); };
    const Wave right = [](size_t n) { return int32_t(std::lround(15000 * std::cos(0.4 * n))); };
    const auto shifted = [&](const Wave& w) { return Wave([&, w](size_t n) { return w((n + frames - start) % frames); }); };
    const std::vector<uint8_t> wrapped = Ring(frames, 16, {shifted(left), shifted(right)});
    AnalyzerSnapshot a, b, c;
    ASSERT_TRUE(a.Take(Ring(frames, 16, {left, right}), 0, Format(2)));
    ASSERT_TRUE(b.Take(wrapped, start * 4, Format(2)));
    ASSERT_TRUE(c.Take(wrapped, (start + 3 * frames) * 4, Format(2)));
    EXPECT_FALSE(AllZero(Spectrum(a, 0)));
    for (uint32_t ch = 0; ch < 2; ++ch) {
        EXPECT_EQ(Spectrum(a, ch), Spectrum(b, ch));
        EXPECT_EQ(Waveform(a, ch), Waveform(b, ch));
        EXPECT_EQ(Waveform(a, ch), Waveform(c, ch));
    }
    // A ring of 3 frames is read round and round.
    ASSERT_TRUE(a.Take(Ring(3, 16, {[](size_t n) { return int32_t(n * 1000 + 1); }}), 4, Format(1)));
    for (int i = 0; i < kAnalyzerValues; ++i) ASSERT_EQ(a.GetWaveformValue(0, i), int32_t(((i + 2) % 3) * 1000 + 1) << 16) << i;
}

TEST(AnalyzerSnapshot, EveryWidthGivesItsTopSixteenBitsAndTheWaveformLeftAligned) {
    // One signal in 16-bit steps in each width, with noise below the top sixteen bits:
    // identical spectra; silence is zero in every width.
    const Wave signal = [](size_t n) { return int32_t(std::lround(9000 * std::sin(0.21 * n) + 3000 * std::cos(2.0 * n))) & ~0xFF; };
    const std::pair<int, Wave> widths[] = {
        {8, [&](size_t n) { return signal(n) >> 8; }},
        {24, [&](size_t n) { return signal(n) * 256 + int32_t(n % 2 ? 0x7F : 0); }},
        {32, [&](size_t n) { return signal(n) * 65536 + int32_t(n % 2 ? 0xFFFF : 0); }},
    };
    AnalyzerSnapshot reference;
    ASSERT_TRUE(reference.TakeSpectrum(Ring(512, 16, {signal}), 0, Format(1)));
    ASSERT_FALSE(AllZero(Spectrum(reference, 0)));
    for (const auto& [bits, wave] : widths) {
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.TakeSpectrum(Ring(512, bits, {wave}), 0, Format(1, bits)));
        EXPECT_EQ(Spectrum(s, 0), Spectrum(reference, 0)) << bits;
        ASSERT_TRUE(s.TakeSpectrum(Ring(600, bits, {Constant(0), Constant(0)}), 0, Format(2, bits)));
        EXPECT_TRUE(AllZero(Spectrum(s, 0)) && AllZero(Spectrum(s, 1))) << bits;
    }
    const struct {
        int bits;
        int32_t sample, expected;
    } samples[] = {
        {16, 0x4000, 0x40000000},   {16, -1, -65536},          {16, -32768, INT32_MIN}, {8, 0x40, 0x40000000},
        {8, -128, INT32_MIN},       {8, 127, 0x7F000000},      {24, 0x123456, 0x12345600},
        {24, -8388608, INT32_MIN},  {32, 0x12345678, 0x12345678}, {32, -5, -5},
    };
    for (const auto& c : samples) {
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.TakeWaveform(Ring(576, c.bits, {Constant(c.sample)}), 0, Format(1, c.bits)));
        EXPECT_EQ(s.GetWaveformValue(0, 0), c.expected) << c.bits << " bits, " << c.sample;
        EXPECT_EQ(s.GetWaveformValue(1, 575), c.expected) << c.bits << " bits, " << c.sample;
    }
}

TEST(AnalyzerSnapshot, TheWaveformSpansTheThirtyMillisecondsTheOscilloscopeDraws) {
    EXPECT_EQ(AnalyzerSnapshot::WaveformLengthFor(44100), 1324u);
    EXPECT_EQ(AnalyzerSnapshot::WaveformLengthFor(8000), 576u);  // never fewer than plug-ins take
    EXPECT_EQ(AnalyzerSnapshot::WaveformLengthFor(384000), AnalyzerSnapshot::kMaxWaveformValues);
    AnalyzerSnapshot s;  // a ramp: each value tells which frame it came from
    ASSERT_TRUE(s.TakeWaveform(Ring(4000, 16, {[](size_t n) { return int32_t(n); }}), 100 * 2, Format(1)));
    EXPECT_EQ(s.GetWaveformValue(0, 1309), (100 + 1309) << 16);  // the last column: 44100 x 95 x 30 / 96000
    EXPECT_EQ(s.GetWaveformValue(1, 1323), (100 + 1323) << 16);
    EXPECT_EQ(s.GetWaveformValue(0, 1324), 0);
}

TEST(AnalyzerSnapshot, WhatItCannotReadGivesZeros) {
    const std::vector<uint8_t> ring = Ring(600, 16, {Cosine(30000, 10), Cosine(30000, 10)});
    const std::pair<std::vector<uint8_t>, PcmFormat> cases[] = {
        {{}, Format(2)}, {ring, Format(3)}, {ring, Format(0)}, {ring, Format(2, 12)}, {ring, Format(2, 0)},
    };
    for (const auto& [bytes, format] : cases) {
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.Take(ring, 0, Format(2)));
        EXPECT_FALSE(s.Take(bytes, 0, format));
        EXPECT_TRUE(AllZero(Spectrum(s, 0)) && AllZero(Waveform(s, 0)));
    }
    AnalyzerSnapshot s;
    ASSERT_TRUE(s.Take(Ring(600, 16, {Constant(20000)}), 0, Format(1)));
    EXPECT_NE(s.GetWaveformValue(1, 575), 0);
    for (const auto& [channel, index] : {std::pair{2u, 0u}, {0u, s.WaveformLength()}})
        EXPECT_EQ(s.GetWaveformValue(channel, index), 0);
    EXPECT_EQ(s.GetAnalyzerValue(2, 0), 0);
    EXPECT_EQ(s.GetAnalyzerValue(0, 576), 0);
}

}  // namespace
}  // namespace verdin
