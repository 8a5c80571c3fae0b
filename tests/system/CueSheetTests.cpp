// A cue sheet over one image played through to WAV files: each track's file holds exactly
// its slice of the image, the boundary falling between two of the decoder's 10 ms steps.
#include "SystemFixture.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"

#include <algorithm>
#include <filesystem>

namespace verdin::test {
namespace {

using namespace std::chrono_literals;

TEST_F(SystemTest, EachTrackOfACueSheetDecodesToExactlyItsSliceOfTheImage) {
    SeedSettings([this](Settings& s) { DecodeToFiles(s); });
    const std::string image = home_.dir.file("music/album image.wav");
    ASSERT_EQ(RunCommand({"sox", "-n", "-r", "44100", "-c", "2", "-b", "16", image, "synth", "2.5", "sine", "200-2000"})
                  .exitCode, 0);
    const std::string sheet = home_.dir.file("music/album.cue");
    WriteFile(sheet, "PERFORMER \"The Band\"\nFILE \"album image.wav\" WAVE\n  TRACK 01 AUDIO\n    TITLE \"First\"\n"
                     "    INDEX 01 00:00:00\n  TRACK 02 AUDIO\n    TITLE Second\n    INDEX 00 00:00:40\n"
                     "    INDEX 01 00:01:01\n");
    auto player = Start({"--headless", "--quit-after-play", "/PLAY", sheet});
    ASSERT_EQ(player->WaitForExit(30s), 0) << player->Output();
    const std::string saved = ReadFile(home_.DefaultPlaylist());
    EXPECT_NE(saved.find("Entry2=" + sheet + "#2"), std::string::npos) << saved;
    EXPECT_EQ(saved.find("Entry3="), std::string::npos) << saved;

    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(OutDirectory())) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    ASSERT_EQ(files.size(), 2u);
    EXPECT_NE(files[0].find("The Band - First"), std::string::npos) << files[0];
    // 1 s and one CD frame: 44100 + 588 frames of 4 bytes.
    const std::vector<uint8_t> whole = WavData(image);
    const auto boundary = whole.begin() + 44688 * 4;
    EXPECT_EQ(WavData(files[0]), std::vector<uint8_t>(whole.begin(), boundary));
    EXPECT_EQ(WavData(files[1]), std::vector<uint8_t>(boundary, whole.end()));
}

}  // namespace
}  // namespace verdin::test
