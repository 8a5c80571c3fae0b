#include "MiniGeometry.h"

#include <algorithm>
#include <cstdlib>

namespace verdin {

namespace {

// Moves start so that the edge at start + offset lands on target, when it is near.
void Snap(int32_t& start, int32_t offset, int32_t target) {
    if (std::abs(start + offset - target) < kMiniSnapDistance) start = target - offset;
}

// One axis: the leading edge, then the trailing edge, each against the screen's own edge
// first and then the panel's two edges.
void SnapAxis(int32_t& start, int32_t size, int32_t screenStart, int32_t screenEnd, bool panel, int32_t panelStart,
              int32_t panelEnd) {
    Snap(start, 0, screenStart);
    if (panel) {
        Snap(start, 0, panelStart);
        Snap(start, 0, panelEnd);
    }
    Snap(start, size, screenEnd);
    if (panel) {
        Snap(start, size, panelStart);
        Snap(start, size, panelEnd);
    }
}

int64_t DistanceSquared(const ScreenRect& rect, int32_t px, int32_t py) {
    const int64_t dx = px < rect.x ? rect.x - px : px >= rect.right() ? px - rect.right() + 1 : 0;
    const int64_t dy = py < rect.y ? rect.y - py : py >= rect.bottom() ? py - rect.bottom() + 1 : 0;
    return dx * dx + dy * dy;
}

}  // namespace

ScreenRect PlaceMiniWindow(const MiniPlacement& placement) {
    ScreenRect rect = placement.window;
    rect.height = (placement.showPosition ? kMiniTitleHeight + 1 + kMiniPositionHeight : kMiniTitleHeight) + 2 * kMiniFrame;
    const int32_t width = placement.contentWidth + 2 * kMiniFrame;
    if (width != rect.width) rect.x += rect.width - width;
    rect.width = width;

    const ScreenRect& screen = placement.screen;
    const ScreenRect& panel = placement.taskbar;
    const bool hasPanel = !panel.empty();
    SnapAxis(rect.y, rect.height, screen.y, screen.bottom(), hasPanel, panel.y, panel.bottom());
    SnapAxis(rect.x, rect.width, screen.x, screen.right(), hasPanel, panel.x, panel.right());

    rect.x = std::max(rect.x, screen.x);
    rect.y = std::max(rect.y, screen.y);
    rect.x = std::min(rect.x, screen.right() - rect.width);
    rect.y = std::min(rect.y, screen.bottom() - rect.height);
    return rect;
}

ScreenRect NearestPanel(const ScreenRect& screen, const ScreenRect& available, const ScreenRect& window) {
    const std::vector<ScreenRect> strips = {
        {screen.x, screen.y, screen.width, available.y - screen.y},                   // top
        {screen.x, available.bottom(), screen.width, screen.bottom() - available.bottom()},  // bottom
        {screen.x, screen.y, available.x - screen.x, screen.height},                  // left
        {available.right(), screen.y, screen.right() - available.right(), screen.height},    // right
    };
    const int32_t cx = window.x + window.width / 2;
    const int32_t cy = window.y + window.height / 2;
    ScreenRect nearest;
    int64_t best = 0;
    for (const ScreenRect& strip : strips) {
        if (strip.empty()) continue;
        const int64_t distance = DistanceSquared(strip, cx, cy);
        if (nearest.empty() || distance < best) {
            nearest = strip;
            best = distance;
        }
    }
    return nearest;
}

}  // namespace verdin
