// The single running instance, its command text and its start-up and teardown, run as a
// user and the desktop would run them.
#include "SystemFixture.h"

#include "Files.h"

#include <csignal>

namespace verdin::test {
namespace {

using namespace std::chrono_literals;

std::string Quoted(const std::string& path) { return "\"" + path + "\""; }

TEST_F(SystemTest, TwoPlayExecutesReplaceThenAppendWithoutInterrupting) {
    SeedSettings([](Settings& s) { UseNullSoundCard(s); });
    const std::string a = Tone("a.wav", 20, 440), b = Tone("b.wav", 20, 550), old = Tone("old.wav", 1, 330);
    auto player = Start({"--headless", old});
    ASSERT_EQ(player->RowCount(), 1);

    ASSERT_TRUE(player->Call("Execute", {"/PLAY " + Quoted(a)}, "/System"));
    EXPECT_EQ(player->RowCount(), 1) << "the first /PLAY replaces the list";
    EXPECT_TRUE(WaitFor([&] { return player->Status() == "playing"; }, 5s));
    EXPECT_NE(player->Call("Rows").value_or("").find("'a'"), std::string::npos);

    ASSERT_TRUE(player->Call("Execute", {"/PLAY " + Quoted(b)}, "/System"));
    EXPECT_EQ(player->RowCount(), 2) << "the second appends";
    EXPECT_EQ(player->Status(), "playing");
    EXPECT_EQ(player->CurrentRow(), 0) << "and does not interrupt";

    // Any command in between clears the rule: the next /PLAY replaces again.
    ASSERT_TRUE(player->Call("Command", {"50052"}));  // loop mode, like a key press
    ASSERT_TRUE(player->Call("Execute", {"/PLAY " + Quoted(b)}, "/System"));
    EXPECT_EQ(player->RowCount(), 1);
    player->Call("Quit");
    EXPECT_EQ(player->WaitForExit(), 0) << player->Output();
}

// A path given at start-up is added, not played, and the default playlist stays unloaded;
// a second start hands its command line to the running instance.
TEST_F(SystemTest, PathsOnTheCommandLineAreAddedToTheOneRunningInstance) {
    SeedSettings([](Settings& s) {
        UseNullSoundCard(s);
        s.autoPlayAtStartup = 1;
    });
    const std::string saved = Tone("saved.wav", 1, 300), given = Tone("given.wav", 1, 600);
    WriteFile(home_.DefaultPlaylist(), PlaylistText({saved}));
    auto player = Start({"--headless", given});
    EXPECT_EQ(player->CurrentRow(), 0);
    EXPECT_EQ(player->Status(), "stopped");
    const auto [code, output] = RunSecondStart(home_, bus_, {Tone("second one.wav", 1, 660)});
    EXPECT_EQ(code, 0) << output;
    const std::string rows = player->Call("Rows").value_or("");
    EXPECT_EQ(player->RowCount(), 2) << rows;
    EXPECT_TRUE(rows.find("'given'") != std::string::npos && rows.find("'saved'") == std::string::npos) << rows;
    EXPECT_NE(rows.find("'second one'"), std::string::npos) << "a path with a blank stays one path: " << rows;
}

TEST_F(SystemTest, TheSavedCurrentRowIsRestoredWhenItExistsAndAutoPlayStartsIt) {
    const std::string playlist =
        PlaylistText({Tone("t1.wav", 10, 200), Tone("t2.wav", 10, 400), Tone("t3.wav", 10, 600)});
    for (const auto& [saved, expected] : {std::pair{2, 2}, std::pair{3, 0}, std::pair{99, 0}}) {
        SCOPED_TRACE(saved);
        WriteFile(home_.DefaultPlaylist(), playlist);
        SeedSettings([saved = saved](Settings& s) {
            UseNullSoundCard(s);
            s.savedCurrentIndex = saved;
            s.autoPlayAtStartup = 1;
        });
        auto player = Start({"--headless"});
        EXPECT_EQ(player->CurrentRow(), expected);
        EXPECT_TRUE(WaitFor([&] { return player->Status() == "playing"; }, 5s));
        player->Signal(SIGTERM);
        EXPECT_EQ(player->WaitForExit(), 0);
    }
}

TEST_F(SystemTest, SigtermSavesThePlaylistAndTheSettings) {
    SeedSettings([](Settings& s) { UseNullSoundCard(s); });
    const std::string a = Tone("a.wav", 1, 440), b = Tone("b.wav", 1, 550);
    auto player = Start({"--headless", a, b});
    ASSERT_TRUE(player->Call("Command", {"50053"}));  // shuffle on
    ASSERT_TRUE(player->Call("PlayRow", {"1"}));
    player->Signal(SIGTERM);
    ASSERT_EQ(player->WaitForExit(), 0) << player->Output();
    EXPECT_EQ(ReadFile(home_.DefaultPlaylist()), PlaylistText({a, b}));
    const Settings settings = LoadSavedSettings();
    EXPECT_TRUE(settings.shuffleMode == 1 && settings.savedCurrentIndex == 1);
}

TEST_F(SystemTest, KillingThePlayerWhileItSavesNeverLeavesABrokenFile) {
    SeedSettings([](Settings& s) { UseNullSoundCard(s); });
    const std::string playlist = PlaylistText(std::vector<std::string>(20000, Tone("a.wav", 0.1, 440)));
    WriteFile(home_.DefaultPlaylist(), playlist);
    for (int round = 0; round < 6; ++round) {
        SCOPED_TRACE(round);
        auto player = Start({"--headless"});
        player->Signal(SIGTERM);
        struct timespec t {0, round * 4 * 1000 * 1000};
        nanosleep(&t, nullptr);
        player->Signal(SIGKILL);
        player->WaitForExit();
        // Whatever moment the kill came, the files are whole: the old one or the new one.
        EXPECT_EQ(ReadFile(home_.DefaultPlaylist()), playlist);
        EXPECT_EQ(LoadSavedSettings().version, 28);
    }
}

TEST_F(SystemTest, HelpAndVersionAnswerWithoutStartingAPlayer) {
    for (const auto& [option, code, text] : {std::tuple{"--help", 0, "--headless"}, {"--version", 0, "Verdin "},
                                             {"--no-such-option", 2, ""}, {"--seek=+", 2, "--seek=+"},
                                             {"--play", 1, "Verdin: no running player to control."}}) {
        const auto [exitCode, output] = RunSecondStart(home_, bus_, {option});
        EXPECT_TRUE(exitCode == code && output.find(text) != std::string::npos) << option << ": " << output;
    }
}

// Remote requests run in the order given, through the running player's commands.
TEST_F(SystemTest, RemoteRequestsSteerTheRunningPlayer) {
    SeedSettings([](Settings& s) { UseNullSoundCard(s); });
    auto player = Start({"--headless", Tone("a.wav", 30, 440), Tone("b.wav", 30, 550)});
    const struct {
        std::vector<std::string> requests;
        std::string status;
        int row;
    } steps[] = {
        {{"--pause"}, "stopped", 0},
        {{"--play-pause"}, "playing", 0},
        {{"--pause"}, "paused", 0},
        {{"--play"}, "playing", 0},
        {{"--next"}, "playing", 1},
        {{"--previous", "--play-pause", "--play-pause"}, "playing", 0},
    };
    for (const auto& step : steps) {
        const auto [code, output] = RunSecondStart(home_, bus_, step.requests);
        EXPECT_EQ(code, 0) << output;
        EXPECT_EQ(player->Status(), step.status) << step.requests[0];
        EXPECT_EQ(player->CurrentRow(), step.row) << step.requests[0];
    }
    // Playing on does not start the track again; volumes are percent.
    const auto [code, output] = RunSecondStart(
        home_, bus_, {"--seek=20", "--seek=-8.5", "--play", "--volume=40", "--volume=+15", "--current=%title% %status%"});
    EXPECT_EQ(code, 0);
    EXPECT_EQ(output, "a playing\n");
    const uint32_t position = std::stoul(player->Call("Position")->substr(8));
    EXPECT_TRUE(position >= 11000 && position < 20000) << position;
    EXPECT_EQ(player->Call("Volume"), "(uint32 55,)");
}

}  // namespace
}  // namespace verdin::test
