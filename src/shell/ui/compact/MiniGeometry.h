#pragma once
// Where the mini window goes: its size follows from what it shows, and its edges snap to
// the screen's and the panel's edges when they come within a few pixels. Plain
// arithmetic on rectangles, no toolkit, so that the rules can be checked case by case.
#include <cstdint>
#include <vector>

namespace verdin {

// A rectangle in screen pixels; right() and bottom() are one past the last pixel.
struct ScreenRect {
    int32_t x = 0;
    int32_t y = 0;
    int32_t width = 0;
    int32_t height = 0;

    int32_t right() const { return x + width; }
    int32_t bottom() const { return y + height; }
    bool empty() const { return width <= 0 || height <= 0; }
    bool operator==(const ScreenRect&) const = default;
};

// The frame around the mini window's content, on each side.
inline constexpr int32_t kMiniFrame = 3;
// The title strip, and the thin position bar below it (one pixel apart).
inline constexpr int32_t kMiniTitleHeight = 14;
inline constexpr int32_t kMiniPositionHeight = 5;
// An edge closer than this snaps.
inline constexpr int32_t kMiniSnapDistance = 8;

struct MiniPlacement {
    ScreenRect window;         // where the window is (or is being dragged to), old size
    int32_t contentWidth = 0;  // width the title strip gets
    bool showPosition = false;
    ScreenRect screen;         // the whole screen the window is on
    ScreenRect taskbar;        // the panel to dock to; empty when there is none
};

// The new rectangle: height 14 (20 with the position bar) plus the frame, width the
// content plus the frame. A change of width keeps the right edge where it was, so that a
// strip docked on the right stays docked. Then the top edge snaps to the screen top, the
// panel top and the panel bottom, each test on the result of the one before; then the
// bottom edge to the same three in that order; left and right likewise. Finally the
// window is kept on the screen.
ScreenRect PlaceMiniWindow(const MiniPlacement& placement);

// The panels of a screen are the strips between its whole area and the area left for
// windows. Of these the one nearest the window's centre is the panel to dock to (a
// desktop with a panel on top and one at the bottom docks to the closer one); empty when
// the two areas are the same.
ScreenRect NearestPanel(const ScreenRect& screen, const ScreenRect& available, const ScreenRect& window);

}  // namespace verdin
