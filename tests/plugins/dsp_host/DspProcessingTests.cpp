// What the host does to a block: each active module in list order, each result the
// frame count for the next module and for output.
#include "plugins/dsp/DspHost.h"

#include "TempDir.h"
#include "TestModules.h"
#include "TestWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <optional>

namespace verdin {
namespace {

using test::PlaceTestModule;
using test::TempDir;
using test::TestWindow;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Kit module indices.
enum Kit { kAppend1, kAppend2, kAppend3, kHalve, kDouble, kNegative, kOverlong, kGate, kFormat };
// Other module indices.
enum Other { kAppend4, kAppend5 };

constexpr uint32_t kFrames = 64;
constexpr uint32_t kChannels = 2;

// A stereo 16-bit block of zeros with room for twice its frames, as streams hand it over.
struct Block {
    std::vector<int16_t> samples = std::vector<int16_t>(2 * kFrames * kChannels, 0);
    uint8_t* data() { return reinterpret_cast<uint8_t*>(samples.data()); }
    // Every sample of the first frames frames equals value.
    bool AllEqual(uint32_t frames, int16_t value) const {
        for (uint32_t i = 0; i < frames * kChannels; ++i)
            if (samples[i] != value) return false;
        return true;
    }
};

class ProcessingTest : public ::testing::Test {
protected:
    void SetUp() override {
        kit = PlaceTestModule("kit", dir.str(), "kit.so");
        other = PlaceTestModule("other", dir.str(), "other.so");
        libraries.emplace(window.record(), dir.str() + ";");
    }

    void Activate(const std::vector<DspModuleRef>& refs) { host.SetActiveList(*libraries, refs); }
    DspModuleRef Kit(int index) const { return {kit, index}; }
    DspModuleRef Other(int index) const { return {other, index}; }

    uint32_t Process(Block& block, uint32_t frames = kFrames) {
        return DspHost::Process(host.HookContext(), block.data(), frames, 16, kChannels, 44100);
    }

    TempDir dir;
    TestWindow window;
    std::string kit, other;
    std::optional<DspLibraryList> libraries;
    DspHost host;
};

TEST_F(ProcessingTest, ModulesRunInListOrderAndEachResultCarriesOn) {
    struct Case {
        const char* name;
        std::vector<DspModuleRef> refs;
        uint32_t frames;      // the result
        int16_t value;        // of every sample of the first valueFrames frames
        uint32_t valueFrames = 0;  // 0: all of the resulting frames
    };
    const std::vector<Case> cases = {
        {"nothing active", {}, kFrames, 0},
        {"one module", {Kit(kAppend1)}, kFrames, 1},
        {"list order", {Kit(kAppend1), Kit(kAppend2), Kit(kAppend3)}, kFrames, 123},
        {"another order", {Kit(kAppend3), Other(kAppend4), Kit(kAppend1)}, kFrames, 341},
        {"same module twice", {Kit(kAppend2), Kit(kAppend2)}, kFrames, 22},
        {"entry without instance skipped", {Kit(kAppend1), Kit(99), {dir.file("none.so"), 0}, Kit(kAppend2)}, kFrames, 12},
        {"shortened for later modules", {Kit(kAppend1), Kit(kHalve), Kit(kAppend2)}, kFrames / 2, 12},
        {"shortened twice", {Kit(kHalve), Kit(kHalve), Kit(kAppend3)}, kFrames / 4, 3},
        {"lengthened up to twice", {Kit(kAppend1), Kit(kDouble), Kit(kAppend2)}, 2 * kFrames, 12},
        {"negative is nothing", {Kit(kAppend1), Kit(kNegative), Kit(kAppend2)}, 0, 0},
        {"more than the room is cut", {Kit(kAppend1), Kit(kOverlong)}, 2 * kFrames, 1, kFrames},
        {"double twice stays in the room", {Kit(kDouble), Kit(kHalve), Kit(kDouble)}, 2 * kFrames, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Activate(c.refs);
        Block block;
        const uint32_t frames = Process(block);
        EXPECT_EQ(frames, c.frames);
        EXPECT_TRUE(block.AllEqual(c.valueFrames ? c.valueFrames : frames, c.value))
            << "first sample " << block.samples[0];
    }
    EXPECT_THAT(window.EventsContaining("violation"), IsEmpty());
}

TEST_F(ProcessingTest, AShortenedBlockKeepsTheRestOfTheBufferAsTheLastFullModuleLeftIt) {
    Activate({Kit(kAppend1), Kit(kHalve), Kit(kAppend2)});
    Block block;
    ASSERT_EQ(Process(block), kFrames / 2);
    // The second half was seen by "append 1" only: "append 2" got the shorter block.
    EXPECT_EQ(block.samples[kFrames * kChannels / 2], 1);
    EXPECT_EQ(block.samples[kFrames * kChannels - 1], 1);
    EXPECT_EQ(block.samples[kFrames * kChannels], 0);  // the room beyond the block
}

TEST_F(ProcessingTest, ModulesReceiveTheFormatOfTheBlockAndTheRunningFrameCount) {
    Activate({Kit(kFormat), Kit(kHalve), Kit(kFormat)});
    Block block;
    EXPECT_EQ(DspHost::Process(host.HookContext(), block.data(), 60, 8, 1, 22050), 30u);
    EXPECT_EQ(DspHost::Process(host.HookContext(), block.data(), 10, 16, 2, 48000), 5u);
    EXPECT_THAT(window.EventsContaining("Kit/format format"),
                ElementsAre("Kit/format format 8 1 22050 60", "Kit/format format 8 1 22050 30",
                            "Kit/format format 16 2 48000 10", "Kit/format format 16 2 48000 5"));
}

TEST_F(ProcessingTest, AnEmptyBlockCallsNoModule) {
    Activate({Kit(kFormat), Kit(kAppend1)});
    Block block;
    EXPECT_EQ(Process(block, 0), 0u);
    EXPECT_THAT(window.EventsContaining("Kit/format format"), IsEmpty());
    EXPECT_TRUE(block.AllEqual(2 * kFrames, 0));
}

TEST_F(ProcessingTest, AfterClearingBlocksPassUnchanged) {
    Activate({Kit(kAppend3)});
    host.ClearActiveList();
    Block block;
    EXPECT_EQ(Process(block), kFrames);
    EXPECT_TRUE(block.AllEqual(kFrames, 0));
}

}  // namespace
}  // namespace verdin
