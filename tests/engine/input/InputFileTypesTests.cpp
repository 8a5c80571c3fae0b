#include "engine/input/InputFileTypes.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

// The whole literal, the NUL the compiler adds included, in a buffer of exactly that size:
// reading past a list's end then shows under the address sanitizer.
template <size_t N>
std::vector<char> ListBytes(const char (&literal)[N]) {
    return std::vector<char>(literal, literal + N);
}

TEST(InputFileTypes, ParsesPairsAndDropsADanglingDescription) {
    using Filters = std::vector<FileTypeFilter>;
    const struct {
        const char* label;
        std::vector<char> list;
        Filters expected;
    } cases[] = {
        {"two pairs", ListBytes("MPEG audio\0*.mp3;*.mp2\0WAV audio\0*.wav\0"),
         Filters{{"MPEG audio", "*.mp3;*.mp2"}, {"WAV audio", "*.wav"}}},
        {"empty list", ListBytes(""), Filters{}},
        {"description without patterns", ListBytes("Lonely\0"), Filters{}},
        {"pair, then a lone description", ListBytes("A\0*.a\0B\0"), Filters{{"A", "*.a"}}},
        {"patterns kept as written", ListBytes("X\0 *.x ; *.Y\0"), Filters{{"X", " *.x ; *.Y"}}},
    };
    for (const auto& c : cases) EXPECT_EQ(ParseFileTypeList(c.list.data()), c.expected) << c.label;
    EXPECT_TRUE(ParseFileTypeList(nullptr).empty());
}

TEST(InputFileTypes, ListWithoutAnEndIsReadNoFurtherThanItsBound) {
    std::vector<char> endless(200 * 1024, 'x');
    endless.back() = '\0';  // the only NUL, far beyond any real list
    EXPECT_TRUE(ParseFileTypeList(endless.data()).empty());
}

TEST(InputFileTypes, PatternsGiveTheirExtensions) {
    const struct {
        const char* pattern;
        std::optional<std::string> extension;
    } cases[] = {
        {"*.mp3", ".mp3"}, {" *.MP3 ", ".MP3"}, {"*.*", std::nullopt},   {"*", std::nullopt},
        {"noext", std::nullopt}, {"a.mp3", std::nullopt}, {"*.", std::nullopt}, {"*.tar.gz", std::nullopt},
        {"*.m?3", std::nullopt}, {"", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(ExtensionOfPattern(c.pattern), c.extension) << '"' << c.pattern << '"';
}

TEST(InputFileTypes, ExtensionsAreGatheredInOrderWithoutRepeats) {
    std::vector<std::string> extensions = {".wav"};
    AppendPatternExtensions("*.mp3;*.mp2;;*.*;*.MP3;*.WAV", extensions);
    AppendPatternExtensions("*.mp1", extensions);
    EXPECT_EQ(extensions, (std::vector<std::string>{".wav", ".mp3", ".mp2", ".mp1"}));
}

}  // namespace
}  // namespace verdin
