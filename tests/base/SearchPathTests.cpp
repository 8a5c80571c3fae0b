#include "base/SearchPath.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(SearchPath, EmptyPiecesAreSkippedAndPiecesKeptAsWritten) {
    EXPECT_EQ(SplitSearchPath("a;;b;"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(SplitSearchPath(";"), std::vector<std::string>{});
    EXPECT_EQ(SplitSearchPath(""), std::vector<std::string>{});
    EXPECT_EQ(SplitSearchPath(" a ;/x/"), (std::vector<std::string>{" a ", "/x/"}));
}

TEST(SearchPath, JoinAddsOneSeparator) {
    EXPECT_EQ(JoinPath("/dir", "a.so"), "/dir/a.so");
    EXPECT_EQ(JoinPath("/dir/", "a.so"), "/dir/a.so");
    EXPECT_EQ(JoinPath("", "a.so"), "/a.so");
}

}  // namespace
}  // namespace verdin
