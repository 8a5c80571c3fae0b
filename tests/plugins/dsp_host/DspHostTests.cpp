// The "dspPlugins" text, the active list it makes (which modules get an instance, and when
// Init and Quit are called), and what the host does to a block: each active module in
// list order, each result the frame count for the next module and for output.
#include "plugins/dsp/DspHost.h"

#include "DspHostFixture.h"

#include <gmock/gmock.h>

#include <climits>

namespace verdin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

TEST(DspPluginsText, ParsesPiecesInOrderAndFormatsThemBack) {
    const struct {
        std::string text;
        std::vector<DspModuleRef> expected;
    } cases[] = {
        {"", {}},
        {";;;", {}},
        {"x.so,1;y.so;", {{"x.so", 1}, {"y.so", 0}}},
        {"/p/a.so,0;;/p/a.so,0;", {{"/p/a.so", 0}, {"/p/a.so", 0}}},
        {"/p/a.so,3", {{"/p/a.so", 3}}},                   // the last piece needs no ";"
        {"/odd,dir/a.so,2;", {{"/odd,dir/a.so", 2}}},      // split at the last comma
        {"/odd,dir/a.so;", {{"/odd", 0}}},                 // ... even when that is wrong
        {"a.so,;", {{"a.so", 0}}},                         // no number
        {"a.so,x7;", {{"a.so", 0}}},
        {"a.so, 4;", {{"a.so", 4}}},                       // leading blanks, as atoi
        {"a.so,5x;", {{"a.so", 5}}},                       // trailing rubbish ignored
        {"a.so,-2;", {{"a.so", -2}}},
        {"a.so,99999999999;", {{"a.so", INT_MAX}}},        // saturates
        {",1;", {{"", 1}}},
        {" ;", {{" ", 0}}},                                // only empty pieces are skipped
    };
    for (const auto& c : cases) EXPECT_EQ(ParseDspPlugins(c.text), c.expected) << "\"" << c.text << "\"";
    const std::vector<DspModuleRef> entries = {{"/p/x.so", 1}, {"/p/y.so", 0}, {"/p/x.so", 1}, {"/odd,dir/z.so", -3}};
    EXPECT_EQ(FormatDspPlugins(entries), "/p/x.so,1;/p/y.so,0;/p/x.so,1;/odd,dir/z.so,-3;");
    EXPECT_EQ(FormatDspPlugins({}), "");
}

// The module description of each entry's instance, "-" for an entry without one.
std::vector<std::string> Modules(const DspHost& host) {
    std::vector<std::string> out;
    for (const ActiveDspEntry& entry : host.ActiveList())
        out.push_back(entry.instance ? entry.instance->module()->description : "-");
    return out;
}

TEST_F(DspHostTest, StartUpActivatesAndInitialisesEachEntryAndKeepsThoseItCannot) {
    const std::string text = kit + ",1;" + kit + ",99;" + dir.file("gone.so") + ",0;" + kit + ",-1;" + kit + "/,0;" + other +
                             ",0;" + other;
    Activate(ParseDspPlugins(text + ";"));
    EXPECT_THAT(Modules(host), ElementsAre("append 2", "-", "-", "-", "-", "append 4", "append 4"));
    EXPECT_NE(host.ActiveList()[5].instance, host.ActiveList()[6].instance);  // the same module twice: two
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 2 Init", "Other/append 4 Init", "Other/append 4 Init"));
    // Entries without an instance are kept, so the setting is written back as it was read.
    EXPECT_EQ(host.DspPluginsText(), text + ",0;");
}

TEST_F(DspHostTest, ApplyInitialisesNewModulesBeforeItQuitsThoseThatLeave) {
    Activate({Kit(kAppend1), Kit(kAppend2), Other(kAppend4)});
    const DspModuleInstance* kept = host.ActiveList()[2].instance.get();
    window.ClearEvents();
    Activate({Other(kAppend4), Kit(kAppend3), Kit(kAppend1)});
    EXPECT_THAT(Modules(host), ElementsAre("append 4", "append 3", "append 1"));
    EXPECT_EQ(host.ActiveList()[0].instance.get(), kept);
    // No block can reach a module that is not initialised.
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 3 Init", "Kit/append 2 Quit"));
    // A new search path drops the modules it no longer finds.
    DspLibraryList elsewhere(window.record(), dir.file("nothing-here") + ";");
    window.ClearEvents();
    host.SetActiveList(elsewhere, std::vector<DspModuleRef>{Kit(kAppend1)});
    EXPECT_THAT(Modules(host), ElementsAre("-"));
    EXPECT_THAT(window.Events(), UnorderedElementsAre("Kit/append 1 Quit", "Kit/append 3 Quit", "Other/append 4 Quit"));
}

TEST_F(DspHostTest, ClearAndDestructionQuitEveryInitialisedModuleOnce) {
    Activate({Kit(kAppend1), Other(kAppend5)});
    host.ClearActiveList();
    EXPECT_THAT(host.ActiveList(), IsEmpty());
    EXPECT_EQ(host.DspPluginsText(), "");
    std::vector<int16_t> block;
    EXPECT_EQ(Process(block, 64), 64u);  // blocks pass unchanged
    EXPECT_EQ(UniformValue(block, 128), 0);
    {
        DspHost other;
        other.SetActiveList(*libraries, std::vector<DspModuleRef>{Other(kAppend4)});
    }
    EXPECT_THAT(window.Events(), UnorderedElementsAre("Kit/append 1 Init", "Other/append 5 Init", "Kit/append 1 Quit",
                                                      "Other/append 5 Quit", "Other/append 4 Init", "Other/append 4 Quit"));
}

TEST_F(DspHostTest, ModulesRunInListOrderAndEachResultCarriesOn) {
    constexpr uint32_t kFrames = 64;
    const struct {
        const char* name;
        std::vector<DspModuleRef> refs;
        uint32_t frames;       // the result
        int16_t value;         // of every sample of the first valueFrames frames
        uint32_t valueFrames;  // 0: all of the resulting frames
    } cases[] = {
        {"nothing active", {}, kFrames, 0, 0},
        {"list order", {Kit(kAppend1), Kit(kAppend2), Kit(kAppend3)}, kFrames, 123, 0},
        {"another order", {Kit(kAppend3), Other(kAppend4), Kit(kAppend1)}, kFrames, 341, 0},
        {"same module twice", {Kit(kAppend2), Kit(kAppend2)}, kFrames, 22, 0},
        {"entry without instance skipped", {Kit(kAppend1), Kit(99), {dir.file("none.so"), 0}, Kit(kAppend2)}, kFrames, 12, 0},
        {"shortened for later modules", {Kit(kAppend1), Kit(kHalve), Kit(kAppend2)}, kFrames / 2, 12, 0},
        {"shortened twice", {Kit(kHalve), Kit(kHalve), Kit(kAppend3)}, kFrames / 4, 3, 0},
        {"lengthened up to twice", {Kit(kAppend1), Kit(kDouble), Kit(kAppend2)}, 2 * kFrames, 12, 0},
        {"negative is nothing", {Kit(kAppend1), Kit(kNegative), Kit(kAppend2)}, 0, 0, 0},
        {"more than the room is cut", {Kit(kAppend1), Kit(kOverlong)}, 2 * kFrames, 1, kFrames},
        {"double twice stays in the room", {Kit(kDouble), Kit(kHalve), Kit(kDouble)}, 2 * kFrames, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Activate(c.refs);
        std::vector<int16_t> block;
        const uint32_t frames = Process(block, kFrames);
        EXPECT_EQ(frames, c.frames);
        const uint32_t checked = c.valueFrames ? c.valueFrames : frames;
        if (checked) {
            EXPECT_EQ(UniformValue(block, 2 * checked), c.value) << "first sample " << block[0];
        }
    }
    // Shortened: the rest of the block stays as the last module that had it whole left it,
    // and the room beyond it is untouched.
    Activate({Kit(kAppend1), Kit(kHalve), Kit(kAppend2)});
    std::vector<int16_t> block;
    ASSERT_EQ(Process(block, kFrames), kFrames / 2);
    EXPECT_EQ(UniformValue({block.begin() + kFrames, block.begin() + 2 * kFrames}, kFrames), 1);
    EXPECT_EQ(block[2 * kFrames], 0);
    EXPECT_THAT(window.EventsContaining("violation"), IsEmpty());
}

TEST_F(DspHostTest, ModulesReceiveTheBlocksFormatAndTheRunningFrameCountButNoEmptyBlock) {
    Activate({Kit(kFormat), Kit(kHalve), Kit(kFormat)});
    std::vector<int16_t> block;
    EXPECT_EQ(Process(block, 60, 8, 1, 22050), 30u);
    EXPECT_EQ(Process(block, 10, 16, 2, 48000), 5u);
    EXPECT_EQ(Process(block, 0), 0u);
    EXPECT_THAT(window.EventsContaining("Kit/format format"),
                ElementsAre("Kit/format format 8 1 22050 60", "Kit/format format 8 1 22050 30",
                            "Kit/format format 16 2 48000 10", "Kit/format format 16 2 48000 5"));
}

}  // namespace
}  // namespace verdin::test
