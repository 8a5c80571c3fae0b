#include "base/SearchPath.h"
#include "base/Text.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

// Names of files, keys and sections: only letters fold, and an extension is what follows
// the last dot, compared the same way (the common cases run under the playlist tests).
TEST(Text, CaseInsensitiveComparisonFoldsOnlyLettersAndExtensionsFollowTheLastDot) {
    EXPECT_FALSE(EqualsIgnoreCase("entry1", "entry10"));
    EXPECT_FALSE(EqualsIgnoreCase("[", "{"));  // 0x5B and 0x7B differ by 32 but are not letters
    EXPECT_FALSE(StartsWithIgnoreCase("/Mu", "/music/"));
    EXPECT_FALSE(HasExtension("mp3", ".mp3"));
}

TEST(Text, DecimalConversionBehavesLikeAtoi) {
    EXPECT_EQ(ParseDecimal("99999999999999999999"), 2147483647);
    EXPECT_EQ(ParseDecimal("-99999999999999999999"), -2147483647 - 1);
}

// Joining a directory and a name puts exactly one "/" between them.
TEST(SearchPath, JoinAddsOneSeparator) {
    for (const char* directory : {"/dir", "/dir/"}) EXPECT_EQ(JoinPath(directory, "a.so"), "/dir/a.so");
    EXPECT_EQ(JoinPath("", "a.so"), "/a.so");
}

}  // namespace
}  // namespace verdin
