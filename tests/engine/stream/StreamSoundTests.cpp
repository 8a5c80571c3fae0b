// Streams on real sound devices: a private PulseAudio server with a null sink whose monitor
// is recorded, and the ALSA null device.
#include "StreamTestKit.h"

#include "engine/output/AlsaDeviceList.h"

#include "PcmFixtures.h"
#include "PulseServer.h"
#include "TempDir.h"

#include <chrono>
#include <cmath>
#include <future>
#include <gtest/gtest.h>
#include <numbers>
#include <thread>

namespace verdin {
namespace {

using namespace std::chrono_literals;
using test::Bytes16;
using test::TempDir;

constexpr int kRate = 44100;

std::vector<int16_t> Cosine(int frames, double frequency, double amplitude = 0.5, int offset = 0) {
    std::vector<int16_t> out(2 * static_cast<size_t>(frames));
    for (int i = 0; i < frames; ++i) {
        const double v = amplitude * 32767 * std::cos(2 * std::numbers::pi * frequency * (i + offset) / kRate);
        out[2 * static_cast<size_t>(i)] = out[2 * static_cast<size_t>(i) + 1] = static_cast<int16_t>(std::lround(v));
    }
    return out;
}

// The strength of one frequency in a stretch of the left channel (Goertzel).
double Strength(const std::vector<int16_t>& stereo, size_t firstFrame, size_t frames, double frequency) {
    const double w = 2 * std::numbers::pi * frequency / kRate;
    double s1 = 0, s2 = 0;
    for (size_t i = 0; i < frames; ++i) {
        const double s = stereo[2 * (firstFrame + i)] + 2 * std::cos(w) * s1 - s2;
        s2 = s1;
        s1 = s;
    }
    return std::sqrt(s1 * s1 + s2 * s2 - 2 * std::cos(w) * s1 * s2) / static_cast<double>(frames);
}

size_t FirstSoundFrame(const std::vector<int16_t>& stereo) {
    for (size_t i = 0; i < stereo.size(); ++i)
        if (stereo[i] != 0) return i / 2;
    return stereo.size() / 2;
}

class StreamOnSoundServer : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
        server_ = std::make_unique<test::PulseServer>();
        ASSERT_TRUE(server_->Running()) << server_->Error();
        recorder_ = std::make_unique<test::MonitorRecorder>(*server_, kRate, 2);
        ASSERT_FALSE(recorder_->Failed()) << recorder_->Error();
    }

    std::string Track(const std::string& name, const std::vector<int16_t>& samples) {
        const std::string path = dir_.file(name);
        test::WriteWav(path, 2, kRate, 16, Bytes16(samples));
        return path;
    }

    static OutputTarget ServerTarget() {
        OutputTarget target;
        target.kind = OutputTarget::kSoundServer;
        return target;
    }

    // Plays the tracks one after the other, each prepared while the one before plays, and
    // returns the recording from the first sound on.
    // ALSA's "pulse" device: the sound card output, routed to the private server.
    static OutputTarget AlsaToServerTarget() {
        OutputTarget target;
        const auto devices = ListAlsaDevices();
        for (size_t i = 0; i < devices.size(); ++i)
            if (devices[i].name == "pulse") target.soundCardDevice = static_cast<int32_t>(i) - 1;
        return target;
    }

    std::vector<int16_t> PlayChain(const std::vector<std::string>& tracks, StreamOptions options, bool crossfade,
                                   const OutputTarget& target = ServerTarget()) {
        std::vector<std::unique_ptr<Stream>> streams;
        streams.push_back(test::OpenTrack(tracks[0], options));
        EXPECT_TRUE(streams[0]->StartStream(target)) << streams[0]->ErrorText();
        for (size_t i = 1; i < tracks.size(); ++i) {
            streams.push_back(test::OpenTrack(tracks[i], options, streams[i - 1].get()));
            streams[i]->SetCrossfadeOnHandOver(crossfade);
            EXPECT_EQ(streams[i - 1]->NextStream(), streams[i].get());
        }
        for (auto& s : streams) s->WaitUntilFinished();
        for (auto& s : streams) EXPECT_FALSE(s->Failed()) << s->ErrorText();
        streams.clear();
        recorder_->Stop();
        std::vector<int16_t> heard = recorder_->Samples();
        heard.erase(heard.begin(), heard.begin() + static_cast<long>(2 * FirstSoundFrame(heard)));
        return heard;
    }

    TempDir dir_;
    std::unique_ptr<test::PulseServer> server_;
    std::unique_ptr<test::MonitorRecorder> recorder_;
};

TEST_F(StreamOnSoundServer, TwoTracksSplittingOneToneAreHeardWithoutAGapOrAClick) {
    const auto tone = Cosine(82019, 1000.0);
    const size_t split = 2 * 52019;
    const auto heard = PlayChain({Track("a.wav", {tone.begin(), tone.begin() + static_cast<long>(split)}),
                                  Track("b.wav", {tone.begin() + static_cast<long>(split), tone.end()})},
                                 StreamOptions{}, false);
    ASSERT_GE(heard.size(), tone.size());
    EXPECT_TRUE(std::equal(tone.begin(), tone.end(), heard.begin())) << "the tone must come out unchanged";
    EXPECT_TRUE(std::all_of(heard.begin() + static_cast<long>(tone.size()), heard.end(), [](int16_t s) { return s == 0; }));
}

TEST_F(StreamOnSoundServer, ThePauseBetweenTracksIsHeardAsSilenceOfItsLength) {
    StreamOptions options;
    options.pauseBetweenTracks = 500;
    const auto a = Cosine(30000, 700.0);
    const auto b = Cosine(30000, 900.0);
    const auto heard = PlayChain({Track("a.wav", a), Track("b.wav", b)}, options, false);
    ASSERT_GE(heard.size(), a.size() + 2 * 22050 + b.size());
    EXPECT_TRUE(std::equal(a.begin(), a.end(), heard.begin()));
    const auto afterA = heard.begin() + static_cast<long>(a.size());
    const size_t silence = FirstSoundFrame(std::vector<int16_t>(afterA, heard.end()));
    EXPECT_EQ(silence, 22050u);
    EXPECT_TRUE(std::equal(b.begin(), b.end(), afterA + static_cast<long>(2 * silence)));
}

// Through the sound card output (here ALSA's device routed to the server). The sound
// server output keeps the hand-over's twice-scaled negative commit, which moves its
// write cursor too far back; its own tests cover that.
TEST_F(StreamOnSoundServer, ACrossfadeIsHeardAsAMixOfBothTracks) {
    const OutputTarget target = AlsaToServerTarget();
    if (target.soundCardDevice < 0) GTEST_SKIP() << "ALSA has no pulse device (libasound2-plugins)";
    StreamOptions options;
    options.crossfadeLength = 500;  // 22050 frames
    const int aFrames = 88200, bFrames = 66150;
    const auto heard = PlayChain({Track("a.wav", Cosine(aFrames, 1000.0)), Track("b.wav", Cosine(bFrames, 3000.0))},
                                 options, true, target);
    // Only the end of the first track and the start of the second overlap.
    const size_t fade = 22050;
    ASSERT_GE(heard.size() / 2, aFrames - fade + bFrames);
    const size_t window = 4410;
    const auto at = [&](size_t first, double f) { return Strength(heard, first, window, f); };
    EXPECT_GT(at(20000, 1000.0), 5000.0);
    EXPECT_LT(at(20000, 3000.0), 100.0);
    const size_t middle = aFrames - fade + fade / 2 - window / 2;
    EXPECT_GT(at(middle, 1000.0), 2000.0);
    EXPECT_GT(at(middle, 3000.0), 2000.0);
    EXPECT_LT(at(aFrames + 10000, 1000.0), 100.0);
    EXPECT_GT(at(aFrames + 10000, 3000.0), 4000.0);
    // The mix took the place of the overlap: the whole is shorter by the fade (22050
    // frames). A very busy machine may make the sound card path insert a few milliseconds
    // of silence when it cannot keep up; that is allowed for, the missing fade is not.
    const size_t lastSound = [&] {
        size_t last = 0;
        for (size_t i = 0; i < heard.size(); ++i)
            if (heard[i] != 0) last = i / 2;
        return last;
    }();
    EXPECT_NEAR(static_cast<double>(lastSound + 1), static_cast<double>(aFrames - fade + bFrames), 5000.0);
}

TEST_F(StreamOnSoundServer, AServerThatDiesWhilePlayingEndsTheStreamWithAReason) {
    auto stream = test::OpenTrack(Track("a.wav", Cosine(441000, 500.0)), StreamOptions{});
    ASSERT_TRUE(stream->StartStream(ServerTarget())) << stream->ErrorText();
    recorder_->Stop();
    server_->Kill();
    auto finished = std::async(std::launch::async, [&] { stream->WaitUntilFinished(); });
    ASSERT_EQ(finished.wait_for(10s), std::future_status::ready) << "the stream must not hang";
    EXPECT_TRUE(stream->Failed());
    EXPECT_FALSE(stream->ErrorText().empty());
}

// The ALSA null device plays in real time and keeps nothing.
class StreamOnAlsaNull : public ::testing::Test {
protected:
    void SetUp() override {
        const auto devices = ListAlsaDevices();
        for (size_t i = 0; i < devices.size(); ++i)
            if (devices[i].name == "null") target_.soundCardDevice = static_cast<int32_t>(i) - 1;
        ASSERT_GE(target_.soundCardDevice, 0) << "the null PCM is not listed";
        options_.bufferPrefill = 10;
        test::WriteWav(dir_.file("t.wav"), 2, kRate, 16, Bytes16(Cosine(5 * kRate, 440.0)));
    }

    template <typename Predicate>
    static bool WaitFor(Predicate done, std::chrono::milliseconds limit) {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!done()) {
            if (std::chrono::steady_clock::now() > end) return false;
            std::this_thread::sleep_for(5ms);
        }
        return true;
    }

    TempDir dir_;
    OutputTarget target_;
    StreamOptions options_;
};

TEST_F(StreamOnAlsaNull, PlaysPausesResumesSeeksAndStopsAtOnce) {
    auto stream = test::OpenTrack(dir_.file("t.wav"), options_);
    ASSERT_TRUE(stream->StartStream(target_)) << stream->ErrorText();
    ASSERT_TRUE(WaitFor([&] { return stream->PlayedMilliseconds() >= 200; }, 5s));

    stream->PausePlayback();
    const uint32_t held = stream->PlayedMilliseconds();
    std::this_thread::sleep_for(150ms);
    EXPECT_LE(stream->PlayedMilliseconds(), held + 30) << "a paused device holds its position";
    stream->ResumePlayback();
    ASSERT_TRUE(WaitFor([&] { return stream->PlayedMilliseconds() >= held + 100; }, 5s));

    stream->SeekStream(3000);
    EXPECT_GE(stream->PlayedMilliseconds(), 3000u);
    ASSERT_TRUE(WaitFor([&] { return stream->PlayedMilliseconds() >= 3100; }, 5s));
    EXPECT_LT(stream->PlayedMilliseconds(), 4500u);

    stream->PausePlayback();
    const auto before = std::chrono::steady_clock::now();
    stream->CloseStream();
    EXPECT_LT(std::chrono::steady_clock::now() - before, 1s) << "a stop does not wait for a paused device";
}

TEST_F(StreamOnAlsaNull, ATrackShorterThanThePrefillLevelIsStillPlayedToItsEnd) {
    options_.bufferPrefill = 100;
    test::WriteWav(dir_.file("short.wav"), 2, kRate, 16, Bytes16(Cosine(kRate / 4, 440.0)));
    auto stream = test::OpenTrack(dir_.file("short.wav"), options_);
    ASSERT_TRUE(stream->StartStream(target_)) << stream->ErrorText();
    const auto start = std::chrono::steady_clock::now();
    stream->WaitUntilFinished();
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_GE(took, 200ms) << "the stream ends only when its quarter second has been heard";
    EXPECT_GE(stream->PlayedMilliseconds(), 240u);
}

}  // namespace
}  // namespace verdin
