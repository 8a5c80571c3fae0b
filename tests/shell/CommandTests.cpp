#include "shell/CommandTable.h"
#include "shell/CommandText.h"

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

}  // namespace
}  // namespace verdin
