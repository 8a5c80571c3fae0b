#pragma once
// The tool bands' layout as "rebarBandArray" keeps it: seven bands in order, each with its
// identifier, width and whether it starts a new line. Toolkit-free.
//
// Reading the layout back from the window: the bands shown are taken in the order the user
// now sees them (line by line, left to right), a band that starts a line below the one
// before it has its break set, and each keeps its width. A hidden band has no place on
// screen: it keeps the width and break it had and follows the band it followed before
// (on that band's line, or on a line of its own below it).
#include "settings/Settings.h"

#include <array>
#include <vector>

namespace verdin {

using BandArray = std::array<RebarBand, 7>;

struct BandOnScreen {
    int32_t id = 0;
    bool shown = false;
    int top = 0;   // the line's top edge
    int left = 0;
    int width = 0;
};

BandArray BandsFromScreen(const BandArray& before, const std::vector<BandOnScreen>& screen);

}  // namespace verdin
