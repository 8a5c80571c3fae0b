// The visualization and general-purpose libraries on a search path: which are found, in
// which order, with which descriptions; nothing stays loaded; "Configure" of a module.
#include "plugins/library/PluginScan.h"

#include "TestModules.h"

#include <verdin/window.h>

#include <gtest/gtest.h>

namespace verdin {

bool operator==(const FoundPluginLibrary& a, const FoundPluginLibrary& b) {
    return a.path == b.path && a.description == b.description && a.modules == b.modules;
}

namespace {

const std::string kScanDir = VERDIN_SCAN_TEST_MODULES;
const std::string kPath = std::string(VERDIN_DSP_TEST_MODULES) + ";;" + kScanDir + ";/no/such/dir";

TEST(PluginScan, FindsEachKindAlongTheSearchPathAndLeavesNothingLoaded) {
    const std::vector<FoundPluginLibrary> vis = FindVisualizationLibraries(kPath);
    const std::vector<FoundPluginLibrary> expectedVis = {
        {kScanDir + "/scan_endless.so", "Endless", std::vector<std::string>(1024, "bars")},
        {kScanDir + "/scan_vis.so", "Scan Vis", {"bars", "scope"}},
    };
    EXPECT_EQ(vis, expectedVis);  // the DSP libraries and the general one are passed over
    const std::vector<FoundPluginLibrary> general = {{kScanDir + "/scan_general.so", "Scan General", {}}};
    EXPECT_EQ(FindGeneralPurposeLibraries(kPath), general);
    EXPECT_TRUE(FindVisualizationLibraries("").empty());
    for (const auto& library : {expectedVis[0], expectedVis[1], general[0]})
        EXPECT_EQ(test::LoadedHandle(library.path), nullptr) << library.path;
}

TEST(PluginScan, ConfigureHandsTheModuleItsWindowAndLibraryFirst) {
    struct Received {
        int calls = 0;
        intptr_t library = 0;
    } received;
    VerdinHostWindow window{[](VerdinHostWindow* w, uint32_t msg, uintptr_t, intptr_t lParam) -> intptr_t {
                                auto* r = static_cast<Received*>(w->host);
                                r->calls += msg == WM_USER;
                                r->library = lParam;
                                return 0;
                            },
                            &received};
    const std::string vis = kScanDir + "/scan_vis.so";
    const struct {
        std::string path;
        int module;
        bool configured;
    } cases[] = {
        {vis, 1, true},  {vis, 0, false},  // "bars" has no Config
        {vis, 2, false}, {vis, -1, false}, {kScanDir + "/scan_general.so", 0, false},
        {kScanDir + "/missing.so", 0, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ConfigureVisualizationModule(c.path, c.module, &window), c.configured) << c.path << " " << c.module;
    EXPECT_EQ(received.calls, 1);
    EXPECT_NE(received.library, 0);
    EXPECT_EQ(test::LoadedHandle(vis), nullptr);
}

}  // namespace
}  // namespace verdin
