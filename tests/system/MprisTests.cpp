// The player as desktop media controllers see it: the real playerctl and dbus-monitor
// against a headless player on the private bus, playing on a private PulseAudio.
#include "SystemFixture.h"

#include "Files.h"
#include "Process.h"
#include "PulseServer.h"

#include <cstdlib>

namespace verdin::test {
namespace {

using namespace std::chrono_literals;

size_t Count(const std::string& text, const std::string& what) {
    size_t count = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
    return count;
}

class MprisTest : public SystemTest {
protected:
    std::string Ctl(const std::vector<std::string>& arguments) {
        std::vector<std::string> argv{"env", "DBUS_SESSION_BUS_ADDRESS=" + bus_.Address(), "playerctl", "-p", "verdin"};
        argv.insert(argv.end(), arguments.begin(), arguments.end());
        std::string output = RunCommand(argv).output;
        while (!output.empty() && output.back() == '\n') output.pop_back();
        return output;
    }
    // What playerctl shows once it shows `expected`, or at the time limit.
    std::string CtlShows(const std::vector<std::string>& arguments, const std::string& expected) {
        std::string shown;
        WaitFor([&] { return (shown = Ctl(arguments)) == expected; }, 5s);
        return shown;
    }
    // An MP3 of a tone with the tags given as lame options; long enough that on a loaded
    // machine the track still plays (not yet handed over to the next) when the test seeks.
    std::string TaggedMp3(const std::string& name, const std::vector<std::string>& tags) {
        std::vector<std::string> argv{"lame", "--quiet", Tone(name + ".wav", 120, 440)};
        argv.insert(argv.end(), tags.begin(), tags.end());
        argv.push_back(home_.dir.file("music/" + name + ".mp3"));
        EXPECT_EQ(RunCommand(argv).exitCode, 0);
        return argv.back();
    }
};

TEST_F(MprisTest, ControllersDriveThePlayerAndHearOfEveryChange) {
    PulseServer server;
    ASSERT_TRUE(server.Running()) << server.Error();
    SeedSettings([](Settings& s) { s.outputType = 2; });
    const std::string cover = home_.dir.file("cover.png");
    WriteFile(cover, std::string("\x89PNG\r\n\x1a\n", 8) + std::string(64, 'c'));
    const std::string first = TaggedMp3("one", {"--tt", "First Song", "--ta", "Ann", "--tn", "3", "--ti", cover});
    const std::string second = TaggedMp3("two", {"--tt", "Second"});
    auto player = Start({"--headless", first, second});
    ASSERT_EQ(CtlShows({"status"}, "Stopped"), "Stopped") << player->Output();
    TempDir logs;
    const pid_t monitor = SpawnProcess({"dbus-monitor", "--session", "type=signal,path=/org/mpris/MediaPlayer2"},
                                       {"DBUS_SESSION_BUS_ADDRESS=" + bus_.Address()}, logs.file("signals"));
    const auto signals = [&] { return FileExists(logs.file("signals")) ? ReadFile(logs.file("signals")) : ""; };
    ASSERT_TRUE(WaitFor([&] { return signals().find("NameAcquired") != std::string::npos; }, 5s));

    for (const auto& [command, status] : {std::pair{"play", "Playing"}, {"pause", "Paused"}, {"play-pause", "Playing"},
                                          {"stop", "Stopped"}, {"play", "Playing"}}) {
        Ctl({command});
        EXPECT_EQ(CtlShows({"status"}, status), status) << command;
        EXPECT_TRUE(WaitFor([&] { return signals().find("string \"" + std::string(status)) != std::string::npos; }, 5s))
            << "PropertiesChanged tells of " << status;
    }
    const std::string format = "{{title}}|{{artist}}|{{mpris:trackid}}|{{xesam:url}}|{{xesam:trackNumber}}";
    const std::string metadata = "First Song|Ann|'/org/brimfell/Verdin/track/1'|file://" + first + "|3";
    EXPECT_EQ(CtlShows({"metadata", "--format", format}, metadata), metadata);
    const long length = std::atol(Ctl({"metadata", "mpris:length"}).c_str());
    EXPECT_TRUE(length > 119'900'000 && length < 120'100'000) << length;
    const std::string art = Ctl({"metadata", "mpris:artUrl"});
    ASSERT_EQ(art.rfind("file://" + home_.dir.file("home/.cache/verdin/art/"), 0), 0u) << art;
    EXPECT_EQ(ReadFile(art.substr(7)), ReadFile(cover));

    for (const auto& [command, title, id] : {std::tuple{"next", "Second", "2"}, {"previous", "First Song", "1"}}) {
        Ctl({command});
        const std::string shown = std::string(title) + " '/org/brimfell/Verdin/track/" + id + "'";
        EXPECT_EQ(CtlShows({"metadata", "--format", "{{title}} {{mpris:trackid}}"}, shown), shown) << command;
    }

    // Settings set by a controller are the player's own (saved at once); those changed
    // through the command server reach the controller.
    for (const auto& [set, shown, loop] : {std::tuple{"Playlist", "Playlist", 1}, {"Track", "Playlist", 1},
                                           {"None", "None", 0}}) {
        Ctl({"loop", set});
        EXPECT_EQ(CtlShows({"loop"}, shown), shown) << set;
        EXPECT_EQ(LoadSavedSettings().loopMode, loop) << set;
    }
    ASSERT_TRUE(player->Call("Command", {"50052"}));
    EXPECT_EQ(CtlShows({"loop"}, "Playlist"), "Playlist");
    Ctl({"shuffle", "On"});
    EXPECT_EQ(CtlShows({"shuffle"}, "On"), "On");
    EXPECT_EQ(LoadSavedSettings().shuffleMode, 1);
    ASSERT_TRUE(player->Call("Command", {"50053"}));
    EXPECT_EQ(CtlShows({"shuffle"}, "Off"), "Off");
    Ctl({"volume", "0.5"});
    EXPECT_EQ(CtlShows({"volume"}, "0.500008"), "0.500008");
    EXPECT_EQ(LoadSavedSettings().Volume(), 32768);
    ASSERT_TRUE(player->Call("Command", {"50121"}));  // volume down by 2048
    EXPECT_EQ(CtlShows({"volume"}, "0.468757"), "0.468757");
    for (const char* name : {"Volume", "LoopStatus", "Shuffle"}) EXPECT_NE(Count(signals(), name), 0u) << name;

    // Seeked follows every seek: a controller's, and one through the command server.
    Ctl({"position", "12"});
    double position = 0;
    EXPECT_TRUE(WaitFor([&] { return (position = std::atof(Ctl({"position"}).c_str())) >= 12 && position < 14; }, 5s))
        << position;
    ASSERT_TRUE(player->Call("Command", {"50115"}));  // 5 s forward
    WaitFor([&] { return Count(signals(), "member=Seeked") >= 2; }, 5s);
    EXPECT_EQ(Count(signals(), "member=Seeked"), 2u);

    // Ids belong to entries: once the first row goes, the one left keeps its id.
    const auto call = [&](const std::vector<std::string>& method) {
        std::vector<std::string> argv{"env", "DBUS_SESSION_BUS_ADDRESS=" + bus_.Address(), "gdbus", "call", "--session",
                                      "-d", "org.mpris.MediaPlayer2.verdin", "-o", "/org/mpris/MediaPlayer2", "-m"};
        argv.insert(argv.end(), method.begin(), method.end());
        return RunCommand(argv).output;
    };
    const std::vector<std::string> getTracks{"org.freedesktop.DBus.Properties.Get", "org.mpris.MediaPlayer2.TrackList",
                                             "Tracks"};
    EXPECT_EQ(Count(call(getTracks), "/org/brimfell/Verdin/track/"), 2u);
    call({"org.mpris.MediaPlayer2.TrackList.RemoveTrack", "/org/brimfell/Verdin/track/1"});
    EXPECT_EQ(call(getTracks), "(<[objectpath '/org/brimfell/Verdin/track/2']>,)\n");
    EXPECT_TRUE(WaitFor([&] { return signals().find("member=TrackRemoved") != std::string::npos; }, 5s));
    EndProcess(monitor, SIGTERM);
}

}  // namespace
}  // namespace verdin::test
