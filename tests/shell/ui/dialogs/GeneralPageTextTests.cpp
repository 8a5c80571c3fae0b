// The General page of a track's properties: each value's format, and the whole text of
// tracks whose information came from real input modules.
#include "shell/ui/dialogs/properties/GeneralPageText.h"

#include "engine/input/InputModuleList.h"
#include "playlist/TrackRecord.h"

#include "DialogTestKit.h"
#include "Files.h"
#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <climits>

namespace verdin {
namespace {

TEST(GeneralPageText, DurationsShowHundredthsAndHoursOnlyFromOneHourOn) {
    const struct {
        uint32_t milliseconds;
        const char* expected;
    } cases[] = {
        {3723450, "1:02:03.45"}, {59990, "0:59.99"},      {0, "0:00.00"},         {9, "0:00.00"},
        {10, "0:00.01"},         {61005, "1:01.00"},      {3599999, "59:59.99"},  {3600000, "1:00:00.00"},
        {36000000, "10:00:00.00"}, {UINT32_MAX, "1193:02:47.29"},
    };
    for (const auto& c : cases) EXPECT_EQ(FormatPropertiesDuration(c.milliseconds), c.expected) << c.milliseconds;
}

TEST(GeneralPageText, BitRatesAreKilobitsAndNegativeOnesAreAverages) {
    const struct {
        int32_t bitrate;
        const char* expected;
    } cases[] = {
        {-192000, "192 kb/s (average)"}, {128000, "128 kb/s"}, {128999, "128 kb/s"}, {1, "0 kb/s"},
        {-999, "0 kb/s (average)"},      {INT_MIN, "2147483 kb/s (average)"}, {INT_MAX, "2147483 kb/s"},
    };
    for (const auto& c : cases) EXPECT_EQ(FormatPropertiesBitrate(c.bitrate), c.expected) << c.bitrate;
}

TEST(GeneralPageText, CompressionIsTheRawRateOverTheBitRatesMagnitude) {
    const struct {
        int32_t rate, channels, bits, bitrate;
        const char* expected;
    } cases[] = {
        {44100, 2, 16, 128000, "1 : 11.025"},
        {44100, 2, 16, -192000, "1 : 7.350"},
        {44100, 2, 16, 1411200, "1 : 1.000"},
        {8000, 1, 8, 64000, "1 : 1.000"},
        {1, 1, 8, 1, "1 : 8.000"},  // what a record holds before any module answered
        {44100, 2, 16, 0, "1 : -"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FormatCompressionRatio(c.rate, c.channels, c.bits, c.bitrate), c.expected) << c.bitrate;
}

class GeneralPageOfTracks : public ::testing::Test {
protected:
    void SetUp() override {
        modules_.LoadInputModules(std::string(VERDIN_TEST_PLUGIN_DIR) + ";" + VERDIN_PROBE_DIR + ";", nullptr);
    }
    test::TempDir dir_;
    InputModuleList modules_;
};

TEST_F(GeneralPageOfTracks, AWavFileFromTheSoundFileModule) {
    const std::string path = dir_.file("tone.wav");
    test::WriteWav(path, 2, 44100, 16, test::Bytes16(test::Sine16(44100 * 2 + 441, 2, 44100, {440.0})));
    TrackRecord track(path);
    ASSERT_TRUE(track.RetrieveInformation(modules_, false));
    // 2.01 s of 16-bit stereo: 88641 frames, 354564 data bytes behind a 44-byte header.
    EXPECT_EQ(GeneralPageText(track), dir_.str() + "/tone.wav\n\n354608 bytes\n\n0:02.01\n\n1411 kb/s\n\n44100 Hz\n\n"
                                                   "16 bit stereo\n\n1 : 1.000\n\n");
}

TEST_F(GeneralPageOfTracks, TheProbeModulesVariableRateTrack) {
    const std::string path = dir_.file("x.probe");
    test::WriteFile(path, "anything");
    TrackRecord track(path);
    ASSERT_TRUE(track.RetrieveInformation(modules_, false));
    EXPECT_EQ(GeneralPageText(track), path + "\n\n1234 bytes\n\n0:59.99\n\n192 kb/s (average)\n\n44100 Hz\n\n"
                                             "16 bit stereo\n\n1 : 7.350\n\n");
}

TEST_F(GeneralPageOfTracks, ATrackNotYetRetrievedShowsThePlaceholderValues) {
    TrackRecord track("/music/a b.mp3");
    EXPECT_EQ(GeneralPageText(track), "/music/a b.mp3\n\n0 bytes\n\n0:00.00\n\n0 kb/s\n\n1 Hz\n\n8 bit mono\n\n1 : 8.000\n\n");
}

}  // namespace
}  // namespace verdin
