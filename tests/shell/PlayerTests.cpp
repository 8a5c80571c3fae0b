// The player as its faces use it, without windows or sound: the transport commands,
// commands that need a window, quitting, the sample space rebuilt under a random entry,
// and the host window that plug-ins talk to, with the general-purpose and the
// visualization plug-ins.
// (The command text is run by the system tests and the window tests.)
#include "shell/PlayerCore.h"
#include "shell/app/HostWindow.h"

#include "playlist/RandomEntry.h"
#include "settings/store/SettingsStore.h"

#include "Files.h"
#include "TestVisState.h"
#include "PcmFixtures.h"
#include "Process.h"
#include "TempDir.h"

#include <QCoreApplication>
#include <QSettings>
#include <chrono>
#include <dlfcn.h>
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
        settings_.generalPurposePluginsSearchPath = "";
    }
    void SetUp() override {
        core_.LoadPlugins(window_.Record());
        core_.StartUp("");
    }
    intptr_t Query(intptr_t query, uintptr_t argument = 0) {
        return VerdinSendMessage(window_.Record(), WM_USER, argument, query);
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
    HostWindow window_{player_, [this](uint32_t id) { return player_.Execute(id); }};
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

// What plug-ins are answered while the second of two tracks is current and paused, and
// once a stop sent as a plug-in sends it has ended it.
TEST_F(PlayerTest, TheHostWindowAnswersPluginsQueries) {
    const std::string a = Tone("a.wav"), b = Tone("b.wav");
    player_.AddPaths({a, b}, -1);
    player_.PlayRow(1);
    player_.Execute(107);  // pause
    const std::pair<intptr_t, uintptr_t> queries[] = {  // query, argument
        {VERDIN_IPC_GETVERSION, 0}, {VERDIN_IPC_ISPLAYING, 0}, {VERDIN_IPC_GETOUTPUTTIME, 2},
        {VERDIN_IPC_GETOUTPUTTIME, 1}, {VERDIN_IPC_GETLISTLENGTH, 0}, {VERDIN_IPC_GETLISTPOS, 0},
        {VERDIN_IPC_GETINFO, 0}, {VERDIN_IPC_GETINFO, 2}, {VERDIN_IPC_SETVOLUME, 51},
        {VERDIN_IPC_SETVOLUME, uintptr_t(-666)}, {VERDIN_IPC_SET_SHUFFLE, 1}, {VERDIN_IPC_GET_SHUFFLE, 0},
        {VERDIN_IPC_GET_REPEAT, 0}, {VERDIN_IPC_SETPLAYLISTPOS, 0}, {VERDIN_IPC_GETLISTPOS, 0},
        {VERDIN_IPC_JUMPTOTIME, 50}, {VERDIN_IPC_GETPLAYLISTFILE, 2}, {9999, 0},
    };
    std::vector<intptr_t> answers;
    for (const auto& [query, argument] : queries) answers.push_back(Query(query, argument));
    EXPECT_EQ(answers, (std::vector<intptr_t>{VERDIN_HOST_VERSION, 3, 100, 0, 2, 1, 8000, 1, 51, 51, 0, 1, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(reinterpret_cast<const char*>(Query(VERDIN_IPC_GETPLAYLISTFILE, 1)), b);
    EXPECT_STREQ(reinterpret_cast<const char*>(Query(VERDIN_IPC_GETPLAYLISTTITLE, 0)), "a");
    const std::string added = Tone("c.wav");
    COPYDATASTRUCT copy{VERDIN_IPC_PLAYFILE, static_cast<uint32_t>(added.size()), const_cast<char*>(added.data())};
    EXPECT_EQ(VerdinSendMessage(window_.Record(), WM_COPYDATA, 0, reinterpret_cast<intptr_t>(&copy)), 1);
    EXPECT_EQ(Query(VERDIN_IPC_GETLISTLENGTH), 3);
    EXPECT_EQ(VerdinSendMessage(window_.Record(), WM_COMMAND, 40047, 0), 1);  // stop
    EXPECT_EQ(Query(VERDIN_IPC_ISPLAYING), 0);
    EXPECT_EQ(Query(VERDIN_IPC_GETOUTPUTTIME), -1);
}

class GeneralPluginTest : public PlayerTest {
protected:
    void SetUp() override {
        settings_.generalPurposePluginsSearchPath = VERDIN_GENERAL_TEST_MODULES;
        PlayerTest::SetUp();
    }
    std::array<int, 4> Calls() {  // inits, configs, quits, answered messages
        std::array<int, 4> calls{};
        void* keeps = dlopen(VERDIN_GENERAL_TEST_MODULES "/general_keeps.so", RTLD_NOW | RTLD_NOLOAD);
        reinterpret_cast<void (*)(int*)>(dlsym(keeps, "TestGeneral_Calls"))(calls.data());
        dlclose(keeps);
        return calls;
    }
};

// A plug-in whose init refuses is unloaded at once; the one kept asks from a thread of its
// own, which is answered on this thread as it runs events, until the player's teardown
// quits it. Its quit waits for that thread, which sits waiting for an answer: the two
// must not deadlock.
TEST_F(GeneralPluginTest, StartWithThePlayerAnswerFromAnyThreadAndQuitAtTeardown) {
    static int argc = 0;
    static QCoreApplication events(argc, nullptr);
    EXPECT_EQ(player_.GeneralPlugins(), std::vector<std::string>{"Keeps"});
    EXPECT_EQ(dlopen(VERDIN_GENERAL_TEST_MODULES "/general_refuses.so", RTLD_NOW | RTLD_NOLOAD), nullptr);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (Calls()[3] < 3 && std::chrono::steady_clock::now() < deadline)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    EXPECT_GE(Calls()[3], 3);
    EXPECT_TRUE(player_.ConfigureGeneralPlugin(0));
    core_.TearDown();
    EXPECT_EQ(Calls(), (std::array<int, 4>{1, 1, 1, Calls()[3]}));
}

class VisPluginTest : public PlayerTest {
protected:
    void SetUp() override {
        settings_.visualizationPluginsSearchPath = VERDIN_VIS_TEST_MODULES;
        settings_.visualizationPlugins = Module(0);
        // The test's own load keeps the plug-in's record between the player's loads.
        library_ = dlopen(Module(-1).c_str(), RTLD_NOW);
        ASSERT_NE(library_, nullptr);
        state_ = static_cast<TestVisState*>(dlsym(library_, "testVisState"));
        for (int m = 0; m < TEST_VIS_MODULES; ++m) state_[m] = TestVisState{};
        PlayerTest::SetUp();
    }
    void TearDown() override { dlclose(library_); }
    // "path,index;" for a module, or the library's path for -1.
    static std::string Module(int index) {
        const std::string path = VERDIN_VIS_TEST_MODULES "/vis_test_plugin.so";
        return index < 0 ? path : path + "," + std::to_string(index) + ";";
    }
    void* library_ = nullptr;
    TestVisState* state_ = nullptr;
};

// Command 0 switches the modules on and off and stores the setting; the 10 ms tick feeds
// them only while a track is current and they are on; a changed list restarts them; the
// teardown quits them after storing that they were on.
TEST_F(VisPluginTest, CommandZeroTheTickTheOptionsAndTheTeardownDriveTheModules) {
    const std::string track = Tone("a.wav");
    player_.AddPaths({track}, -1);
    enum Step { kToggle, kTick, kPlay, kStop, kOtherModule, kTearDown };
    struct Expect {
        Step step;
        int32_t enabled;
        std::array<int, 3> first, other;  // module 0's and 2's inits, renders and quits
    };
    const Expect script[] = {
        {kTick, 0, {0, 0, 0}, {0, 0, 0}},        {kToggle, 1, {1, 0, 0}, {0, 0, 0}},
        {kTick, 1, {1, 0, 0}, {0, 0, 0}},        {kPlay, 1, {1, 0, 0}, {0, 0, 0}},
        {kTick, 1, {1, 1, 0}, {0, 0, 0}},        {kToggle, 0, {1, 1, 1}, {0, 0, 0}},
        {kTick, 0, {1, 1, 1}, {0, 0, 0}},        {kToggle, 1, {2, 1, 1}, {0, 0, 0}},
        {kOtherModule, 1, {2, 1, 2}, {1, 0, 0}}, {kTick, 1, {2, 1, 2}, {1, 1, 0}},
        {kStop, 1, {2, 1, 2}, {1, 1, 0}},        {kTick, 1, {2, 1, 2}, {1, 1, 0}},
        {kTearDown, 0, {2, 1, 2}, {1, 1, 1}},
    };
    for (const Expect& e : script) {
        switch (e.step) {
            case kToggle: EXPECT_TRUE(player_.Execute(50113)); break;
            case kTick: core_.VisualizationTick(); break;
            case kPlay: player_.PlayRow(0); break;
            case kStop: player_.Execute(Action::kStop); break;
            case kOtherModule: player_.ChangeSettings([](Settings& s) { s.visualizationPlugins = Module(2); }); break;
            case kTearDown: core_.TearDown(); break;
        }
        const int step = static_cast<int>(&e - script);
        EXPECT_EQ(settings_.enableVisualizationPlugins, e.enabled) << step;
        EXPECT_EQ((std::array<int, 3>{state_[0].inits, state_[0].renders, state_[0].quits}), e.first) << step;
        EXPECT_EQ((std::array<int, 3>{state_[2].inits, state_[2].renders, state_[2].quits}), e.other) << step;
    }
    Settings stored;
    LoadUserSettings(stored, environment_);
    EXPECT_EQ(stored.enableVisualizationPlugins, 1) << "on at the exit: on at the next start";
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
