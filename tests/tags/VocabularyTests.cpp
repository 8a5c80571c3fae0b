#include "tags/FrameTable.h"
#include "tags/GenreTable.h"
#include "tags/PictureTypes.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace verdin {
namespace {

TEST(FrameTable, HasFiftyOneRowsInIdentifierOrder) {
    ASSERT_EQ(FrameTable().size(), 51u);
    for (std::size_t i = 0; i < FrameTable().size(); ++i) EXPECT_EQ(FrameIndex(FrameTable()[i].id), i);
    std::set<std::string_view> names;
    for (const FrameInfo& frame : FrameTable()) {
        EXPECT_TRUE(names.insert(frame.name).second) << frame.name;
        EXPECT_FALSE(frame.description.empty()) << frame.name;
        for (char c : frame.name) EXPECT_TRUE(c >= 'A' && c <= 'Z') << frame.name;
    }
}

TEST(FrameTable, ExactRows) {
    struct Row {
        std::size_t position;
        std::string_view name;
        std::string_view description;
    };
    const Row rows[] = {
        {0, "NOFRAME", "No frame"},
        {1, "ORIGALBUM", "Original album/movie/show title"},
        {2, "PUBLISHER", "Publisher"},
        {3, "ENCODEDBY", "Encoded by"},
        {4, "ENCODERSETTINGS", "Software/Hardware and settings used for encoding"},
        {5, "ORIGFILENAME", "Original filename"},
        {6, "LANGUAGE", "Language(s)"},
        {7, "PARTINSET", "Part of a set"},
        {22, "TITLE", "Title/songname/content description"},
        {23, "LEADARTIST", "Lead performer(s)/Soloist(s)"},
        {25, "ALBUM", "Album/Movie/Show title"},
        {26, "YEAR", "Year"},
        {28, "COMPOSER", "Composer"},
        {30, "CONTENTTYPE", "Content type"},
        {31, "TRACKNUM", "Track number/Position in set"},
        {32, "COMMENT", "Comments"},
        {43, "UNSYNCEDLYRICS", "Unsychronized lyric/text transcription"},
        {44, "PICTURE", "Attached picture"},
        {50, "CRYPTOREG", "Encryption method registration"},
    };
    for (const Row& row : rows) {
        const FrameInfo& frame = FrameTable()[row.position];
        EXPECT_EQ(frame.name, row.name);
        EXPECT_EQ(frame.description, row.description) << row.name;
    }
}

TEST(FrameTable, NumericFramesAreTheCountingOnes) {
    std::set<std::string_view> numeric;
    for (const FrameInfo& frame : FrameTable())
        if (frame.numeric) numeric.insert(frame.name);
    EXPECT_EQ(numeric, (std::set<std::string_view>{"YEAR", "TRACKNUM", "PARTINSET", "PLAYCOUNTER", "POPULARIMETER"}));
    EXPECT_TRUE(IsNumericFrame(FrameId::Year));
    EXPECT_FALSE(IsNumericFrame(FrameId::ContentType));
}

TEST(FrameTable, TemplatesMatchExactlyAndExpressionsIgnoreCase) {
    struct Row {
        std::string_view text;
        std::optional<FrameId> exact;
        std::optional<FrameId> folded;
    };
    const Row rows[] = {
        {"LEADARTIST", FrameId::LeadArtist, FrameId::LeadArtist},
        {"leadArtist", std::nullopt, FrameId::LeadArtist},
        {"TITLE", FrameId::Title, FrameId::Title},
        {"title", std::nullopt, FrameId::Title},
        {"ARTIST", std::nullopt, std::nullopt},  // not a frame: templates write it back
        {"TITLE ", std::nullopt, std::nullopt},
        {"", std::nullopt, std::nullopt},
        {"CRYPTOREG", FrameId::CryptoReg, FrameId::CryptoReg},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(FindFrameName(row.text), row.exact) << row.text;
        EXPECT_EQ(IsFrameName(row.text), row.exact.has_value()) << row.text;
        EXPECT_EQ(FindFrameNameIgnoreCase(row.text), row.folded) << row.text;
    }
}

TEST(GenreTable, HasTheClassicNamesWithTheirBlanks) {
    ASSERT_EQ(GenreTable().size(), 126u);
    const std::pair<int, std::string_view> rows[] = {
        {0, "Blues "},       {1, "Classic Rock "}, {12, "Other"},        {29, "Jazz+Funk "},
        {40, "AlternRock "}, {60, "Top 40 "},      {67, "Psychadelic "}, {74, "Acid Jazz "},
        {85, "Bebob "},      {90, "Avantgarde "},  {100, "Humour "},     {123, "A capella "},
        {125, "Dance Hall "},
    };
    for (const auto& [number, name] : rows) EXPECT_EQ(GenreName(number), name) << number;
    EXPECT_EQ(GenreName(126), std::nullopt);
    EXPECT_EQ(GenreName(-1), std::nullopt);
}

TEST(GenreTable, ElevenNamesHaveNoTrailingBlank) {
    std::set<std::string_view> bare;
    for (std::string_view name : GenreTable()) {
        ASSERT_FALSE(name.empty());
        if (name.back() != ' ') bare.insert(name);
        else EXPECT_NE(name[name.size() - 2], ' ') << name;  // exactly one blank
    }
    EXPECT_EQ(bare, (std::set<std::string_view>{"Other", "Soundtrack", "House", "Instrumental Pop", "Dream", "Cabaret",
                                                "Retro", "Revival", "Slow Rock", "Symphony", "Power Ballad"}));
}

TEST(PictureTypes, TwentyOneNames) {
    ASSERT_EQ(PictureTypeTable().size(), 21u);
    EXPECT_EQ(PictureTypeName(0), "Other");
    EXPECT_EQ(PictureTypeName(1), "32x32 pixels 'file icon'");
    EXPECT_EQ(PictureTypeName(3), "Cover (front)");
    EXPECT_EQ(PictureTypeName(6), "Media (e.g. lable side of CD)");
    EXPECT_EQ(PictureTypeName(17), "A bright coloured fish");
    EXPECT_EQ(PictureTypeName(20), "Publisher/Studio logotype");
    EXPECT_EQ(PictureTypeName(21), "Other");
    EXPECT_EQ(PictureTypeName(-3), "Other");
}

}  // namespace
}  // namespace verdin
