#include "shell/CommandTable.h"
#include "shell/CommandText.h"
#include "playlist/files/DirectoryScan.h"

#include "Files.h"
#include "TempDir.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>

namespace verdin {
namespace {

TEST(CommandText, QuotedTokensKeepTheirBlanksAndEndWithTheQuoteAndTheByteAfterIt) {
    using V = std::vector<std::string>;
    EXPECT_EQ(SplitCommandText("/PLAY \"/m/a b.mp3\" /m/c.mp3"), (V{"/PLAY", "/m/a b.mp3", "/m/c.mp3"}));
    EXPECT_EQ(SplitCommandText("/m/a b.mp3"), (V{"/m/a", "b.mp3"}));
    EXPECT_EQ(SplitCommandText("\"/m/x\"y z"), (V{"/m/x", "z"}));  // the byte after the quote goes too
    EXPECT_EQ(SplitCommandText("\"/m/never closed"), (V{"/m/never closed"}));
    EXPECT_EQ(SplitCommandText("a  b "), (V{"a", "b"}));
    EXPECT_EQ(SplitCommandText(""), V{});
    EXPECT_EQ(SplitCommandText("\""), V{});
    EXPECT_TRUE(IsPlayToken("/play"));
    EXPECT_TRUE(IsPlayToken("/PLAY"));
    EXPECT_FALSE(IsPlayToken("/PLAYS"));
}

TEST(CommandTable, EveryIdentifierRunsOneActionAndTheTableKeepsTheMenusTexts) {
    std::set<uint32_t> seen;
    for (const CommandEntry& entry : CommandTable())
        for (uint32_t id : entry.ids) EXPECT_TRUE(seen.insert(id).second) << "identifier " << id << " twice";
    struct Case { uint32_t id; Action action; };
    for (const Case& c : {Case{104, Action::kPreviousTrack}, Case{50076, Action::kPreviousTrack},
                          Case{40047, Action::kStop}, Case{40147, Action::kStop}, Case{40046, Action::kPauseResume},
                          Case{50117, Action::kNextTrackCrossfade}, Case{58112, Action::kAddUrl},
                          Case{40012, Action::kOptions}, Case{40029, Action::kOpenFiles},
                          Case{40040, Action::kTogglePlaylist}, Case{40058, Action::kVolumeUp},
                          Case{40059, Action::kVolumeDown}, Case{40144, Action::kSeekBack},
                          Case{40148, Action::kSeekForward}, Case{40154, Action::kFirstRow},
                          Case{40155, Action::kOpenUrl}, Case{40158, Action::kLastRow}, Case{40146, Action::kIgnored},
                          Case{40156, Action::kIgnored}, Case{40157, Action::kIgnored}}) {
        const CommandEntry* entry = FindCommand(c.id);
        ASSERT_NE(entry, nullptr) << c.id;
        EXPECT_EQ(entry->action, c.action) << c.id;
    }
    EXPECT_EQ(FindCommand(12345), nullptr);
    EXPECT_EQ(CommandFor(Action::kTogglePlaylist).menuText, " \tShow Playlist (P)");
    EXPECT_EQ(CommandFor(Action::kAddRandomEntry).menuText, "Add Random Entry...\tCtrl + Shift + Insert");
    EXPECT_EQ(ButtonToolTip(110), "Next track in playlist, shortcut key: 5\nHold down shift to crossfade");
    EXPECT_EQ(ButtonToolTip(125), "Minimize window, shortcut key: - (numeric keypad)");
    EXPECT_EQ(ButtonToolTip(122), "Mini window, shortcut key: - (numeric keypad)");
    EXPECT_EQ(ButtonToolTip(999), "");
}

TEST(DirectoryScan, FilesComeGroupedByExtensionAndSubdirectoriesBreadthFirst) {
    test::TempDir dir;
    namespace fs = std::filesystem;
    for (const char* sub : {"x", "x/deep", "y"}) fs::create_directories(dir.path() / sub);
    for (const char* file : {"b.mp3", "a.wav", "c.mp3", "x/1.mp3", "x/deep/2.wav", "y/3.wav", "notes.txt"})
        test::WriteFile(dir.file(file), "");
    fs::create_directory_symlink(dir.path(), dir.path() / "y" / "loop");  // must not walk forever
    using V = std::vector<std::string>;
    EXPECT_EQ(ScanDirectory(dir.str(), false, ".mp3;.wav"),
              (V{dir.file("b.mp3"), dir.file("c.mp3"), dir.file("a.wav")}));
    EXPECT_EQ(ScanDirectory(dir.str(), true, ".mp3;.wav"),
              (V{dir.file("b.mp3"), dir.file("c.mp3"), dir.file("a.wav"), dir.file("x/1.mp3"), dir.file("y/3.wav"),
                 dir.file("x/deep/2.wav")}));
    EXPECT_TRUE(ScanDirectory(dir.file("missing"), true, ".mp3").empty());
}

}  // namespace
}  // namespace verdin
