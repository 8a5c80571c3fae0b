// The player as its faces use it, without windows or sound: the transport commands,
// commands that need a window, quitting, and the sample space rebuilt under a random entry.
// (The command text is run by the system tests and the window tests.)
#include "shell/PlayerCore.h"

#include "playlist/RandomEntry.h"
#include "settings/store/SettingsStore.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"
#include "TempDir.h"

#include <QSettings>
#include <filesystem>
#include <gtest/gtest.h>

namespace verdin {
namespace {

class RecordingHost final : public PlayerHost {
public:
    std::vector<std::string> said;  // messages, questions and the commands said to need a window
    int quits = 0;
    void ShowMessage(std::string_view text, MessageIcon) override { said.emplace_back(text); }
    bool AskYesNo(std::string_view text, MessageIcon, Unanswered) override {
        said.emplace_back(text);
        return true;
    }
    void SetTimersRunning(bool) override {}
    void RefreshNow() override {}
    void WindowCommandUnavailable(std::string_view command) override { said.emplace_back(command); }
    void Quit() override { ++quits; }
};

class PlayerTest : public ::testing::Test {
protected:
    PlayerTest() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(dir_.str()));
        SetDefaultValues(settings_, environment_);
        settings_.outputType = 1;  // decoding to files: no sound device needed
        settings_.decodeDirectory = dir_.str();
        settings_.inputPluginsSearchPath = std::string(VERDIN_TEST_PLUGIN_DIR) + ";";
        settings_.dspPluginsSearchPath = "";
        core_.LoadPlugins(nullptr);
        core_.StartUp("");
    }
    std::string Tone(const std::string& name) {
        std::filesystem::create_directories(std::filesystem::path(dir_.file(name)).parent_path());
        test::WriteWav(dir_.file(name), 1, 8000, 16, test::Bytes16(test::Sine16(800, 1, 8000, {440.0})));
        return dir_.file(name);
    }

    test::TempDir dir_;
    SettingsEnvironment environment_{"/p/bin", dir_.str(), dir_.str(), dir_.str()};
    Settings settings_;
    RecordingHost host_;
    PlayerCore core_{settings_, environment_, host_};
    Player& player_ = core_.Face();
};

TEST_F(PlayerTest, TransportCommandsMoveThroughTheListAndATrackThatCannotStartSaysWhy) {
    test::WriteFile(dir_.file("broken.wav"), "RIFF, but nothing a module reads");
    player_.AddPaths({Tone("1.wav"), Tone("2.wav"), dir_.file("broken.wav")}, -1);
    struct Step {
        uint32_t id;
        int row;
        PlayerStatus status;
    };
    const Step steps[] = {
        {108, 0, PlayerStatus::Playing}, {107, 0, PlayerStatus::Paused},  {107, 0, PlayerStatus::Playing},
        {110, 1, PlayerStatus::Playing}, {104, 0, PlayerStatus::Playing}, {104, 0, PlayerStatus::Playing},
        {106, 0, PlayerStatus::Stopped}, {110, 1, PlayerStatus::Stopped}, {50117, 2, PlayerStatus::Stopped},
    };
    for (const Step& step : steps) {
        EXPECT_TRUE(player_.Execute(step.id)) << step.id;
        EXPECT_EQ(player_.CurrentRow(), step.row) << step.id;
        EXPECT_EQ(player_.Status(), step.status) << step.id;
    }
    EXPECT_TRUE(host_.said.empty());
    player_.Execute(108);  // the broken file: its stream cannot start
    EXPECT_EQ(player_.Status(), PlayerStatus::Stopped);
    EXPECT_EQ(host_.said, (std::vector<std::string>{"\"" + dir_.file("broken.wav") + "\"\nis of an unknown file format."}));
}

TEST_F(PlayerTest, CommandsSayWhenTheyNeedAWindowAndUnknownOnesAreNotHandled) {
    EXPECT_FALSE(player_.Execute(50031));  // options
    EXPECT_EQ(host_.said, (std::vector<std::string>{"Options...\tO"}));
    EXPECT_FALSE(player_.Execute(99999));
    EXPECT_TRUE(player_.Execute(40146)) << "accepted and ignored";
    EXPECT_EQ(host_.said.size(), 1u);
}

TEST_F(PlayerTest, QuittingAsksOnlyAboutUnsavedNestedPlaylists) {
    player_.AddPaths({Tone("1.wav"), Tone("2.wav")}, -1);
    player_.Execute(50001);
    EXPECT_EQ(host_.quits, 1);
    EXPECT_TRUE(host_.said.empty()) << "the main playlist alone is never asked about";
    player_.IncorporateRows({1});
    player_.Execute(50001);
    EXPECT_EQ(host_.said, (std::vector<std::string>{"The main playlist contains unsaved playlist(s).\nQuit anyway?"}));
}

// A FLAC file whose header claims ten times the samples it holds: that length is shown
// until the track has been decoded to its end, then the length decoding found.
TEST_F(PlayerTest, ALengthLearnedByDecodingToTheEndReplacesTheHeadersOne) {
    const std::string cut = dir_.file("cut.flac");
    Tone("cut.wav");
    ASSERT_EQ(test::RunCommand({"flac", "-s", "-o", cut, dir_.file("cut.wav")}).exitCode, 0);
    std::string flac = test::ReadFile(cut);
    // The total sample count: the low 36 bits of the big-endian word at 18, 800 made 8000.
    flac[21] = static_cast<char>(flac[21] & 0xF0), flac[22] = 0, flac[23] = 0, flac[24] = 0x1F, flac[25] = 0x40;
    test::WriteFile(cut, flac);
    player_.AddPaths({cut}, -1);
    settings_.windowTitleTemplate = "%dur%";
    EXPECT_EQ(player_.Caption(), "0:01");
    player_.PlayRow(0);
    while (player_.Playing()) core_.ProgressTick();
    EXPECT_EQ(player_.Caption(), "0:00");
}

TEST_F(PlayerTest, RebuildingTheSampleSpaceWhileARandomEntryIsCurrentLeavesNoStalePick) {
    settings_.sampleSpaceSearchPath = dir_.file("space") + ";";
    Tone("space/wanted.wav");
    player_.AddRandomEntry(-1, "");
    player_.PlayRow(0);
    ASSERT_TRUE(player_.Playing());
    player_.Execute(Action::kStop);
    settings_.windowTitleTemplate = "%body%";
    EXPECT_EQ(player_.Caption(), "wanted");
    EXPECT_TRUE(player_.Execute(50104));  // (re)create the sample space
    // The pick pointed into the space that was replaced: the entry has picked nothing yet.
    EXPECT_EQ(player_.Caption(), "");
}

}  // namespace
}  // namespace verdin
