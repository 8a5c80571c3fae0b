// The analyzer's spectrum and waveform tables, read from rings made by the test.
#include "engine/analyzer/AnalyzerSnapshot.h"
#include "engine/analyzer/Spectrum.h"

#include "../equalizer/EqualizerReference.h"

#include <gtest/gtest.h>

#include <functional>

namespace verdin {
namespace {

using Wave = std::function<int32_t(size_t)>;
using Table = std::vector<int32_t>;

// Interleaved frames, channel c of frame n being waves[c](n), in the format's signed range
// (8-bit samples are stored as unsigned bytes, value + 128).
std::vector<uint8_t> Ring(size_t frames, int bits, std::vector<Wave> waves) {
    std::vector<int32_t> samples;
    for (size_t n = 0; n < frames; ++n)
        for (const Wave& wave : waves) samples.push_back(wave(n) + (bits == 8 ? 128 : 0));
    return test::PackSamples(samples, bits);
}
Wave Cosine(double amplitude, int bin) { return [=](size_t n) { return int32_t(std::lround(amplitude * std::cos(2 * std::numbers::pi * bin * double(n) / 512))); }; }
PcmFormat Format(int channels, int bits = 16) { return PcmFormat{44100, uint32_t(channels), uint32_t(bits)}; }
// A channel's spectrum, or its waveform.
Table Values(const AnalyzerSnapshot& s, uint32_t channel, bool waveform = false) {
    Table v(kAnalyzerValues);
    for (int i = 0; i < kAnalyzerValues; ++i) v[i] = waveform ? s.GetWaveformValue(channel, i) : s.GetAnalyzerValue(channel, i);
    return v;
}
bool Silent(const AnalyzerSnapshot& s, uint32_t channel) { return Values(s, channel) == Table(576) && Values(s, channel, true) == Table(576); }

TEST(AnalyzerSnapshot, TheSpectrumCurvesAndClipsEachChannelsLevelIsItsLogPowerAndWhatCannotBeReadIsZero) {
    // The curve between bins, one raised: outputs 90 to 94 lie at bins 20 + t (t = 2i/9 - 20) on the
    // cubic from (100, slope 0) to (0, slope (0 - 100) / 4), which is 100 h00(t) - 25 h11(t).
    std::array<int32_t, kAnalyzerValues> out{};
    std::array<int32_t, kSpectrumBins> bins{};
    bins[20] = 100;
    StretchSpectrum(bins, out);
    const auto cubic = [](double t) { return static_cast<int32_t>(100 * (2 * t * t * t - 3 * t * t + 1) - 25 * (t * t * t - t * t)); };
    for (int i = 90; i < 95; ++i) EXPECT_EQ(out[i], cubic(i * 2.0 / 9 - 20)) << i;
    // Rising bins go on rising past the last bin (the final output, at bin 127.78, would
    // be above 255 before clipping); alternating extremes overshoot both ways and clip.
    for (int n = 0; n < kSpectrumBins; ++n) bins[n] = 2 * n;
    StretchSpectrum(bins, out);
    EXPECT_TRUE(std::is_sorted(out.begin(), out.end()) && out[575] == 255);
    for (int n = 0; n < kSpectrumBins; ++n) bins[n] = n % 2 ? 255 : 0;
    StretchSpectrum(bins, out);
    EXPECT_EQ(std::pair(*std::min_element(out.begin(), out.end()), *std::max_element(out.begin(), out.end())), std::pair(0, 255));
    std::array<double, kHartleySize> block{};  // a DC level of 1/512 has power 1: 20 ln 1 - 80 < 0 clips to 0
    block.fill(1.0 / 512);
    ComputeSpectrumBins(block, bins);
    EXPECT_TRUE(std::all_of(bins.begin(), bins.end(), [](int32_t b) { return b == 0; }));
    // A cosine of amplitude A at bin 20 (output 90) has power (A/2)^2; full scale clips at
    // 255 only near output 90, its silent neighbours keep the curve below.
    for (double a : {100.0, 1000.0, 6000.0, 32767.0}) {
        SCOPED_TRACE(a);
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.Take(Ring(600, 16, {Cosine(0, 1), Cosine(a, 20)}), 0, Format(2)));
        EXPECT_EQ(s.GetAnalyzerValue(1, 90), std::min(255, static_cast<int>(20 * std::log((a / 2) * (a / 2)) - 80)));
        for (int i = 0; i < kAnalyzerValues; ++i) ASSERT_TRUE(s.GetAnalyzerValue(1, i) < 255 || (i >= 86 && i <= 94)) << i;
        EXPECT_TRUE(Silent(s, 0) && s.GetAnalyzerValue(1, 450) == 0);
    }
    AnalyzerSnapshot s;  // every value 0 before the first take and after a clear; mono fills both channels
    EXPECT_TRUE(Silent(s, 0) && Silent(s, 1));
    const std::vector<uint8_t> ring = Ring(600, 16, {Cosine(30000, 10)});
    ASSERT_TRUE(s.Take(ring, 0, Format(1)));
    EXPECT_TRUE(Values(s, 0) == Values(s, 1) && Values(s, 0, true) == Values(s, 1, true) && s.GetAnalyzerValue(1, 45) == 255);
    EXPECT_EQ(std::tuple(s.GetWaveformValue(2, 0), s.GetWaveformValue(0, s.WaveformLength()), s.GetAnalyzerValue(2, 0), s.GetAnalyzerValue(0, 576)), std::tuple(0, 0, 0, 0));
    s.Clear();
    EXPECT_TRUE(Silent(s, 0) && Silent(s, 1));
    for (const auto& [bytes, format] : {std::pair{std::vector<uint8_t>{}, Format(1)}, {ring, Format(3)}, {ring, Format(0)}, {ring, Format(1, 12)}, {ring, Format(1, 0)}}) {
        ASSERT_TRUE(s.Take(ring, 0, Format(1)));
        EXPECT_FALSE(s.Take(bytes, 0, format));
        EXPECT_TRUE(Silent(s, 0) && Silent(s, 1));
    }
}

TEST(AnalyzerSnapshot, ReadingWrapsAtTheRingsEndAndTheWaveformSpansThirtyMilliseconds) {
    // A ramp, falling in the right channel, tells which frame each value came from: 30 ms
    // from the play position (1324 values at 44.1 kHz), round the ring's end.
    const auto ramp = [](size_t shift) { return std::vector<Wave>{[=](size_t n) { return int32_t((n + shift) % 1000); },
                                                                  [=](size_t n) { return -int32_t((n + shift) % 1000); }}; };
    AnalyzerSnapshot a, b;
    for (uint32_t position : {750u, 3750u}) {  // the same position plus whole rings
        ASSERT_TRUE(a.Take(Ring(1000, 16, ramp(0)), position * 4, Format(2)));
        for (int32_t i = 0; i < 1324; ++i)
            ASSERT_EQ(std::pair(a.GetWaveformValue(0, i), a.GetWaveformValue(1, i)), std::pair((750 + i) % 1000 * 65536, (750 + i) % 1000 * -65536)) << i;
    }
    ASSERT_TRUE(b.Take(Ring(1000, 16, ramp(750)), 0, Format(2)));  // the same frames from the ring's start
    EXPECT_TRUE(Values(a, 0) == Values(b, 0) && Values(a, 1) == Values(b, 1) && Values(a, 0) != Table(576));
    ASSERT_TRUE(a.Take(Ring(3, 16, {[](size_t n) { return int32_t(n * 1000 + 1); }}), 4, Format(1)));  // a ring of 3 frames, round and round
    for (int i = 0; i < kAnalyzerValues; ++i) ASSERT_EQ(a.GetWaveformValue(0, i), int32_t(((i + 2) % 3) * 1000 + 1) << 16) << i;
    EXPECT_EQ(std::tuple(AnalyzerSnapshot::WaveformLengthFor(8000), AnalyzerSnapshot::WaveformLengthFor(384000)), std::tuple(576u, AnalyzerSnapshot::kMaxWaveformValues));
}

TEST(AnalyzerSnapshot, EveryWidthGivesItsTopSixteenBitsAndTheWaveformLeftAligned) {
    // One signal in 16-bit steps, the extremes among them, in each width, with noise below
    // the top sixteen bits: identical spectra, each sample left-aligned in the waveform.
    const Wave signal = [](size_t n) { return n < 2 ? int32_t(n ? 32512 : -32768) : int32_t(std::lround(9000 * std::sin(0.21 * n) + 3000 * std::cos(2.0 * n))) & ~0xFF; };
    const std::pair<int, Wave> widths[] = {{16, signal}, {8, [&](size_t n) { return signal(n) >> 8; }},
                                           {24, [&](size_t n) { return signal(n) * 256 + int32_t(n % 2 ? 0x7F : 0); }},
                                           {32, [&](size_t n) { return signal(n) * 65536 + int32_t(n % 2 ? 0xFFFF : 0); }}};
    Table spectrum;  // of the 16-bit signal, the first
    for (const auto& [bits, wave] : widths) {
        AnalyzerSnapshot s;
        ASSERT_TRUE(s.Take(Ring(1324, bits, {wave}), 0, Format(1, bits)));
        if (spectrum.empty()) spectrum = Values(s, 0);
        EXPECT_TRUE(Values(s, 0) == spectrum && spectrum != Table(576)) << bits;
        for (int i = 0; i < 1324; ++i) ASSERT_EQ(s.GetWaveformValue(1, i), int32_t(uint32_t(wave(i)) << (32 - bits))) << bits << " bits, " << i;
        ASSERT_TRUE(s.Take(Ring(600, bits, {Cosine(0, 1), Cosine(0, 1)}), 0, Format(2, bits)));
        EXPECT_TRUE(Silent(s, 0) && Silent(s, 1)) << bits;
    }
}

}  // namespace
}  // namespace verdin
