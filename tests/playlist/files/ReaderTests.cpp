// The line reader of M3U files and the key reader of PLS and ".vdp" files. Plain CR LF
// lines and the byte-order mark of ".m3u8" (kept in ".m3u") are LoadTests'.
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

TEST(M3uReader, ReadsLinesUntilAnEmptyOneAndUtf8FilesSkipAByteOrderMark) {
    const std::string x256(256, 'x'), y256(256, 'y'), bom = "\xEF\xBB\xBF";
    const struct {
        std::string text;
        Lines entries;
        const char* what;
        bool utf8 = false;
    } cases[] = {
        {"a\nb", {"a", "b"}, "no LF at the end"},
        {"a\r\r\nb", {"a\r", "b"}, "only one CR before the LF goes"},
        {"a\rb\nc\r", {"a\rb", "c\r"}, "a CR not before an LF stays"},
        {"a\nb\n\nc\n", {"a", "b"}, "an empty third line ends the reading"},
        {"a\n\r\nb\n", {"a", "", "b"}, "a lone CR is an empty entry, not the end"},
        {std::string("ab\0cd\nz", 7), {"ab", "z"}, "a NUL ends the entry"},
        {x256 + "\r\nb", {x256, "b"}, "256 characters fit, CR LF after them"},
        {x256 + y256 + std::string(88, 'z') + "\n", {x256, y256, std::string(88, 'z')}, "600: the rest is the next entry"},
        {x256 + "z\r\n\nb", {x256, "z"}, "an empty line after a long one still ends it"},
        {"\xEF\xBB", {"\xEF\xBB"}, "half a mark", true},
        {bom + "\na", {}, "a mark, then an empty line", true},
    };
    for (const auto& c : cases) EXPECT_EQ(ReadM3u(c.text, c.utf8), c.entries) << c.what;
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

// Up to the count, in number order whatever the file order, keys missing on the way
// skipped; numbers written otherwise than plainly name no entry.
TEST(IniSectionIndex, NumberedValuesAreThePresentKeysInNumberOrder) {
    const IniSectionIndex index = IniSectionIndex::Parse(
        "[entries]\nEntry3=c\nentry1=a\nENTRY2=b\nEntry01=leading zero\nEntry+4=sign\nEntry 5=blank\n"
        "Entry6=f\nEntryX=letter\nEntry0=zero\nEntry-1=negative\nEntry2=second b\nEntry99999999999=huge\n", "Entries");
    using Values = std::vector<std::string_view>;
    for (const auto& [count, values] : {std::pair{5, Values{"a", "b", "c"}}, {2, {"a", "b"}}, {0, {}}, {-3, {}},
                                        {2147483647, {"a", "b", "c", "f"}}})
        EXPECT_EQ(index.NumberedValues("entry", count), values) << count;
}

}  // namespace
}  // namespace verdin
