// What the player does when things go wrong around it, run as a user would meet it: a
// clear message, a player that stays usable or ends with a status a script can read, and
// the files on disk intact.
#include "SystemFixture.h"

#include "Files.h"
#include "PulseServer.h"

#include <QCoreApplication>
#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin::test {
namespace {

using namespace std::chrono_literals;

TEST_F(SystemTest, WithoutASoundOutputAQuitAfterPlayRunSaysWhyAndFails) {
    SeedSettings([](Settings& s) { s.outputType = 2; });  // the sound server, and none answers
    const char* saved = std::getenv("PULSE_SERVER");
    const std::string restore = saved ? saved : "";
    setenv("PULSE_SERVER", ("unix:" + home_.dir.file("run/no-server")).c_str(), 1);
    const std::string a = Tone("a.wav", 0.2, 440);
    PlayerProcess player(home_, bus_, {"--headless", "--quit-after-play", "/PLAY", a});
    EXPECT_EQ(player.WaitForExit(20s), 1) << player.Output();
    saved ? setenv("PULSE_SERVER", restore.c_str(), 1) : unsetenv("PULSE_SERVER");
    EXPECT_NE(player.Output().find("Verdin: Failed to initialize DirectSound playback.\n"), std::string::npos) << player.Output();
    EXPECT_EQ(ReadFile(home_.DefaultPlaylist()), PlaylistText({a}));
}

TEST_F(SystemTest, APipeNamedLikeATrackIsRefusedWithoutHoldingThePlayer) {
    SeedSettings([this](Settings& s) { DecodeToFiles(s); });
    const std::string pipe = home_.dir.file("music/pipe.wav");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);  // nobody ever writes to it
    PlayerProcess player(home_, bus_, {"--headless", "--quit-after-play", "/PLAY", pipe});
    EXPECT_EQ(player.WaitForExit(20s), 1) << player.Output();
    EXPECT_NE(player.Output().find("Verdin: \"" + pipe + "\" is of an unknown file format.\n"), std::string::npos) << player.Output();
}

// The player reaches the server through a link, so that the second server, at another
// address, is found where the first one was.
TEST_F(SystemTest, ASoundServerThatDiesStopsPlaybackWithAReasonAndTheNextPlayFindsANewOne) {
    if (!PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
    SeedSettings([](Settings& s) { s.outputType = 2; });
    const char* saved = std::getenv("PULSE_SERVER");
    const std::string restore = saved ? saved : "", link = home_.dir.file("run/sound-server");
    auto first = std::make_unique<PulseServer>();
    ASSERT_TRUE(first->Running()) << first->Error();
    ASSERT_EQ(symlink(first->Address().substr(5).c_str(), link.c_str()), 0);
    setenv("PULSE_SERVER", ("unix:" + link).c_str(), 1);
    auto player = Start({"--headless", "/PLAY", Tone("long.wav", 30, 440)});
    EXPECT_TRUE(WaitFor([&] { return player->Status() == "playing"; }, 10s)) << player->Output();
    first->Kill();
    EXPECT_TRUE(WaitFor([&] { return player->Status() == "stopped"; }, 10s)) << player->Output();
    EXPECT_NE(player->Output().find("Verdin: PulseAudio playback stopped: the PulseAudio server connection was lost"),
              std::string::npos) << player->Output();
    PulseServer second;
    ASSERT_TRUE(second.Running()) << second.Error();
    ASSERT_EQ(unlink(link.c_str()), 0);
    ASSERT_EQ(symlink(second.Address().substr(5).c_str(), link.c_str()), 0);
    ASSERT_TRUE(player->Call("Command", {"108"}));  // play
    EXPECT_TRUE(WaitFor([&] { return player->Status() == "playing"; }, 10s)) << player->Output();
    player->Signal(SIGTERM);
    EXPECT_EQ(player->WaitForExit(), 0) << player->Output();
    saved ? setenv("PULSE_SERVER", restore.c_str(), 1) : unsetenv("PULSE_SERVER");
}

// Texts no user types: ten megabytes of names, a quote left open, and a second start with
// a name that is not UTF-8, which a bus string cannot carry. Only what exists is added,
// the second start says what it left out, and the player answers after each.
TEST_F(SystemTest, OddCommandTextsAddWhatExistsAndNothingElse) {
    int argc = 0;
    QCoreApplication bus(argc, nullptr);
    SeedSettings([this](Settings& s) { DecodeToFiles(s); });
    const std::string a = Tone("a.wav", 0.2, 440), latin1 = Tone("caf\xe9.wav", 0.2, 440);
    auto player = Start({"--headless"});
    std::string huge;
    while (huge.size() < 10 << 20) huge += "/no/such/file \"\" ";
    ASSERT_TRUE(player->Execute(huge + a));
    ASSERT_TRUE(player->Execute("\"" + a + "\" \"" + a));
    const auto [code, output] = RunSecondStart(home_, bus_, {latin1, a});
    EXPECT_EQ(code, 0);
    EXPECT_EQ(output, "Verdin: names that are not UTF-8 cannot be handed to the running player; they were left out.\n");
    EXPECT_EQ(player->RowCount(), 4);  // a once, twice, once
    EXPECT_EQ(player->Call("Caption"), "('1. a <stopped>',)");
}

// Every method of the player's object once (the sanitizer build runs this too), then a
// quit that would lose an edited nested playlist: nobody can answer, so it keeps it.
TEST_F(SystemTest, EveryPlayerMethodAnswersAndQuitWithoutAWindowKeepsUnsavedPlaylists) {
    SeedSettings([this](Settings& s) { DecodeToFiles(s); });
    const std::string a = Tone("a.wav", 0.2, 440), nested = home_.dir.file("music/nested.m3u");
    WriteFile(nested, Tone("b.wav", 0.2, 550) + "\n");
    auto player = Start({"--headless", a, nested});
    EXPECT_EQ(player->Call("Status"), "('1. a 0:00 (0:00)',)");
    EXPECT_EQ(player->Call("Caption"), "('1. a <stopped>',)");
    EXPECT_EQ(player->Call("Position"), "(uint32 0,)");
    for (const char* name : {"saved.m3u", "saved.PLS", "saved.vdp"}) {
        ASSERT_TRUE(player->Call("SavePlaylist", {home_.dir.file(name)})) << name;
        EXPECT_NE(ReadFile(home_.dir.file(name)).find("music/a.wav"), std::string::npos) << ReadFile(home_.dir.file(name));
    }
    EXPECT_EQ(ReadFile(home_.dir.file("saved.PLS")).rfind("[playlist]", 0), 0u);
    EXPECT_FALSE(player->Call("SavePlaylist", {home_.dir.file("missing/x.vdp")}));

    ASSERT_TRUE(player->Call("Command", {"50118"}));  // sorting marks the nested playlist edited
    ASSERT_TRUE(player->Call("Quit"));
    const std::string asked = "Verdin: The main playlist contains unsaved playlist(s). Quit anyway? No\n";
    EXPECT_TRUE(WaitFor([&] { return player->Output().find(asked) != std::string::npos; }, 10s)) << player->Output();
    EXPECT_EQ(player->Status(), "stopped");
    player->Signal(SIGTERM);
    EXPECT_EQ(player->WaitForExit(), 0) << player->Output();
}

}  // namespace
}  // namespace verdin::test
