// The user-interface thread changes the equalizer while the stream thread processes
// (run under ThreadSanitizer with the other engine tests).
#include "engine/equalizer/Equalizer.h"

#include "EqualizerReference.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace verdin {
namespace {

// Runs change(i) over and over on another thread while work(round) runs here, from the
// other thread's first change until it has made at least minChanges and 200 rounds ran.
template <class Change, class Work>
void WhileChanging(Change change, Work work, int minChanges) {
    std::atomic<int> changes{0};    // written by the changer (release), read here (acquire)
    std::atomic<bool> done{false};  // written here (release), read by the changer (acquire)
    std::thread changer([&] {
        for (int i = 0; !done.load(std::memory_order_acquire); ++i) {
            change(i);
            changes.fetch_add(1, std::memory_order_release);
        }
    });
    while (changes.load(std::memory_order_acquire) == 0) std::this_thread::yield();
    for (int round = 0; round < 200 || changes.load(std::memory_order_acquire) < minChanges; ++round) work(round);
    done.store(true, std::memory_order_release);
    changer.join();
}

TEST(EqualizerConcurrency, GainsRewrittenDuringProcessingGiveAPlausibleSignal) {
    // Every table in play is 0 dB or -6 dB, so whatever mix of them a hop sees, a cosine
    // tone at a bin centre comes out at most as loud as it went in.
    const uint32_t frames = 1152;  // 2.25 x 512: four rounds cover the tone, which holds whole periods
    std::vector<int32_t> tone(frames * 4);
    for (size_t n = 0; n < tone.size(); ++n) tone[n] = std::lround(10000 * std::cos(2 * std::numbers::pi * 8 * n / 512));
    const std::vector<uint8_t> bytes = test::PackSamples(tone, 16);
    EqualizerValues quiet{};
    std::ranges::fill(quiet.gain, -6);
    Equalizer eq(true);
    std::vector<uint8_t> pcm(frames * 2 + Equalizer::kOutputHeadroom);
    uint64_t framesIn = 0, framesOut = 0;
    int loudest = 0;
    WhileChanging(
        [&](int i) {
            eq.SetEqualizerValues(i % 2 ? EqualizerValues{} : quiet, 44100);
            eq.SetEqualizerEnabled(true);
        },
        [&](int round) {
            std::copy_n(bytes.begin() + (round % 4) * frames * 2, frames * 2, pcm.begin());
            const uint32_t r = eq.Process(pcm.data(), frames * 2, 16, 1);
            framesIn += frames;
            framesOut += r / 2;
            for (int32_t s : test::UnpackSamples({pcm.begin(), pcm.begin() + r}, 16)) loudest = std::max(loudest, std::abs(s));
        },
        1000);
    EXPECT_EQ(framesOut, (framesIn - 256) / 256 * 256);
    EXPECT_LE(loudest, 10002);
    EXPECT_GT(loudest, 4998);
}

TEST(EqualizerConcurrency, SwitchingDuringProcessingLosesAndRepeatsNoFrame) {
    // 300-frame stereo blocks tell the three answers apart: pass-through returns 1200
    // bytes, processing a multiple of 1024 bytes (at most 2048), a flush the held frames
    // plus 300 (between 301 and 811 frames).
    const uint32_t bytes = 1200;
    const std::vector<uint8_t> block = test::PackSamples(std::vector<int32_t>(600, 1234), 16);
    Equalizer eq(true);
    std::vector<uint8_t> pcm(bytes + Equalizer::kOutputHeadroom);
    uint64_t framesIn = 0, framesOut = 0;
    bool answersMadeSense = true;
    WhileChanging([&](int i) { eq.SetEqualizerEnabled(i % 3 != 0); },
                  [&](int) {
                      std::copy(block.begin(), block.end(), pcm.begin());
                      const uint32_t r = eq.Process(pcm.data(), bytes, 16, 2);
                      if (r == bytes || (r % 1024 == 0 && r <= 2048)) framesOut += r / 4;
                      else if (r > 300 && r < 300 + 512) framesOut += r;
                      else answersMadeSense = false;
                      framesIn += 300;
                  },
                  3000);
    eq.SetEqualizerEnabled(false);  // for good: an empty block brings back what is still held
    const uint32_t rest = eq.Process(pcm.data(), 0, 16, 2);
    EXPECT_LT(rest, 512u);
    EXPECT_TRUE(answersMadeSense);
    EXPECT_EQ(framesOut + rest, framesIn);
}

}  // namespace
}  // namespace verdin
