// The small pieces the devices are built from: software volume, the run-tagged frame
// counter, the commit queue, the play clock and the volume mapping of the PulseAudio
// device.
#include "engine/output/CommitQueue.h"
#include "engine/output/GenerationCounter.h"
#include "engine/output/PlayClock.h"
#include "engine/output/PulseVolume.h"
#include "engine/output/SoftwareVolume.h"

#include <gtest/gtest.h>
#include <pulse/volume.h>

#include <thread>
#include <vector>

namespace verdin {
namespace {

std::vector<uint8_t> Le16(std::initializer_list<int16_t> samples) {
    std::vector<uint8_t> out;
    for (int16_t s : samples) {
        out.push_back(static_cast<uint8_t>(static_cast<uint16_t>(s)));
        out.push_back(static_cast<uint8_t>(static_cast<uint16_t>(s) >> 8));
    }
    return out;
}

TEST(SoftwareVolume, ScalesEachSampleFormat) {
    struct Case {
        uint32_t bits, volume;
        std::vector<uint8_t> in, out;
    };
    const Case cases[] = {
        {16, 32768, Le16({32767, -32768, 1000, -1000, 0}), Le16({16383, -16384, 500, -500, 0})},
        {16, 0, Le16({32767, -32768, 5}), Le16({0, 0, 0})},
        {16, 65535, Le16({32767, -32768, 5}), Le16({32767, -32768, 5})},
        // 8-bit is unsigned around 128: 255 is +127, 0 is -128.
        {8, 32768, {255, 0, 128, 200}, {191, 64, 128, 164}},
        {8, 0, {255, 0, 17}, {128, 128, 128}},
        // 24-bit little-endian: 0x7FFFFF and -0x800000 times 32768/65535.
        {24, 32768, {0xFF, 0xFF, 0x7F, 0x00, 0x00, 0x80}, {0x3F, 0x00, 0x40, 0xC0, 0xFF, 0xBF}},
        // 32-bit: 0x40000000 times 32768/65535.
        {32, 32768, {0x00, 0x00, 0x00, 0x40}, {0x00, 0x20, 0x00, 0x20}},
        // A volume above the scale counts as full.
        {16, 0x12345, Le16({-7}), Le16({-7})},
    };
    for (const Case& c : cases) {
        std::vector<uint8_t> data = c.in;
        ApplySoftwareVolume(data.data(), data.size(), c.bits, c.volume);
        EXPECT_EQ(data, c.out) << c.bits << " bit at " << c.volume;
    }
}

TEST(SoftwareVolume, LeavesAPartialSampleAlone) {
    std::vector<uint8_t> data = {0x00, 0x40, 0x77};
    ApplySoftwareVolume(data.data(), data.size(), 16, 0);
    EXPECT_EQ(data, (std::vector<uint8_t>{0, 0, 0x77}));
}

TEST(GenerationCounter, RestartWinsOverALateValueOfTheOldRun) {
    GenerationCounter counter;
    const uint16_t first = counter.Restart();
    counter.Publish(first, 1000);
    EXPECT_EQ(counter.Value(), 1000u);
    const uint16_t second = counter.Restart();
    EXPECT_NE(first, second);
    EXPECT_EQ(counter.Value(), 0u);
    counter.Publish(first, 2000);  // the device thread still counting the old run
    EXPECT_EQ(counter.Value(), 0u);
    counter.Publish(second, 5);
    EXPECT_EQ(counter.Value(), 5u);
    EXPECT_EQ(counter.CurrentRun(), second);
}

TEST(GenerationCounter, RunNumbersWrapAndValuesKeep48Bits) {
    GenerationCounter counter;
    uint16_t run = 0;
    for (int i = 0; i < 70000; ++i) run = counter.Restart();
    EXPECT_EQ(run, static_cast<uint16_t>(70000));
    const uint64_t big = (uint64_t{1} << 47) + 12345;
    counter.Publish(run, big);
    EXPECT_EQ(counter.Value(), big);
    EXPECT_EQ(counter.CurrentRun(), run);
}

TEST(CommitQueue, KeepsEachProducersOrderAndLosesNothing) {
    CommitQueue queue(64);
    constexpr int kPerProducer = 20000;
    auto produce = [&](int32_t sign) {
        for (int32_t i = 1; i <= kPerProducer; ++i)
            while (!queue.Push(sign * i)) std::this_thread::yield();
    };
    std::thread a(produce, 1), b(produce, -1);
    int32_t lastPositive = 0, lastNegative = 0, count = 0;
    while (count < 2 * kPerProducer) {
        int32_t v = 0;
        if (!queue.Pop(&v)) {
            std::this_thread::yield();
            continue;
        }
        ++count;
        if (v > 0) {
            ASSERT_EQ(v, lastPositive + 1);
            lastPositive = v;
        } else {
            ASSERT_EQ(-v, lastNegative + 1);
            lastNegative = -v;
        }
    }
    a.join();
    b.join();
    int32_t extra = 0;
    EXPECT_FALSE(queue.Pop(&extra));
    EXPECT_EQ(lastPositive, kPerProducer);
    EXPECT_EQ(lastNegative, kPerProducer);
}

TEST(CommitQueue, RefusesWhenFullAndTakesMoreOnceEmptied) {
    CommitQueue queue(4);
    for (int32_t i = 0; i < 4; ++i) EXPECT_TRUE(queue.Push(i));
    EXPECT_FALSE(queue.Push(99));
    int32_t v = -1;
    ASSERT_TRUE(queue.Pop(&v));
    EXPECT_EQ(v, 0);
    EXPECT_TRUE(queue.Push(4));
    for (int32_t expected = 1; expected <= 4; ++expected) {
        ASSERT_TRUE(queue.Pop(&v));
        EXPECT_EQ(v, expected);
    }
}

TEST(PlayClock, CountsFramesAtTheRateUpToWhatWasHanded) {
    using namespace std::chrono_literals;
    PlayClock clock(44100);
    const auto t0 = PlayClock::Clock::time_point{} + 1s;
    clock.Restart(t0);
    EXPECT_EQ(clock.Advance(0, 1'000'000, t0 + 100ms), 4410);
    // Fractions carry over: 1 ms is 44.1 frames, so ten of them make 441.
    int64_t played = 0;
    clock.Restart(t0);
    for (int i = 1; i <= 10; ++i) played = clock.Advance(played, 1'000'000, t0 + i * 1ms);
    EXPECT_EQ(played, 441);
    // Never beyond what was handed, and starved time is not banked.
    clock.Restart(t0);
    EXPECT_EQ(clock.Advance(0, 100, t0 + 1s), 100);
    EXPECT_EQ(clock.Advance(100, 200, t0 + 1s + 1ms), 144);
}

TEST(PulseVolume, HundredthsOfADecibelAsTheLevelRuleSays) {
    struct Case {
        uint32_t volume;
        int32_t hundredths;
    };
    const Case cases[] = {
        {0, -10000},     {65535, 0},  {32768, -602}, {16384, -1204},
        {1, -9632},      {65534, 0},  // -0.0001 dB truncates to 0
        {0x1FFFF, 0},    // only the low 16 bits count
        {0x10000, -10000},
    };
    for (const Case& c : cases)
        EXPECT_EQ(VolumeToHundredthsOfDecibel(c.volume), c.hundredths) << c.volume;
    EXPECT_EQ(PulseVolumeOfHundredths(-10000), PA_VOLUME_MUTED);
    EXPECT_EQ(PulseVolumeOfHundredths(0), PA_VOLUME_NORM);
    EXPECT_LT(PulseVolumeOfHundredths(-602), PA_VOLUME_NORM);
    EXPECT_GT(PulseVolumeOfHundredths(-602), PulseVolumeOfHundredths(-1204));
}

}  // namespace
}  // namespace verdin
