// The tag layer's values: genres, frame names, the track's tag record and what is read
// from it, the properties page's texts, the leading tag's size and the descriptor stream.
#include "tags/DescriptorStream.h"
#include "tags/FrameDisplay.h"
#include "tags/FrameTable.h"
#include "tags/FrameValues.h"
#include "tags/GenreTable.h"
#include "tags/LeadingTag.h"
#include "tags/TagErrorMessage.h"
#include "tags/TagVersion.h"
#include "tags/TrackTag.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace verdin {
namespace {

TEST(ContentType, ResolvesReferencesAndIsBuiltFromValues) {
    const std::pair<std::string_view, std::string_view> shown[] = {
        {"(125)", "Dance Hall "}, {"(0)", "Blues "}, {"(12)", "Other"}, {"(RX)", "Remix "}, {"(CR)", "Cover "},
        {"(RX)(17)Metal", "Remix Rock Metal"}, {"(4)Eurodisco", "Disco Eurodisco"},
        {"(17)Rock", "Rock "}, {"(17)rock", "Rock "},  // the free text only repeats the genre
        {"Rock", "Rock"}, {"((live)", "(live)"}, {"(17)((live)", "Rock (live)"},  // an escaped parenthesis
        {"(200)", "(200)"}, {"(1234)", "(1234)"}, {"(XX)Jazz", "(XX)Jazz"}, {"(17", "(17"}, {"()", "()"}, {"(", "("}, {"", ""},
    };
    for (const auto& [raw, text] : shown) EXPECT_EQ(ResolveContentType(raw), text) << raw;
    using V = std::vector<std::string>;
    const std::pair<V, std::string_view> built[] = {{V{"17"}, "(17)"}, {V{"RX", "17", "Metal"}, "(RX)(17)Metal"},
                                                    {V{"Metal", "17"}, "(17)Metal"}, {V{"Rock", "Pop"}, "Rock/Pop"},
                                                    {V{"(live)"}, "((live)"}, {V{"", "Jazz"}, "Jazz"}, {V{}, ""}};
    for (const auto& [values, raw] : built) EXPECT_EQ(ContentTypeFromValues(values), raw) << raw;
    EXPECT_EQ(ResolveContentType(ContentTypeFromValues({"CR", "125"})), "Cover Dance Hall ");
    EXPECT_EQ(GenreName(126), std::nullopt);
    EXPECT_EQ(GenreName(-1), std::nullopt);
    // Templates match frame names exactly, expressions without regard to case.
    const std::tuple<std::string_view, std::optional<FrameId>, std::optional<FrameId>> names[] = {
        {"LEADARTIST", FrameId::LeadArtist, FrameId::LeadArtist}, {"title", std::nullopt, FrameId::Title},
        {"ARTIST", std::nullopt, std::nullopt}, {"TITLE ", std::nullopt, std::nullopt}, {"", std::nullopt, std::nullopt},
        {"CRYPTOREG", FrameId::CryptoReg, FrameId::CryptoReg},
    };
    for (const auto& [text, exact, folded] : names) {
        EXPECT_EQ(FindFrameName(text), exact) << text;
        EXPECT_EQ(FindFrameNameIgnoreCase(text), folded) << text;
    }
}

FrameView View(FrameId id, std::string_view text, std::string_view description = {}) {
    FrameView view;
    view.id = id;
    view.text = text;
    view.description = description;
    return view;
}

TEST(TrackTag, KeepsEveryFieldAndEditsWithoutDisturbingOtherFrames) {
    TrackTag tag;
    FrameView picture = View(FrameId::Picture, "", "front");
    picture.mimeType = "image/png";
    picture.pictureType = 3;
    picture.data = std::string_view("\x89PNG\0\1", 6);
    picture.dataSize = 6;
    FrameView comment = View(FrameId::Comment, "player data", "iTunNORM");
    comment.language = "eng";
    tag.AddText(FrameId::Title, "Old title");
    tag.Add(comment);
    tag.Add(picture);
    ASSERT_EQ(tag.size(), 3u);
    EXPECT_EQ(std::tuple(tag[1].language, tag[1].description), std::tuple("eng", "iTunNORM"));
    EXPECT_EQ(std::tuple(tag[2].mimeType, tag[2].pictureType, tag[2].data), std::tuple("image/png", 3, picture.data));
    EXPECT_TRUE(tag[2].dataKept());
    EXPECT_EQ(tag.Find(FrameId::Comment)->text, "player data");  // the only one
    tag.Add(View(FrameId::Comment, "the real comment"));
    EXPECT_EQ(tag.Find(FrameId::Comment)->text, "the real comment");  // the one without a description
    EXPECT_FALSE(tag.Find(FrameId::Album) || tag.Has(FrameId::Album));

    tag.SetText(FrameId::Title, "New title");
    tag.SetText(FrameId::Album, "Album");                          // absent: added
    tag.SetText(FrameId::LeadArtist, tag.Find(FrameId::Title)->text);  // from the tag's own pool
    tag.Add(tag[0]);                                               // a copy of one of its frames
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist) + "|" + FrameStringValue(tag, FrameId::Album) + "|" + std::string(tag[tag.size() - 1].text),
              "New title|Album|New title");
    tag.RemoveAll(FrameId::Comment);
    tag.Remove(0);
    tag.Remove(99);  // out of range: nothing
    EXPECT_FALSE(tag.Has(FrameId::Comment));
    ASSERT_EQ(tag.size(), 4u);
    const TrackTag before = tag;
    const size_t heap = tag.HeapBytes();
    tag.Compact();
    EXPECT_TRUE(tag == before);
    EXPECT_LT(tag.HeapBytes(), heap);  // the replaced texts are gone
    tag.AddSource(kSourceId3v1);
    tag.Clear();
    EXPECT_TRUE(tag.empty());
    EXPECT_EQ(tag.sources(), 0);

    // Small to hold for a large library: seven short text frames and a comment.
    EXPECT_LE(sizeof(TrackTag), 64u);
    EXPECT_EQ(TrackTag().HeapBytes(), 0u);
    for (FrameId id : {FrameId::Title, FrameId::LeadArtist, FrameId::Album, FrameId::Year, FrameId::TrackNum, FrameId::ContentType, FrameId::EncoderSettings})
        tag.AddText(id, "twenty characters...");
    tag.Add(View(FrameId::Comment, "a comment of some length"));
    tag.Compact();
    EXPECT_LT(tag.HeapBytes(), 700u);
}

TEST(FrameValues, StringsAndIntegersOfEachKindCutAtACharacter) {
    TrackTag tag;
    for (const auto& [id, text] : {std::pair{FrameId::TrackNum, "3/12"}, {FrameId::Year, "2004-05-06"}, {FrameId::ContentType, "(125)"}})
        tag.AddText(id, text);
    tag.Add(View(FrameId::Picture, "", "front cover"));
    FrameView object = View(FrameId::GeneralObject, "");
    object.fileName = "notes.txt";
    tag.Add(object);
    tag.AddText(FrameId::Title, std::string(300, 'a'));
    tag.AddText(FrameId::Album, std::string(254, 'b') + "\xC3\xA9" + "tail");  // a character across the 255-byte limit
    const std::tuple<FrameId, std::string, int> rows[] = {
        {FrameId::TrackNum, "3/12", 3}, {FrameId::Year, "2004-05-06", 2004}, {FrameId::ContentType, "Dance Hall ", 0},
        {FrameId::Picture, "front cover", 0}, {FrameId::GeneralObject, "notes.txt", 0},  // no description: the file name
        {FrameId::Title, std::string(255, 'a'), 0}, {FrameId::Album, std::string(254, 'b'), 0},
        {FrameId::Composer, "", 0}, {FrameId::NoFrame, "", 0},
    };
    for (const auto& [id, text, integer] : rows) {
        EXPECT_EQ(FrameStringValue(tag, id), text) << FrameIndex(id);
        EXPECT_EQ(FrameIntegerValue(tag, id), integer) << FrameIndex(id);
    }
    std::string reused = "left over";
    FrameStringValue(tag, FrameId::Comment, reused);
    EXPECT_EQ(reused, "");
}

TEST(FrameDisplay, DetailsAttachmentsAndMessages) {
    FrameView comment = View(FrameId::Comment, "", "ID3v1 comment field");
    comment.language = "eng";
    FrameView picture = View(FrameId::Picture, "", "front");
    picture.pictureType = 3;
    picture.mimeType = "image/png";
    FrameView bare = picture;
    bare.description = {};
    bare.pictureType = 0;
    FrameView object = View(FrameId::GeneralObject, "", "notes");
    object.mimeType = "text/plain";
    object.fileName = "notes.txt";
    const std::pair<FrameView, std::string> details[] = {
        {comment, "Language: eng - Description: ID3v1 comment field"},
        {picture, "Description: front - Picture type: Cover (front) - MIME type: image/png"},
        {bare, "Picture type: Other - MIME type: image/png"},
        {object, "Description: notes - MIME type: text/plain - File name: notes.txt"},
        {View(FrameId::Title, "Song", "ignored for a text frame"), ""},
    };
    for (const auto& [frame, text] : details) EXPECT_EQ(JoinFrameDetails(FrameDetails(frame)), text);

    test::TempDir dir;
    const std::string bytes("\x89PNG\r\n\x1A\n\0\0binary", 16);
    picture.data = bytes;
    picture.dataSize = 16;
    EXPECT_EQ(SaveAttachment(picture, dir.file("cover.png")), "");
    EXPECT_EQ(test::ReadFile(dir.file("cover.png")), bytes);
    EXPECT_EQ(SaveAttachment(picture, dir.file("missing/cover.png")), "No such file or directory");
    EXPECT_EQ(SaveAttachment(picture, "/dev/full"), "No space left on device");
    FrameView notKept = picture;
    notKept.data = {};
    EXPECT_EQ(SaveAttachment(notKept, dir.file("x")), "The attachment was not read from the file");
    EXPECT_FALSE(test::FileExists(dir.file("x")));
    EXPECT_FALSE(HasAttachment(comment));
    EXPECT_EQ(SaveAttachment(comment, dir.file("y")), "The frame has no attachment");

    EXPECT_EQ(DescribeTagVersion({2, 3, 0}), "ID3 Tag version 2.3.0");
    EXPECT_EQ(DescribeTagVersion({}), "No ID3 Tag found");
    EXPECT_EQ(ComposeTagErrorMessage("Not a valid FLAC file"), "ID3Lib v3.05a said \"Not a valid FLAC file\", but we couldn't care less.");
}

TEST(LeadingTag, MeasuresHeaderBodyAndFooter) {
    const struct {
        std::vector<uint8_t> head;
        uint32_t size;  // 0: no leading tag
        TagVersion version;
    } rows[] = {
        {{'I', 'D', '3', 3, 0, 0, 0, 0, 0x01, 0x79}, 10 + 0xF9, {2, 3, 0}},
        {{'I', 'D', '3', 4, 0, 0x10, 0, 0, 0, 100}, 10 + 100 + 10, {2, 4, 0}},  // a footer
        {{'I', 'D', '3', 3, 0, 0x10, 0, 0, 0, 100}, 10 + 100, {2, 3, 0}},       // none before 2.4
        {{'I', 'D', '3', 2, 1, 0, 0x7F, 0x7F, 0x7F, 0x7F}, 10 + 0x0FFFFFFF, {2, 2, 1}},
        {{'I', 'D', '3', 3, 0, 0, 0, 0, 0x81, 0}, 0, {}},  // not synchsafe
        {{'I', 'D', '3', 0xFF, 0, 0, 0, 0, 0, 0}, 0, {}}, {{'I', 'D', '3', 3, 0xFF, 0, 0, 0, 0, 0}, 0, {}},
        {{'I', 'D', '3', 3, 0, 0, 0, 0, 0}, 0, {}},  // too short
        {{'T', 'A', 'G', 3, 0, 0, 0, 0, 0, 0}, 0, {}}, {{}, 0, {}},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        const LeadingTag tag = ParseLeadingTag(rows[i].head);
        EXPECT_EQ(std::tuple(tag.found, tag.completeSize, tag.version), std::tuple(rows[i].size > 0, rows[i].size, rows[i].version)) << i;
    }
}

TEST(DescriptorStream, ServesEveryRangeAsTheFileHoldsItInFewReads) {
    test::TempDir dir;
    std::string contents;
    for (int i = 0; i < 10000; ++i) contents.push_back(static_cast<char>(i * 31 + i / 256));
    test::WriteFile(dir.file("data.bin"), contents);
    const int fd = ::open(dir.file("data.bin").c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    {
        DescriptorStream headAndTail(fd, 10000);  // header and trailer reads cost one call each
        for (const auto& [offset, length] : {std::pair{0, 3}, {0, 10}, {10, 500}, {9872, 3}, {9840, 32}, {9872, 128}})
            headAndTail.ReadAt(offset, size_t(length));
        EXPECT_EQ(headAndTail.readCalls(), 2);
        DescriptorStream stream(fd, 10000);
        const std::pair<int64_t, size_t> ranges[] = {
            {0, 3},     {10, 300},  {4000, 96}, {4090, 20}, {5000, 10},  // across the head block's end
            {9488, 10}, {9480, 20}, {9872, 128}, {9990, 50}, {0, 10000}, {10000, 5}, {20000, 1},  // the tail, past the end
        };
        for (const auto& [offset, length] : ranges) {
            const TagLib::ByteVector bytes = stream.ReadAt(offset, length);
            EXPECT_EQ(std::string(bytes.data(), bytes.size()), offset >= 10000 ? "" : contents.substr(size_t(offset), length))
                << offset << "+" << length;
        }
        stream.seek(100);
        EXPECT_EQ(std::string(stream.readBlock(4).data(), 4), contents.substr(100, 4));
        stream.seek(-4, TagLib::IOStream::Current);
        EXPECT_EQ(stream.tell(), 100);
        stream.seek(-128, TagLib::IOStream::End);
        stream.seek(-20000, TagLib::IOStream::End);  // before the start: refused
        EXPECT_EQ(stream.tell(), 10000 - 128);
        stream.seek(0, TagLib::IOStream::End);
        EXPECT_TRUE(stream.readBlock(10).isEmpty());
        EXPECT_EQ(stream.length(), 10000);
        EXPECT_TRUE(stream.readOnly());
    }
    ::close(fd);
}

}  // namespace
}  // namespace verdin
