// The PulseAudio device against a private server with a null sink whose monitor is
// recorded: what is committed is what is heard.
#include "engine/output/PulseConnection.h"
#include "engine/output/PulseDevice.h"

#include "PulseServer.h"
#include "TempDir.h"
#include "ToneFixtures.h"
#include "WaitUntil.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>

namespace verdin {
namespace {

using namespace std::chrono_literals;
using test::WaitUntil;
using Clock = std::chrono::steady_clock;

constexpr PcmFormat kCd{44100, 2, 16};
constexpr uint32_t kRingFrames = 44100;

class PulseDeviceTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
        server_ = std::make_unique<test::PulseServer>();
        ASSERT_TRUE(server_->Running()) << server_->Error();
        ring_.assign(size_t{kRingFrames} * 4, 0);
    }

    std::unique_ptr<PulseDevice> Open(int index = 0) {
        return std::make_unique<PulseDevice>(kCd, ring_.data(), static_cast<uint32_t>(ring_.size()),
                                             index, 0);
    }

    // Records until the device has played out `frames` and 0.2 s more, then returns the
    // recording from its first sound on (empty if nothing was heard).
    std::vector<int16_t> RecordPlayOut(test::MonitorRecorder& recorder, PulseDevice& device,
                                       int64_t frames) {
        device.SetEndOfData(frames);
        EXPECT_TRUE(WaitUntil([&] { return device.PlayedOut(); }, 5s));
        const size_t have = recorder.Samples().size();
        recorder.WaitForSamples(have + 8820 * 2, 3s);
        recorder.Stop();
        const auto samples = recorder.Samples();
        const long first = test::FirstSound(samples);
        if (first < 0) return {};
        return std::vector<int16_t>(samples.begin() + first, samples.end());
    }

    std::unique_ptr<test::PulseServer> server_;
    std::vector<uint8_t> ring_;
};

TEST_F(PulseDeviceTest, TheCommittedToneIsHeardSampleForSample) {
    test::MonitorRecorder recorder(*server_, 44100, 2);
    ASSERT_FALSE(recorder.Failed()) << recorder.Error();
    auto device = Open();
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    const auto tone = test::StereoTone(30000, 440, 660, 0.5);
    test::CopyToRing(ring_, 0, tone);
    // As a stream starts its output: start, pause, pre-fill, resume.
    device->Start();
    device->Pause();
    device->CommitFrames(30000);
    device->Resume();
    const auto heard = RecordPlayOut(recorder, *device, 30000);
    ASSERT_GE(heard.size(), tone.size());
    EXPECT_TRUE(std::equal(tone.begin(), tone.end(), heard.begin()));
    EXPECT_TRUE(std::all_of(heard.begin() + static_cast<long>(tone.size()), heard.end(),
                            [](int16_t s) { return s == 0; }))
        << "nothing but silence after the tone";
}

TEST_F(PulseDeviceTest, ACommitThatWrapsIsWrittenInTwoPieces) {
    test::MonitorRecorder recorder(*server_, 44100, 2);
    ASSERT_FALSE(recorder.Failed()) << recorder.Error();
    auto device = Open();
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    // 40000 frames, then 10000 that run past the ring's end (44100 frames) and on at its start.
    const auto tone = test::StereoTone(50000, 330, 550, 0.4);
    std::vector<int16_t> first(tone.begin(), tone.begin() + 80000);
    std::vector<int16_t> tail(tone.begin() + 80000, tone.begin() + 88200);
    std::vector<int16_t> wrapped(tone.begin() + 88200, tone.end());
    test::CopyToRing(ring_, 0, first);
    test::CopyToRing(ring_, 40000, tail);
    device->Start();
    device->Pause();
    device->CommitFrames(40000);
    device->Resume();
    // The stream's room rule: overwrite the ring's start only once it has been played.
    ASSERT_TRUE(WaitUntil([&] { return device->GetPlayedFrames() >= 6000; }, 5s));
    test::CopyToRing(ring_, 0, wrapped);
    device->CommitFrames(10000);
    const auto heard = RecordPlayOut(recorder, *device, 50000);
    ASSERT_GE(heard.size(), tone.size());
    EXPECT_TRUE(std::equal(tone.begin(), tone.end(), heard.begin()));
}

TEST_F(PulseDeviceTest, ANegativeCommitMakesTheNextBlockOverwriteWhatIsHeard) {
    test::MonitorRecorder recorder(*server_, 44100, 2);
    ASSERT_FALSE(recorder.Failed()) << recorder.Error();
    auto device = Open();
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    const auto oldTrack = test::StereoTone(20000, 440, 440, 0.5);
    const auto newTrack = test::StereoTone(8000, 880, 1320, 0.3);
    test::CopyToRing(ring_, 0, oldTrack);
    device->Start();
    device->Pause();
    device->CommitFrames(20000);
    // The hand-over of a 1000-frame crossfade passes -(1000 x 4): a byte count where
    // frames are expected, which the device scales by the frame size once more, so the
    // cursor goes back 16000 bytes = 4000 frames.
    device->CommitFrames(-(1000 * 4));
    test::CopyToRing(ring_, 16000, newTrack);
    device->CommitFrames(8000);
    device->Resume();
    const auto heard = RecordPlayOut(recorder, *device, 24000);
    std::vector<int16_t> expected(oldTrack.begin(), oldTrack.begin() + 32000);
    expected.insert(expected.end(), newTrack.begin(), newTrack.end());
    ASSERT_GE(heard.size(), expected.size());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), heard.begin()));
}

TEST_F(PulseDeviceTest, VolumeIsKeptInHundredthsOfADecibelAndHeard) {
    auto device = Open();
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    EXPECT_TRUE(device->CanSetVolume());
    struct Case {
        uint32_t set;
        uint32_t got;  // the level as it is, in 16 bits
    };
    const Case cases[] = {{0, static_cast<uint16_t>(-10000)}, {65535, 0},
                          {32768, static_cast<uint16_t>(-602)}};
    for (const Case& c : cases) {
        device->SetVolume(c.set);
        EXPECT_EQ(device->GetVolume(), c.got) << c.set;
    }

    test::MonitorRecorder recorder(*server_, 44100, 2);
    ASSERT_FALSE(recorder.Failed()) << recorder.Error();
    const auto tone = test::StereoTone(22050, 500, 500, 0.5);
    test::CopyToRing(ring_, 0, tone);
    device->SetVolume(32768);  // -6.02 dB: half the amplitude
    device->Start();
    device->Pause();
    device->CommitFrames(22050);
    device->Resume();
    const auto heard = RecordPlayOut(recorder, *device, 22050);
    ASSERT_GE(heard.size(), tone.size());
    int peak = 0;
    for (size_t i = tone.size() / 4; i < tone.size() * 3 / 4; ++i)
        peak = std::max(peak, std::abs(static_cast<int>(heard[i])));
    EXPECT_NEAR(peak, 16384 / 2, 16384 * 0.02);
}

TEST_F(PulseDeviceTest, PositionsFollowTheServerClockPauseAndRestart) {
    auto device = Open();
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    device->Start();
    device->Pause();
    device->CommitFrames(static_cast<int32_t>(kRingFrames));
    device->Resume();
    ASSERT_TRUE(WaitUntil([&] { return device->GetPlayedFrames() > 2000; }, 3s));
    const auto t0 = Clock::now();
    const int64_t f0 = device->GetPlayedFrames();
    ASSERT_TRUE(WaitUntil([&] { return device->GetPlayedFrames() >= f0 + 13230; }, 3s));
    const double seconds = std::chrono::duration<double>(Clock::now() - t0).count();
    EXPECT_NEAR((device->GetPlayedFrames() - f0) / seconds, 44100.0, 44100.0 * 0.25);
    EXPECT_LT(device->GetPlayPosition(), ring_.size());
    EXPECT_EQ(device->GetPlayPosition() % 4, 0u);

    device->Pause();
    const int64_t held = device->GetPlayedFrames();
    std::this_thread::sleep_for(150ms);  // real time passes; the count must not
    EXPECT_LE(device->GetPlayedFrames() - held, 441) << "at most the last timing update";
    const int64_t settled = device->GetPlayedFrames();
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(device->GetPlayedFrames(), settled);

    device->Stop();
    device->Start();
    EXPECT_EQ(device->GetPlayedFrames(), 0);
    EXPECT_EQ(device->GetPlayPosition(), 0u);
}

TEST_F(PulseDeviceTest, TheDeviceListStartsWithTheDefaultSink) {
    const auto sinks = ListPulseDevices();
    ASSERT_FALSE(sinks.empty());
    EXPECT_EQ(sinks[0].name, test::PulseServer::kSinkName);
    EXPECT_FALSE(sinks[0].description.empty());
    for (int index : {0, 5, -3}) {
        auto device = Open(index);
        ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
        EXPECT_EQ(device->SinkName(), sinks[0].name) << index;
    }
    PulseDevice withLevel(kCd, ring_.data(), static_cast<uint32_t>(ring_.size()), 0, 2);
    EXPECT_EQ(withLevel.CooperativeLevel(), 2);
}

TEST_F(PulseDeviceTest, AServerThatDiesWhilePlayingIsReportedAndNothingHangs) {
    auto device = Open();
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    device->Start();
    device->CommitFrames(static_cast<int32_t>(kRingFrames));
    ASSERT_TRUE(WaitUntil([&] { return device->GetPlayedFrames() > 1000; }, 3s));
    server_->Kill();
    ASSERT_TRUE(WaitUntil([&] { return device->Failed(); }, 3s));
    EXPECT_NE(device->ErrorText().find("PulseAudio"), std::string::npos) << device->ErrorText();
    // The positions run on by the clock, so a stream waiting for room gets to its end.
    const int64_t before = device->GetPlayedFrames();
    EXPECT_TRUE(WaitUntil([&] { return device->GetPlayedFrames() > before + 2000; }, 3s));
    const auto t0 = Clock::now();
    device->Pause();
    device->Resume();
    device->CommitFrames(100);
    device.reset();
    EXPECT_LT(Clock::now() - t0, 2s);
}

// Points PULSE_SERVER somewhere for one test and puts it back afterwards.
class ServerAddress {
public:
    explicit ServerAddress(const std::string& address) {
        if (const char* old = std::getenv("PULSE_SERVER")) saved_ = old;
        setenv("PULSE_SERVER", address.c_str(), 1);
    }
    ~ServerAddress() {
        if (saved_.empty()) unsetenv("PULSE_SERVER");
        else setenv("PULSE_SERVER", saved_.c_str(), 1);
    }

private:
    std::string saved_;
};

TEST(PulseDeviceWithoutServer, OpeningFailsSoonWhenNoServerAnswers) {
    test::TempDir dir;
    uint8_t ring[4096] = {};
    {
        ServerAddress nowhere("unix:" + dir.file("no-socket-here"));
        const auto t0 = Clock::now();
        PulseDevice device(kCd, ring, sizeof ring, 0, 0);
        EXPECT_FALSE(device.IsOpen());
        EXPECT_FALSE(device.ErrorText().empty());
        EXPECT_LT(Clock::now() - t0, 2500ms);
        EXPECT_TRUE(ListPulseDevices().empty());
        EXPECT_EQ(device.Start(), 0);
        device.CommitFrames(10);
        EXPECT_EQ(device.GetPlayedFrames(), 0);
        EXPECT_EQ(device.GetVolume(), 0u);
    }
    {
        // A socket that accepts connections but never speaks: a hung server.
        const std::string path = dir.file("silent");
        const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ASSERT_GE(fd, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        ASSERT_EQ(listen(fd, 4), 0);
        ServerAddress silent("unix:" + path);
        const auto t0 = Clock::now();
        PulseDevice device(kCd, ring, sizeof ring, 0, 0);
        EXPECT_FALSE(device.IsOpen());
        EXPECT_LT(Clock::now() - t0, 2500ms);
        close(fd);
    }
}

}  // namespace
}  // namespace verdin
