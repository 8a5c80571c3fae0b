// The ALSA device on the `null` PCM, which swallows every frame at once: the device must
// keep time by the clock there, so positions move in real time.
#include "engine/output/AlsaDevice.h"
#include "engine/output/AlsaDeviceList.h"

#include "WaitUntil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <thread>
#include <vector>

namespace verdin {
namespace {

using namespace std::chrono_literals;
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

TEST(AlsaDeviceList, DefaultComesFirstAndNamesAreUnique) {
    const auto list = ListAlsaDevices();
    ASSERT_FALSE(list.empty());
    EXPECT_EQ(list[0].name, "default");
    std::set<std::string> names;
    for (const auto& entry : list) EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
    EXPECT_TRUE(names.count("null")) << "the null PCM is always listed";
    EXPECT_EQ(AlsaPcmNameOf(-1), "default");
    EXPECT_EQ(AlsaPcmNameOf(0), list.size() > 1 ? std::optional(list[1].name) : std::nullopt);
    EXPECT_EQ(AlsaPcmNameOf(static_cast<int>(list.size())), std::nullopt);
    EXPECT_EQ(AlsaPcmNameOf(-2), std::nullopt);
}

TEST(AlsaDevice, AnUnknownDeviceStaysClosedWithAReason) {
    uint8_t ring[64] = {};
    AlsaDevice byName("verdin_no_such_pcm", kCd, ring, sizeof ring);
    EXPECT_FALSE(byName.IsOpen());
    EXPECT_FALSE(byName.ErrorText().empty());
    EXPECT_EQ(byName.Start(), 0);  // harmless on a closed device
    byName.Pause();
    byName.CommitFrames(10);
    EXPECT_EQ(byName.GetPlayedFrames(), 0);
    EXPECT_EQ(byName.GetPlayPosition(), 0u);
    EXPECT_FALSE(byName.CanSetVolume());

    AlsaDevice byNumber(100000, kCd, ring, sizeof ring);
    EXPECT_FALSE(byNumber.IsOpen());
    EXPECT_FALSE(byNumber.ErrorText().empty());
}

TEST(AlsaDevice, PositionsAdvanceInRealTime) {
    NullDevice d(kCd.sampleRate * 2);
    ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
    EXPECT_EQ(d.device.Start(), 0);
    d.device.CommitFrames(static_cast<int32_t>(kCd.sampleRate * 2));
    const auto t0 = Clock::now();
    const int64_t f0 = d.device.GetPlayedFrames();
    ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() >= f0 + 22050; }, 3s));
    const auto t1 = Clock::now();
    const int64_t f1 = d.device.GetPlayedFrames();
    const double seconds = std::chrono::duration<double>(t1 - t0).count();
    const double rate = static_cast<double>(f1 - f0) / seconds;
    EXPECT_NEAR(rate, 44100.0, 44100.0 * 0.2) << f1 - f0 << " frames in " << seconds << " s";
    const uint32_t position = d.device.GetPlayPosition();
    EXPECT_LT(position, d.ring.size());
    EXPECT_EQ(position % 4, 0u);
    EXPECT_EQ(d.device.GetPlayedSeconds(), static_cast<uint64_t>(d.device.GetPlayedFrames()) / 44100);
}

TEST(AlsaDevice, PauseHoldsThePositionAndResumeGoesOn) {
    NullDevice d(kCd.sampleRate);
    ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
    d.device.Start();
    d.device.CommitFrames(static_cast<int32_t>(kCd.sampleRate));
    ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() > 2000; }, 3s));
    d.device.Pause();
    const int64_t held = d.device.GetPlayedFrames();
    std::this_thread::sleep_for(150ms);  // real time passes; the count must not
    EXPECT_EQ(d.device.GetPlayedFrames(), held);
    d.device.Resume();
    EXPECT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() > held + 2000; }, 3s));
}

TEST(AlsaDevice, StopAndStartBeginAgainAtZero) {
    NullDevice d(kCd.sampleRate);
    ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
    d.device.Start();
    d.device.CommitFrames(static_cast<int32_t>(kCd.sampleRate));
    ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() > 4410; }, 3s));
    d.device.Stop();
    const int64_t stopped = d.device.GetPlayedFrames();
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(d.device.GetPlayedFrames(), stopped);
    d.device.Start();
    // As a seek does: start, pause at once, refill, resume.
    d.device.Pause();
    EXPECT_EQ(d.device.GetPlayedFrames(), 0);
    EXPECT_EQ(d.device.GetPlayPosition(), 0u);
    d.device.CommitFrames(8820);
    d.device.Resume();
    EXPECT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() == 8820; }, 3s));
}

TEST(AlsaDevice, PlaysOutToTheEndMarkAndNoFurther) {
    NullDevice d(kCd.sampleRate);
    ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
    d.device.Start();
    d.device.CommitFrames(30000);
    d.device.SetEndOfData(6615);  // the last stream wrote 0.15 s
    EXPECT_FALSE(d.device.PlayedOut());
    ASSERT_TRUE(WaitUntil([&] { return d.device.PlayedOut(); }, 3s));
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(d.device.GetPlayedFrames(), 6615);
}

TEST(AlsaDevice, AStarvedDeviceWaitsForCommitsInsteadOfReplayingTheRing) {
    NullDevice d(8192);
    ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
    d.device.Start();
    d.device.CommitFrames(3000);
    ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() == 3000; }, 3s));
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(d.device.GetPlayedFrames(), 3000);
    // Going round the ring: committed frames beyond its size play on, positions wrap.
    for (int i = 0; i < 4; ++i) d.device.CommitFrames(4096);
    ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() == 3000 + 4 * 4096; }, 3s));
    EXPECT_EQ(d.device.GetPlayPosition(), static_cast<uint32_t>((3000 + 4 * 4096) % 8192) * 4);
}

TEST(AlsaDevice, ACrossfadesNegativeCommitTakesFramesBack) {
    NullDevice d(kCd.sampleRate);
    ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
    d.device.Start();
    d.device.Pause();
    d.device.CommitFrames(20000);
    d.device.CommitFrames(-(5000 * 4));  // the hand-over passes frames x bytes per frame
    d.device.CommitFrames(1000);
    d.device.Resume();
    ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() >= 16000; }, 3s));
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(d.device.GetPlayedFrames(), 16000);
}

TEST(AlsaDevice, FramesTakenBackAreCountedInFrames) {
    NullDevice d(kCd.sampleRate);
    ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
    d.device.Start();
    d.device.Pause();
    d.device.CommitFrames(20000);
    d.device.TakeBackFrames(5000);  // the silence cut at the end of a track
    d.device.CommitFrames(1000);
    d.device.Resume();
    ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() >= 16000; }, 3s));
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(d.device.GetPlayedFrames(), 16000);
}

TEST(AlsaDevice, ARingOfSizeZeroReportsZeroPositions) {
    AlsaDevice device("null", kCd, nullptr, 0);
    ASSERT_TRUE(device.IsOpen()) << device.ErrorText();
    device.Start();
    device.CommitFrames(1000);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(device.GetPlayedFrames(), 0);
    EXPECT_EQ(device.GetPlayPosition(), 0u);
    device.Stop();
}

TEST(AlsaDevice, VolumeIsKeptInSixteenBits) {
    NullDevice d(1024);
    ASSERT_TRUE(d.device.IsOpen()) << d.device.ErrorText();
    EXPECT_TRUE(d.device.CanSetVolume());
    EXPECT_EQ(d.device.GetVolume(), 65535u);  // a new device plays at full volume
    d.device.SetVolume(0x12345678);
    EXPECT_EQ(d.device.GetVolume(), 0x5678u);
    d.device.SetVolume(0);
    EXPECT_EQ(d.device.GetVolume(), 0u);
}

TEST(AlsaDevice, EveryFormatOpensAndPlays) {
    const PcmFormat formats[] = {{8000, 1, 8}, {22050, 2, 8}, {48000, 1, 16}, {96000, 2, 24},
                                 {44100, 2, 32}};
    for (const PcmFormat& format : formats) {
        NullDevice d(format.sampleRate / 2, format);
        ASSERT_TRUE(d.device.IsOpen()) << format.bitsPerSample << ": " << d.device.ErrorText();
        d.device.SetVolume(30000);  // exercise the scaling path too
        d.device.Start();
        d.device.CommitFrames(static_cast<int32_t>(format.sampleRate / 2));
        EXPECT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() > 100; }, 3s))
            << format.sampleRate << " Hz " << format.bitsPerSample << " bit";
    }
}

TEST(AlsaDevice, ClosingWhilePlayingIsQuick) {
    const auto t0 = Clock::now();
    {
        NullDevice d(kCd.sampleRate);
        ASSERT_TRUE(d.device.IsOpen());
        d.device.Start();
        d.device.CommitFrames(static_cast<int32_t>(kCd.sampleRate));
        ASSERT_TRUE(WaitUntil([&] { return d.device.GetPlayedFrames() > 0; }, 3s));
    }
    EXPECT_LT(Clock::now() - t0, 1s);
}

}  // namespace
}  // namespace verdin
