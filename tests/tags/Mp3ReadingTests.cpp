// Reading MP3 files made by lame, and by hand where an exact layout matters.
#include "tags/FrameValues.h"
#include "tags/TagReader.h"

#include "Files.h"
#include "TagFixtures.h"
#include "TempDir.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace verdin {
namespace {

using test::RawFrame;

const std::vector<std::string> kLameTags{"--tt", "Title One", "--ta", "The Artist", "--tl", "The Album",
                                         "--ty", "1999",      "--tn", "3/12",       "--tg", "125",
                                         "--tc", "a comment"};

std::vector<std::string> With(std::vector<std::string> options, std::initializer_list<std::string> more) {
    options.insert(options.end(), more.begin(), more.end());
    return options;
}

// Whether an MPEG audio frame header starts at `offset`.
bool MpegSyncAt(const std::string& path, std::uint64_t offset) {
    const std::vector<std::uint8_t> bytes = test::ReadBytes(path);
    return offset + 1 < bytes.size() && bytes[offset] == 0xFF && (bytes[offset + 1] & 0xE0) == 0xE0;
}

TEST(Mp3Reading, Id3v1Only) {
    test::TempDir dir;
    const std::string path = dir.file("v1.mp3");
    test::MakeMp3(path, With(kLameTags, {"--id3v1-only"}));
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_TRUE(r.opened);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.version, (TagVersion{1, 1, 0}));  // lame wrote a track number: ID3v1.1
    EXPECT_EQ(r.audioStart, 0u);
    EXPECT_EQ(r.fileSize, test::ReadBytes(path).size());
    EXPECT_EQ(tag.sources(), kSourceId3v1);

    const std::pair<FrameId, std::string_view> values[] = {
        {FrameId::Title, "Title One"},           {FrameId::LeadArtist, "The Artist"},
        {FrameId::Album, "The Album"},           {FrameId::Year, "1999"},
        {FrameId::ContentType, "Dance Hall "},   {FrameId::TrackNum, "3"},
        {FrameId::Comment, "a comment"},
    };
    for (const auto& [id, text] : values) EXPECT_EQ(FrameStringValue(tag, id), text) << FrameIndex(id);
    EXPECT_EQ(tag.Find(FrameId::ContentType)->text, "(125)");
    const FrameView comment = *tag.Find(FrameId::Comment);
    EXPECT_EQ(comment.language, "eng");
    EXPECT_EQ(comment.description, "ID3v1 comment field");
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::Year), 1999);
    EXPECT_EQ(tag.size(), 7u);
}

TEST(Mp3Reading, Id3v10LayoutWithoutTrackNumber) {
    test::TempDir dir;
    const std::string path = dir.file("v10.mp3");
    test::MakeMp3(path, {});
    test::WriteBytes(path, test::Concat(test::ReadBytes(path),
                                        test::RawId3v1("Old", "", "", "", "thirty characters of comment!!", -1, 255)));
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.version, (TagVersion{1, 0, 0}));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Old");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Comment), "thirty characters of comment!!");
    EXPECT_FALSE(tag.Has(FrameId::ContentType));  // 255: no genre
    EXPECT_FALSE(tag.Has(FrameId::LeadArtist));   // empty fields add nothing
    EXPECT_FALSE(tag.Has(FrameId::TrackNum));
}

TEST(Mp3Reading, Id3v23FromLame) {
    test::TempDir dir;
    const std::string path = dir.file("v23.mp3");
    test::MakeMp3(path, With(kLameTags, {"--id3v2-only"}));
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.version, (TagVersion{2, 3, 0}));
    EXPECT_GT(r.audioStart, 10u);
    EXPECT_TRUE(MpegSyncAt(path, r.audioStart));
    EXPECT_EQ(tag.sources(), kSourceId3v2);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Title One");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "The Artist");
    EXPECT_EQ(FrameStringValue(tag, FrameId::TrackNum), "3/12");
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::TrackNum), 3);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Year), "1999");
    EXPECT_EQ(FrameStringValue(tag, FrameId::ContentType), "Dance Hall");  // lame writes the name as text
    EXPECT_EQ(FrameStringValue(tag, FrameId::Comment), "a comment");
    EXPECT_EQ(FrameStringValue(tag, FrameId::EncoderSettings).substr(0, 4), "LAME");
}

TEST(Mp3Reading, PaddingCountsIntoTheAudioStart) {
    test::TempDir dir;
    const std::string plain = dir.file("plain.mp3");
    const std::string padded = dir.file("padded.mp3");
    test::MakeMp3(plain, With(kLameTags, {"--id3v2-only"}));
    test::MakeMp3(padded, With(kLameTags, {"--id3v2-only", "--pad-id3v2-size", "1000"}));
    TrackTag tag;
    const TagReadResult a = ReadTrackTag(plain, {}, tag);
    const TagReadResult b = ReadTrackTag(padded, {}, tag);
    EXPECT_EQ(b.audioStart, a.audioStart + 1000);
    EXPECT_TRUE(MpegSyncAt(padded, b.audioStart));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Title One");
}

TEST(Mp3Reading, LeadingTagOfKnownSize) {
    test::TempDir dir;
    const std::string audio = dir.file("audio.mp3");
    test::MakeMp3(audio, {});
    const auto id3 = test::RawId3v2(3, {{"TIT2", test::Latin1("Known")}, {"TPE1", test::Latin1("Sized")}}, 500);
    ASSERT_EQ(id3.size(), 10u + 2 * (10 + 6) + 500);
    const std::string path = dir.file("known.mp3");
    test::WriteBytes(path, test::Concat(id3, test::ReadBytes(audio)));

    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.audioStart, 542u);
    EXPECT_EQ(r.fileSize, 542u + test::ReadBytes(audio).size());
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Known");

    // A version 2.4 tag with a footer: the footer belongs to the tag too.
    const auto withFooter = test::RawId3v2(4, {{"TIT2", test::Latin1("Footer")}}, 0, true);
    ASSERT_EQ(withFooter.size(), 10u + 10 + 7 + 10);
    test::WriteBytes(path, test::Concat(withFooter, test::ReadBytes(audio)));
    const TagReadResult f = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(f.audioStart, 37u);
    EXPECT_EQ(f.version, (TagVersion{2, 4, 0}));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Footer");
}

TEST(Mp3Reading, Id3v24WithUtf8Text) {
    test::TempDir dir;
    const std::string audio = dir.file("audio.mp3");
    test::MakeMp3(audio, {});
    const std::string title = "Ünïcødé ☃ 日本";
    const auto id3 = test::RawId3v2(4, {{"TIT2", test::Utf8Body(title)},
                                        {"TPE1", test::Utf8Body(std::string("Ärtist") + '\0' + "Second")},
                                        {"TDRC", test::Utf8Body("2004-05-06")},
                                        {"TCON", test::Utf8Body(std::string("17\0RX", 5))}});
    const std::string path = dir.file("v24.mp3");
    test::WriteBytes(path, test::Concat(id3, test::ReadBytes(audio)));
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.version, (TagVersion{2, 4, 0}));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), title);
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "Ärtist/Second");  // two values
    EXPECT_EQ(FrameStringValue(tag, FrameId::Year), "2004-05-06");           // a 2.4 time stamp stays whole
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::Year), 2004);
    EXPECT_EQ(tag.Find(FrameId::ContentType)->text, "(17)(RX)");
    EXPECT_EQ(FrameStringValue(tag, FrameId::ContentType), "Rock Remix ");
}

TEST(Mp3Reading, Id3v23FramesBeyondPlainText) {
    test::TempDir dir;
    const std::string audio = dir.file("audio.mp3");
    test::MakeMp3(audio, {});
    const auto id3 = test::RawId3v2(
        3, {
               {"TCON", test::Latin1("(RX)(17)Metal")},
               {"TYER", test::Latin1("1999")},
               {"TDAT", test::Latin1("0605")},
               {"TIME", test::Latin1("1230")},
               {"TRDA", test::Latin1("June 5-6")},
               {"IPLS", std::string("\0producer\0Bob\0mix\0Al", 20)},
               {"TXXX", std::string("\0MOOD\0calm", 10)},
               {"WXXX", std::string("\0home\0http://example.org/", 25)},
               {"WOAR", "http://artist.example/"},
               {"UFID", std::string("http://ids.example\0abc-123", 26)},
               {"PCNT", std::string("\0\0\x01\x02", 4)},
               {"POPM", std::string("me@example.org\0\xC4\0\0\0\x07", 20)},
               {"USLT", std::string("\0deu\0la la la", 13)},
               {"TPOS", test::Latin1("2/3")},
           });
    const std::string path = dir.file("frames.mp3");
    test::WriteBytes(path, test::Concat(id3, test::ReadBytes(audio)));
    TrackTag tag;
    ASSERT_EQ(ReadTrackTag(path, {}, tag).error, "");

    const std::pair<FrameId, std::string_view> values[] = {
        {FrameId::ContentType, "Remix Rock Metal"},
        {FrameId::Year, "1999"},  // not the merged "1999-05-06" TagLib makes of it
        {FrameId::Date, "0605"},
        {FrameId::Time, "1230"},
        {FrameId::RecordingDates, "June 5-6"},
        {FrameId::InvolvedPeople, "producer: Bob, mix: Al"},
        {FrameId::UserText, "calm"},
        {FrameId::WwwUser, "http://example.org/"},
        {FrameId::WwwArtist, "http://artist.example/"},
        {FrameId::UniqueFileId, "abc-123"},
        {FrameId::PlayCounter, "258"},
        {FrameId::Popularimeter, "196"},
        {FrameId::UnsyncedLyrics, "la la la"},
        {FrameId::PartInSet, "2/3"},
    };
    for (const auto& [id, text] : values) EXPECT_EQ(FrameStringValue(tag, id), text) << FrameIndex(id);
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::PlayCounter), 258);
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::PartInSet), 2);
    EXPECT_EQ(tag.Find(FrameId::UserText)->description, "MOOD");
    EXPECT_EQ(tag.Find(FrameId::UniqueFileId)->description, "http://ids.example");
    EXPECT_EQ(tag.Find(FrameId::Popularimeter)->description, "me@example.org");
    EXPECT_EQ(tag.Find(FrameId::UnsyncedLyrics)->language, "deu");
}

TEST(Mp3Reading, Id3v22Tag) {
    test::TempDir dir;
    const std::string audio = dir.file("audio.mp3");
    test::MakeMp3(audio, {});
    const auto id3 = test::RawId3v2(2, {{"TT2", test::Latin1("Old Song")},
                                        {"TP1", test::Latin1("Old Artist")},
                                        {"TYE", test::Latin1("1987")},
                                        {"TCO", test::Latin1("(125)")},
                                        {"COM", std::string("\0eng\0old comment", 16)}});
    const std::string path = dir.file("v22.mp3");
    test::WriteBytes(path, test::Concat(id3, test::ReadBytes(audio)));
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.version, (TagVersion{2, 2, 0}));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Old Song");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "Old Artist");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Year), "1987");
    EXPECT_EQ(FrameStringValue(tag, FrameId::ContentType), "Dance Hall ");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Comment), "old comment");
}

TEST(Mp3Reading, Id3v2FramesComeFirstAndTheTrailerFillsGaps) {
    test::TempDir dir;
    const std::string path = dir.file("both.mp3");
    test::MakeMp3(path, {"--tt", "V1 Title", "--ta", "V1 Artist", "--tc", "v1 comment", "--tg", "17", "--id3v1-only"});
    const auto id3 = test::RawId3v2(3, {{"TIT2", test::Latin1("V2 Title")}, {"TCON", test::Latin1("(8)")}});
    test::WriteBytes(path, test::Concat(id3, test::ReadBytes(path)));

    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.version, (TagVersion{2, 3, 0}));  // the ID3v2 tag's version wins
    EXPECT_EQ(tag.sources(), kSourceId3v2 | kSourceId3v1);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "V2 Title");
    EXPECT_EQ(FrameStringValue(tag, FrameId::ContentType), "Jazz ");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "V1 Artist");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Comment), "v1 comment");
    int titles = 0;
    for (std::size_t i = 0; i < tag.size(); ++i) titles += tag[i].id == FrameId::Title;
    EXPECT_EQ(titles, 1);
}

TEST(Mp3Reading, FileWithoutTags) {
    test::TempDir dir;
    const std::string path = dir.file("none.mp3");
    test::MakeMp3(path, {});
    TrackTag tag;
    tag.AddText(FrameId::Title, "stale");  // filling replaces what was there
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_TRUE(r.opened);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.version, TagVersion{});
    EXPECT_EQ(DescribeTagVersion(r.version), "No ID3 Tag found");
    EXPECT_EQ(r.audioStart, 0u);
    EXPECT_TRUE(tag.empty());
    EXPECT_EQ(tag.sources(), 0);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "");
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::Year), 0);
}

TEST(Mp3Reading, IgnoringModeStillMeasuresTheAudioStart) {
    test::TempDir dir;
    const std::string path = dir.file("padded.mp3");
    test::MakeMp3(path, With(kLameTags, {"--add-id3v2", "--pad-id3v2-size", "300"}));
    TrackTag tag;
    const TagReadResult read = ReadTrackTag(path, {}, tag);
    ASSERT_FALSE(tag.empty());
    const TagReadResult ignored = ReadTrackTag(path, {TagMode::Ignore}, tag);
    EXPECT_TRUE(ignored.opened);
    EXPECT_TRUE(tag.empty());
    EXPECT_EQ(ignored.version, TagVersion{});
    EXPECT_EQ(ignored.audioStart, read.audioStart);
    EXPECT_GT(ignored.audioStart, 300u);
    EXPECT_EQ(ignored.fileSize, read.fileSize);
}

TEST(Mp3Reading, AnOpenFileIsReadWithoutMovingIt) {
    test::TempDir dir;
    const std::string path = dir.file("open.mp3");
    test::MakeMp3(path, With(kLameTags, {"--id3v2-only"}));
    const int fd = ::open(path.c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::lseek(fd, 5, SEEK_SET), 5);
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(fd, TagFileKind::Mpeg, {}, tag);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Title One");
    EXPECT_EQ(::lseek(fd, 0, SEEK_CUR), 5);
    EXPECT_EQ(::close(fd), 0);  // still the caller's to close
    EXPECT_GT(r.audioStart, 0u);
}

}  // namespace
}  // namespace verdin
