// The small pieces the devices are built from: software volume, the run-tagged frame
// counter, the commit queue, the play clock and the PulseAudio device's volume mapping.
#include "engine/output/CommitQueue.h"
#include "engine/output/PulseVolume.h"
#include "engine/output/SoftwareVolume.h"

#include <gtest/gtest.h>
#include <pulse/volume.h>

#include <thread>
#include <tuple>
#include <vector>

namespace verdin {
namespace {

// Sixteen bits are also heard sample for sample at a quarter volume through ALSA
// (AlsaThroughPulse).
TEST(SoftwareVolume, ScalesEachSampleFormat) {
    const std::tuple<uint32_t, uint32_t, std::vector<uint8_t>, std::vector<uint8_t>> cases[] = {
        {16, 0x12345, {0xF9, 0xFF}, {0xF9, 0xFF}},                // above the scale counts as full
        {16, 0, {0x00, 0x40, 0x77}, {0, 0, 0x77}},               // a partial sample is left alone
        {8, 32768, {255, 0, 128, 200}, {191, 64, 128, 164}},     // unsigned around 128
        {8, 0, {255, 0, 17}, {128, 128, 128}},
        {24, 32768, {0xFF, 0xFF, 0x7F, 0x00, 0x00, 0x80}, {0x3F, 0x00, 0x40, 0xC0, 0xFF, 0xBF}},
        {32, 32768, {0x00, 0x00, 0x00, 0x40}, {0x00, 0x20, 0x00, 0x20}},
    };
    for (auto [bits, volume, in, out] : cases) {
        ApplySoftwareVolume(in.data(), in.size(), bits, volume);
        EXPECT_EQ(in, out) << bits << " bit at " << volume;
    }
}

TEST(CommitQueue, TwoProducersKeepTheirOrderAndLoseNothingAndAFullQueueRefuses) {
    CommitQueue queue(64);
    constexpr int32_t kPerProducer = 20000;
    auto produce = [&](int32_t sign) {
        for (int32_t i = 1; i <= kPerProducer; ++i)
            while (!queue.Push(sign * i)) std::this_thread::yield();
    };
    std::thread a(produce, 1), b(produce, -1);
    int32_t last[2] = {0, 0}, v = 0;
    for (int count = 0; count < 2 * kPerProducer;) {
        if (!queue.Pop(&v)) { std::this_thread::yield(); continue; }
        ++count;
        ASSERT_EQ(std::abs(v), last[v < 0] + 1);
        last[v < 0] = std::abs(v);
    }
    a.join();
    b.join();
    EXPECT_FALSE(queue.Pop(&v));
    for (int32_t i = 0; i < 64; ++i) ASSERT_TRUE(queue.Push(i));
    EXPECT_FALSE(queue.Push(99));
    ASSERT_TRUE(queue.Pop(&v));
    EXPECT_TRUE(queue.Push(64));
}

TEST(PulseVolume, HundredthsOfADecibel) {
    const std::pair<uint32_t, int32_t> cases[] = {{0, -10000}, {65535, 0},    {32768, -602},   {16384, -1204},
                                                  {1, -9632},  {65534, 0},    {0x1FFFF, 0},    {0x10000, -10000}};
    for (const auto& [volume, hundredths] : cases) EXPECT_EQ(VolumeToHundredthsOfDecibel(volume), hundredths) << volume;
    EXPECT_EQ(PulseVolumeOfHundredths(-10000), PA_VOLUME_MUTED);
    EXPECT_EQ(PulseVolumeOfHundredths(0), PA_VOLUME_NORM);
}

}  // namespace
}  // namespace verdin
