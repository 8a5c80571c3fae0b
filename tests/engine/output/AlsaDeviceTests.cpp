// The ALSA device on the `null` PCM, which swallows every frame at once: the device must
// keep time by the clock there, so positions move in real time.
#include "engine/output/AlsaDevice.h"
#include "engine/output/AlsaDeviceList.h"

#include "DeviceTestKit.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

namespace verdin {
namespace {

using namespace std::chrono_literals;
using test::LetRealTimePass;
using test::WaitUntil;
using Clock = std::chrono::steady_clock;

constexpr PcmFormat kCd{44100, 2, 16};

struct NullDevice {
    explicit NullDevice(uint32_t ringFrames, PcmFormat format = kCd)
        : ring(size_t{ringFrames} * format.BytesPerFrame(), 0x11),
          device("null", format, ring.data(), static_cast<uint32_t>(ring.size())) {}
    std::vector<uint8_t> ring;
    AlsaDevice device;
};

TEST(AlsaDevice, TheListStartsWithDefaultAndUnknownDevicesStayClosed) {
    const auto list = ListAlsaDevices();
    ASSERT_FALSE(list.empty());
    EXPECT_EQ(list[0].name, "default");
    std::set<std::string> names;
    for (const auto& entry : list) EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
    EXPECT_TRUE(names.count("null"));
    EXPECT_EQ(AlsaPcmNameOf(-1), "default");
    EXPECT_EQ(AlsaPcmNameOf(0), list.size() > 1 ? std::optional(list[1].name) : std::nullopt);
    EXPECT_EQ(AlsaPcmNameOf(static_cast<int>(list.size())), std::nullopt);
    EXPECT_EQ(AlsaPcmNameOf(-2), std::nullopt);

    uint8_t ring[64] = {};
    AlsaDevice byName("verdin_no_such_pcm", kCd, ring, sizeof ring), byNumber(100000, kCd, ring, sizeof ring);
    for (AlsaDevice* closed : {&byName, &byNumber}) {
        EXPECT_FALSE(closed->IsOpen());
        EXPECT_FALSE(closed->ErrorText().empty());
        EXPECT_EQ(closed->Start(), 0);  // every call is harmless on a closed device
        closed->Pause();
        closed->CommitFrames(10);
        EXPECT_EQ(closed->GetPlayedFrames(), 0);
        EXPECT_FALSE(closed->CanSetVolume());
    }
}

TEST(AlsaDevice, PositionsMoveInRealTimeHoldWhenPausedOrStoppedAndStartAgainAtZero) {
    NullDevice d(kCd.sampleRate * 2);
    ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
    d.device.Start();
    d.device.CommitFrames(static_cast<int32_t>(kCd.sampleRate * 2));
    const auto t0 = Clock::now();
    const int64_t f0 = d.device.GetPlayedFrames();
    ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() >= f0 + 22050; }));
    const double seconds = std::chrono::duration<double>(Clock::now() - t0).count();
    EXPECT_NEAR((d.device.GetPlayedFrames() - f0) / seconds, 44100.0, 44100.0 * 0.2);
    EXPECT_LT(d.device.GetPlayPosition(), d.ring.size());
    EXPECT_EQ(d.device.GetPlayPosition() % 4, 0u);
    EXPECT_EQ(d.device.GetPlayedSeconds(), static_cast<uint64_t>(d.device.GetPlayedFrames()) / 44100);

    for (auto hold : {&AlsaDevice::Pause, &AlsaDevice::Stop}) {
        (d.device.*hold)();
        const int64_t held = d.device.GetPlayedFrames();
        ASSERT_TRUE(LetRealTimePass(6615));
        EXPECT_EQ(d.device.GetPlayedFrames(), held);
        d.device.Resume();  // goes on after a pause; does nothing after a stop
        if (hold == &AlsaDevice::Pause) {
            EXPECT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() > held + 2000; }));
        }
    }
    // As a seek does: start, pause at once, refill, resume.
    d.device.Start();
    d.device.Pause();
    EXPECT_EQ(d.device.GetPlayedFrames(), 0);
    EXPECT_EQ(d.device.GetPlayPosition(), 0u);
    d.device.CommitFrames(8820);
    d.device.Resume();
    EXPECT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() == 8820; }));
}

// The device plays what the streams committed, up to the end mark, and then falls silent
// rather than going round the ring again.
TEST(AlsaDevice, PlaysExactlyTheCommittedFrames) {
    const struct {
        const char* what;
        uint32_t ringFrames;
        std::function<void(AlsaDevice&)> feed;
        int64_t played;
    } cases[] = {
        {"starved", 8192, [](AlsaDevice& d) { d.CommitFrames(3000); }, 3000},
        {"round the ring", 8192, [](AlsaDevice& d) { for (int32_t n : {3000, 4096, 4096, 4096, 4096}) d.CommitFrames(n); },
         3000 + 4 * 4096},
        {"end mark", 44100, [](AlsaDevice& d) { d.CommitFrames(30000); d.SetEndOfData(6615); }, 6615},
        // The crossfade's hand-over passes frames x bytes per frame.
        {"negative commit", 44100, [](AlsaDevice& d) { d.CommitFrames(20000); d.CommitFrames(-5000 * 4); d.CommitFrames(1000); },
         16000},
        {"frames taken back", 44100, [](AlsaDevice& d) { d.CommitFrames(20000); d.TakeBackFrames(5000); d.CommitFrames(1000); },
         16000},
        {"no ring", 0, [](AlsaDevice& d) { d.CommitFrames(1000); }, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        NullDevice d(c.ringFrames);
        ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
        d.device.Start();
        d.device.Pause();
        c.feed(d.device);
        d.device.Resume();
        ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() >= c.played; }));
        ASSERT_TRUE(LetRealTimePass(4410));
        EXPECT_EQ(d.device.GetPlayedFrames(), c.played);
        EXPECT_EQ(d.device.GetPlayPosition(), c.ringFrames ? static_cast<uint32_t>(c.played % c.ringFrames * 4) : 0u);
        EXPECT_EQ(d.device.PlayedOut(), std::string(c.what) == "end mark");
    }
}

TEST(AlsaDevice, EveryFormatPlaysAndTheVolumeIsKeptInSixteenBits) {
    const PcmFormat formats[] = {{8000, 1, 8}, {22050, 2, 8}, {48000, 1, 16}, {96000, 2, 24}, {44100, 2, 32}};
    for (const PcmFormat& format : formats) {
        NullDevice d(format.sampleRate / 2, format);
        ASSERT_TRUE(d.device.IsOpen()) << format.bitsPerSample << ": " << d.device.ErrorText();
        EXPECT_TRUE(d.device.CanSetVolume());
        EXPECT_EQ(d.device.GetVolume(), 65535u);  // a new device plays at full volume
        d.device.SetVolume(0x12347530);           // 30000: the scaling path too
        EXPECT_EQ(d.device.GetVolume(), 30000u);
        d.device.Start();
        d.device.CommitFrames(static_cast<int32_t>(format.sampleRate / 2));
        EXPECT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() > 100; })) << format.bitsPerSample << " bit";
    }
}

TEST(AlsaDevice, ClosingWhilePlayingIsQuick) {
    const auto t0 = Clock::now();
    {
        NullDevice d(kCd.sampleRate);
        ASSERT_TRUE(d.device.IsOpen());
        d.device.Start();
        d.device.CommitFrames(static_cast<int32_t>(kCd.sampleRate));
        ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() > 0; }));
    }
    EXPECT_LT(Clock::now() - t0, 1s);
}

}  // namespace
}  // namespace verdin
