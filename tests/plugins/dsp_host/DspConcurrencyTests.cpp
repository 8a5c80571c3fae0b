// The host between threads: the busy mark that lets a second stream's block pass while
// another stream is inside, and changing the active list while a stream runs blocks
// through it. Run under ThreadSanitizer as well.
#include "DspHostFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace verdin::test {
namespace {

using ::testing::IsEmpty;

constexpr uint32_t kFrames = 32;

TEST_F(DspHostTest, ABlockArrivingWhileAnotherStreamIsInsidePassesUnchanged) {
    Activate({Kit(kGate)});
    window.ArmGate();
    std::vector<int16_t> first, second, third;
    uint32_t firstFrames = 0;
    std::thread stream([&] { firstFrames = Process(first, kFrames); });
    ASSERT_TRUE(window.WaitUntilHeld());
    // The first stream is inside the gate module: the host is busy.
    EXPECT_EQ(Process(second, kFrames), kFrames);
    EXPECT_EQ(UniformValue(second, 4 * kFrames), 0);
    window.OpenGate();
    stream.join();
    EXPECT_EQ(firstFrames, kFrames);
    EXPECT_EQ(UniformValue(first, 2 * kFrames), 9);
    EXPECT_EQ(window.CountOf("Kit/gate gate"), 1u);
    // Once the first stream has left, blocks are processed again.
    EXPECT_EQ(Process(third, kFrames), kFrames);
    EXPECT_EQ(UniformValue(third, 2 * kFrames), 9);
}

// A stream thread runs blocks through the host without pause while the test's thread
// swaps the active list again and again. Every block must be processed whole by one of
// the lists (never by parts of two, never skipped), and no module may be called before
// its Init or after its Quit, nor quit while a stream is inside it (the test plug-ins
// report such breaches).
TEST_F(DspHostTest, SwappingTheActiveListUnderARunningStream) {
    const std::vector<DspModuleRef> lists[] = {
        {Kit(kAppend1)}, {Other(kAppend4), Kit(kAppend1)}, {Other(kAppend5)}, {}, {Other(kAppend4), Other(kAppend4)}};
    const int expectedValues[] = {1, 41, 5, 0, 44};
    Activate(lists[0]);
    std::atomic<bool> stop{false};    // written by the test thread, read by the stream
    std::atomic<uint64_t> blocks{0};  // written by the stream, read by the test thread
    std::atomic<int> badBlocks{0};    // written by the stream, read after join
    std::thread stream([&] {
        std::vector<int16_t> block;
        while (!stop.load(std::memory_order_acquire)) {
            block.assign(4 * kFrames, 0);
            const uint32_t frames = Process(block, kFrames);
            if (frames != kFrames || std::ranges::count(expectedValues, UniformValue(block, 2 * kFrames)) == 0)
                badBlocks.fetch_add(1, std::memory_order_relaxed);
            blocks.fetch_add(1, std::memory_order_release);
        }
    });
    constexpr int kSwaps = 300;
    for (int swap = 1; swap <= kSwaps; ++swap) {
        // Let the stream finish at least one block under the current list first, so the
        // swaps really meet a running stream.
        const uint64_t seen = blocks.load(std::memory_order_acquire);
        while (blocks.load(std::memory_order_acquire) == seen) std::this_thread::yield();
        Activate(lists[swap % 5]);
    }
    stop.store(true, std::memory_order_release);
    stream.join();
    EXPECT_EQ(badBlocks.load(), 0);
    EXPECT_THAT(window.EventsContaining("violation"), IsEmpty());
    // Every Init has had its Quit, except for the list still active.
    host.ClearActiveList();
    for (const std::string module : {"Kit/append 1", "Other/append 4", "Other/append 5"}) {
        EXPECT_EQ(window.CountOf(module + " Init"), window.CountOf(module + " Quit")) << module;
        EXPECT_GT(window.CountOf(module + " Init"), 0u) << module;
    }
}

}  // namespace
}  // namespace verdin::test
