// The player core's rules that need no sound: volume steps, position ranges, the command
// text's effect on the list, adding at a row, deleting around the current row.
#include "shell/PlayerCore.h"

#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

// A host that remembers what the core asked of it.
class RecordingHost final : public PlayerHost {
public:
    std::vector<std::string> messages;
    int quits = 0;
    void ShowMessage(std::string_view text, MessageIcon) override { messages.emplace_back(text); }
    bool AskYesNo(std::string_view text, MessageIcon) override {
        messages.emplace_back(text);
        return true;
    }
    void SetTimersRunning(bool) override {}
    void Refresh(bool) override {}
    void RefreshNow() override {}
    void SetPositionRange(int, int) override {}
    void WindowCommandUnavailable(std::string_view command) override { messages.emplace_back(command); }
    void Quit() override { ++quits; }
};

class PlayerCoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        SetDefaultValues(settings_, environment_);
        settings_.outputType = 1;
        settings_.decodeDirectory = dir_.str();
        settings_.inputPluginsSearchPath = std::string(VERDIN_TEST_PLUGIN_DIR) + ";";
        settings_.dspPluginsSearchPath = "";
        core_ = std::make_unique<PlayerCore>(settings_, environment_, host_);
        core_->LoadPlugins(nullptr);
    }
    std::string Tone(const std::string& name) {
        test::WriteWav(dir_.file(name), 1, 8000, 16, test::Bytes16(test::Sine16(800, 1, 8000, {440.0})));
        return dir_.file(name);
    }
    int Rows() { return core_->MainPlaylist().RowCount(); }
    std::string BodyAt(int row) { return core_->MainPlaylist().ItemAtRow(row).item->Body(); }

    test::TempDir dir_;
    SettingsEnvironment environment_{"/p/bin", dir_.str(), dir_.str(), dir_.str()};
    Settings settings_;
    RecordingHost host_;
    std::unique_ptr<PlayerCore> core_;
};

TEST_F(PlayerCoreTest, VolumeStepsAndTheThumbFollowTheHalvedScale) {
    settings_.SetVolume(64000);
    core_->ChangeVolume(2048);
    EXPECT_EQ(settings_.Volume(), 65535);
    settings_.SetVolume(1000);
    core_->ChangeVolume(-2048);
    EXPECT_EQ(settings_.Volume(), 0);
    core_->SetVolumeFromThumb(32767);
    EXPECT_EQ(settings_.Volume(), 65535);
    core_->SetVolumeFromThumb(16384);
    EXPECT_EQ(settings_.Volume(), 32768);
    EXPECT_EQ(static_cast<uint32_t>(settings_.mainVolume) >> 16, 0xFFFFu) << "the high half is kept as stored";
}

TEST_F(PlayerCoreTest, PositionRangesFollowTheTrackLength) {
    EXPECT_EQ(PlayerCore::PositionRange(10000), (std::pair{10, 1}));
    EXPECT_EQ(PlayerCore::PositionRange(15999), (std::pair{15, 1}));
    EXPECT_EQ(PlayerCore::PositionRange(320000), (std::pair{339, 20}));
}

TEST_F(PlayerCoreTest, ACommandTextAddsFilesAndADirectoryTheWayTheScanOrdersThem) {
    const std::string a = Tone("a.wav");
    Tone("b.wav");
    core_->ExecuteCommandText("\"" + a + "\" /no/such/path " + dir_.str());
    ASSERT_EQ(Rows(), 3);
    EXPECT_EQ(BodyAt(0), "a");
    EXPECT_EQ(BodyAt(1), "a");
    EXPECT_EQ(BodyAt(2), "b");
    EXPECT_EQ(core_->CurrentRow(), 0);
    EXPECT_FALSE(core_->Playing());
}

TEST_F(PlayerCoreTest, AddingAtARowInsertsBeforeItAndDeletingKeepsTheCurrentItem) {
    core_->AddPaths({Tone("1.wav"), Tone("2.wav"), Tone("3.wav")}, -1);
    core_->SetCurrentRow(2);
    core_->AddPaths({Tone("x.wav"), Tone("y.wav")}, 1);
    EXPECT_EQ(BodyAt(1), "x");
    EXPECT_EQ(BodyAt(2), "y");
    EXPECT_EQ(BodyAt(3), "2");
    core_->DeleteRows({0, 1});
    EXPECT_EQ(Rows(), 3);
    EXPECT_EQ(BodyAt(core_->CurrentRow()), "y") << "rows before the current one went: it moves up with its item";
}

TEST_F(PlayerCoreTest, WindowCommandsSayTheyNeedAWindowAndReportNotHandled) {
    EXPECT_FALSE(core_->ExecuteCommand(50031));  // options
    ASSERT_FALSE(host_.messages.empty());
    EXPECT_EQ(host_.messages.back(), "Options...\tO");
    EXPECT_TRUE(core_->ExecuteCommand(50052));  // loop mode
    EXPECT_EQ(settings_.loopMode, 1);
    EXPECT_FALSE(core_->ExecuteCommand(99999));
}

TEST_F(PlayerCoreTest, QuittingAsksOnlyAboutUnsavedNestedPlaylists) {
    core_->AddPaths({Tone("1.wav")}, -1);
    core_->ExecuteCommand(50001);
    EXPECT_EQ(host_.quits, 1);
    EXPECT_TRUE(host_.messages.empty()) << "the main playlist alone is never asked about";
    core_->ExecuteAction(Action::kAddNewPlaylist);  // appended: row 1
    ASSERT_EQ(core_->MainPlaylist().ItemAtRow(1).item->Kind(), ItemKind::kPlaylist);
    static_cast<Playlist*>(core_->MainPlaylist().ItemAtRow(1).item)->SetModified(true);
    core_->ExecuteCommand(50001);
    ASSERT_EQ(host_.messages.size(), 1u);
    EXPECT_EQ(host_.messages[0], "The main playlist contains unsaved playlist(s).\nQuit anyway?");
}

}  // namespace
}  // namespace verdin
