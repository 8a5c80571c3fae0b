#include "settings/IniProfile.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace verdin {
namespace {

TEST(IniProfile, FirstMatchingSectionAndKeyWinIgnoringCase) {
    IniProfile p = IniProfile::Parse(
        "[Playlist]\r\nFile1=a.mp3\r\nfile1=shadowed\r\nNumberOfEntries=2\r\n"
        "[playlist]\nFile2=never read\n[Entries]\nEntry1=;(YEAR < 1970)\n");
    EXPECT_EQ(p.GetString("playlist", "FILE1"), "a.mp3");
    EXPECT_EQ(p.GetString("PLAYLIST", "file2", "none"), "none");
    EXPECT_EQ(p.GetInt("playlist", "numberofentries"), 2);
    EXPECT_EQ(p.GetInt("playlist", "missing", 7), 7);
    EXPECT_EQ(p.GetString("entries", "entry1"), ";(YEAR < 1970)");
    EXPECT_EQ(p.SectionNames(), (std::vector<std::string>{"Playlist", "playlist", "Entries"}));
}

TEST(IniProfile, ValuesAreTrimmedUnquotedCutAndReadAsDecimals) {
    IniProfile p = IniProfile::Parse(
        "[s]\n  key one  =  spaced value  \nq=\"quoted \"\nneg=-5\nnum=12abc\nbad=x9\nlong=" +
        std::string(300, 'L') + "\nnoequals\n=empty key\n");
    EXPECT_EQ(p.GetString("s", "key one"), "spaced value");
    EXPECT_EQ(p.GetString("s", "q"), "quoted ");
    EXPECT_EQ(p.GetInt("s", "neg"), -5);
    EXPECT_EQ(p.GetInt("s", "num"), 12);
    EXPECT_EQ(p.GetInt("s", "bad", 3), 0);
    EXPECT_EQ(p.GetString("s", "long").size(), 255u);
    EXPECT_EQ(p.GetString("s", "long", "", 1023).size(), 300u);
    EXPECT_EQ(p.GetString("s", ""), "empty key");
}

TEST(IniProfile, KeysBeforeAnySectionAndBrokenHeadersDoNotConfuseReading) {
    IniProfile p = IniProfile::Parse("orphan=1\n[unclosed\nk=v\n[]\nk=w\n");
    EXPECT_EQ(p.GetString("unclosed", "k"), "v");
    EXPECT_EQ(p.GetString("", "k"), "w");
    EXPECT_EQ(p.GetString("orphan", "orphan", "-"), "-");
}

TEST(IniProfile, WritingKeepsOrderUsesCrLfAndReplacesSections) {
    IniProfile p = IniProfile::Parse("[A]\nx=1\n[B]\ny=2\n[a]\nz=3\n");
    p.SetString("b", "Y", "20");
    p.SetString("C", "n", "v");
    EXPECT_EQ(p.Serialize(), "[A]\r\nx=1\r\n[B]\r\ny=20\r\n[a]\r\nz=3\r\n[C]\r\nn=v\r\n");
    p.ClearSection("A");
    p.SetString("A", "w", "9");
    EXPECT_EQ(p.Serialize(), "[A]\r\nw=9\r\n[B]\r\ny=20\r\n[C]\r\nn=v\r\n");
    p.RemoveSection("b");
    EXPECT_EQ(p.Serialize(), "[A]\r\nw=9\r\n[C]\r\nn=v\r\n");
}

TEST(IniProfile, SavingReplacesTheFileWholeOrNotAtAll) {
    test::TempDir dir;
    const std::string path = dir.file("p.ini");
    test::WriteFile(path, "[old]\r\nk=v\r\n");
    ::chmod(path.c_str(), 0640);
    IniProfile p;
    p.SetString("new", "k", "v");
    ASSERT_TRUE(p.Save(path));
    EXPECT_EQ(test::ReadFile(path), "[new]\r\nk=v\r\n");
    struct stat st;
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);

    EXPECT_FALSE(p.Save(dir.file("missing/dir/p.ini")));
    EXPECT_TRUE(IniProfile::Load(dir.file("nothing.ini")).SectionNames().empty());
}

}  // namespace
}  // namespace verdin
