// The ALSA device on the `null` PCM, which swallows every frame at once: the device must
// keep time by the clock there, so positions move in real time.
#include "engine/output/AlsaDevice.h"
#include "engine/output/AlsaDeviceList.h"

#include "DeviceTestKit.h"

#include <memory>

namespace verdin {
namespace {

using test::LetRealTimePass;
using test::WaitUntil;

constexpr PcmFormat kCd{44100, 2, 16};

struct NullDevice {
    explicit NullDevice(uint32_t ringFrames, PcmFormat format = kCd)
        : ring(size_t{ringFrames} * format.BytesPerFrame()),
          device("null", format, ring.data(), static_cast<uint32_t>(ring.size())) {}
    std::vector<uint8_t> ring;
    AlsaDevice device;
};

TEST(AlsaDevice, TheListHoldsNullAndUnknownDevicesStayClosed) {
    const auto list = ListAlsaDevices();
    ASSERT_FALSE(list.empty());
    EXPECT_TRUE(std::ranges::any_of(list, [](const auto& entry) { return entry.name == "null"; }));
    EXPECT_EQ(AlsaPcmNameOf(-1), "default");
    EXPECT_EQ(AlsaPcmNameOf(0), list.size() > 1 ? std::optional(list[1].name) : std::nullopt);
    EXPECT_EQ(AlsaPcmNameOf(static_cast<int>(list.size())), std::nullopt);
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
    auto owner = std::make_unique<NullDevice>(kCd.sampleRate * 2);
    AlsaDevice& d = owner->device;
    ASSERT_TRUE(d.IsOpen()) << d.ErrorText();
    test::ExpectPositionsKeepTime(d, 0);
    d.Stop();
    const int64_t held = d.GetPlayedFrames();
    d.Resume();  // does nothing after a stop
    ASSERT_TRUE(LetRealTimePass(4410));
    EXPECT_EQ(d.GetPlayedFrames(), held);
    d.Start();  // a seek's start, pause and refill: PlaysExactlyTheCommittedFramesInEveryFormat
    EXPECT_EQ(d.GetPlayedFrames(), 0);
    EXPECT_EQ(d.GetPlayPosition(), 0u);
    d.CommitFrames(static_cast<int32_t>(kCd.sampleRate));
    ASSERT_TRUE(WaitUntil([&] { return d.GetPlayedFrames() > 0; }));
    const auto closing = std::chrono::steady_clock::now();
    owner.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - closing, std::chrono::seconds(1)) << "closing while playing is quick";
}

// The device plays what the streams committed, in every sample format and at a volume
// below full (the scaling path), up to the end mark, and then falls silent rather than
// going round the ring again.
TEST(AlsaDevice, PlaysExactlyTheCommittedFramesInEveryFormat) {
    const struct {
        const char* what;
        PcmFormat format;
        uint32_t ringFrames;
        std::function<void(AlsaDevice&)> feed;
        int64_t played;
    } cases[] = {
        {"round the ring, then starved", kCd, 8192,
         [](AlsaDevice& d) { for (int32_t n : {3000, 4096, 4096, 4096, 4096}) d.CommitFrames(n); }, 3000 + 4 * 4096},
        {"end mark", {8000, 1, 8}, 8000, [](AlsaDevice& d) { d.CommitFrames(6000); d.SetEndOfData(2000); }, 2000},
        // The crossfade's hand-over passes frames x bytes per frame; a cut end, frames.
        {"taken back", {96000, 2, 24}, 96000,
         [](AlsaDevice& d) { d.CommitFrames(20000); d.CommitFrames(-5000 * 6); d.TakeBackFrames(1000); d.CommitFrames(1000); },
         15000},
        {"32 bit", {44100, 2, 32}, 1000, [](AlsaDevice& d) { d.CommitFrames(700); }, 700},
        {"no ring", kCd, 0, [](AlsaDevice& d) { d.CommitFrames(1000); }, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        NullDevice n(c.ringFrames, c.format);
        AlsaDevice& d = n.device;
        ASSERT_TRUE(d.IsOpen()) << d.ErrorText();
        d.SetVolume(0x12347530);  // kept in 16 bits: 30000
        EXPECT_EQ(d.GetVolume(), 30000u);
        d.Start();
        d.Pause();
        c.feed(d);
        d.Resume();
        ASSERT_TRUE(WaitUntil([&] { return d.GetPlayedFrames() >= c.played; }));
        ASSERT_TRUE(LetRealTimePass(4410));
        EXPECT_EQ(d.GetPlayedFrames(), c.played);
        EXPECT_EQ(d.GetPlayPosition(), c.ringFrames ? c.played % c.ringFrames * c.format.BytesPerFrame() : 0u);
        EXPECT_EQ(d.PlayedOut(), std::string(c.what) == "end mark");
    }
}

}  // namespace
}  // namespace verdin
