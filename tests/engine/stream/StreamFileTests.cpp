// Whole-path stream tests: real WAV fixtures, the bundled input modules, the equalizer,
// and the WAV file device as the output, checked sample for sample.
#include "StreamTestKit.h"

#include "engine/equalizer/Equalizer.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "TempDir.h"

#include <cmath>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace verdin {
namespace {

using test::Bytes16;
using test::DecodeChain;
using test::Samples16;
using test::Sine16;
using test::TempDir;
using test::WriteWav;

constexpr int kRate = 44100;

StreamOptions Plain() {
    StreamOptions o;
    o.pauseBetweenTracks = 0;
    o.crossfadeLength = 0;
    return o;
}

std::vector<int16_t> Constant(int frames, int16_t value) { return std::vector<int16_t>(2 * static_cast<size_t>(frames), value); }

std::string MakeWav(const TempDir& dir, const std::string& name, const std::vector<int16_t>& samples) {
    const std::string path = dir.file(name);
    WriteWav(path, 2, kRate, 16, Bytes16(samples));
    return path;
}

TEST(StreamToFile, ATrackLongerThanTheRingComesOutSampleForSample) {
    TempDir dir;
    const auto tone = Sine16(300000, 2, kRate, {440.0, 660.0});
    const auto data = DecodeChain(dir, {MakeWav(dir, "a.wav", tone)}, Plain());
    EXPECT_EQ(Samples16(data), tone);
}

TEST(StreamToFile, EightBitTracksStayEightBit) {
    TempDir dir;
    std::vector<uint8_t> pcm(5000);
    for (size_t i = 0; i < pcm.size(); ++i) pcm[i] = static_cast<uint8_t>(128 + 100 * std::sin(i * 0.05));
    const std::string path = dir.file("e.wav");
    WriteWav(path, 1, 8000, 8, pcm);
    EXPECT_EQ(DecodeChain(dir, {path}, Plain()), pcm);
    const auto file = test::ReadBytes(test::FileTargetPath(dir));
    EXPECT_EQ(file[32], 1);  // block alignment
    EXPECT_EQ(file[34], 8);  // bits
}

TEST(StreamToFile, ThePauseBetweenTracksIsSilenceOfTheExactLength) {
    TempDir dir;
    const auto tone = Sine16(10000, 2, kRate, {440.0});
    StreamOptions options = Plain();
    options.pauseBetweenTracks = 1000;
    const auto data = DecodeChain(dir, {MakeWav(dir, "a.wav", tone)}, options);
    ASSERT_EQ(data.size(), tone.size() * 2 + 176400);
    EXPECT_EQ(Samples16(std::vector<uint8_t>(data.begin(), data.begin() + static_cast<long>(tone.size() * 2))), tone);
    for (size_t i = tone.size() * 2; i < data.size(); ++i) ASSERT_EQ(data[i], 0) << i;
}

TEST(StreamToFile, ConsecutiveTracksOnOneDeviceJoinWithoutAGap) {
    TempDir dir;
    // One continuous tone split at an arbitrary frame into two tracks.
    const auto tone = Sine16(400001, 2, kRate, {1000.0});
    const size_t split = 2 * 223457;  // longer than the ring of 128000 frames
    const std::vector<int16_t> first(tone.begin(), tone.begin() + static_cast<long>(split));
    const std::vector<int16_t> second(tone.begin() + static_cast<long>(split), tone.end());
    const auto data = DecodeChain(dir, {MakeWav(dir, "a.wav", first), MakeWav(dir, "b.wav", second)}, Plain());
    EXPECT_EQ(Samples16(data), tone);
}

TEST(StreamToFile, ACrossfadeMixesTheNextTrackOverTheEndOfThePreviousOne) {
    TempDir dir;
    StreamOptions options = Plain();
    options.crossfadeLength = 1000;  // 44100 frames
    const int aFrames = 300000, bFrames = 100000;
    const auto data = DecodeChain(
        dir, {MakeWav(dir, "a.wav", Constant(aFrames, 8000)), MakeWav(dir, "b.wav", Constant(bFrames, -8000))}, options,
        true);
    const auto out = Samples16(data);
    const int64_t length = 44100;
    ASSERT_EQ(out.size(), 2 * static_cast<size_t>(aFrames - length + bFrames));
    const auto frame = [&](int64_t f) { return out[static_cast<size_t>(2 * f)]; };
    EXPECT_EQ(frame(aFrames - length - 1), 8000);  // before the fade: the old track
    for (int64_t k = 0; k < length; k += 997) {
        const int64_t r = length - k;  // remaining at frame k of the fade
        const int64_t expected = (-8000 * length + 16000 * r) / length;
        ASSERT_EQ(frame(aFrames - length + k), expected) << k;
    }
    EXPECT_EQ(frame(aFrames), -8000);  // after the fade: the new track alone
    EXPECT_EQ(out.back(), -8000);
}

TEST(StreamToFile, TracksOfDifferentFormatsAreNotLinked) {
    TempDir dir;
    const std::string a = MakeWav(dir, "a.wav", Constant(1000, 1));
    const std::string b = dir.file("b.wav");
    WriteWav(b, 1, kRate, 16, Bytes16(std::vector<int16_t>(1000, 1)));
    auto first = test::OpenTrack(a, Plain());
    ASSERT_TRUE(first->StartStream(test::FileTarget(dir)));
    auto second = test::OpenTrack(b, Plain(), first.get());
    EXPECT_EQ(first->NextStream(), nullptr);
    first->WaitUntilFinished();
    EXPECT_EQ(first->HandedOverTo(), nullptr);
}

TEST(StreamToFile, SilenceIsSkippedAtTheStartAndCutAtTheEnd) {
    TempDir dir;
    std::vector<int16_t> pcm = Constant(3000, 0);
    const auto tone = Sine16(20000, 2, kRate, {440.0}, 0.5);
    pcm.insert(pcm.end(), tone.begin(), tone.end());
    const auto tail = Constant(30000, 2);  // below the -60 dB threshold of 32
    pcm.insert(pcm.end(), tail.begin(), tail.end());
    StreamOptions options = Plain();
    options.skipSilenceInTheBeginning = true;
    options.skipSilenceInTheEnd = true;
    options.silenceLevel = -60;
    auto out = Samples16(DecodeChain(dir, {MakeWav(dir, "a.wav", pcm)}, options));
    // The tone's first frame is 0 (sin 0) on both channels: the sound starts at frame 1.
    const std::vector<int16_t> expected(tone.begin() + 2, tone.end());
    ASSERT_GE(out.size(), 2u);
    // Within the tone, quiet frames near its zero crossings stay; only the tail goes.
    while (out.size() > expected.size() && out.back() == 2) out.pop_back();
    EXPECT_EQ(out.size(), expected.size());
    EXPECT_EQ(out, expected);
}

TEST(StreamToFile, TheEqualizerAtZeroDecibelsGivesEveryFrameBackIncludingTheTail) {
    TempDir dir;
    const auto tone = Sine16(50000, 2, kRate, {440.0, 5000.0}, 0.7);
    StreamOptions options = Plain();
    options.equalizerEnabled = true;  // all gains 0 dB
    const auto out = Samples16(DecodeChain(dir, {MakeWav(dir, "a.wav", tone)}, options));
    ASSERT_EQ(out.size(), tone.size());
    for (size_t i = 0; i < tone.size(); ++i) ASSERT_LE(std::abs(out[i] - tone[i]), 1) << i;
}

TEST(StreamToFile, AnUnknownFormatAndAnUnwritableDirectoryFailWithTheirTexts) {
    TempDir dir;
    test::WriteFile(dir.file("x.xyz"), "not audio");
    Stream unknown(test::BundledModules(), Plain());
    EXPECT_FALSE(unknown.OpenStream(dir.file("x.xyz"), nullptr));
    EXPECT_TRUE(unknown.Failed());
    EXPECT_EQ(unknown.ErrorText(), "\"" + dir.file("x.xyz") + "\"\nis of an unknown file format.");

    const std::string track = MakeWav(dir, "a.wav", Constant(100, 5));
    OutputTarget target = test::FileTarget(dir);
    target.decodeDirectory = dir.file("missing");
    Stream stream(test::BundledModules(), Plain());
    ASSERT_TRUE(stream.OpenStream(track, nullptr));
    EXPECT_FALSE(stream.StartStream(target));
    EXPECT_EQ(stream.ErrorText(), "Failed to initialize output to \"" + dir.file("missing/1. out.wav") + "\".");
}

TEST(StreamToFile, TheNullTrackIsNeverPlayed) {
    TempDir dir;
    Stream stream(test::BundledModules(), Plain());
    ASSERT_TRUE(stream.OpenStream(Stream::kNullTrack, nullptr));
    EXPECT_TRUE(stream.StartStream(test::FileTarget(dir)));
    stream.WaitUntilFinished();
    EXPECT_FALSE(stream.OutputStarted());
    EXPECT_FALSE(test::FileExists(test::FileTargetPath(dir)));
}

}  // namespace
}  // namespace verdin
