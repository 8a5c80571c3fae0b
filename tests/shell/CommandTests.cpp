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

TEST(CommandTable, EveryIdentifierRunsOneAction) {
    std::set<uint32_t> seen;
    for (const CommandEntry& entry : CommandTable()) {
        EXPECT_EQ(&CommandFor(entry.action), &entry);
        for (uint32_t id : entry.ids) {
            EXPECT_TRUE(seen.insert(id).second) << "identifier " << id << " twice";
            EXPECT_EQ(FindCommand(id), &entry);
        }
    }
    EXPECT_EQ(FindCommand(12345), nullptr);
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
