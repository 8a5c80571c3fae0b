// The line reader of M3U files and the key reader of PLS and ".vdp" files.
#include "playlist/files/IniSectionIndex.h"
#include "playlist/files/M3uReader.h"
#include "settings/IniProfile.h"

#include <gtest/gtest.h>

#include <sstream>

namespace verdin {
namespace {

std::vector<std::string> ReadM3u(const std::string& text, bool utf8) {
    std::istringstream in(text);
    M3uReader reader(in, utf8);
    std::vector<std::string> entries;
    while (auto entry = reader.Next()) entries.push_back(*entry);
    EXPECT_FALSE(reader.Next().has_value());  // the end stays the end
    return entries;
}

using Lines = std::vector<std::string>;

TEST(M3uReader, ReadsLinesUntilAnEmptyOne) {
    const std::string x256(256, 'x');
    const std::string y256(256, 'y');
    const struct {
        std::string text;
        Lines entries;
        const char* what;
    } cases[] = {
        {"a\nb\n", {"a", "b"}, "plain"},
        {"a\nb", {"a", "b"}, "no LF at the end"},
        {"a\r\nb\r\n", {"a", "b"}, "CR LF"},
        {"a\r\r\nb", {"a\r", "b"}, "only one CR before the LF goes"},
        {"a\rb\n", {"a\rb"}, "a CR inside a line stays"},
        {"a\r", {"a\r"}, "a CR without an LF after it stays"},
        {"a\nb\n\nc\n", {"a", "b"}, "an empty third line ends the reading"},
        {"\na\n", {}, "an empty first line"},
        {"a\n\r\nb\n", {"a", "", "b"}, "a lone CR is an empty entry, not the end"},
        {"", {}, "an empty file"},
        {"\n", {}, "a bare LF"},
        {std::string("ab\0cd\nz", 7), {"ab", "z"}, "a NUL ends the entry"},
        {x256 + "\nb", {x256, "b"}, "256 characters fit"},
        {x256 + "\r\nb", {x256, "b"}, "256 characters and CR LF"},
        {x256 + "z\nb", {x256, "z", "b"}, "257: the rest is the next entry"},
        {x256 + y256 + "\nb", {x256, y256, "b"}, "512: two entries, then the next line"},
        {x256 + y256 + std::string(88, 'z') + "\n", {x256, y256, std::string(88, 'z')}, "600"},
        {x256 + "z\r\n\nb", {x256, "z"}, "an empty line after a long one still ends it"},
    };
    for (const auto& c : cases) EXPECT_EQ(ReadM3u(c.text, false), c.entries) << c.what;
}

TEST(M3uReader, Utf8FilesSkipAByteOrderMark) {
    const std::string bom = "\xEF\xBB\xBF";
    EXPECT_EQ(ReadM3u(bom + "a\nb\n", true), (Lines{"a", "b"}));
    EXPECT_EQ(ReadM3u(bom + "a\nb\n", false), (Lines{bom + "a", "b"}));  // plain M3U keeps them
    EXPECT_EQ(ReadM3u("ab\n", true), (Lines{"ab"}));
    EXPECT_EQ(ReadM3u("a", true), (Lines{"a"}));
    EXPECT_EQ(ReadM3u("\xEF\xBB", true), (Lines{"\xEF\xBB"}));
    EXPECT_EQ(ReadM3u(bom, true), (Lines{}));
    EXPECT_EQ(ReadM3u(bom + "\na", true), (Lines{}));
}

// The index must read every key exactly as the profile reader does.
TEST(IniSectionIndex, AgreesWithTheProfileReader) {
    const char* const texts[] = {
        "[playlist]\nFile1=a\nfile1=b\nNumberOfEntries=2\n",
        "[Playlist]\r\n  File1 = \"a b\" \r\n\tFILE2\t=\t'c'\r\n",
        "[playlist]\nFile1=x\n[other]\nFile2=z\n[PLAYLIST]\nFile2=c\nFile1=y\n",
        "File1=before any section\n[playlist]\nFile2=b\n",
        "[playlist\nFile1=unclosed header\n",
        "[ playlist ]\nFile1=blanks in the header\n",
        "[playlist]]\nFile1=two brackets\n",
        "[playlist]\n=no key\nno equals sign\nFile1==starts with =\nFile2=\"unbalanced\n",
        "[playlist]\nFile1=;x\nFile2=a=b\n",
        "[entries]\nEntry1=a\n[playlist]\nFile1=\n",
        "",
        "[]\nFile1=empty section name\n",
    };
    const char* const keys[] = {"File1", "file2", "FILE1", "NumberOfEntries", "", "Entry1"};
    for (const char* text : texts) {
        const IniProfile profile = IniProfile::Parse(text);
        for (const char* section : {"playlist", "PLAYLIST", "entries", ""}) {
            const IniSectionIndex index = IniSectionIndex::Parse(text, section);
            for (const char* key : keys) {
                const std::string expected = profile.GetString(section, key, "(missing)", 100000);
                const std::string* value = index.Find(key);
                EXPECT_EQ(value ? *value : "(missing)", expected) << "[" << section << "] " << key << " in:\n" << text;
                EXPECT_EQ(index.GetInt(key, -7), profile.GetInt(section, key, -7));
            }
        }
    }
}

TEST(IniSectionIndex, NumberedValuesAreThePresentKeysInNumberOrder) {
    const char* const text =
        "[entries]\nEntry3=c\nentry1=a\nENTRY2=b\nEntry01=leading zero\nEntry+4=sign\nEntry 5=blank\n"
        "Entry6=f\nEntryX=letter\nEntry0=zero\nEntry-1=negative\nEntry2=second b\nEntry99999999999=huge\n";
    const IniSectionIndex index = IniSectionIndex::Parse(text, "Entries");
    using Values = std::vector<std::string_view>;
    EXPECT_EQ(index.NumberedValues("entry", 5), (Values{"a", "b", "c"}));
    EXPECT_EQ(index.NumberedValues("Entry", 6), (Values{"a", "b", "c", "f"}));
    EXPECT_EQ(index.NumberedValues("entry", 2), (Values{"a", "b"}));
    EXPECT_EQ(index.NumberedValues("entry", 0), Values{});
    EXPECT_EQ(index.NumberedValues("entry", -3), Values{});
    EXPECT_EQ(index.NumberedValues("entry", 2147483647), (Values{"a", "b", "c", "f"}));
    EXPECT_EQ(index.NumberedValues("file", 10), Values{});
}

}  // namespace
}  // namespace verdin
