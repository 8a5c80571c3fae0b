// Reading the tool bands' layout back from the screen into "rebarBandArray".
#include "shell/ui/window/BandLayout.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

const BandArray kDefault = {RebarBand{103, 999, 0}, {125, 0, 0}, {111, 999, 1}, {116, 0, 0},
                            {115, 0, 1}, {114, 0, 1}, {124, 0, 1}};

std::vector<int32_t> Ids(const BandArray& bands) {
    std::vector<int32_t> ids;
    for (const RebarBand& band : bands) ids.push_back(band.id);
    return ids;
}

TEST(BandsFromScreen, ShownBandsInScreenOrderWithLineBreaks) {
    // Everything shown: two bands on the first line, two on the second, three lines of one.
    const std::vector<BandOnScreen> screen = {
        {103, true, 0, 0, 400}, {125, true, 0, 400, 200}, {111, true, 30, 0, 500}, {116, true, 30, 500, 100},
        {115, true, 60, 0, 600}, {114, true, 90, 0, 204}, {124, true, 120, 0, 204}};
    const BandArray bands = BandsFromScreen(kDefault, screen);
    EXPECT_EQ(Ids(bands), (std::vector<int32_t>{103, 125, 111, 116, 115, 114, 124}));
    EXPECT_EQ(bands[0], (RebarBand{103, 400, 0}));
    EXPECT_EQ(bands[1], (RebarBand{125, 200, 0}));
    EXPECT_EQ(bands[2], (RebarBand{111, 500, 1}));
    EXPECT_EQ(bands[3], (RebarBand{116, 100, 0}));
    EXPECT_EQ(bands[6], (RebarBand{124, 204, 1}));
}

TEST(BandsFromScreen, UserMovesAreKept) {
    // The oscilloscope dragged to the front of the first line, the status band beside the
    // position band.
    const std::vector<BandOnScreen> screen = {
        {124, true, 0, 0, 204}, {103, true, 0, 204, 300}, {125, true, 0, 504, 150}, {111, true, 30, 0, 400},
        {115, true, 30, 400, 254}, {116, true, 60, 0, 120}, {114, true, 90, 0, 204}};
    const BandArray bands = BandsFromScreen(kDefault, screen);
    EXPECT_EQ(Ids(bands), (std::vector<int32_t>{124, 103, 125, 111, 115, 116, 114}));
    EXPECT_EQ(bands[0].lineBreak, 0);
    EXPECT_EQ(bands[1].lineBreak, 0);
    EXPECT_EQ(bands[3].lineBreak, 1);
    EXPECT_EQ(bands[4].lineBreak, 0);
    EXPECT_EQ(bands[5].lineBreak, 1);
}

TEST(BandsFromScreen, HiddenBandsKeepTheirPlaceWidthAndBreak) {
    // Volume (116), analyzer (114) and oscilloscope (124) hidden; their screen places mean
    // nothing.
    const std::vector<BandOnScreen> screen = {
        {103, true, 0, 0, 500}, {125, true, 0, 500, 140}, {111, true, 30, 0, 640}, {116, false, 0, 0, 0},
        {115, true, 60, 0, 640}, {114, false, 0, 0, 0}, {124, false, 0, 0, 0}};
    const BandArray bands = BandsFromScreen(kDefault, screen);
    EXPECT_EQ(Ids(bands), Ids(kDefault));
    EXPECT_EQ(bands[3], kDefault[3]);
    EXPECT_EQ(bands[5], kDefault[5]);
    EXPECT_EQ(bands[6], kDefault[6]);
    EXPECT_EQ(bands[0].width, 500);
}

TEST(BandsFromScreen, HiddenBandsDoNotSplitTheLinesShown) {
    // The status band (115) dragged to the front of the first line; the analyzer (114) and
    // the oscilloscope (124), hidden, followed it on lines of their own; the volume (116),
    // hidden, sat on the position band's line.
    const std::vector<BandOnScreen> screen = {
        {115, true, 0, 0, 200}, {103, true, 0, 200, 300}, {125, true, 0, 500, 140}, {111, true, 30, 0, 640},
        {116, false, 0, 0, 0}, {114, false, 0, 0, 0}, {124, false, 0, 0, 0}};
    const BandArray bands = BandsFromScreen(kDefault, screen);
    EXPECT_EQ(Ids(bands), (std::vector<int32_t>{115, 103, 125, 114, 124, 111, 116}));
    EXPECT_EQ(bands[0].lineBreak, 0);
    EXPECT_EQ(bands[1].lineBreak, 0);
    EXPECT_EQ(bands[2].lineBreak, 0);
    EXPECT_EQ(bands[3].lineBreak, 1);
    EXPECT_EQ(bands[4].lineBreak, 1);
    EXPECT_EQ(bands[5].lineBreak, 1);
    EXPECT_EQ(bands[6], (RebarBand{116, 0, 0}));
}

TEST(BandsFromScreen, KeepsTheIdentifiersSoTheLoadCheckHolds) {
    const std::vector<BandOnScreen> screen = {
        {115, true, 0, 0, 10}, {114, false, 0, 0, 0}, {103, true, 30, 0, 10}, {124, true, 30, 20, 10},
        {111, true, 60, 0, 10}, {125, true, 0, 20, 10}, {116, false, 0, 0, 0}};
    int32_t sum = 0;
    for (const RebarBand& band : BandsFromScreen(kDefault, screen)) sum += band.id;
    EXPECT_EQ(sum, 808);
}

}  // namespace
}  // namespace verdin
