// The ALSA device on a desktop with a sound server: ALSA's "default" (and "pulse") PCM
// goes to the server, here a private one whose null sink's monitor is recorded.
#include "engine/output/AlsaDevice.h"

#include "DeviceTestKit.h"

namespace verdin {
namespace {

using namespace std::chrono_literals;
using test::WaitUntil;

TEST(AlsaThroughPulse, AToneIsHeardAtItsVolumeAndAServerThatDiesNeitherHangsNorStopsTheClock) {
    if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
    test::PulseServer server;
    ASSERT_TRUE(server.Running()) << server.Error();
    std::vector<uint8_t> ring(44100 * 4, 0);
    // "default" is routed to the server only when ALSA's configuration is read while the
    // server runs; this process reads it here for the first time.
    {
        const auto tone = test::StereoTone(22050, 440, 660, 0.8);
        AlsaDevice device("default", {44100, 2, 16}, ring.data(), static_cast<uint32_t>(ring.size()));
        device.SetVolume(16384);
        const auto heard = test::Heard(server, device, 22050, [&](OutputDevice& d) {
            test::CopyToRing(ring, 0, tone);
            d.CommitFrames(22050);
        });
        EXPECT_EQ(device.GetPlayedFrames(), 22050);
        EXPECT_FALSE(device.Failed()) << device.ErrorText();
        ASSERT_GE(heard.size(), tone.size()) << "nothing was heard";
        for (size_t i = 0; i < tone.size(); ++i) ASSERT_EQ(heard[i], tone[i] * 16384 / 65535) << i;
    }

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
