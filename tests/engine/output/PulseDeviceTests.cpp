// The PulseAudio device against a private server with a null sink whose monitor is
// recorded: what is committed is what is heard.
#include "engine/output/PulseConnection.h"
#include "engine/output/PulseDevice.h"

#include "DeviceTestKit.h"
#include "PulseServer.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <memory>

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
    }

    std::unique_ptr<PulseDevice> Open(int index = 0) {
        return std::make_unique<PulseDevice>(kCd, ring_.data(), static_cast<uint32_t>(ring_.size()), index, 0);
    }

    // Starts, pauses and feeds the device as a stream starting its output does, resumes,
    // records until `frames` have played out and 0.2 s more, and returns what was heard
    // from the first sound on.
    std::vector<int16_t> Heard(int64_t frames, const std::function<void(PulseDevice&)>& feed, uint32_t volume = 65535) {
        test::MonitorRecorder recorder(*server_, 44100, 2);
        EXPECT_FALSE(recorder.Failed()) << recorder.Error();
        auto device = Open();
        EXPECT_TRUE(device->IsOpen()) << device->ErrorText();
        device->SetVolume(volume);
        device->Start();
        device->Pause();
        feed(*device);
        device->Resume();
        device->SetEndOfData(frames);
        EXPECT_TRUE(WaitUntil([&] { return device->PlayedOut(); }, 5s));
        recorder.WaitForSamples(recorder.Samples().size() + 8820 * 2, 3s);
        recorder.Stop();
        return test::FromFirstSound(recorder.Samples());
    }

    std::unique_ptr<test::PulseServer> server_;
    std::vector<uint8_t> ring_ = std::vector<uint8_t>(size_t{kRingFrames} * 4, 0);
};

TEST_F(PulseDeviceTest, WhatIsCommittedIsHeardSampleForSample) {
    const auto tone = test::StereoTone(50000, 330, 550, 0.4);
    const auto oldTrack = test::StereoTone(20000, 440, 440, 0.5);
    const auto newTrack = test::StereoTone(8000, 880, 1320, 0.3);
    std::vector<int16_t> crossfaded(oldTrack.begin(), oldTrack.begin() + 32000);
    crossfaded.insert(crossfaded.end(), newTrack.begin(), newTrack.end());
    const struct {
        const char* what;
        int64_t frames;
        std::function<void(PulseDevice&)> feed;
        std::vector<int16_t> expected;
    } cases[] = {
        {"plain", 30000, [&](PulseDevice& d) { test::CopyToRing(ring_, 0, {tone.begin(), tone.begin() + 60000}); d.CommitFrames(30000); },
         {tone.begin(), tone.begin() + 60000}},
        // 40000 frames, then 10000 that run past the ring's end and on at its start, written
        // once the start has been played (the stream's room rule).
        {"wrapping", 50000, [&](PulseDevice& d) {
             test::CopyToRing(ring_, 0, {tone.begin(), tone.begin() + 88200});
             d.CommitFrames(40000);
             d.Resume();
             ASSERT_TRUE(WaitUntil([&] { return d.GetPlayedFrames() >= 6000; }, 5s));
             test::CopyToRing(ring_, 0, {tone.begin() + 88200, tone.end()});
             d.CommitFrames(10000);
         }, tone},
        // The hand-over of a 1000-frame crossfade passes -(1000 x 4), a byte count that the
        // device scales by the frame size once more: the cursor goes back 4000 frames.
        {"negative commit", 24000, [&](PulseDevice& d) {
             test::CopyToRing(ring_, 0, oldTrack);
             d.CommitFrames(20000);
             d.CommitFrames(-(1000 * 4));
             test::CopyToRing(ring_, 16000, newTrack);
             d.CommitFrames(8000);
         }, crossfaded},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto heard = Heard(c.frames, c.feed);
        ASSERT_GE(heard.size(), c.expected.size());
        EXPECT_TRUE(std::equal(c.expected.begin(), c.expected.end(), heard.begin()));
        EXPECT_TRUE(std::all_of(heard.begin() + long(c.expected.size()), heard.end(), [](int16_t s) { return s == 0; }))
            << "nothing but silence after the end";
    }
}

TEST_F(PulseDeviceTest, VolumeIsKeptInHundredthsOfADecibelAndHeard) {
    auto device = Open();
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    EXPECT_TRUE(device->CanSetVolume());
    for (const auto& [set, got] : {std::pair{0u, uint16_t(-10000)}, {65535u, uint16_t(0)}, {32768u, uint16_t(-602)}}) {
        device->SetVolume(set);
        EXPECT_EQ(device->GetVolume(), got) << set;  // the level as it is, in 16 bits
    }
    const auto tone = test::StereoTone(22050, 500, 500, 0.5);
    const auto heard = Heard(22050, [&](PulseDevice& d) { test::CopyToRing(ring_, 0, tone); d.CommitFrames(22050); }, 32768);
    ASSERT_GE(heard.size(), tone.size());
    int peak = 0;  // -6.02 dB: half the amplitude
    for (size_t i = tone.size() / 4; i < tone.size() * 3 / 4; ++i) peak = std::max(peak, std::abs(int{heard[i]}));
    EXPECT_NEAR(peak, 16384 / 2, 16384 * 0.02);
}

TEST_F(PulseDeviceTest, PositionsFollowTheServerClockHoldWhenPausedAndRestartAtZero) {
    auto device = Open();
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    device->Start();
    device->Pause();
    device->CommitFrames(static_cast<int32_t>(kRingFrames));
    device->Resume();
    ASSERT_TRUE(WaitUntil([&] { return device->GetPlayedFrames() > 2000; }));
    const auto t0 = Clock::now();
    const int64_t f0 = device->GetPlayedFrames();
    ASSERT_TRUE(WaitUntil([&] { return device->GetPlayedFrames() >= f0 + 13230; }));
    EXPECT_NEAR((device->GetPlayedFrames() - f0) / std::chrono::duration<double>(Clock::now() - t0).count(), 44100.0,
                44100.0 * 0.25);
    EXPECT_LT(device->GetPlayPosition(), ring_.size());
    EXPECT_EQ(device->GetPlayPosition() % 4, 0u);

    device->Pause();
    const int64_t held = device->GetPlayedFrames();
    ASSERT_TRUE(test::LetRealTimePass(6615));
    EXPECT_LE(device->GetPlayedFrames() - held, 441) << "at most the last timing update";
    const int64_t settled = device->GetPlayedFrames();
    ASSERT_TRUE(test::LetRealTimePass(4410));
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
    EXPECT_EQ(PulseDevice(kCd, ring_.data(), 4096, 0, 2).CooperativeLevel(), 2);
}

TEST_F(PulseDeviceTest, AServerThatDiesWhilePlayingIsReportedAndNothingHangs) {
    auto device = Open();
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    device->Start();
    device->CommitFrames(static_cast<int32_t>(kRingFrames));
    ASSERT_TRUE(WaitUntil([&] { return device->GetPlayedFrames() > 1000; }));
    server_->Kill();
    ASSERT_TRUE(WaitUntil([&] { return device->Failed(); }));
    EXPECT_NE(device->ErrorText().find("PulseAudio"), std::string::npos) << device->ErrorText();
    // The positions run on by the clock, so a stream waiting for room gets to its end.
    const int64_t before = device->GetPlayedFrames();
    EXPECT_TRUE(WaitUntil([&] { return device->GetPlayedFrames() > before + 2000; }));
    const auto t0 = Clock::now();
    device->Pause();
    device->Resume();
    device->CommitFrames(100);
    device.reset();
    EXPECT_LT(Clock::now() - t0, 2s);
}

// No server at the address, then a socket that accepts connections but never speaks (a
// hung server): opening gives up soon either way.
TEST(PulseDeviceWithoutServer, OpeningFailsSoonWhenNoServerAnswers) {
    test::TempDir dir;
    const std::string silent = dir.file("silent");
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, silent.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(fd, 4), 0);
    uint8_t ring[4096] = {};
    const char* saved = std::getenv("PULSE_SERVER");
    const std::string restore = saved ? saved : "";
    for (const std::string& server : {dir.file("no-socket-here"), silent}) {
        setenv("PULSE_SERVER", ("unix:" + server).c_str(), 1);
        const auto t0 = Clock::now();
        PulseDevice device(kCd, ring, sizeof ring, 0, 0);
        EXPECT_FALSE(device.IsOpen()) << server;
        EXPECT_FALSE(device.ErrorText().empty());
        EXPECT_LT(Clock::now() - t0, 2500ms);
        EXPECT_EQ(device.Start(), 0);  // every call is harmless on a closed device
        device.CommitFrames(10);
        EXPECT_EQ(device.GetPlayedFrames(), 0);
        EXPECT_EQ(device.GetVolume(), 0u);
    }
    EXPECT_TRUE(ListPulseDevices().empty());
    if (saved) setenv("PULSE_SERVER", restore.c_str(), 1);
    else unsetenv("PULSE_SERVER");
    close(fd);
}

}  // namespace
}  // namespace verdin
