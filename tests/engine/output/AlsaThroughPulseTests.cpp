// The ALSA device on a desktop with a sound server: ALSA's "default" (and "pulse") PCM
// goes to the server, here a private one whose null sink's monitor is recorded.
#include "engine/output/AlsaDevice.h"

#include "PulseServer.h"
#include "ToneFixtures.h"
#include "WaitUntil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace verdin {
namespace {

using namespace std::chrono_literals;
using test::WaitUntil;

TEST(AlsaThroughPulse, AToneInTheRingComesOutOfTheServer) {
    if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
    test::PulseServer server;
    ASSERT_TRUE(server.Running()) << server.Error();
    // "default" is routed to the server only when ALSA's configuration is read while the
    // server runs; this process reads it here for the first time.
    for (const char* pcm : {"default", "pulse"}) {
        SCOPED_TRACE(pcm);
        test::MonitorRecorder recorder(server, 44100, 2);
        ASSERT_FALSE(recorder.Failed()) << recorder.Error();
        std::vector<uint8_t> ring(44100 * 4, 0);
        const auto tone = test::StereoTone(22050, 440, 660, 0.5);
        test::CopyToRing(ring, 0, tone);
        AlsaDevice device(pcm, {44100, 2, 16}, ring.data(), static_cast<uint32_t>(ring.size()));
        ASSERT_TRUE(device.IsOpen()) << device.ErrorText();
        device.Start();
        device.Pause();
        device.CommitFrames(22050);
        device.SetEndOfData(22050);
        device.Resume();
        ASSERT_TRUE(WaitUntil([&] { return device.PlayedOut(); }, 5s));
        EXPECT_EQ(device.GetPlayedFrames(), 22050);
        EXPECT_FALSE(device.Failed()) << device.ErrorText();
        const size_t have = recorder.Samples().size();
        recorder.WaitForSamples(have + 8820 * 2, 3s);
        recorder.Stop();
        const auto samples = recorder.Samples();
        const long first = test::FirstSound(samples);
        ASSERT_GE(first, 0) << "nothing was heard";
        ASSERT_GE(samples.size() - static_cast<size_t>(first), tone.size());
        EXPECT_TRUE(std::equal(tone.begin(), tone.end(), samples.begin() + first));
    }
}

TEST(AlsaThroughPulse, SoftwareVolumeIsHeard) {
    if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
    test::PulseServer server;
    ASSERT_TRUE(server.Running()) << server.Error();
    test::MonitorRecorder recorder(server, 44100, 2);
    ASSERT_FALSE(recorder.Failed()) << recorder.Error();
    std::vector<uint8_t> ring(44100 * 4, 0);
    const auto tone = test::StereoTone(22050, 300, 300, 0.8);
    test::CopyToRing(ring, 0, tone);
    AlsaDevice device("pulse", {44100, 2, 16}, ring.data(), static_cast<uint32_t>(ring.size()));
    ASSERT_TRUE(device.IsOpen()) << device.ErrorText();
    device.SetVolume(16384);  // a quarter
    device.Start();
    device.CommitFrames(22050);
    device.SetEndOfData(22050);
    ASSERT_TRUE(WaitUntil([&] { return device.PlayedOut(); }, 5s));
    const size_t have = recorder.Samples().size();
    recorder.WaitForSamples(have + 8820 * 2, 3s);
    recorder.Stop();
    const auto samples = recorder.Samples();
    const long first = test::FirstSound(samples);
    ASSERT_GE(first, 0);
    ASSERT_GE(samples.size() - static_cast<size_t>(first), tone.size());
    for (size_t i = 0; i < tone.size(); ++i)
        ASSERT_EQ(samples[static_cast<size_t>(first) + i], tone[i] * 16384 / 65535) << i;
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
        ASSERT_TRUE(WaitUntil([&] { return device.GetPlayedFrames() > 2000; }, 3s));
        server.Kill();
        ASSERT_TRUE(WaitUntil([&] { return device.Failed(); }, 3s));
        EXPECT_NE(device.ErrorText().find("\"pulse\""), std::string::npos) << device.ErrorText();
        const int64_t before = device.GetPlayedFrames();
        EXPECT_TRUE(WaitUntil([&] { return device.GetPlayedFrames() > before + 2000; }, 3s));
        device.Pause();
        device.Stop();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - t0, 8s);
}

}  // namespace
}  // namespace verdin
