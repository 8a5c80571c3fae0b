#include "base/SearchPath.h"
#include "base/Text.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

// Names of files, keys and sections: only letters fold, and an extension is what follows
// the last dot, compared the same way.
TEST(Text, CaseInsensitiveComparisonFoldsOnlyLettersAndExtensionsFollowTheLastDot) {
    EXPECT_TRUE(EqualsIgnoreCase("Entries", "ENTRIES"));
    EXPECT_FALSE(EqualsIgnoreCase("entry1", "entry10"));
    EXPECT_FALSE(EqualsIgnoreCase("[", "{"));  // 0x5B and 0x7B differ by 32 but are not letters
    EXPECT_TRUE(StartsWithIgnoreCase("/Music/Jazz/a.mp3", "/music/"));
    EXPECT_FALSE(StartsWithIgnoreCase("/Mu", "/music/"));
    EXPECT_EQ(ExtensionOf("a.b.MP3"), ".MP3");
    EXPECT_EQ(ExtensionOf("noext"), "");
    EXPECT_TRUE(HasExtension("Song.Mp3", ".mp3"));
    EXPECT_FALSE(HasExtension("mp3", ".mp3"));
}

TEST(Text, DecimalConversionBehavesLikeAtoi) {
    EXPECT_EQ(ParseDecimal("  42abc"), 42);
    EXPECT_EQ(ParseDecimal("-7"), -7);
    EXPECT_EQ(ParseDecimal("x1"), 0);
    EXPECT_EQ(ParseDecimal(""), 0);
    EXPECT_EQ(ParseDecimal("99999999999999999999"), 2147483647);
    EXPECT_EQ(ParseDecimal("-99999999999999999999"), -2147483647 - 1);
}

// Search paths: empty pieces are skipped, the others kept as written; joining a directory
// and a name puts exactly one "/" between them.
TEST(SearchPath, SplitSkipsEmptyPiecesAndJoinAddsOneSeparator) {
    EXPECT_EQ(SplitSearchPath(";a;;b;"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(SplitSearchPath(";"), std::vector<std::string>{});
    EXPECT_EQ(SplitSearchPath(" a ;/x/"), (std::vector<std::string>{" a ", "/x/"}));
    for (const char* directory : {"/dir", "/dir/"}) EXPECT_EQ(JoinPath(directory, "a.so"), "/dir/a.so");
    EXPECT_EQ(JoinPath("", "a.so"), "/a.so");
}

}  // namespace
}  // namespace verdin
