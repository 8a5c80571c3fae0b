// The desktop set-up a user runs from the command line, checked with the desktop's own
// tool, xdg-mime, in the test's private XDG directories.
#include "SystemFixture.h"

#include "Files.h"
#include "Process.h"

#include <filesystem>

namespace verdin::test {
namespace {

class DesktopSetupTest : public SystemTest {
protected:
    // A command run with the home's environment; its output.
    std::pair<int, std::string> Run(const std::vector<std::string>& argv) {
        std::vector<std::string> command = home_.Environment(bus_);
        command.insert(command.begin(), "env");
        command.insert(command.end(), argv.begin(), argv.end());
        const CommandResult result = RunCommand(command);
        return {result.exitCode, result.output};
    }
    std::string DefaultFor(const std::string& type) { return Run({"xdg-mime", "query", "default", type}).second; }
    std::string Verdin(const std::vector<std::string>& arguments) {
        const auto [code, output] = RunSecondStart(home_, bus_, arguments);
        EXPECT_EQ(code, 0) << arguments[0] << ": " << output;
        return output;
    }
    bool Exists(const std::string& path) const { return std::filesystem::exists(home_.dir.file(path)); }
};

TEST_F(DesktopSetupTest, AssociationsKeepWhatOtherProgramsOwnedAndGiveItBack) {
    std::filesystem::create_directories(home_.dir.file("data/applications"));
    WriteFile(home_.dir.file("data/applications/other.desktop"),
              "[Desktop Entry]\nType=Application\nName=Other\nExec=true\n");
    Run({"xdg-mime", "default", "other.desktop", "audio/mpeg"});
    const struct {
        std::vector<std::string> arguments;
        std::string type, owner;
    } steps[] = {
        {{"--associate", ".mp3", ".M3U"}, "audio/mpeg", "Verdin.Track.desktop\n"},
        {{"--associations"}, "application/vnd.apple.mpegurl", "Verdin.Playlist.desktop\n"},
        {{"--associate", "mp3"}, "audio/mpeg", "Verdin.Track.desktop\n"},  // the first owner stays backed up
        {{"--unassociate", ".mp3"}, "audio/mpeg", "other.desktop\n"},
        {{"--associate", ".flac"}, "audio/flac", "Verdin.Track.desktop\n"},
    };
    for (const auto& step : steps) {
        Verdin(step.arguments);
        EXPECT_EQ(DefaultFor(step.type), step.owner) << step.arguments[0] << " " << step.type;
    }
    // A type another program took meanwhile stays with it; one nobody had before goes.
    Run({"xdg-mime", "default", "other.desktop", "audio/flac"});
    Verdin({"--unassociate", ".flac", ".m3u"});
    EXPECT_EQ(DefaultFor("audio/flac"), "other.desktop\n");
    const std::string states = Verdin({"--associations"});
    for (const char* state : {".mp3 no\n", ".flac no\n", ".m3u none\n", ".wav none\n"})
        EXPECT_NE(states.find(state), std::string::npos) << state << " in\n" << states;
}

// The installer's call (first byte 0xB5) writes the user's parts; the uninstall script it
// leaves runs the uninstall step (":"), which takes them and the settings away again and
// gives back the associations, but keeps the playlists the user saved.
TEST_F(DesktopSetupTest, TheUninstallScriptTakesAwayWhatTheInstallWrote) {
    SeedSettings([](Settings&) {});
    WriteFile(home_.dir.file("data/Brimfell/Verdin/Mine.vdp"), "[playlist]\n");
    const std::vector<std::string> written = {"data/applications/verdin.desktop",
                                              "data/applications/Verdin.Track.desktop",
                                              "data/mime/packages/verdin.xml",
                                              "data/Brimfell/Verdin/UninstallVerdin.sh",
                                              "config/Brimfell/Verdin.conf"};
    Verdin({"\xB5"});
    Verdin({"--associate", ".vdp"});
    for (const std::string& path : written) EXPECT_TRUE(Exists(path)) << path;
    EXPECT_EQ(DefaultFor("audio/x-verdin-playlist"), "Verdin.Playlist.desktop\n");

    EXPECT_EQ(Run({"sh", home_.dir.file("data/Brimfell/Verdin/UninstallVerdin.sh")}).first, 0);
    for (const std::string& path : written) EXPECT_FALSE(Exists(path)) << path;
    EXPECT_TRUE(Exists("data/Brimfell/Verdin/Mine.vdp"));
    EXPECT_EQ(ReadFile(home_.dir.file("config/mimeapps.list")).find("Verdin"), std::string::npos);
}

}  // namespace
}  // namespace verdin::test
