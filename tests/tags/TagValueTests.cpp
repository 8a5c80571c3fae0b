// The tag layer's values: genres, the track's tag record and what is read from it, the
// leading tag's size and the descriptor stream.
#include "tags/DescriptorStream.h"
#include "tags/FrameValues.h"
#include "tags/GenreTable.h"
#include "tags/LeadingTag.h"
#include "tags/TagVersion.h"
#include "tags/TrackTag.h"

#include <gtest/gtest.h>

#include <random>
#include <sys/mman.h>
#include <unistd.h>

namespace verdin {
namespace {

FrameView View(FrameId id, std::string_view text, std::string_view description = {}) {
    FrameView view;
    view.id = id, view.text = text, view.description = description;
    return view;
}

TEST(TrackTag, GenresEveryFieldEditsWithoutDisturbingOtherFramesAndValues) {
    const std::pair<std::string_view, std::string_view> shown[] = {
        {"(125)", "Dance Hall "}, {"(0)", "Blues "}, {"(CR)", "Cover "}, {"(RX)(17)Metal", "Remix Rock Metal"}, {"(17)rock", "Rock "},  // the free text only repeats the genre
        {"(17)((live)", "Rock (live)"}, {"(126)", "(126)"}, {"(XX)Jazz", "(XX)Jazz"}, {"(17", "(17"}, {"()", "()"}, {"", ""},  // an escaped parenthesis
    };
    for (const auto& [raw, text] : shown) EXPECT_EQ(ResolveContentType(raw), text) << raw;
    using V = std::vector<std::string>;
    const std::pair<V, std::string_view> built[] = {{V{"RX", "17", "Metal"}, "(RX)(17)Metal"}, {V{"Metal", "17"}, "(17)Metal"},
                                                    {V{"Rock", "Pop"}, "Rock/Pop"}, {V{"(live)"}, "((live)"}, {V{"", "Jazz"}, "Jazz"}, {V{}, ""}};
    for (const auto& [values, raw] : built) EXPECT_EQ(ContentTypeFromValues(values), raw) << raw;
    EXPECT_EQ(GenreName(-1), std::nullopt);

    TrackTag tag;
    FrameView picture = View(FrameId::Picture, "", "front cover");
    picture.mimeType = "image/png", picture.pictureType = 3, picture.data = std::string_view("\x89PNG\0\1", 6), picture.dataSize = 6;
    FrameView comment = View(FrameId::Comment, "player data", "iTunNORM");
    comment.language = "eng";
    FrameView object = View(FrameId::GeneralObject, "");
    object.fileName = "notes.txt", object.mimeType = "text/plain";
    tag.AddText(FrameId::Title, "Old title");
    for (const FrameView& frame : {comment, picture, object}) tag.Add(frame);
    EXPECT_EQ(std::tuple(tag[1].language, tag[1].description, tag[2].mimeType, tag[2].pictureType, tag[2].data, tag[2].dataKept()),
              std::tuple("eng", "iTunNORM", "image/png", 3, picture.data, true));
    EXPECT_EQ(tag.Find(FrameId::Comment)->text, "player data");  // the only one
    tag.Add(View(FrameId::Comment, "the real comment"));
    EXPECT_EQ(tag.Find(FrameId::Comment)->text, "the real comment");  // the one without a description
    EXPECT_FALSE(tag.Find(FrameId::Album) || tag.Has(FrameId::Album));

    tag.SetText(FrameId::Title, "New title");
    tag.SetText(FrameId::LeadArtist, tag.Find(FrameId::Title)->text);  // absent: added, from the tag's own pool
    tag.Add(tag[0]);                                                    // a copy of one of its frames
    for (const auto& [id, text] : std::vector<std::pair<FrameId, std::string>>{{FrameId::TrackNum, "3/12"}, {FrameId::Year, "2004-05-06"}, {FrameId::ContentType, "(125)"},
                                                                                {FrameId::Album, std::string(254, 'b') + "\xC3\xA9" + "tail"}, {FrameId::Band, std::string(300, 'a')}})
        tag.AddText(id, text);  // the album has a character across the 255-byte limit
    const std::tuple<FrameId, std::string, int> values[] = {
        {FrameId::LeadArtist, "New title", 0}, {FrameId::TrackNum, "3/12", 3}, {FrameId::Year, "2004-05-06", 2004},
        {FrameId::ContentType, "Dance Hall ", 0}, {FrameId::Picture, "front cover", 0}, {FrameId::GeneralObject, "notes.txt", 0},  // no description: the file name
        {FrameId::Album, std::string(254, 'b'), 0}, {FrameId::Band, std::string(255, 'a'), 0}, {FrameId::Composer, "", 0}, {FrameId::NoFrame, "", 0},
    };
    for (const auto& [id, text, integer] : values) EXPECT_EQ(std::pair(FrameStringValue(tag, id), FrameIntegerValue(tag, id)), std::pair(text, integer)) << FrameIndex(id);
    std::string reused = "left over";
    FrameStringValue(tag, FrameId::Composer, reused);
    EXPECT_EQ(reused, "");
    EXPECT_EQ(std::string(tag[tag.size() - 6].text), "New title");

    tag.RemoveAll(FrameId::Comment);
    tag.Remove(0);
    tag.Remove(99);  // out of range: nothing
    EXPECT_FALSE(tag.Has(FrameId::Comment));
    ASSERT_EQ(tag.size(), 9u);
    const TrackTag before = tag;
    const size_t heap = tag.HeapBytes();
    tag.Compact();
    EXPECT_TRUE(tag == before);
    EXPECT_LT(tag.HeapBytes(), heap);  // the replaced texts are gone
    tag.AddSource(kSourceId3v1);
    tag.Clear();
    EXPECT_EQ(std::tuple(tag.empty(), tag.sources(), TrackTag().HeapBytes()), std::tuple(true, 0, 0u));
    EXPECT_LE(sizeof(TrackTag), 64u);  // small to hold for a large library
}

// A file's first bytes: the leading tag's size; then every range of a file in few reads.
TEST(FileBytes, TheLeadingTagAndTheDescriptorStream) {
    const std::tuple<std::vector<uint8_t>, uint32_t, TagVersion> rows[] = {  // size 0: no leading tag
        {{'I', 'D', '3', 4, 0, 0x10, 0, 0, 0x01, 0x79}, 10 + 0xF9 + 10, {2, 4, 0}}, {{'I', 'D', '3', 3, 0, 0x10, 0, 0, 0, 100}, 10 + 100, {2, 3, 0}},  // a footer only from 2.4 on
        {{'I', 'D', '3', 2, 1, 0, 0x7F, 0x7F, 0x7F, 0x7F}, 10 + 0x0FFFFFFF, {2, 2, 1}}, {{'I', 'D', '3', 3, 0, 0, 0, 0, 0x80, 0}, 0, {}},  // not synchsafe
        {{'I', 'D', '3', 0xFF, 0, 0, 0, 0, 0, 0}, 0, {}}, {{'I', 'D', '3', 3, 0xFF, 0, 0, 0, 0, 0}, 0, {}}, {{'I', 'D', '3', 3, 0, 0, 0, 0, 0}, 0, {}},
    };
    for (const auto& [head, size, version] : rows) {
        const LeadingTag tag = ParseLeadingTag(head);
        EXPECT_EQ(std::tuple(tag.found, tag.completeSize, tag.version), std::tuple(size > 0, size, version)) << size;
    }
    std::string contents(10000, '\0');
    for (int i = 0; i < 10000; ++i) contents[i] = static_cast<char>(i * 31 + i / 256);
    const int fd = ::memfd_create("data", 0);
    ASSERT_EQ(::write(fd, contents.data(), contents.size()), 10000);
    DescriptorStream stream(fd, 10000);
    for (const auto& [offset, length] : {std::pair{0, 3}, {0, 10}, {10, 500}, {9872, 3}, {9840, 32}, {9872, 128}}) stream.ReadAt(offset, size_t(length));
    EXPECT_EQ(stream.readCalls(), 2);  // header and trailer reads cost one call each
    std::mt19937 random(5);
    for (int i = 0; i < 400; ++i) {  // then any range: inside and across the blocks' edges, past the end
        const int64_t offset = random() % 10100;
        const size_t length = random() % (i % 20 ? 200 : 10000);
        const TagLib::ByteVector bytes = stream.ReadAt(offset, length);
        ASSERT_EQ(std::string(bytes.data(), bytes.size()), offset >= 10000 ? "" : contents.substr(size_t(offset), length)) << offset << "+" << length;
    }
    stream.seek(-4, TagLib::IOStream::End);
    stream.seek(-20000, TagLib::IOStream::Current);  // before the start: refused
    EXPECT_EQ(std::string(stream.readBlock(10).data(), 4), contents.substr(9996));
    EXPECT_EQ(stream.tell(), 10000);
    EXPECT_TRUE(stream.readBlock(10).isEmpty() && stream.length() == 10000 && stream.readOnly());
    ::close(fd);
}

}  // namespace
}  // namespace verdin
