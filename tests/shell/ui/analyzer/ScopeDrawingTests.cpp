// The analyzer's bars and peaks, the oscilloscope's trace, and their cadence.
#include "shell/ui/analyzer/ScopeDrawing.h"

#include <algorithm>
#include <utility>
#include <gtest/gtest.h>

namespace verdin {
namespace {

// Ramp entry i is 1000 + i, so a pixel names the entry it took; the background is 7.
ScopeColours NumberedColours() {
    ScopeColours colours;
    for (int i = 0; i < 128; ++i) colours.ramp[static_cast<size_t>(i)] = 1000u + static_cast<uint32_t>(i);
    colours.background = 7;
    return colours;
}

// The bar of column x: rows from the bottom holding ramp entries 1, 7, 13, ...
int Height(ScopePixels& pixels, int x) {
    int height = 0;
    while (height < kScopeHeight && PixelAt(pixels, x, height) == 1001u + 6 * static_cast<uint32_t>(height)) ++height;
    return height;
}

// The topmost drawn row of column x (the peak mark sits above its bar), or -1.
int PeakRow(ScopePixels& pixels, int x) {
    for (int row = kScopeHeight - 1; row >= 0; --row)
        if (PixelAt(pixels, x, row) != 7u) return row;
    return -1;
}

// Each channel's bars read every sixth bin: here the left channel is loud in every bin,
// the right one in bin 570 only, its last bar's.
TEST(PaintAnalyzer, BarHeightIsTheValueOfEverySixthBinShiftedByFour) {
    struct Case {
        int32_t value;
        int height;
    };
    const Case cases[] = {{255, 15}, {240, 15}, {239, 14}, {16, 1}, {15, 0}, {0, 0}};
    const ScopeColours colours = NumberedColours();
    for (const Case& c : cases) {
        ScopePixels pixels{};
        AnalyzerHistory history;
        PaintAnalyzer(pixels, colours, history,
                      [&](int channel, int bin) { return channel == 0 || bin == 570 ? c.value : 0; });
        EXPECT_EQ(Height(pixels, 0), c.height) << c.value;
        EXPECT_EQ(Height(pixels, kRightChannelOffset + 95), c.height) << c.value;
        EXPECT_EQ(Height(pixels, kRightChannelOffset + 94), 0) << c.value;
        // The peak mark sits at the bar's top row, coloured by the bar's height.
        EXPECT_EQ(PixelAt(pixels, 0, std::min(c.value >> 4, 15)), 1053u + static_cast<uint32_t>(c.height)) << c.value;
        // Between the channels nothing is drawn.
        for (int x = 96; x < kRightChannelOffset; ++x) EXPECT_EQ(PeakRow(pixels, x), -1);
    }
}

TEST(PaintAnalyzer, BarsFallARowAPaintPeaksHoldThenFallFaster) {
    ScopePixels pixels{};
    AnalyzerHistory history;
    const ScopeColours colours = NumberedColours();
    int32_t value = 255;
    auto source = [&](int, int) { return value; };
    PaintAnalyzer(pixels, colours, history, source);
    value = 0;
    std::vector<int> heights, peaks;
    for (int paint = 0; paint < 48; ++paint) {
        PaintAnalyzer(pixels, colours, history, source);
        heights.push_back(Height(pixels, 3));
        peaks.push_back(PeakRow(pixels, 0));
    }
    EXPECT_EQ(std::vector<int>(heights.begin(), heights.begin() + 5), (std::vector<int>{14, 13, 12, 11, 10}));
    // Raised to 15 (age 0): no fall while the age is at most 25, a fall of 0 for ages
    // 26..32, then (age - 25) >> 3 = 1 a paint for ages 33..40, then 2; below the bottom
    // line it meets the silence and rests on row 0.
    EXPECT_EQ(std::count(peaks.begin(), peaks.begin() + 33, 15), 33);
    EXPECT_EQ(std::vector<int>(peaks.begin() + 33, peaks.begin() + 45), (std::vector<int>{14, 13, 12, 11, 10, 9, 8, 7, 5, 3, 1, 0}));
    EXPECT_EQ(peaks.back(), 0);
    // A rise is shown at once. (Without a track only the background: the main window's test.)
    value = 200;
    PaintAnalyzer(pixels, colours, history, source);
    EXPECT_EQ(Height(pixels, 3), 12);
}

// Column x reads sample 44100 x x x 30 / 96000 of each channel; the right channel's trace
// starts at column 104.
TEST(PaintOscilloscope, TraceRowsAndShadesOverThirtyMilliseconds) {
    struct Case {
        int32_t sample;
        int row;
        uint32_t rowEntry;
        int aboveEntry;  // -1: the row above stays background
    };
    const Case cases[] = {
        {0, 8, 0, -1},                        // v = 1024: row 8, fraction 0
        {1 << 21, 8, 1, 127},                 // v = 1025
        {-(1000 << 21), 0, 24, 104},          // v = 24
        {INT32_MAX, 15, 0, -1},               // v clamped to 1920
        {INT32_MIN, 0, 0, -1},
        {(100 << 21) + 12345, 8, 100, 28},    // v = 1124: row 8, fraction 100
    };
    for (const Case& c : cases) {
        std::vector<int> indices[2];
        ScopePixels pixels{};
        PaintOscilloscope(pixels, NumberedColours(), 44100, [&](int channel, int index) {
            indices[channel].push_back(index);
            return c.sample;
        });
        ASSERT_TRUE(indices[0].size() == 96u && indices[0] == indices[1]);
        EXPECT_EQ(std::pair(indices[0][1], indices[0][95]), std::pair(13, 1309));
        EXPECT_EQ(PixelAt(pixels, 10, c.row), 1000u + c.rowEntry) << c.sample;
        EXPECT_EQ(PixelAt(pixels, kRightChannelOffset + 10, c.row), 1000u + c.rowEntry) << c.sample;
        if (c.row + 1 < kScopeHeight) {
            EXPECT_EQ(PixelAt(pixels, 10, c.row + 1), c.aboveEntry < 0 ? 7u : 1000u + static_cast<uint32_t>(c.aboveEntry))
                << c.sample;
        }
        int drawn = 0;
        for (int row = 0; row < kScopeHeight; ++row) drawn += PixelAt(pixels, 10, row) != 7u;
        EXPECT_EQ(drawn, c.aboveEntry < 0 ? 1 : 2) << c.sample;
    }
}

TEST(ScopeCadence, RedrawEveryThirdTickAndSpectrumEveryThirtyMs) {
    ScopeCadence cadence;
    cadence.TrackStarted();
    std::string redraws, spectra;
    for (int tick = 0; tick < 9; ++tick) {
        const ScopeCadence::Tick t = cadence.Advance(true);
        redraws += t.redraw ? 'R' : '.';
        spectra += t.computeSpectrum ? 'S' : '.';
    }
    EXPECT_EQ(redraws, "..R..R..R");
    EXPECT_EQ(spectra, "..S..S..S");
}

}  // namespace
}  // namespace verdin
