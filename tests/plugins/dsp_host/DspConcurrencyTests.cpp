// The host between threads: the busy mark that lets a second stream's block pass while
// another stream is inside, and changing the active list while a stream runs blocks
// through it. Run under ThreadSanitizer as well.
#include "plugins/dsp/DspHost.h"

#include "TempDir.h"
#include "TestModules.h"
#include "TestWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <thread>

namespace verdin {
namespace {

using test::PlaceTestModule;
using test::TempDir;
using test::TestWindow;
using ::testing::IsEmpty;

constexpr int kKitAppend1 = 0;
constexpr int kKitGate = 7;
constexpr int kOtherAppend4 = 0;
constexpr int kOtherAppend5 = 1;
constexpr uint32_t kFrames = 32;

// A stereo 16-bit block of zeros with room for twice its frames.
std::vector<int16_t> ZeroBlock() { return std::vector<int16_t>(2 * kFrames * 2, 0); }

// The value every sample of the block's first frames has, or -1 when they differ.
int UniformValue(const std::vector<int16_t>& block, uint32_t frames) {
    for (uint32_t i = 1; i < frames * 2; ++i)
        if (block[i] != block[0]) return -1;
    return block[0];
}

uint32_t Process(DspHost& host, std::vector<int16_t>& block) {
    return DspHost::Process(host.HookContext(), reinterpret_cast<uint8_t*>(block.data()), kFrames, 16, 2, 44100);
}

class ConcurrencyTest : public ::testing::Test {
protected:
    void SetUp() override {
        kit = PlaceTestModule("kit", dir.str(), "kit.so");
        other = PlaceTestModule("other", dir.str(), "other.so");
        libraries.emplace(window.record(), dir.str() + ";");
    }

    TempDir dir;
    TestWindow window;
    std::string kit, other;
    std::optional<DspLibraryList> libraries;
    DspHost host;
};

TEST_F(ConcurrencyTest, ABlockArrivingWhileAnotherStreamIsInsidePassesUnchanged) {
    host.SetActiveList(*libraries, std::vector<DspModuleRef>{{kit, kKitGate}});
    window.ArmGate();

    std::vector<int16_t> first = ZeroBlock();
    uint32_t firstFrames = 0;
    std::thread stream([&] { firstFrames = Process(host, first); });
    ASSERT_TRUE(window.WaitUntilHeld());

    // The first stream is inside the gate module: the host is busy.
    std::vector<int16_t> second = ZeroBlock();
    EXPECT_EQ(Process(host, second), kFrames);
    EXPECT_EQ(UniformValue(second, 2 * kFrames), 0);

    window.OpenGate();
    stream.join();
    EXPECT_EQ(firstFrames, kFrames);
    EXPECT_EQ(UniformValue(first, kFrames), 9);
    EXPECT_EQ(window.CountOf("Kit/gate gate"), 1u);

    // Once the first stream has left, blocks are processed again.
    std::vector<int16_t> third = ZeroBlock();
    EXPECT_EQ(Process(host, third), kFrames);
    EXPECT_EQ(UniformValue(third, kFrames), 9);
}

// A stream thread runs blocks through the host without pause while the test's thread
// swaps the active list again and again. Every block must be processed whole by one of
// the lists (never by parts of two, never skipped), and no module may be called before
// its Init or after its Quit, nor quit while a stream is inside it (the test plug-ins
// report such breaches).
TEST_F(ConcurrencyTest, SwappingTheActiveListUnderARunningStream) {
    const std::vector<DspModuleRef> lists[] = {
        {{kit, kKitAppend1}},                                // 1
        {{other, kOtherAppend4}, {kit, kKitAppend1}},        // 41
        {{other, kOtherAppend5}},                            // 5
        {},                                                  // 0: passes unchanged
        {{other, kOtherAppend4}, {other, kOtherAppend4}},    // 44
    };
    const int expectedValues[] = {1, 41, 5, 0, 44};
    host.SetActiveList(*libraries, lists[0]);

    std::atomic<bool> stop{false};           // written by the test thread, read by the stream
    std::atomic<uint64_t> blocks{0};         // written by the stream, read by the test thread
    std::atomic<int> badBlocks{0};           // written by the stream, read after join
    std::thread stream([&] {
        while (!stop.load(std::memory_order_acquire)) {
            std::vector<int16_t> block = ZeroBlock();
            const uint32_t frames = Process(host, block);
            const int value = UniformValue(block, kFrames);
            if (frames != kFrames || std::find(std::begin(expectedValues), std::end(expectedValues), value) ==
                                         std::end(expectedValues))
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
        host.SetActiveList(*libraries, lists[swap % 5]);
    }
    stop.store(true, std::memory_order_release);
    stream.join();

    EXPECT_EQ(badBlocks.load(), 0);
    EXPECT_GE(blocks.load(), static_cast<uint64_t>(kSwaps));
    EXPECT_THAT(window.EventsContaining("violation"), IsEmpty());
    // Every Init has had its Quit, except for the list still active.
    host.ClearActiveList();
    for (const char* module : {"Kit/append 1", "Other/append 4", "Other/append 5"}) {
        const std::string name(module);
        EXPECT_EQ(window.CountOf(name + " Init"), window.CountOf(name + " Quit")) << name;
        EXPECT_GT(window.CountOf(name + " Init"), 0u) << name;
    }
}

}  // namespace
}  // namespace verdin
