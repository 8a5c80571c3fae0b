#include "shell/ui/compact/MiniGeometry.h"

#include <gtest/gtest.h>

using namespace verdin;

namespace {

constexpr ScreenRect kScreen{0, 0, 1280, 800};
constexpr ScreenRect kBottomPanel{0, 770, 1280, 30};
constexpr ScreenRect kNoPanel{};

}  // namespace

// A 200 pixel title strip: the window is 206 wide, 20 high, 26 with the position bar.
TEST(PlaceMiniWindow, SizesSnapsToScreenAndPanelEdgesAndStaysOnScreen) {
    const struct {
        const char* what;
        ScreenRect window;
        int32_t content;
        bool position;
        ScreenRect screen, panel, expected;
    } cases[] = {
        {"7 px from the left edge snaps", {7, 300, 206, 26}, 200, true, kScreen, kBottomPanel, {0, 300, 206, 26}},
        {"8 px from the left edge stays", {8, 300, 206, 26}, 200, true, kScreen, kBottomPanel, {8, 300, 206, 26}},
        {"over the panel's top edge", {300, 749, 206, 26}, 200, true, kScreen, kBottomPanel, {300, 744, 206, 26}},
        {"no panel: the same place stays", {300, 749, 206, 26}, 200, true, kScreen, kNoPanel, {300, 749, 206, 26}},
        {"right edge to the screen's", {1069, 300, 206, 26}, 200, true, kScreen, kNoPanel, {1074, 300, 206, 26}},
        {"top under a top panel", {300, 33, 206, 26}, 200, true, kScreen, {0, 0, 1280, 30}, {300, 30, 206, 26}},
        {"left beside a left panel", {45, 300, 206, 26}, 200, true, kScreen, {0, 0, 40, 800}, {40, 300, 206, 26}},
        {"position bar on: 20 to 26", {300, 300, 206, 20}, 200, true, kScreen, kBottomPanel, {300, 300, 206, 26}},
        {"wider: the right edge stays", {500, 300, 206, 26}, 300, true, kScreen, kBottomPanel, {400, 300, 306, 26}},
        {"off the bottom left", {-50, 900, 206, 26}, 200, true, kScreen, kNoPanel, {0, 774, 206, 26}},
        {"off the right", {1200, 100, 206, 26}, 200, true, kScreen, kNoPanel, {1074, 100, 206, 26}},
        {"second screen: its own edges", {1285, 405, 206, 26}, 200, true, {1280, 0, 1024, 768}, kNoPanel,
         {1280, 405, 206, 26}},
    };
    for (const auto& c : cases) {
        const ScreenRect placed = PlaceMiniWindow({c.window, c.content, c.position, c.screen, c.panel});
        EXPECT_EQ(placed, c.expected) << c.what << ": got " << placed.x << "," << placed.y << " " << placed.width
                                      << "x" << placed.height;
    }
}

TEST(NearestPanel, TheStripBetweenScreenAndWorkAreaClosestToTheWindow) {
    const ScreenRect available{0, 30, 1280, 740};
    EXPECT_EQ(NearestPanel(kScreen, available, {300, 700, 206, 26}), kBottomPanel);
    EXPECT_EQ(NearestPanel(kScreen, available, {300, 100, 206, 26}), (ScreenRect{0, 0, 1280, 30}));
    EXPECT_TRUE(NearestPanel(kScreen, kScreen, {300, 700, 206, 26}).empty());
}
