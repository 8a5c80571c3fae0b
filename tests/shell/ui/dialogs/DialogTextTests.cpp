// The toolkit-free texts of the dialogs: the General page of a track's properties (each
// value's format, and the whole page of a WAV file read by the bundled module) and the
// file choosers' filters, which the player writes as "description|patterns|...".
#include "shell/ui/dialogs/common/FileChooser.h"
#include "shell/ui/dialogs/properties/GeneralPageText.h"

#include "engine/input/InputModuleList.h"
#include "playlist/TrackRecord.h"

#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <climits>

namespace verdin {
namespace {

TEST(DialogText, ValuesAreFormattedAsThePagesShowThem) {
    const std::pair<std::string, std::string> cases[] = {
        {FormatPropertiesDuration(3723450), "1:02:03.45"},  // hours only from one hour on
        {FormatPropertiesDuration(59990), "0:59.99"},
        {FormatPropertiesDuration(9), "0:00.00"},
        {FormatPropertiesDuration(3599999), "59:59.99"},
        {FormatPropertiesDuration(UINT32_MAX), "1193:02:47.29"},
        {FormatPropertiesBitrate(-192000), "192 kb/s (average)"},  // negative: an average
        {FormatPropertiesBitrate(128999), "128 kb/s"},
        {FormatPropertiesBitrate(INT_MIN), "2147483 kb/s (average)"},
        {FormatCompressionRatio(44100, 2, 16, 128000), "1 : 11.025"},  // the raw rate over the bit rate's size
        {FormatCompressionRatio(44100, 2, 16, -192000), "1 : 7.350"},
        {FormatCompressionRatio(44100, 2, 16, 0), "1 : -"},
        // A track not yet read shows what its record holds before any module answered.
        {GeneralPageText(TrackRecord("/music/a b.mp3")),
         "/music/a b.mp3\n\n0 bytes\n\n0:00.00\n\n0 kb/s\n\n1 Hz\n\n8 bit mono\n\n1 : 8.000\n\n"},
        {QtFileFilter("Equalizer preset|*.eq|All files|*.*|").toStdString(), "Equalizer preset (*.eq);;All files (*)"},
        {QtFileFilter("Bitmaps|*.bmp;*.png|").toStdString(), "Bitmaps (*.bmp *.png)"},
        {QtFileFilter("No trailing bar|*.x").toStdString(), "No trailing bar (*.x)"},
        {QtFileFilter("|*.eq|Named|*.n|").toStdString(), "Named (*.n)"},  // no description: left out
        {QtFileFilter("Lonely description|").toStdString(), ""},
    };
    for (const auto& [made, expected] : cases) EXPECT_EQ(made, expected);
}

TEST(DialogText, TheGeneralPageOfAWavFile) {
    test::TempDir dir;
    const std::string path = dir.file("tone.wav");
    test::WriteWav(path, 2, 44100, 16, test::Bytes16(test::Sine16(44100 * 2 + 441, 2, 44100, {440.0})));
    InputModuleList modules;
    modules.LoadInputModules(std::string(VERDIN_TEST_PLUGIN_DIR) + ";", nullptr);
    TrackRecord track(path);
    ASSERT_TRUE(track.RetrieveInformation(modules, false));
    // 2.01 s of 16-bit stereo: 88641 frames, 354564 data bytes behind a 44-byte header.
    EXPECT_EQ(GeneralPageText(track),
              path + "\n\n354608 bytes\n\n0:02.01\n\n1411 kb/s\n\n44100 Hz\n\n16 bit stereo\n\n1 : 1.000\n\n");
}

}  // namespace
}  // namespace verdin
