// The active list: built from "dspPlugins" at start-up, changed by Apply, released at
// exit; which modules get an instance, and when Init and Quit are called.
#include "plugins/dsp/DspHost.h"

#include "TempDir.h"
#include "TestModules.h"
#include "TestWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace verdin {
namespace {

using test::PlaceTestModule;
using test::TempDir;
using test::TestWindow;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ActiveListTest : public ::testing::Test {
protected:
    void SetUp() override {
        x = PlaceTestModule("kit", dir.str(), "x.so");
        y = PlaceTestModule("other", dir.str(), "y.so");
        libraries.emplace(window.record(), dir.str() + ";");
    }

    void Start(const std::string& dspPlugins) { host.SetActiveList(*libraries, ParseDspPlugins(dspPlugins)); }

    // The module description of each entry's instance, "-" for an entry without one.
    std::vector<std::string> Modules() const {
        std::vector<std::string> out;
        for (const ActiveDspEntry& entry : host.ActiveList())
            out.push_back(entry.instance ? entry.instance->module()->description : "-");
        return out;
    }

    TempDir dir;
    TestWindow window;
    std::string x, y;
    std::optional<DspLibraryList> libraries;
    DspHost host;
};

TEST_F(ActiveListTest, StartUpActivatesAndInitialisesEachEntryInOrder) {
    Start(x + ",1;" + y + ";");
    EXPECT_THAT(Modules(), ElementsAre("append 2", "append 4"));
    for (const ActiveDspEntry& entry : host.ActiveList()) EXPECT_TRUE(entry.instance->initialised());
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 2 Init", "Other/append 4 Init"));
    EXPECT_EQ(host.DspPluginsText(), x + ",1;" + y + ",0;");
}

TEST_F(ActiveListTest, EntriesThatCannotBeActivatedStayWithoutAnInstance) {
    const std::string text = x + ",99;" + dir.file("gone.so") + ",0;" + x + ",-1;" + x + "/,0;" + y + ",1;";
    Start(text);
    EXPECT_THAT(Modules(), ElementsAre("-", "-", "-", "-", "append 5"));
    EXPECT_THAT(window.Events(), ElementsAre("Other/append 5 Init"));
    // They are kept, so the setting is written back as it was read.
    EXPECT_EQ(host.DspPluginsText(), text);
}

TEST_F(ActiveListTest, TheSameModuleTwiceIsTwoEntriesEachInitialised) {
    Start(x + ",0;" + x + ",0;");
    EXPECT_THAT(Modules(), ElementsAre("append 1", "append 1"));
    EXPECT_NE(host.ActiveList()[0].instance, host.ActiveList()[1].instance);
    EXPECT_EQ(window.CountOf("Kit/append 1 Init"), 2u);
}

TEST_F(ActiveListTest, ApplyKeepsModulesThatStayAndReleasesThoseThatLeave) {
    Start(x + ",0;" + x + ",1;" + y + ",0;");
    const DspModuleInstance* kept = host.ActiveList()[2].instance.get();
    window.ClearEvents();

    host.SetActiveList(*libraries, ParseDspPlugins(y + ",0;" + x + ",2;" + x + ",0;"));
    EXPECT_THAT(Modules(), ElementsAre("append 4", "append 3", "append 1"));
    EXPECT_EQ(host.ActiveList()[0].instance.get(), kept);
    // New modules are initialised before the old ones are quit: no block can reach a
    // module that is not initialised.
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 3 Init", "Kit/append 2 Quit"));
    EXPECT_EQ(host.DspPluginsText(), y + ",0;" + x + ",2;" + x + ",0;");
}

TEST_F(ActiveListTest, ApplyWithANewSearchPathDropsModulesItNoLongerFinds) {
    Start(x + ",0;");
    DspLibraryList elsewhere(window.record(), dir.file("nothing-here") + ";");
    window.ClearEvents();
    host.SetActiveList(elsewhere, ParseDspPlugins(x + ",0;"));
    EXPECT_THAT(Modules(), ElementsAre("-"));
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 1 Quit"));
}

TEST_F(ActiveListTest, ClearAndDestructionQuitEveryInitialisedModuleOnce) {
    Start(x + ",0;" + y + ",1;");
    host.ClearActiveList();
    EXPECT_THAT(host.ActiveList(), IsEmpty());
    EXPECT_EQ(host.DspPluginsText(), "");
    EXPECT_EQ(window.CountOf("Kit/append 1 Quit"), 1u);
    EXPECT_EQ(window.CountOf("Other/append 5 Quit"), 1u);

    window.ClearEvents();
    {
        DspHost other;
        other.SetActiveList(*libraries, ParseDspPlugins(y + ",0;"));
    }
    EXPECT_THAT(window.Events(), ElementsAre("Other/append 4 Init", "Other/append 4 Quit"));
    EXPECT_THAT(window.EventsContaining("violation"), IsEmpty());
}

}  // namespace
}  // namespace verdin
