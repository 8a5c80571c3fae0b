#include "base/DirectoryListing.h"
#include "base/Text.h"

#include "Files.h"
#include "TempDir.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(Text, CaseInsensitiveComparisonFoldsOnlyLetters) {
    EXPECT_TRUE(EqualsIgnoreCase("Entries", "ENTRIES"));
    EXPECT_FALSE(EqualsIgnoreCase("entry1", "entry10"));
    EXPECT_FALSE(EqualsIgnoreCase("[", "{"));  // 0x5B and 0x7B differ by 32 but are not letters
    EXPECT_TRUE(StartsWithIgnoreCase("/Music/Jazz/a.mp3", "/music/"));
    EXPECT_FALSE(StartsWithIgnoreCase("/Mu", "/music/"));
}

TEST(Text, ExtensionIsFromTheLastDot) {
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

TEST(DirectoryListing, ListsInCaseInsensitiveNameOrderAndFiltersByExtension) {
    test::TempDir dir;
    for (const char* name : {"c.mp3", "B.MP3", "a.wav", "d.mp3x"}) test::WriteFile(dir.file(name), "x");
    std::filesystem::create_directory(dir.path() / "sub.mp3");
    EXPECT_EQ(ListFilesWithExtension(dir.str(), ".mp3"), (std::vector<std::string>{"B.MP3", "c.mp3"}));
    EXPECT_EQ(ListSubdirectories(dir.str()), (std::vector<std::string>{"sub.mp3"}));
    EXPECT_TRUE(ListDirectory(dir.file("missing")).empty());
}

}  // namespace
}  // namespace verdin
