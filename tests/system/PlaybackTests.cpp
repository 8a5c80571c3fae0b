// Playing a playlist through to its end: continuous play on a sound device, loop mode,
// decoding every track into a numbered WAV file, random entries through a sample space.
#include "SystemFixture.h"

#include "Files.h"
#include "PcmFixtures.h"

#include <csignal>

namespace verdin::test {
namespace {

using namespace std::chrono_literals;

TEST_F(SystemTest, ThreeTracksPlayToTheEndAndThePlayerStopsWithLoopOff) {
    SeedSettings([](Settings& s) { UseNullSoundCard(s); });
    auto player = Start({"--headless", "--quit-after-play", "/PLAY", Tone("1.wav", 0.4, 300), Tone("2.wav", 0.4, 400),
                         Tone("3.wav", 0.4, 500)});
    // Continuous play on one device: the rows move on while the player keeps playing.
    EXPECT_TRUE(WaitFor([&] { return player->CurrentRow() == 2; }, 10s));
    EXPECT_EQ(player->WaitForExit(15s), 0) << player->Output();
    EXPECT_EQ(LoadSavedSettings().savedCurrentIndex, 0) << "after the last row the first is current again";
}

TEST_F(SystemTest, WithLoopOnTheFirstTrackFollowsTheLast) {
    SeedSettings([](Settings& s) {
        UseNullSoundCard(s);
        s.loopMode = 1;
    });
    auto player = Start({"--headless", "/PLAY", Tone("1.wav", 0.3, 300), Tone("2.wav", 0.3, 400), Tone("3.wav", 0.3, 500)});
    ASSERT_TRUE(WaitFor([&] { return player->CurrentRow() == 2; }, 10s));
    EXPECT_TRUE(WaitFor([&] { return player->CurrentRow() == 0; }, 10s));
    EXPECT_EQ(player->Status(), "playing");
    player->Signal(SIGTERM);
    EXPECT_EQ(player->WaitForExit(), 0);
}

TEST_F(SystemTest, APlaylistDecodesIntoNumberedFilesHoldingExactlyEachTracksSamples) {
    SeedSettings([this](Settings& s) { DecodeToFiles(s); });
    std::vector<std::string> tracks;
    for (int i = 0; i < 12; ++i) tracks.push_back(Tone("track" + std::to_string(i) + ".wav", 0.2 + 0.01 * i, 200 + 50 * i));
    std::vector<std::string> arguments{"--headless", "--quit-after-play", "/PLAY"};
    arguments.insert(arguments.end(), tracks.begin(), tracks.end());
    auto player = Start(arguments);
    ASSERT_EQ(player->WaitForExit(30s), 0) << player->Output();
    for (int i = 0; i < 12; ++i) {
        // Twelve entries: numbers are written with a space and a width of two.
        char name[64];
        std::snprintf(name, sizeof name, " %2d. track%d.wav", i + 1, i);
        const std::string file = OutDirectory() + "/" + name;
        ASSERT_TRUE(FileExists(file)) << file;
        EXPECT_EQ(WavData(file), WavData(tracks[static_cast<size_t>(i)])) << file;
    }
}

TEST_F(SystemTest, TracksDeletedAfterPlayingLeaveAnEmptyPlaylistBehind) {
    SeedSettings([this](Settings& s) {
        DecodeToFiles(s);
        s.deleteTracksAfterPlaying = 1;
    });
    auto player = Start({"--headless", "--quit-after-play", "/PLAY", Tone("a.wav", 0.2, 300), Tone("b.wav", 0.2, 400),
                         Tone("c.wav", 0.2, 500)});
    ASSERT_EQ(player->WaitForExit(30s), 0) << player->Output();
    // Each entry numbered 1: the one before it was gone when it started.
    EXPECT_TRUE(FileExists(OutDirectory() + "/1. c.wav"));
    EXPECT_EQ(ReadFile(home_.DefaultPlaylist()).find(".wav"), std::string::npos);
}

TEST_F(SystemTest, RandomEntriesPickFromTheSampleSpace) {
    // Tracks whose file bodies tell them apart; the entry wants the one called "wanted".
    Tone("other.wav", 0.1, 300);
    const std::string wanted = Tone("wanted.wav", 0.15, 700);
    SeedSettings([&](Settings& s) {
        DecodeToFiles(s);
        s.sampleSpaceSearchPath = home_.dir.file("music") + ";";
    });
    WriteFile(home_.DefaultPlaylist(), PlaylistText({";(FILEBODY = \"wanted\")"}));
    auto player = Start({"--headless", "--quit-after-play"});
    ASSERT_TRUE(player->Call("Command", {"108"}));  // play
    ASSERT_EQ(player->WaitForExit(20s), 0) << player->Output();
    const std::string file = OutDirectory() + "/1. wanted.wav";
    ASSERT_TRUE(FileExists(file)) << player->Output();
    EXPECT_EQ(WavData(file), WavData(wanted));
}

TEST_F(SystemTest, AnEmptySampleSpaceWarnsAndDoesNotPlay) {
    SeedSettings([&](Settings& s) {
        DecodeToFiles(s);
        s.sampleSpaceSearchPath = home_.dir.file("nothing-here") + ";";
    });
    WriteFile(home_.DefaultPlaylist(), PlaylistText({";"}));
    auto player = Start({"--headless"});
    ASSERT_TRUE(player->Call("Command", {"108"}));
    EXPECT_EQ(player->Status(), "stopped");
    EXPECT_NE(player->Output().find("No tracks where found from the current sample space path."), std::string::npos)
        << player->Output();
}

}  // namespace
}  // namespace verdin::test
