// The ALSA device on a desktop with a sound server: ALSA's "default" (and "pulse") PCM
// goes to the server, here a private one whose null sink's monitor is recorded.
#include "engine/output/AlsaDevice.h"

#include "DeviceTestKit.h"
#include "PulseServer.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

using namespace std::chrono_literals;
using test::WaitUntil;

TEST(AlsaThroughPulse, AToneInTheRingComesOutOfTheServerAtItsVolume) {
    if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
    test::PulseServer server;
    ASSERT_TRUE(server.Running()) << server.Error();
    // "default" is routed to the server only when ALSA's configuration is read while the
    // server runs; this process reads it here for the first time.
    for (const auto& [pcm, volume] : {std::pair{"default", 65535}, {"pulse", 65535}, {"pulse", 16384}}) {
        SCOPED_TRACE(std::string(pcm) + " at " + std::to_string(volume));
        test::MonitorRecorder recorder(server, 44100, 2);
        ASSERT_FALSE(recorder.Failed()) << recorder.Error();
        std::vector<uint8_t> ring(44100 * 4, 0);
        const auto tone = test::StereoTone(22050, 440, 660, 0.8);
        test::CopyToRing(ring, 0, tone);
        AlsaDevice device(pcm, {44100, 2, 16}, ring.data(), static_cast<uint32_t>(ring.size()));
        ASSERT_TRUE(device.IsOpen()) << device.ErrorText();
        device.SetVolume(volume);
        device.Start();
        device.Pause();
        device.CommitFrames(22050);
        device.SetEndOfData(22050);
        device.Resume();
        ASSERT_TRUE(WaitUntil([&] { return device.PlayedOut(); }, 5s));
        EXPECT_EQ(device.GetPlayedFrames(), 22050);
        EXPECT_FALSE(device.Failed()) << device.ErrorText();
        recorder.WaitForSamples(recorder.Samples().size() + 8820 * 2, 3s);
        recorder.Stop();
        const auto heard = test::FromFirstSound(recorder.Samples());
        ASSERT_GE(heard.size(), tone.size()) << "nothing was heard";
        for (size_t i = 0; i < tone.size(); ++i) ASSERT_EQ(heard[i], tone[i] * volume / 65535) << i;
    }
}

TEST(AlsaThroughPulse, AServerThatDiesWhilePlayingNeitherHangsNorStopsTheClock) {
    if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
    test::PulseServer server;
    ASSERT_TRUE(server.Running()) << server.Error();
    std::vector<uint8_t> ring(44100 * 4, 0);
    const auto t0 = std::chrono::steady_clock::now();
    {
        AlsaDevice device("pulse", {44100, 2, 16}, ring.data(), static_cast<uint32_t>(ring.size()));
        ASSERT_TRUE(device.IsOpen()) << device.ErrorText();
        device.Start();
        device.CommitFrames(44100);
        ASSERT_TRUE(WaitUntil([&] { return device.GetPlayedFrames() > 2000; }));
        server.Kill();
        ASSERT_TRUE(WaitUntil([&] { return device.Failed(); }));
        EXPECT_NE(device.ErrorText().find("\"pulse\""), std::string::npos) << device.ErrorText();
        const int64_t before = device.GetPlayedFrames();
        EXPECT_TRUE(WaitUntil([&] { return device.GetPlayedFrames() > before + 2000; }));
        device.Pause();
        device.Stop();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - t0, 8s);
}

}  // namespace
}  // namespace verdin
