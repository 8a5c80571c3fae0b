#include "engine/equalizer/Equalizer.h"

#include "PcmPacking.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <numbers>
#include <random>
#include <vector>

namespace verdin {
namespace {

using test::PackSamples;
using test::SampleMax;
using test::SampleMin;
using test::UnpackSamples;

struct Format {
    int bits;
    int channels;
    uint32_t FrameBytes() const { return bits / 8 * channels; }
};

EqualizerValues Uniform(int32_t dB) {
    EqualizerValues v{};
    for (auto& g : v.gain) g = dB;
    return v;
}

std::vector<int32_t> RandomSamples(size_t count, int bits, uint32_t seed) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int64_t> d(SampleMin(bits), SampleMax(bits));
    std::vector<int32_t> s(count);
    for (auto& v : s) v = static_cast<int32_t>(d(rng));
    return s;
}

// One Process call on a copy of the block in a buffer with the promised headroom; the
// result is what the call left in pcm, cut to the returned length (read as bytes).
struct CallResult {
    uint32_t returned;
    std::vector<uint8_t> pcm;
};

CallResult Call(Equalizer& eq, const uint8_t* block, uint32_t bytes, Format f) {
    std::vector<uint8_t> pcm(bytes + Equalizer::kOutputHeadroom, 0xA5);
    std::memcpy(pcm.data(), block, bytes);
    const uint32_t r = eq.Process(pcm.data(), bytes, f.bits, f.channels);
    return {r, pcm};
}

// Feeds the input in chunks of the given frame counts (cycling) with the equalizer on,
// and returns everything it gave back, concatenated.
std::vector<uint8_t> ProcessInChunks(Equalizer& eq, const std::vector<uint8_t>& input, Format f,
                                     const std::vector<uint32_t>& chunkFrames) {
    std::vector<uint8_t> out;
    size_t at = 0;
    for (size_t i = 0; at < input.size(); ++i) {
        const uint32_t bytes = std::min<uint32_t>(chunkFrames[i % chunkFrames.size()] * f.FrameBytes(),
                                                  static_cast<uint32_t>(input.size() - at));
        const CallResult r = Call(eq, input.data() + at, bytes, f);
        EXPECT_EQ(r.returned % (Equalizer::kHopFrames * f.FrameBytes()), 0u);
        EXPECT_LE(r.returned, bytes + Equalizer::kOutputHeadroom);
        out.insert(out.end(), r.pcm.begin(), r.pcm.begin() + r.returned);
        at += bytes;
    }
    return out;
}

// Output frames after `frames` input frames with the equalizer on from the start: none
// before 512, then 256 for every hop.
size_t ExpectedOutputFrames(size_t frames) { return frames < 512 ? 0 : (frames - 256) / 256 * 256; }

// Equal, or one step toward zero: the truncation the equalizer applies.
::testing::AssertionResult SameUpToTruncation(const std::vector<int32_t>& in, const std::vector<int32_t>& out) {
    if (out.size() > in.size()) return ::testing::AssertionFailure() << "more output than input";
    for (size_t i = 0; i < out.size(); ++i) {
        const int64_t towardZero = in[i] > 0 ? in[i] - 1 : in[i] < 0 ? in[i] + 1 : 0;
        if (out[i] != in[i] && out[i] != towardZero)
            return ::testing::AssertionFailure() << "sample " << i << ": in " << in[i] << ", out " << out[i];
    }
    return ::testing::AssertionSuccess();
}

const Format kAllFormats[] = {{8, 1}, {8, 2}, {16, 1}, {16, 2}, {24, 1}, {24, 2}, {32, 1}, {32, 2}};

TEST(Equalizer, ZeroDecibelsGivesTheInputFramesBackAfterTheDelay) {
    for (const Format f : kAllFormats) {
        SCOPED_TRACE(::testing::Message() << f.bits << " bits, " << f.channels << " channels");
        Equalizer eq(true);
        ASSERT_TRUE(eq.SetEqualizerValues(EqualizerValues{}, 44100));
        const size_t frames = 5000;
        const std::vector<int32_t> in = RandomSamples(frames * f.channels, f.bits, 17);
        const std::vector<uint8_t> out = ProcessInChunks(eq, PackSamples(in, f.bits), f, {1152, 77, 4000, 511});
        ASSERT_EQ(out.size(), ExpectedOutputFrames(frames) * f.FrameBytes());
        EXPECT_TRUE(SameUpToTruncation(in, UnpackSamples(out, f.bits)));
    }
}

TEST(Equalizer, HoldsBackUntil512FramesHaveArrived) {
    const Format f{16, 2};
    Equalizer eq(true);
    const std::vector<uint8_t> in = PackSamples(RandomSamples(1024 * 2, 16, 5), 16);
    EXPECT_EQ(Call(eq, in.data(), 511 * 4, f).returned, 0u);
    // One more frame completes the first block: 256 frames come back for 4 bytes given.
    const CallResult first = Call(eq, in.data() + 511 * 4, 4, f);
    EXPECT_EQ(first.returned, 256u * 4);
    EXPECT_TRUE(SameUpToTruncation(UnpackSamples({in.begin(), in.begin() + 256 * 4}, 16),
                                   UnpackSamples({first.pcm.begin(), first.pcm.begin() + 256 * 4}, 16)));
    EXPECT_EQ(Call(eq, in.data() + 512 * 4, 255 * 4, f).returned, 0u);
    EXPECT_EQ(Call(eq, in.data() + 767 * 4, 4, f).returned, 256u * 4);
}

TEST(Equalizer, OutputDoesNotDependOnHowTheInputIsCut) {
    // Includes blocks far larger than the 32768-byte input buffer, arriving while frames
    // are held (the output then runs ahead of the input inside the same buffer).
    const Format f{16, 2};
    const std::vector<uint8_t> in = PackSamples(RandomSamples(60000 * 2, 16, 99), 16);
    const EqualizerValues values{{6, -3, 0, 4, 12, -12, 1, 0, 2, 9, -5, 3, 0, -7, 8, 2}};
    auto run = [&](const std::vector<uint32_t>& chunks) {
        Equalizer eq(true);
        eq.SetEqualizerValues(values, 44100);
        return ProcessInChunks(eq, in, f, chunks);
    };
    const std::vector<uint8_t> reference = run({1});
    ASSERT_EQ(reference.size(), ExpectedOutputFrames(60000) * 4);
    const std::vector<std::vector<uint32_t>> cuttings = {
        {300, 25600}, {511, 25602, 8191}, {8192}, {1152}, {100000}, {257, 3, 30000}};
    for (const auto& cutting : cuttings) {
        SCOPED_TRACE(::testing::Message() << "first chunk " << cutting[0] << " frames");
        EXPECT_EQ(run(cutting), reference);
    }
}

// Amplitude of the component at `bin` cycles per 512 samples over whole blocks.
double Amplitude(const std::vector<int32_t>& x, size_t from, size_t count, int bin) {
    std::complex<double> sum = 0;
    for (size_t n = 0; n < count; ++n)
        sum += double(x[from + n]) * std::polar(1.0, -2 * std::numbers::pi * bin * double(from + n) / 512);
    return 2 * std::abs(sum) / double(count);
}

struct Tone {
    int bin;
    double amplitude;
    bool sinePhase;
};

std::vector<int32_t> Tones(size_t frames, const std::vector<Tone>& tones) {
    std::vector<int32_t> x(frames);
    for (size_t n = 0; n < frames; ++n) {
        double v = 0;
        for (const Tone& t : tones) {
            const double phase = 2 * std::numbers::pi * t.bin * double(n) / 512;
            v += t.amplitude * (t.sinePhase ? std::sin(phase) : std::cos(phase));
        }
        x[n] = static_cast<int32_t>(std::lround(v));
    }
    return x;
}

TEST(Equalizer, UniformGainScalesEverySampleIncludingTheEdgeBins) {
    // The same gain on every band is a plain scale factor, for noise too, whose blocks
    // carry energy in bin 0 and bin 256 (which pair with themselves).
    for (const Format f : {Format{16, 2}, Format{24, 1}, Format{8, 1}}) {
        for (const int32_t dB : {-6, 3}) {
            SCOPED_TRACE(::testing::Message() << f.bits << " bits, " << dB << " dB");
            const double factor = std::pow(10.0, dB / 20.0);
            std::vector<int32_t> in = RandomSamples(3000 * f.channels, f.bits, 21);
            for (auto& s : in) s /= 4;  // room for +3 dB
            Equalizer eq(true);
            eq.SetEqualizerValues(Uniform(dB), 44100);
            const auto out = UnpackSamples(ProcessInChunks(eq, PackSamples(in, f.bits), f, {700}), f.bits);
            ASSERT_EQ(out.size(), ExpectedOutputFrames(3000) * f.channels);
            for (size_t i = 0; i < out.size(); ++i) ASSERT_NEAR(out[i], factor * in[i], 1.0 + 1e-9 * std::fabs(in[i])) << i;
        }
    }
}

TEST(Equalizer, BoostedBandRaisesItsToneAndLeavesOthersAlone) {
    // 44100 Hz: band 9 (2.4 kHz) at +12 dB. Its value sits at bin 19 (band 8's centre,
    // 1636 Hz) and falls to 0 dB at its own bin 27; bin 150 (12.9 kHz) is far off.
    const size_t frames = 512 * 24;
    const std::vector<int32_t> in =
        Tones(frames, {{19, 1500, false}, {27, 1500, false}, {150, 1500, false}, {5, 1500, true}});
    Equalizer eq(true);
    ASSERT_TRUE(eq.SetEqualizerValues(EqualizerValues{{0, 0, 0, 0, 0, 0, 0, 0, 0, 12}}, 44100));
    const std::vector<int32_t> out =
        UnpackSamples(ProcessInChunks(eq, PackSamples(in, 16), Format{16, 1}, {1152}), 16);
    ASSERT_GE(out.size(), 512u * 20);
    const size_t from = 512 * 2, count = 512 * 16;
    EXPECT_NEAR(Amplitude(out, from, count, 19) / Amplitude(in, from, count, 19), std::pow(10.0, 12 / 20.0), 0.01);
    EXPECT_NEAR(Amplitude(out, from, count, 27) / Amplitude(in, from, count, 27), 1.0, 0.01);
    EXPECT_NEAR(Amplitude(out, from, count, 150) / Amplitude(in, from, count, 150), 1.0, 0.01);
    EXPECT_NEAR(Amplitude(out, from, count, 5) / Amplitude(in, from, count, 5), 1.0, 0.01);
}

TEST(Equalizer, ImaginaryPartsTakeTheGainOfTheBinBelow) {
    // The mirrored half of the table is off by one: a sine-phase tone at bin 19 lives in
    // the imaginary part, scaled by gain[512-19] = gain[18] (10 dB with band 9 at +12),
    // while a cosine-phase tone is scaled by gain[19] (12 dB).
    const EqualizerValues values{{0, 0, 0, 0, 0, 0, 0, 0, 0, 12}};
    for (const auto& [sinePhase, dB] : {std::pair{false, 12.0}, std::pair{true, 10.0}}) {
        SCOPED_TRACE(sinePhase ? "sine" : "cosine");
        const std::vector<int32_t> in = Tones(512 * 12, {{19, 2000, sinePhase}});
        Equalizer eq(true);
        eq.SetEqualizerValues(values, 44100);
        const std::vector<int32_t> out =
            UnpackSamples(ProcessInChunks(eq, PackSamples(in, 16), Format{16, 1}, {4096}), 16);
        const size_t from = 512, count = 512 * 8;
        EXPECT_NEAR(Amplitude(out, from, count, 19) / Amplitude(in, from, count, 19), std::pow(10.0, dB / 20), 0.005);
    }
}

TEST(Equalizer, ClipsToEverySampleWidth) {
    // +20 dB on every band multiplies by 10: a half-scale sine must saturate at exactly
    // the format's limits and stay within one step of ten times the input elsewhere.
    for (const Format f : {Format{8, 1}, Format{16, 2}, Format{24, 1}, Format{32, 2}}) {
        SCOPED_TRACE(::testing::Message() << f.bits << " bits");
        const double amplitude = double(SampleMax(f.bits)) / 2;
        const size_t frames = 4096;
        std::vector<int32_t> in(frames * f.channels);
        for (size_t i = 0; i < in.size(); ++i)
            in[i] = static_cast<int32_t>(std::lround(amplitude * std::sin(2 * std::numbers::pi * 3 * double(i / f.channels) / 512)));
        Equalizer eq(true);
        eq.SetEqualizerValues(Uniform(20), 44100);
        const std::vector<int32_t> out = UnpackSamples(ProcessInChunks(eq, PackSamples(in, f.bits), f, {1000}), f.bits);
        ASSERT_EQ(out.size(), ExpectedOutputFrames(frames) * f.channels);
        int saturatedHigh = 0, saturatedLow = 0;
        for (size_t i = 0; i < out.size(); ++i) {
            const double ideal = 10.0 * in[i];
            if (ideal >= double(SampleMax(f.bits)) + 1) {
                ASSERT_EQ(out[i], SampleMax(f.bits)) << i;
                ++saturatedHigh;
            } else if (ideal <= double(SampleMin(f.bits)) - 1) {
                ASSERT_EQ(out[i], SampleMin(f.bits)) << i;
                ++saturatedLow;
            } else {
                ASSERT_NEAR(out[i], ideal, 1.0 + 1e-9 * std::fabs(ideal)) << i;
            }
        }
        EXPECT_GT(saturatedHigh, 0);
        EXPECT_GT(saturatedLow, 0);
    }
}

TEST(Equalizer, EightBitSamplesAreTakenAsSignedBytes) {
    // Byte 0x40 halved (-6 dB is x 0.501) becomes 0x20 when taken as signed; taken as
    // unsigned around 128 it would become 0x60. Byte 0xC0 (-64 signed) becomes 0xE0.
    for (const auto& [byte, expected] : {std::pair<uint8_t, uint8_t>{0x40, 0x20}, {0xC0, 0xE0}}) {
        Equalizer eq(true);
        eq.SetEqualizerValues(Uniform(-6), 44100);
        const std::vector<uint8_t> in(1024, byte);
        const std::vector<uint8_t> out = ProcessInChunks(eq, in, Format{8, 1}, {1024});
        ASSERT_EQ(out.size(), 768u);
        for (size_t i = 0; i < out.size(); ++i) ASSERT_EQ(out[i], expected) << i;
    }
}

TEST(Equalizer, SwitchingOffFlushesOnceAsAFrameCountThenPassesThrough) {
    const Format f{16, 2};
    const std::vector<uint8_t> in = PackSamples(RandomSamples(4000 * 2, 16, 3), 16);
    Equalizer eq(true);
    std::vector<uint8_t> out;
    size_t at = 0;
    for (int i = 0; i < 3; ++i) {  // 3000 frames in, 2560 out, 440 held
        const CallResult r = Call(eq, in.data() + at, 1000 * 4, f);
        out.insert(out.end(), r.pcm.begin(), r.pcm.begin() + r.returned);
        at += 1000 * 4;
    }
    ASSERT_EQ(out.size(), 2560u * 4);
    EXPECT_FALSE(eq.ReturnedFrameCount());

    eq.SetEqualizerEnabled(false);
    const CallResult flush = Call(eq, in.data() + at, 700 * 4, f);
    EXPECT_EQ(flush.returned, 440u + 700u);  // frames, not bytes
    EXPECT_TRUE(eq.ReturnedFrameCount()) << "the caller is told which unit it got";
    // The held frames come back as they went in, followed by the new block.
    EXPECT_TRUE(std::equal(flush.pcm.begin(), flush.pcm.begin() + 1140 * 4, in.begin() + 2560 * 4));
    at += 700 * 4;

    const CallResult passed = Call(eq, in.data() + at, 300 * 4, f);
    EXPECT_EQ(passed.returned, 300u * 4);  // bytes again
    EXPECT_FALSE(eq.ReturnedFrameCount());
    EXPECT_TRUE(std::equal(passed.pcm.begin(), passed.pcm.begin() + 300 * 4, in.begin() + at));
    // Nothing is held any more: another block passes straight through too.
    EXPECT_EQ(Call(eq, in.data(), 4, f).returned, 4u);
}

TEST(Equalizer, OffFromTheStartPassesThrough) {
    Equalizer eq(false);
    eq.SetEqualizerValues(Uniform(12), 44100);
    const std::vector<uint8_t> in = PackSamples(RandomSamples(700, 16, 8), 16);
    const CallResult r = Call(eq, in.data(), 1400, Format{16, 1});
    EXPECT_EQ(r.returned, 1400u);
    EXPECT_TRUE(std::equal(in.begin(), in.end(), r.pcm.begin()));
}

TEST(Equalizer, SwitchingOnAgainContinuesFromTheKeptBlock) {
    // Off and on again keeps the previous block: the first hop after switching on fades
    // from that stale block, so it differs from a fresh equalizer's first hop, which
    // gives its input straight back.
    const Format f{16, 1};
    const std::vector<uint8_t> a = PackSamples(Tones(1024, {{40, 8000, false}}), 16);
    const std::vector<uint8_t> b = PackSamples(Tones(1024, {{3, 8000, true}}), 16);
    Equalizer eq(true);
    ASSERT_EQ(Call(eq, a.data(), 2048, f).returned, 768u * 2);
    eq.SetEqualizerEnabled(false);
    ASSERT_EQ(Call(eq, a.data(), 2, f).returned, 257u);  // flush: 256 held + 1 frame
    eq.SetEqualizerEnabled(true);
    const CallResult resumed = Call(eq, b.data(), 1024, f);
    ASSERT_EQ(resumed.returned, 512u);

    Equalizer fresh(true);
    const CallResult first = Call(fresh, b.data(), 1024, f);
    ASSERT_EQ(first.returned, 512u);
    const auto fromFresh = UnpackSamples({first.pcm.begin(), first.pcm.begin() + 512}, 16);
    const auto fromResumed = UnpackSamples({resumed.pcm.begin(), resumed.pcm.begin() + 512}, 16);
    EXPECT_TRUE(SameUpToTruncation(UnpackSamples({b.begin(), b.begin() + 512}, 16), fromFresh));
    // At frame 0 the fade is all previous block: the kept tail of block a (frame 768 of a).
    const int32_t keptTail = UnpackSamples({a.begin() + 768 * 2, a.begin() + 769 * 2}, 16)[0];
    EXPECT_NEAR(fromResumed[0], keptTail, 1);
    EXPECT_GT(std::abs(fromResumed[0] - fromFresh[0]), 1000);
}

TEST(Equalizer, UnknownFormatsPassThroughUntouched) {
    const std::vector<uint8_t> in = PackSamples(RandomSamples(600, 16, 4), 16);
    for (const auto& [bits, channels] : {std::pair{12, 1}, {16, 3}, {0, 1}, {16, 0}, {40, 2}, {7, 1}}) {
        SCOPED_TRACE(::testing::Message() << bits << " bits, " << channels << " channels");
        Equalizer eq(true);
        std::vector<uint8_t> pcm(in.size() + Equalizer::kOutputHeadroom);
        std::copy(in.begin(), in.end(), pcm.begin());
        EXPECT_EQ(eq.Process(pcm.data(), 1200, bits, channels), 1200u);
        EXPECT_TRUE(std::equal(in.begin(), in.end(), pcm.begin()));
    }
}

TEST(Equalizer, FormatChangeDropsTheHeldFrames) {
    Equalizer eq(true);
    const std::vector<uint8_t> stereo = PackSamples(RandomSamples(300 * 2, 16, 10), 16);
    ASSERT_EQ(Call(eq, stereo.data(), 1200, Format{16, 2}).returned, 0u);
    const std::vector<int32_t> mono = RandomSamples(600, 16, 11);
    const std::vector<uint8_t> monoBytes = PackSamples(mono, 16);
    const CallResult r = Call(eq, monoBytes.data(), 1200, Format{16, 1});
    ASSERT_EQ(r.returned, 512u);  // one hop of the mono frames alone
    EXPECT_TRUE(SameUpToTruncation(mono, UnpackSamples({r.pcm.begin(), r.pcm.begin() + 512}, 16)));
}

TEST(Equalizer, NullBlockGivesNothing) {
    Equalizer eq(true);
    EXPECT_EQ(eq.Process(nullptr, 100, 16, 2), 0u);
    EXPECT_EQ(eq.Process(nullptr, 0, 16, 2), 0u);
}

TEST(Equalizer, SetValuesRefusesRateZero) {
    Equalizer eq(true);
    ASSERT_TRUE(eq.SetEqualizerValues(Uniform(-6), 44100));
    EXPECT_FALSE(eq.SetEqualizerValues(Uniform(12), 0));
    // The -6 dB table is still in force: a constant block comes out halved.
    const std::vector<uint8_t> in = PackSamples(std::vector<int32_t>(512, 1000), 16);
    const CallResult r = Call(eq, in.data(), 1024, Format{16, 1});
    ASSERT_EQ(r.returned, 512u);
    EXPECT_NEAR(UnpackSamples({r.pcm.begin(), r.pcm.begin() + 2}, 16)[0], 1000 * std::pow(10.0, -6 / 20.0), 1.0);
}

}  // namespace
}  // namespace verdin
