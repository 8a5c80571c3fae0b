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
using test::TempDir;
using test::TestWindow;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::vector<std::string> kKitModules = {"append 1", "append 2", "append 3", "halve", "double",
                                              "negative", "overlong", "gate",     "format"};

// Three directories: "a" and "b" on the search path, "c" (which also holds a plug-in)
// left off it. "a" holds every kind of file enumeration meets.
class EnumerationTest : public ::testing::Test {
protected:
    void SetUp() override {
        a = dir.file("a");
        b = dir.file("b");
        c = dir.file("c");
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

    TempDir dir;
    TestWindow window;
    std::string a, b, c, alpha, beta, gamma, upper, inB;
};

TEST_F(EnumerationTest, ListsDspLibrariesDirectoryByDirectoryInListingOrder) {
    DspLibraryList list(window.record(), a + ";;" + b + ";");

    std::vector<std::string> paths;
    for (const DspLibrary& library : list.libraries()) paths.push_back(library.path);
    // Names sort without regard to case (Alpha, beta, gamma, Upper); files that fail to
    // load, lack the entry point or give no header are left out, as are directories,
    // other extensions and directory c.
    EXPECT_THAT(paths, ElementsAre(alpha, beta, gamma, upper, inB));

    ASSERT_EQ(list.LibraryCount(), 5u);
    EXPECT_EQ(list.LibraryAt(0)->description, "Other");
    EXPECT_THAT(list.LibraryAt(0)->moduleDescriptions, ElementsAre("append 4", "append 5"));
    EXPECT_EQ(list.LibraryAt(1)->description, "Kit");
    EXPECT_EQ(list.LibraryAt(1)->moduleDescriptions, kKitModules);
    // getModule(0) NULL: listed with its description and no modules.
    EXPECT_EQ(list.LibraryAt(2)->description, "Empty");
    EXPECT_THAT(list.LibraryAt(2)->moduleDescriptions, IsEmpty());
    EXPECT_EQ(list.LibraryAt(5), nullptr);
}

TEST_F(EnumerationTest, LeavesNothingLoadedAndCallsNoModule) {
    DspLibraryList list(window.record(), a + ";" + b + ";");
    for (const DspLibrary& library : list.libraries()) EXPECT_EQ(LoadedHandle(library.path), nullptr) << library.path;
    EXPECT_THAT(window.Events(), IsEmpty());
}

TEST_F(EnumerationTest, SearchPathPiecesAreUsedAsWritten) {
    struct Case {
        std::string searchPath;
        size_t libraries;
    };
    const Case cases[] = {
        {"", 0},
        {";;;", 0},
        {b, 1},                            // the last piece needs no ";"
        {";" + b + ";;", 1},               // empty pieces anywhere are skipped
        {b + ";" + b + ";", 2},            // a directory listed twice is searched twice
        {dir.file("missing") + ";" + b + ";", 1},
        {b + "/kit.so;", 0},               // a file is not a directory
    };
    for (const Case& c : cases) {
        DspLibraryList list(window.record(), c.searchPath);
        EXPECT_EQ(list.LibraryCount(), c.libraries) << "\"" << c.searchPath << "\"";
    }
}

TEST_F(EnumerationTest, ALibraryWhoseModulesNeverEndIsCutOffInsteadOfHanging) {
    const std::string endless = PlaceTestModule("endless", c, "endless.so");
    DspLibraryList list(window.record(), c + ";");
    const DspLibrary* library = list.LibraryByPath(endless);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(library->moduleDescriptions.size(), static_cast<size_t>(DspLibraryList::kMaxModulesPerLibrary));
    EXPECT_EQ(library->moduleDescriptions.back(), "append 5");
}

TEST_F(EnumerationTest, FindsLibrariesByPathByteForByte) {
    DspLibraryList list(window.record(), a + ";" + b + ";");
    ASSERT_NE(list.LibraryByPath(inB), nullptr);
    EXPECT_EQ(list.LibraryByPath(inB)->path, inB);
    EXPECT_EQ(list.LibraryByPath(beta)->description, "Kit");
    EXPECT_EQ(list.LibraryByPath(a + "/Beta.so"), nullptr);   // case matters
    EXPECT_EQ(list.LibraryByPath(a + "//beta.so"), nullptr);  // no normalising either
    EXPECT_EQ(list.LibraryByPath(c + "/unlisted.so"), nullptr);
    EXPECT_EQ(list.LibraryByPath(""), nullptr);
}

TEST_F(EnumerationTest, ActivationLoadsTheLibraryForTheInstanceAndSetsItsHandles) {
    DspLibraryList list(window.record(), a + ";");
    auto byIndex = list.Activate(1, 2);  // beta.so, "append 3"
    ASSERT_NE(byIndex, nullptr);
    EXPECT_STREQ(byIndex->module()->description, "append 3");
    EXPECT_STREQ(byIndex->header()->description, "Kit");
    void* loaded = LoadedHandle(beta);
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(byIndex->module()->hDllInstance, loaded);
    EXPECT_EQ(byIndex->module()->hwndParent, window.record());
    EXPECT_FALSE(byIndex->initialised());

    auto byPath = list.ActivateByPath(alpha, 1);
    ASSERT_NE(byPath, nullptr);
    EXPECT_STREQ(byPath->module()->description, "append 5");
    EXPECT_EQ(byPath->module()->hDllInstance, LoadedHandle(alpha));

    // Activation alone calls nothing in the module.
    EXPECT_THAT(window.Events(), IsEmpty());
    byIndex.reset();
    byPath.reset();
    EXPECT_EQ(LoadedHandle(beta), nullptr);
    EXPECT_EQ(LoadedHandle(alpha), nullptr);
}

TEST_F(EnumerationTest, ActivationGivesNoneForWhatIsNotThere) {
    DspLibraryList list(window.record(), a + ";");
    EXPECT_EQ(list.Activate(4, 0), nullptr);                   // no such library
    EXPECT_EQ(list.Activate(2, 0), nullptr);                   // gamma: no modules
    EXPECT_EQ(list.Activate(1, 9), nullptr);                   // beta has 9 modules
    EXPECT_EQ(list.Activate(1, -1), nullptr);
    EXPECT_EQ(list.ActivateByPath(inB, 0), nullptr);           // b is not searched
    EXPECT_EQ(list.ActivateByPath(a + "/BETA.so", 0), nullptr);
}

TEST_F(EnumerationTest, AMissingModuleKeepsItsLibraryLoadedWhileTheListLives) {
    {
        DspLibraryList list(window.record(), a + ";");
        EXPECT_EQ(list.ActivateByPath(beta, 42), nullptr);
        EXPECT_NE(LoadedHandle(beta), nullptr);
    }
    EXPECT_EQ(LoadedHandle(beta), nullptr);
}

TEST_F(EnumerationTest, LibraryVanishedSinceEnumerationGivesNone) {
    DspLibraryList list(window.record(), a + ";");
    std::filesystem::remove(alpha);
    EXPECT_EQ(list.ActivateByPath(alpha, 0), nullptr);
    ASSERT_NE(list.LibraryByPath(alpha), nullptr);  // the list itself is not refreshed
}

TEST_F(EnumerationTest, QuitIsCalledOnReleaseOnlyForInitialisedInstances) {
    DspLibraryList list(window.record(), a + ";");
    list.Activate(1, 0).reset();
    EXPECT_THAT(window.Events(), IsEmpty());

    auto instance = list.Activate(1, 0);
    instance->Initialise();
    EXPECT_TRUE(instance->initialised());
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 1 Init"));
    instance.reset();
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 1 Init", "Kit/append 1 Quit"));
    EXPECT_EQ(LoadedHandle(beta), nullptr);
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
