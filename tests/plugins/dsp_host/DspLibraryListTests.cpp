// Enumeration of DSP plug-in libraries along a search path, lookup, activation and
// release, with real test plug-ins copied into private directories.
#include "plugins/dsp/DspConfigure.h"
#include "plugins/dsp/DspLibraryList.h"

#include "Files.h"
#include "TempDir.h"
#include "TestModules.h"
#include "TestWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace verdin {
namespace {

using test::LoadedHandle;
using test::PlaceTestModule;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Three directories: "a" and "b" on the search path, "c" (which also holds a plug-in)
// left off it. "a" holds every kind of file enumeration meets.
class EnumerationTest : public ::testing::Test {
protected:
    void SetUp() override {
        alpha = PlaceTestModule("other", a, "Alpha.so");
        beta = PlaceTestModule("kit", a, "beta.so");
        PlaceTestModule("nullheader", a, "cNullHeader.so");
        PlaceTestModule("noentry", a, "delta.so");
        gamma = PlaceTestModule("empty", a, "gamma.so");
        PlaceTestModule("kit", a, "kit.so.txt");  // not "*.so"
        upper = PlaceTestModule("other", a, "Upper.SO");
        test::WriteFile(a + "/broken.so", "not a shared object");
        std::filesystem::create_directories(a + "/folder.so");
        inB = PlaceTestModule("kit", b, "kit.so");
        PlaceTestModule("other", c, "unlisted.so");
    }

    test::TempDir dir;
    test::TestWindow window;
    std::string a = dir.file("a"), b = dir.file("b"), c = dir.file("c");
    std::string alpha, beta, gamma, upper, inB;
};

TEST_F(EnumerationTest, ListsDspLibrariesDirectoryByDirectoryAndLeavesThemUnloaded) {
    DspLibraryList list(window.record(), a + ";;" + b + ";");
    std::vector<std::string> paths;
    for (const DspLibrary& library : list.libraries()) paths.push_back(library.path);
    // Names sort without regard to case; files that fail to load, lack the entry point or
    // give no header are left out, as are directories, other extensions and directory c.
    EXPECT_THAT(paths, ElementsAre(alpha, beta, gamma, upper, inB));
    ASSERT_EQ(list.LibraryCount(), 5u);
    EXPECT_EQ(list.LibraryAt(0)->description, "Other");
    EXPECT_THAT(list.LibraryAt(0)->moduleDescriptions, ElementsAre("append 4", "append 5"));
    EXPECT_EQ(list.LibraryAt(1)->moduleDescriptions,
              (std::vector<std::string>{"append 1", "append 2", "append 3", "halve", "double", "negative", "overlong",
                                        "gate", "format"}));
    EXPECT_EQ(list.LibraryAt(2)->description, "Empty");  // getModule(0) NULL: no modules
    EXPECT_THAT(list.LibraryAt(2)->moduleDescriptions, IsEmpty());
    EXPECT_EQ(list.LibraryAt(5), nullptr);
    for (const std::string& path : paths) EXPECT_EQ(LoadedHandle(path), nullptr) << path;
    EXPECT_THAT(window.Events(), IsEmpty());  // no module was called
    // A directory listed twice is searched twice; a file is not a directory.
    EXPECT_EQ(DspLibraryList(window.record(), b + ";" + b + ";" + b + "/kit.so;" + dir.file("missing")).LibraryCount(), 2u);
}

TEST_F(EnumerationTest, ALibraryWhoseModulesNeverEndIsCutOffInsteadOfHanging) {
    const std::string endless = PlaceTestModule("endless", c, "endless.so");
    DspLibraryList list(window.record(), c + ";");
    const DspLibrary* library = list.LibraryByPath(endless);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(library->moduleDescriptions.size(), static_cast<size_t>(DspLibraryList::kMaxModulesPerLibrary));
    EXPECT_EQ(library->moduleDescriptions.back(), "append 5");
}

TEST_F(EnumerationTest, FindsAndActivatesLibrariesByPathByteForByte) {
    DspLibraryList list(window.record(), a + ";");
    EXPECT_EQ(list.LibraryByPath(beta)->description, "Kit");
    for (const std::string& path : {a + "/Beta.so", a + "//beta.so", c + "/unlisted.so", inB, std::string()}) {
        EXPECT_EQ(list.LibraryByPath(path), nullptr) << path;  // no case folding, no normalising
        EXPECT_EQ(list.ActivateByPath(path, 0), nullptr) << path;
    }
    const struct {
        size_t library;
        int module;
    } missing[] = {{4, 0}, {2, 0}, {1, 9}, {1, -1}};  // no such library; gamma has no modules; beta has 9
    for (const auto& m : missing) EXPECT_EQ(list.Activate(m.library, m.module), nullptr) << m.library << "," << m.module;
}

TEST_F(EnumerationTest, ActivationLoadsTheLibraryForTheInstanceAndQuitOnlyFollowsInit) {
    DspLibraryList list(window.record(), a + ";");
    auto byIndex = list.Activate(1, 2);  // beta.so, "append 3"
    ASSERT_NE(byIndex, nullptr);
    EXPECT_STREQ(byIndex->module()->description, "append 3");
    EXPECT_STREQ(byIndex->header()->description, "Kit");
    ASSERT_NE(LoadedHandle(beta), nullptr);
    EXPECT_EQ(byIndex->module()->hDllInstance, LoadedHandle(beta));
    EXPECT_EQ(byIndex->module()->hwndParent, window.record());
    EXPECT_FALSE(byIndex->initialised());
    auto byPath = list.ActivateByPath(alpha, 1);
    ASSERT_NE(byPath, nullptr);
    EXPECT_STREQ(byPath->module()->description, "append 5");
    byPath->Initialise();
    EXPECT_TRUE(byPath->initialised());
    byIndex.reset();  // never initialised: no Quit
    byPath.reset();
    EXPECT_THAT(window.Events(), ElementsAre("Other/append 5 Init", "Other/append 5 Quit"));
    EXPECT_EQ(LoadedHandle(beta), nullptr);
    EXPECT_EQ(LoadedHandle(alpha), nullptr);
    // A missing module keeps its library loaded while the list lives.
    {
        DspLibraryList again(window.record(), a + ";");
        EXPECT_EQ(again.ActivateByPath(beta, 42), nullptr);
        EXPECT_NE(LoadedHandle(beta), nullptr);
    }
    EXPECT_EQ(LoadedHandle(beta), nullptr);
    // A library gone since enumeration gives none; the list itself is not refreshed.
    std::filesystem::remove(alpha);
    EXPECT_EQ(list.ActivateByPath(alpha, 0), nullptr);
    EXPECT_NE(list.LibraryByPath(alpha), nullptr);
}

TEST_F(EnumerationTest, ConfigureUsesATemporaryInstanceWithoutInitOrQuit) {
    DspLibraryList list(window.record(), a + ";");
    EXPECT_TRUE(ConfigureDspModule(list, 0, 1));
    EXPECT_TRUE(ConfigureDspModuleByPath(list, beta, 7));
    EXPECT_FALSE(ConfigureDspModule(list, 2, 0));
    EXPECT_FALSE(ConfigureDspModuleByPath(list, beta, 9));
    // The reports reach the test's window, so hwndParent was set before Config.
    EXPECT_THAT(window.Events(), ElementsAre("Other/append 5 Config", "Kit/gate Config"));
    EXPECT_EQ(LoadedHandle(alpha), nullptr);
}

}  // namespace
}  // namespace verdin
