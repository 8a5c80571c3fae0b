// The INI reader and writer under the preset and playlist files.
#include "settings/IniProfile.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <tuple>

namespace verdin {
namespace {

// One text with every quirk of reading: the first section and key of a name win, names
// ignore case, names and values are trimmed, quotes come off, ";" is no comment, broken
// headers still name sections, and a key before any section is never read.
TEST(IniProfile, ReadsTheFirstSectionAndKeyOfANameAsTheFilesNeedIt) {
    const std::string text = "orphan=1\n[Playlist]\r\nFile1=a.mp3\r\nfile1=shadowed\r\nNumberOfEntries=2\r\n"
                             "[playlist]\nFile2=never read\n[s]\n  key one  =  spaced value  \nq=\"quoted \"\n"
                             "neg=-5\nnum=12abc\nbad=x9\n;c=;(YEAR < 1970)\nnoequals\n=empty key\nlong=" +
                             std::string(300, 'L') + "\n[unclosed\nk=v\n[]\nk=w\n";
    const IniProfile p = IniProfile::Parse(text);
    const std::tuple<const char*, const char*, std::string> strings[] = {
        {"playlist", "FILE1", "a.mp3"},     {"PLAYLIST", "file2", "-"},       {"s", "key one", "spaced value"},
        {"s", "q", "quoted "},              {"s", ";C", ";(YEAR < 1970)"},    {"s", "", "empty key"},
        {"unclosed", "k", "v"},             {"", "k", "w"},                   {"orphan", "orphan", "-"},
        {"s", "long", std::string(255, 'L')},
    };
    for (const auto& [section, key, value] : strings) EXPECT_EQ(p.GetString(section, key, "-"), value) << section << "/" << key;
    EXPECT_EQ(p.GetString("s", "long", "", 1023).size(), 300u);
    for (const auto& [key, value] : {std::pair{"neg", -5}, {"num", 12}, {"bad", 0}, {"missing", 7}})
        EXPECT_EQ(p.GetInt("s", key, 7), value) << key;
    EXPECT_EQ(p.GetInt("playlist", "numberofentries", 7), 2);
    EXPECT_EQ(p.SectionNames(), (std::vector<std::string>{"Playlist", "playlist", "s", "unclosed", ""}));
}

// Setting keeps the order and takes the first section of a name; clearing keeps the
// place of the first and removing takes every section of the name; the file is written
// with CR LF and replaced whole (keeping its mode) or not at all.
TEST(IniProfile, WritingKeepsOrderAndReplacesTheFileWhole) {
    IniProfile p = IniProfile::Parse("[A]\nx=1\n[B]\ny=2\n[a]\nz=3\n");
    p.SetString("b", "Y", "20");
    p.SetString("C", "n", "v");
    EXPECT_EQ(p.Serialize(), "[A]\r\nx=1\r\n[B]\r\ny=20\r\n[a]\r\nz=3\r\n[C]\r\nn=v\r\n");
    p.ClearSection("A");
    p.SetString("A", "w", "9");
    p.RemoveSection("b");
    test::TempDir dir;
    const std::string path = dir.file("p.ini");
    test::WriteFile(path, "[old]\r\nk=v\r\n");
    ::chmod(path.c_str(), 0640);
    ASSERT_TRUE(p.Save(path));
    EXPECT_EQ(test::ReadFile(path), "[A]\r\nw=9\r\n[C]\r\nn=v\r\n");
    struct stat st;
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    EXPECT_FALSE(p.Save(dir.file("missing/dir/p.ini")));
}

}  // namespace
}  // namespace verdin
