// Reading the tool bands' layout back from the screen into "rebarBandArray".
#include "shell/ui/window/BandLayout.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

const BandArray kDefault = {RebarBand{103, 999, 0}, {125, 0, 0}, {111, 999, 1}, {116, 0, 0},
                            {115, 0, 1}, {114, 0, 1}, {124, 0, 1}};

// "id:width/break" for each band.
std::string Text(const BandArray& bands) {
    std::string text;
    for (const RebarBand& band : bands)
        text += std::to_string(band.id) + ":" + std::to_string(band.width) + "/" + std::to_string(band.lineBreak) + " ";
    return text;
}

TEST(BandsFromScreen, ShownBandsInScreenOrderHiddenOnesWhereTheyWere) {
    struct Case {
        const char* name;
        std::vector<BandOnScreen> screen;  // id, shown, top, left, width
        const char* bands;
    };
    const Case cases[] = {
        {"all shown: two lines of two, three of one",
         {{103, true, 0, 0, 400}, {125, true, 0, 400, 200}, {111, true, 30, 0, 500}, {116, true, 30, 500, 100},
          {115, true, 60, 0, 600}, {114, true, 90, 0, 204}, {124, true, 120, 0, 204}},
         "103:400/0 125:200/0 111:500/1 116:100/0 115:600/1 114:204/1 124:204/1 "},
        {"the oscilloscope dragged to the front, the status band beside the position band",
         {{124, true, 0, 0, 204}, {103, true, 0, 204, 300}, {125, true, 0, 504, 150}, {111, true, 30, 0, 400},
          {115, true, 30, 400, 254}, {116, true, 60, 0, 120}, {114, true, 90, 0, 204}},
         "124:204/0 103:300/0 125:150/0 111:400/1 115:254/0 116:120/1 114:204/1 "},
        {"hidden bands keep their place, width and break",
         {{103, true, 0, 0, 500}, {125, true, 0, 500, 140}, {111, true, 30, 0, 640}, {116, false, 0, 0, 0},
          {115, true, 60, 0, 640}, {114, false, 0, 0, 0}, {124, false, 0, 0, 0}},
         "103:500/0 125:140/0 111:640/1 116:0/0 115:640/1 114:0/1 124:0/1 "},
        {"hidden bands that followed a moved band do not split the lines shown",
         {{115, true, 0, 0, 200}, {103, true, 0, 200, 300}, {125, true, 0, 500, 140}, {111, true, 30, 0, 640},
          {116, false, 0, 0, 0}, {114, false, 0, 0, 0}, {124, false, 0, 0, 0}},
         "115:200/0 103:300/0 125:140/0 114:0/1 124:0/1 111:640/1 116:0/0 "},
    };
    for (const Case& c : cases) EXPECT_EQ(Text(BandsFromScreen(kDefault, c.screen)), c.bands) << c.name;
}

}  // namespace
}  // namespace verdin
