// Internet radio against a station that a script of the test serves on this machine: the
// station's song titles reach the player while it plays; a station that stops sending
// ends the track with a message; a stop never waits for a silent server.
#include "SystemFixture.h"

#include "Files.h"
#include "Process.h"

#include <csignal>

namespace verdin::test {
namespace {

using namespace std::chrono_literals;

class RadioTest : public SystemTest {
protected:
    // Starts the station on a free port with an MP3 of a tone; its address.
    std::string StartStation() {
        const std::string mp3 = home_.dir.file("music/station.mp3");
        EXPECT_EQ(RunCommand({"lame", "--quiet", Tone("station.wav", 5, 440), mp3}).exitCode, 0);
        const std::string script = VERDIN_TEST_SOURCE_DIR "/tests/system/radio-station.py";
        const std::string portFile = home_.dir.file("port");
        station_ = SpawnProcess({"python3", script, mp3, portFile}, {}, home_.dir.file("station.log"));
        std::string port;
        EXPECT_TRUE(WaitFor([&] { return FileExists(portFile) && (port = ReadFile(portFile)).ends_with('\n'); }, 10s));
        port.pop_back();
        SeedSettings([](Settings& s) { UseNullSoundCard(s); });
        return "http://127.0.0.1:" + port;
    }
    // A playlist file naming the address, as radio directories hand them out (".pls" or
    // ".m3u"): addresses on the command line itself name no file and add nothing.
    std::string PlaylistOf(const std::string& name, const std::string& address) {
        const std::string path = home_.dir.file("music/" + name);
        WriteFile(path, name.ends_with(".pls") ? "[playlist]\nFile1=" + address + "\nTitle1=Test\nNumberOfEntries=1\n"
                                               : "#EXTM3U\n#EXTINF:-1,Test\n" + address + "\n");
        return path;
    }
    void TearDown() override {
        if (station_ > 0) EndProcess(station_, SIGTERM);
    }

    pid_t station_ = -1;
};

TEST_F(RadioTest, TheStationsSongTitleIsTheTitleOfTheTrackWhileItPlays) {
    // An address ending in ".mp3" is the radio module's, not the MP3 file module's.
    auto player = Start({"--headless", "/PLAY", PlaylistOf("radio.pls", StartStation() + "/live.mp3")});
    std::string caption;
    const auto shows = [&](const std::string& title) {
        return WaitFor([&] { return (caption = player->Call("Caption").value_or("")).find(title) != std::string::npos; },
                       20s);
    };
    EXPECT_TRUE(shows("First Song")) << caption << player->Output();
    EXPECT_TRUE(shows("Second Song")) << caption;
    EXPECT_EQ(player->Status(), "playing");
}

TEST_F(RadioTest, AStationThatStopsSendingEndsTheTrackWithAMessageWithinTheTimeout) {
    auto player = Start({"--headless", "/PLAY", PlaylistOf("radio.m3u", StartStation() + "/stall")});
    ASSERT_TRUE(WaitFor([&] { return player->Status() == "playing"; }, 10s)) << player->Output();
    // The station sends about four seconds of sound, then five seconds of nothing end it.
    const auto said = [&] { return player->Output().find("The server stopped sending") != std::string::npos; };
    EXPECT_TRUE(WaitFor(said, 15s)) << player->Output();
    EXPECT_TRUE(WaitFor([&] { return player->Status() == "stopped"; }, 5s));
    // Where nothing listens, the message comes at once.
    ASSERT_TRUE(player->Execute("/PLAY " + PlaylistOf("dead.pls", "http://127.0.0.1:9/dead")));
    const auto refused = [&] { return player->Output().find("Cannot connect to") != std::string::npos; };
    EXPECT_TRUE(WaitFor(refused, 3s)) << player->Output();
}

TEST_F(RadioTest, StoppingAStreamThatWaitsForASilentServerTakesNoTime) {
    auto player = Start({"--headless", "/PLAY", PlaylistOf("radio.pls", StartStation() + "/silent")});
    ASSERT_TRUE(WaitFor([&] { return player->Status() == "playing"; }, 10s)) << player->Output();
    const auto before = std::chrono::steady_clock::now();
    ASSERT_TRUE(player->Call("Command", {"106"}));  // stop
    EXPECT_LT(std::chrono::steady_clock::now() - before, 2s) << "the stop waited for the network";
    EXPECT_EQ(player->Status(), "stopped");
}

}  // namespace
}  // namespace verdin::test
