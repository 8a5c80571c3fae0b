// Whole-path stream tests: WAV tracks made here, the bundled input modules, the
// equalizer, and the WAV file device as the output, checked sample for sample; and a
// sound server that dies under a stream.
#include "engine/input/InputModuleList.h"
#include "engine/output/AlsaDeviceList.h"
#include "engine/stream/Stream.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "PulseServer.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <future>
#include <set>
#include <thread>

namespace verdin {
namespace {

using test::Sine16;
using test::TempDir;

const InputModuleList& Modules() {
    static InputModuleList* modules = [] {
        auto* list = new InputModuleList;
        list->LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr);
        return list;
    }();
    return *modules;
}

std::vector<int16_t> Samples16(const std::vector<uint8_t>& bytes) {
    std::vector<int16_t> out(bytes.size() / 2);
    for (size_t i = 0; i < out.size(); ++i) out[i] = static_cast<int16_t>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
    return out;
}
std::string Wav(const TempDir& dir, const std::string& name, const std::vector<int16_t>& stereo) {
    test::WriteWav(dir.file(name), 2, 44100, 16, test::Bytes16(stereo));
    return dir.file(name);
}
std::vector<int16_t> Constant(int frames, int16_t value) { return std::vector<int16_t>(2 * size_t(frames), value); }
StreamOptions Plain() { StreamOptions o; o.crossfadeLength = 0; return o; }
std::unique_ptr<Stream> Open(const std::string& path, StreamOptions options, Stream* previous = nullptr) {
    auto stream = std::make_unique<Stream>(Modules(), options);
    EXPECT_TRUE(stream->OpenStream(path, previous)) << stream->ErrorText();
    return stream;
}
// Track 1 of a one-entry playlist titled "out": <dir>/1. out.wav
OutputTarget FileTarget(const TempDir& dir) {
    OutputTarget target;
    target.kind = OutputTarget::kWavFile, target.decodeDirectory = dir.str(), target.title = "out";
    return target;
}

// Decodes the tracks one after the other into one WAV file, each linked to the one before
// so that they share the file device, and returns the file's data bytes. Held by the
// user's pause, the first stream fills its ring and waits, so the next ones are linked
// while it plays, as the shell links them (every track but the last must be longer than
// the ring for that).
std::vector<uint8_t> DecodeChain(const TempDir& dir, const std::vector<std::string>& tracks, StreamOptions options, bool crossfade = false) {
    std::vector<std::unique_ptr<Stream>> streams;
    streams.push_back(Open(tracks.front(), options));
    streams.back()->PausePlayback();
    if (!streams.back()->StartStream(FileTarget(dir))) return ADD_FAILURE() << streams.back()->ErrorText(), std::vector<uint8_t>{};
    for (size_t i = 1; i < tracks.size(); ++i) {
        streams.push_back(Open(tracks[i], options, streams.back().get()));
        streams.back()->SetCrossfadeOnHandOver(crossfade);
        EXPECT_EQ(streams[i - 1]->NextStream(), streams[i].get()) << "track " << i << " was not linked";
    }
    streams.front()->ResumePlayback();
    for (auto& stream : streams) stream->WaitUntilFinished();
    for (size_t i = 0; i < streams.size(); ++i)
        EXPECT_TRUE(!streams[i]->Failed() && (i + 1 == streams.size() || streams[i]->HandedOverTo() == streams[i + 1].get())) << i << ": " << streams[i]->ErrorText();
    streams.clear();  // the last owner closes the device, which completes the header
    return test::WavData(dir.file("1. out.wav"));
}

TEST(StreamToFile, ConsecutiveTracksLongerThanTheRingJoinWithoutAGapThroughTheEqualizerAtZeroDecibels) {
    // Every frame comes back, the tail the equalizer holds at each track's end included.
    TempDir dir;
    const auto tone = Sine16(400001, 2, 44100, {1000.0, 5000.0}, 0.7);  // split at an arbitrary frame
    const long split = 2 * 223457;                                      // the ring holds 128000 frames
    StreamOptions options = Plain();
    options.equalizerEnabled = true;  // all gains 0 dB
    EXPECT_EQ(Samples16(DecodeChain(dir, {Wav(dir, "a.wav", {tone.begin(), tone.begin() + split}), Wav(dir, "b.wav", {tone.begin() + split, tone.end()})}, options)), tone);
}

TEST(StreamToFile, EightBitTracksStayEightBitAndThePauseIsSilenceOfItsLength) {
    TempDir dir;
    std::vector<uint8_t> pcm(5000);
    for (size_t i = 0; i < pcm.size(); ++i) pcm[i] = static_cast<uint8_t>(128 + 100 * std::sin(i * 0.05));
    test::WriteWav(dir.file("e.wav"), 1, 8000, 8, pcm);
    EXPECT_EQ(DecodeChain(dir, {dir.file("e.wav")}, Plain()), pcm);
    const auto header = test::ReadBytes(dir.file("1. out.wav"));
    EXPECT_EQ(std::pair(header[32], header[34]), std::pair(uint8_t{1}, uint8_t{8}));  // block alignment, bits
    const auto tone = Sine16(10000, 2, 44100, {440.0});
    StreamOptions options = Plain();
    options.pauseBetweenTracks = 1000;
    const auto data = DecodeChain(dir, {Wav(dir, "a.wav", tone)}, options);
    ASSERT_EQ(data.size(), tone.size() * 2 + 176400);
    EXPECT_EQ(Samples16({data.begin(), data.begin() + long(tone.size() * 2)}), tone);
    EXPECT_TRUE(std::all_of(data.begin() + long(tone.size() * 2), data.end(), [](uint8_t b) { return b == 0; }));
}

TEST(StreamToFile, ACrossfadeMixesTheNextTrackOverTheEndOfThePreviousOne) {
    TempDir dir;
    StreamOptions options = Plain();
    options.crossfadeLength = 1000;  // 44100 frames
    const int64_t aFrames = 300000, bFrames = 100000, length = 44100;
    const auto out = Samples16(DecodeChain(dir, {Wav(dir, "a.wav", Constant(aFrames, 8000)), Wav(dir, "b.wav", Constant(bFrames, -8000))}, options, true));
    ASSERT_EQ(out.size(), 2 * size_t(aFrames - length + bFrames));
    const auto frame = [&](int64_t f) { return out[size_t(2 * f)]; };
    EXPECT_EQ(frame(aFrames - length - 1), 8000);  // before the fade: the old track alone
    for (int64_t k = 0; k < length; k += 997) ASSERT_EQ(frame(aFrames - length + k), (-8000 * length + 16000 * (length - k)) / length) << k;
    EXPECT_EQ(std::pair(frame(aFrames), out.back()), std::pair(int16_t(-8000), int16_t(-8000)));  // after it: the new track alone
}

TEST(StreamToFile, LeadingSilenceIsSkippedAndTrailingSilenceCutDownToTheMargin) {
    // The device is held until the track is decoded, so the whole track is in the ring and
    // the cut reaches down to the 12000 frames that may be on their way to the sound card.
    const auto tone = Sine16(20000, 2, 44100, {440.0}, 0.5);
    const auto quiet = Constant(30000, 2);          // below the -60 dB threshold of 32
    std::vector<int16_t> pcm = Constant(30000, 0);  // longer than a decoded block
    pcm.insert(pcm.end(), tone.begin(), tone.end());
    pcm.insert(pcm.end(), quiet.begin(), quiet.end());
    const std::tuple<std::vector<int16_t>, bool, std::vector<int16_t>> cases[] = {
        {pcm, true, {tone.begin() + 2, tone.end()}},  // the tone's first frame is sin 0 = 0
        {quiet, false, Constant(12000, 2)},
    };
    for (const auto& [track, skipLeading, expected] : cases) {
        TempDir dir;
        StreamOptions options = Plain();
        options.skipSilenceInTheBeginning = skipLeading, options.skipSilenceInTheEnd = true, options.silenceLevel = -60;
        auto stream = Open(Wav(dir, "a.wav", track), options);
        stream->PausePlayback();
        ASSERT_TRUE(stream->StartStream(FileTarget(dir)));
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!(stream->EndOfTrack() && stream->FramesWritten() == int64_t(expected.size() / 2)) && std::chrono::steady_clock::now() < deadline)
            std::this_thread::yield();
        stream->ResumePlayback();
        stream->WaitUntilFinished();
        stream.reset();
        EXPECT_EQ(Samples16(test::WavData(dir.file("1. out.wav"))), expected) << (skipLeading ? "both ends" : "the end only");
    }
}

TEST(StreamToFile, ASeekGoesOnWithTheFrameItReports) {
    // Seeking while the user's pause holds the file device: the file holds whatever was
    // written before the seek (the device resumes for it), then the track from 2 s on;
    // nothing the equalizer held from before the seek plays after it.
    TempDir dir;
    const auto tone = Sine16(300000, 2, 44100, {440.0, 660.0});
    StreamOptions options = Plain();
    options.equalizerEnabled = true;  // all gains 0 dB
    auto stream = Open(Wav(dir, "a.wav", tone), options);
    stream->PausePlayback();
    ASSERT_TRUE(stream->StartStream(FileTarget(dir)));
    const int64_t ringFrames = stream->Ring().frames;
    while (stream->FramesWritten() < ringFrames / 2) std::this_thread::yield();  // the ring fills
    stream->SeekStream(2000);
    EXPECT_EQ(stream->PlayedMilliseconds(), 2000u);
    stream->ResumePlayback();
    stream->WaitUntilFinished();
    stream.reset();
    const auto out = Samples16(test::WavData(dir.file("1. out.wav")));
    const size_t tail = tone.size() - 2 * 88200;
    ASSERT_GE(out.size(), tail);
    const size_t before = out.size() - tail;
    EXPECT_LE(before, 2 * size_t(ringFrames));
    EXPECT_TRUE(std::equal(out.begin(), out.begin() + long(before), tone.begin())) << "what came before the seek";
    EXPECT_TRUE(std::equal(out.begin() + long(before), out.end(), tone.begin() + 2 * 88200)) << "what came after it";
}

TEST(StreamToFile, WhatCannotBePlayedIsNotPlayed) {
    TempDir dir, alone, empty;
    // Tracks of different formats are not linked; a next track prepared and closed again
    // before the hand-over is unlinked: the first plays alone.
    test::WriteWav(dir.file("mono.wav"), 1, 44100, 16, test::Bytes16(std::vector<int16_t>(1000, 1)));
    auto held = Open(Wav(dir, "long.wav", Constant(200000, 3)), Plain());  // longer than the ring
    held->PausePlayback();
    ASSERT_TRUE(held->StartStream(FileTarget(alone)));
    auto mono = Open(dir.file("mono.wav"), Plain(), held.get());
    EXPECT_EQ(held->NextStream(), nullptr);
    auto next = Open(Wav(dir, "a.wav", Constant(1000, 1)), Plain(), held.get());
    ASSERT_EQ(held->NextStream(), next.get());
    next.reset();
    EXPECT_EQ(held->NextStream(), nullptr);
    held->ResumePlayback();
    held->WaitUntilFinished();
    EXPECT_EQ(held->HandedOverTo(), nullptr);
    held.reset();
    EXPECT_EQ(test::WavData(alone.file("1. out.wav")).size(), 800000u);

    test::WriteFile(dir.file("x.xyz"), "not audio");
    Stream unknown(Modules(), Plain());
    EXPECT_TRUE(!unknown.OpenStream(dir.file("x.xyz"), nullptr) && unknown.Failed());
    EXPECT_EQ(unknown.ErrorText(), "\"" + dir.file("x.xyz") + "\"\nis of an unknown file format.");
    OutputTarget missing = FileTarget(dir);
    missing.decodeDirectory = dir.file("missing");
    Stream unwritable(Modules(), Plain());
    ASSERT_TRUE(unwritable.OpenStream(dir.file("a.wav"), nullptr));
    EXPECT_FALSE(unwritable.StartStream(missing));
    EXPECT_EQ(unwritable.ErrorText(), "Failed to initialize output to \"" + dir.file("missing/1. out.wav") + "\".");
    unwritable.SeekStream(500);  // no output: nothing to seek
    EXPECT_EQ(unwritable.PlayedMilliseconds(), 0u);
    Stream null(Modules(), Plain());
    ASSERT_TRUE(null.OpenStream(Stream::kNullTrack, nullptr));
    EXPECT_TRUE(null.StartStream(FileTarget(empty)));
    null.WaitUntilFinished();
    EXPECT_FALSE(null.OutputStarted() || test::FileExists(empty.file("1. out.wav")));

    // A module may report any format; one the sample path cannot carry is refused before
    // a ring is made for it.
    InputModuleList odd;
    ASSERT_EQ(odd.LoadInputModules(VERDIN_ODD_FORMAT_MODULES, nullptr), 1u);
    for (const auto& [channels, bits] : {std::pair{3, 16}, {2, 24}, {6, 8}}) {
        const std::string path = dir.file(std::to_string(channels) + "x" + std::to_string(bits) + ".odd");
        test::WriteFile(path, {char(channels), char(bits)});
        Stream refused(odd, Plain());
        EXPECT_FALSE(refused.OpenStream(path, nullptr) || refused.StartStream(FileTarget(empty)));
        EXPECT_EQ(refused.ErrorText(), "\"" + path + "\"\nhas a sample format that cannot be played (" + std::to_string(bits) +
                                           " bits, " + std::to_string(channels) + " channels).");
    }
}

TEST(StreamToFile, AContinuedStreamRunsAtThePriorityOfTheOneItContinues) {
    TempDir dir;
    StreamOptions first = Plain(), second = Plain();
    first.playerThreadPriority = 1, second.playerThreadPriority = -2;
    auto held = Open(Wav(dir, "long.wav", Constant(200000, 3)), first);  // longer than the ring
    held->PausePlayback();
    ASSERT_TRUE(held->StartStream(FileTarget(dir)));
    auto next = Open(Wav(dir, "short.wav", Constant(1000, 1)), second, held.get());
    held->ResumePlayback();
    held->WaitUntilFinished();
    next->WaitUntilFinished();
    EXPECT_EQ(held->HandedOverTo(), next.get());
    EXPECT_EQ(next->ThreadPriority(), 1);
    // Closed first, the stream that continued is no longer named by the one it continued.
    next.reset();
    EXPECT_EQ(held->HandedOverTo(), nullptr);
}

// A stream on a private sound server that dies while the stream plays.
TEST(StreamOnSoundServer, AServerThatDiesWhilePlayingEndsTheStreamWithAReason) {
    if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
    test::PulseServer server;
    ASSERT_TRUE(server.Running()) << server.Error();
    // With the server up, ALSA names a "default" of its own: the sound card list holds it once, first.
    const auto devices = ListAlsaDevices();
    std::set<std::string> names;
    for (const auto& device : devices) EXPECT_TRUE(names.insert(device.name).second) << device.name;
    EXPECT_EQ(devices.at(0).name, "default");
    TempDir dir;
    Stream stream(Modules(), StreamOptions{});
    ASSERT_TRUE(stream.OpenStream(Wav(dir, "a.wav", Sine16(441000, 2, 44100, {500.0})), nullptr)) << stream.ErrorText();
    OutputTarget target;
    target.kind = OutputTarget::kSoundServer;
    ASSERT_TRUE(stream.StartStream(target)) << stream.ErrorText();
    server.Kill();
    auto finished = std::async(std::launch::async, [&] { stream.WaitUntilFinished(); });
    ASSERT_EQ(finished.wait_for(std::chrono::seconds(10)), std::future_status::ready) << "the stream must not hang";
    EXPECT_TRUE(stream.Failed());
    EXPECT_FALSE(stream.ErrorText().empty());
}

}  // namespace
}  // namespace verdin
