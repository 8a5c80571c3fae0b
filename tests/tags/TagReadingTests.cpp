// Reading tags from files made here: MP3 files by lame and by hand where an exact layout
// matters, FLAC and Ogg Vorbis comments, WAV and AIFF chunks, trailers on other files; and
// damaged files, each of which gives a clear result, never a crash or a hang.
#include "tags/FrameDisplay.h"
#include "tags/FrameValues.h"
#include "tags/TagReader.h"

#include "TagFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <taglib/aifffile.h>
#include <taglib/attachedpictureframe.h>
#include <taglib/generalencapsulatedobjectframe.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mpegfile.h>
#include <taglib/wavfile.h>

#include <fcntl.h>
#include <functional>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin {
namespace {

using test::Concat;
using test::Latin1;
using test::RawId3v2;
using Values = std::vector<std::pair<FrameId, std::string>>;

const std::vector<std::string> kLameTags{"--tt", "Title One", "--ta", "The Artist", "--tl", "The Album", "--ty", "1999",
                                         "--tn", "3/12", "--tg", "125", "--tc", "a comment"};

std::vector<std::string> With(std::vector<std::string> options, std::initializer_list<std::string> more) {
    options.insert(options.end(), more.begin(), more.end());
    return options;
}

class TagReading : public ::testing::Test {
protected:
    // Tag bytes in front of plain MP3 audio, and behind it.
    std::string Mp3(const std::string& name, const std::vector<uint8_t>& front, const std::vector<uint8_t>& back = {}) {
        if (!test::FileExists(dir_.file("audio.mp3"))) test::MakeMp3(dir_.file("audio.mp3"));
        test::WriteBytes(dir_.file(name), Concat(Concat(front, test::ReadBytes(dir_.file("audio.mp3"))), back));
        return dir_.file(name);
    }
    std::string Lame(const std::string& name, const std::vector<std::string>& options) {
        test::MakeMp3(dir_.file(name), options);
        return dir_.file(name);
    }
    std::string Tool(const std::string& name, std::vector<std::string> argv) {  // "%" stands for the file
        for (auto& a : argv) a = a == "%" ? dir_.file(name) : a == "%wav" ? dir_.file("source.wav") : a;
        test::MakeWav(dir_.file("source.wav"));
        test::Run(argv);
        return dir_.file(name);
    }
    test::TempDir dir_;
};

TEST_F(TagReading, EveryContainerGivesItsFrames) {
    const std::string opusHead = std::string("OpusHead\1\2\x38\1\x80\xBB\0\0\0\0\0", 19);
    std::string opusTags = std::string("OpusTags\4\0\0\0test\3\0\0\0", 20);
    for (std::string field : {"TITLE=Opus Title", "ARTIST=Opus Artist", "GENRE=RX"}) opusTags += std::string(1, char(field.size())) + std::string(3, '\0') + field;
    const auto opus = Concat(Concat(test::OggPage(0, 2, opusHead), test::OggPage(1, 0, opusTags)), test::OggPage(2, 4, "\x08"));
    const struct {
        std::string label;
        std::function<std::string()> make;
        TagVersion version;
        int sources;
        Values values;
    } cases[] = {
        {"ID3v1.1 by lame", [&] { return Lame("v1.mp3", With(kLameTags, {"--id3v1-only"})); }, {1, 1, 0}, kSourceId3v1,
         {{FrameId::Title, "Title One"}, {FrameId::Album, "The Album"}, {FrameId::Year, "1999"}, {FrameId::ContentType, "Dance Hall "},
          {FrameId::TrackNum, "3"}, {FrameId::Comment, "a comment"}}},
        {"ID3v1.0 without a track number", [&] { return Mp3("v10.mp3", {}, test::RawId3v1("Old", "", "", "thirty characters of comment!!", -1, 255)); },
         {1, 0, 0}, kSourceId3v1, {{FrameId::Title, "Old"}, {FrameId::Comment, "thirty characters of comment!!"}, {FrameId::ContentType, ""}, {FrameId::TrackNum, ""}}},
        {"ID3v2.3 by lame", [&] { return Lame("v23.mp3", With(kLameTags, {"--id3v2-only"})); }, {2, 3, 0}, kSourceId3v2,
         {{FrameId::LeadArtist, "The Artist"}, {FrameId::TrackNum, "3/12"}, {FrameId::ContentType, "Dance Hall"}, {FrameId::Comment, "a comment"}}},
        {"ID3v2.4 in UTF-8", [&] {
             return Mp3("v24.mp3", RawId3v2(4, {{"TIT2", test::Utf8("Ünïcødé ☃ 日本")}, {"TPE1", test::Utf8(std::string("Ärtist") + '\0' + "Second")},
                                                {"TDRC", test::Utf8("2004-05-06")}, {"TCON", test::Utf8(std::string("17\0RX", 5))}}));
         },
         {2, 4, 0}, kSourceId3v2,
         {{FrameId::Title, "Ünïcødé ☃ 日本"}, {FrameId::LeadArtist, "Ärtist/Second"}, {FrameId::Year, "2004-05-06"}, {FrameId::ContentType, "Rock Remix "}}},
        {"ID3v2.3 frames beyond plain text", [&] {
             return Mp3("frames.mp3", RawId3v2(3, {{"TCON", Latin1("(RX)(17)Metal")}, {"TYER", Latin1("1999")}, {"TDAT", Latin1("0605")},
                                                   {"TIME", Latin1("1230")}, {"TRDA", Latin1("June 5-6")},
                                                   {"IPLS", std::string("\0producer\0Bob\0mix\0Al", 20)}, {"TXXX", std::string("\0MOOD\0calm", 10)},
                                                   {"WXXX", std::string("\0home\0http://example.org/", 25)}, {"WOAR", "http://artist.example/"},
                                                   {"UFID", std::string("http://ids.example\0abc-123", 26)}, {"PCNT", std::string("\0\0\x01\x02", 4)},
                                                   {"POPM", std::string("me@example.org\0\xC4\0\0\0\x07", 20)},
                                                   {"USLT", std::string("\0deu\0la la la", 13)}, {"TPOS", Latin1("2/3")}}));
         },
         {2, 3, 0}, kSourceId3v2,
         {{FrameId::ContentType, "Remix Rock Metal"}, {FrameId::Year, "1999"},  // not the "1999-05-06" TagLib makes of it
          {FrameId::Date, "0605"}, {FrameId::Time, "1230"}, {FrameId::RecordingDates, "June 5-6"},
          {FrameId::InvolvedPeople, "producer: Bob, mix: Al"}, {FrameId::UserText, "calm"}, {FrameId::WwwUser, "http://example.org/"},
          {FrameId::WwwArtist, "http://artist.example/"}, {FrameId::UniqueFileId, "abc-123"}, {FrameId::PlayCounter, "258"},
          {FrameId::Popularimeter, "196"}, {FrameId::UnsyncedLyrics, "la la la"}, {FrameId::PartInSet, "2/3"}}},
        {"ID3v2.2", [&] {
             return Mp3("v22.mp3", RawId3v2(2, {{"TT2", Latin1("Old Song")}, {"TP1", Latin1("Old Artist")}, {"TYE", Latin1("1987")},
                                                {"TCO", Latin1("(125)")}, {"COM", std::string("\0eng\0old comment", 16)}}));
         },
         {2, 2, 0}, kSourceId3v2,
         {{FrameId::Title, "Old Song"}, {FrameId::LeadArtist, "Old Artist"}, {FrameId::Year, "1987"}, {FrameId::ContentType, "Dance Hall "},
          {FrameId::Comment, "old comment"}}},
        {"ID3v2 first, the ID3v1 trailer fills gaps", [&] {
             return Mp3("both.mp3", RawId3v2(3, {{"TIT2", Latin1("V2 Title")}, {"TCON", Latin1("(8)")}}),
                        test::RawId3v1("V1 Title", "V1 Artist", "", "v1 comment", 1, 17));
         },
         {2, 3, 0}, kSourceId3v2 | kSourceId3v1,
         {{FrameId::Title, "V2 Title"}, {FrameId::ContentType, "Jazz "}, {FrameId::LeadArtist, "V1 Artist"}, {FrameId::Comment, "v1 comment"}}},
        {"FLAC", [&] {
             std::vector<std::string> argv{"flac", "-s", "-f", "-o", "%", "%wav"};
             for (const char* t : {"TITLE=Flac Title", "ARTIST=Flac Artist", "ARTIST=Guest", "ALBUMARTIST=The Band", "DATE=2004-05-06",
                                   "TRACKNUMBER=3", "TRACKTOTAL=12", "GENRE=Acid Jazz", "COMMENT=first", "DISCNUMBER=1", "DISCTOTAL=2",
                                   "ORGANIZATION=Label", "UNKNOWNFIELD=x"})
                 argv.insert(argv.end() - 3, {"-T", t});
             return Tool("tagged.flac", argv);
         },
         {}, kSourceXiph,
         {{FrameId::Title, "Flac Title"}, {FrameId::LeadArtist, "Flac Artist/Guest"}, {FrameId::Band, "The Band"}, {FrameId::Year, "2004-05-06"},
          {FrameId::TrackNum, "3/12"}, {FrameId::ContentType, "Acid Jazz"}, {FrameId::PartInSet, "1/2"}, {FrameId::Publisher, "Label"}}},
        {"FLAC with a numeric genre", [&] { return Tool("genre.flac", {"flac", "-s", "-f", "-T", "GENRE=125", "-o", "%", "%wav"}); }, {}, kSourceXiph,
         {{FrameId::ContentType, "Dance Hall "}, {FrameId::Title, ""}}},
        {"Ogg Vorbis", [&] { return Tool("tagged.ogg", {"sox", "%wav", "--comment", "TITLE=Ogg Title", "--add-comment", "YEAR=1977",
                                                         "--add-comment", "COMPOSER=Somebody", "%"}); },
         {}, kSourceXiph, {{FrameId::Title, "Ogg Title"}, {FrameId::Year, "1977"}, {FrameId::Composer, "Somebody"}}},
        {"Opus pages put together by hand", [&] { return test::WriteBytes(dir_.file("tagged.opus"), opus), dir_.file("tagged.opus"); }, {}, kSourceXiph,
         {{FrameId::Title, "Opus Title"}, {FrameId::LeadArtist, "Opus Artist"}, {FrameId::ContentType, "Remix "}}},
        {"Opus under an .ogg name, known by its first packet", [&] { return test::WriteBytes(dir_.file("opus.ogg"), opus), dir_.file("opus.ogg"); },
         {}, kSourceXiph, {{FrameId::Title, "Opus Title"}}},
        {"WAV: the ID3 chunk first, then the INFO list", [&] {
             const std::string path = dir_.file("tagged.wav");
             test::MakeWav(path);
             TagLib::RIFF::WAV::File file(path.c_str(), false);
             file.ID3v2Tag()->setTitle("Id3 Title");
             file.InfoTag()->setTitle("Info Title");
             file.InfoTag()->setArtist("Info Artist");
             file.InfoTag()->setGenre("Chanson");
             EXPECT_TRUE(file.save());
             return path;
         },
         {2, 4, 0}, kSourceId3v2 | kSourceRiffInfo, {{FrameId::Title, "Id3 Title"}, {FrameId::LeadArtist, "Info Artist"}, {FrameId::ContentType, "Chanson"}}},
        {"AIFF", [&] {
             const std::string path = Tool("tagged.aiff", {"sox", "%wav", "%"});
             TagLib::RIFF::AIFF::File file(path.c_str(), false);
             file.tag()->setTitle("Aiff Title");
             file.tag()->setTrack(7);
             EXPECT_TRUE(file.save());
             return path;
         },
         {2, 4, 0}, kSourceId3v2, {{FrameId::Title, "Aiff Title"}, {FrameId::TrackNum, "7"}}},
        {"another kind of file with a leading tag and a trailer", [&] {
             const std::string au = Tool("source.au", {"sox", "%wav", "%"});
             test::WriteBytes(dir_.file("tagged.au"), Concat(Concat(RawId3v2(3, {{"TIT2", Latin1("Au Title")}}), test::ReadBytes(au)),
                                                              test::RawId3v1("V1 Title", "V1 Artist", "2001", "", 9, 0)));
             return dir_.file("tagged.au");
         },
         {2, 3, 0}, kSourceId3v2 | kSourceId3v1,
         {{FrameId::Title, "Au Title"}, {FrameId::LeadArtist, "V1 Artist"}, {FrameId::TrackNum, "9"}, {FrameId::ContentType, "Blues "}, {FrameId::Year, "2001"}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        const std::string path = c.make();
        TrackTag tag;
        tag.AddText(FrameId::Title, "stale");  // reading replaces what was there
        const TagReadResult r = ReadTrackTag(path, {}, tag);
        EXPECT_TRUE(r.opened);
        EXPECT_EQ(r.error, "");
        EXPECT_EQ(r.version, c.version);
        EXPECT_EQ(r.fileSize, test::ReadBytes(path).size());
        EXPECT_EQ(tag.sources(), c.sources);
        for (const auto& [id, text] : c.values) EXPECT_EQ(FrameStringValue(tag, id), text) << FrameIndex(id);
        int titles = 0;
        for (size_t i = 0; i < tag.size(); ++i) titles += tag[i].id == FrameId::Title;
        EXPECT_LE(titles, 1);
    }
}

TEST_F(TagReading, TheAudioStartsAfterTheLeadingTagAlsoWhenTagsAreIgnored) {
    const std::string plain = Lame("plain.mp3", With(kLameTags, {"--id3v2-only"}));
    const std::string padded = Lame("padded.mp3", With(kLameTags, {"--id3v2-only", "--pad-id3v2-size", "1000"}));
    const auto footer = RawId3v2(4, {{"TIT2", Latin1("Footer")}}, 0, true);
    const struct {
        std::string path;
        int64_t audioStart;  // -1: behind lame's own tag, at an MPEG frame
    } cases[] = {
        {Mp3("none.mp3", {}), 0},
        {Mp3("known.mp3", RawId3v2(3, {{"TIT2", Latin1("Known")}, {"TPE1", Latin1("Sized")}}, 500)), 10 + 2 * (10 + 6) + 500},
        {Mp3("footer.mp3", footer), 10 + 10 + 7 + 10},  // the footer belongs to the tag
        {plain, -1},
        {padded, -1},
    };
    std::vector<uint32_t> starts;
    for (const auto& c : cases) {
        TrackTag tag;
        const TagReadResult read = ReadTrackTag(c.path, {}, tag);
        const TagReadResult ignored = ReadTrackTag(c.path, {TagMode::Ignore}, tag);
        EXPECT_TRUE(tag.empty() && ignored.opened) << c.path;
        EXPECT_EQ(ignored.version, TagVersion{}) << c.path;
        EXPECT_EQ(std::tuple(ignored.audioStart, ignored.fileSize), std::tuple(read.audioStart, read.fileSize)) << c.path;
        const std::vector<uint8_t> bytes = test::ReadBytes(c.path);
        if (c.audioStart >= 0) { EXPECT_EQ(read.audioStart, c.audioStart) << c.path; }
        ASSERT_LT(read.audioStart + 1, bytes.size());
        EXPECT_TRUE(bytes[read.audioStart] == 0xFF && (bytes[read.audioStart + 1] & 0xE0) == 0xE0) << c.path << ": no MPEG frame there";
        starts.push_back(read.audioStart);
    }
    EXPECT_EQ(starts[4], starts[3] + 1000);  // padding counts into the tag

    const int fd = ::open(plain.c_str(), O_RDONLY);  // an open file is read without moving it
    ASSERT_EQ(::lseek(fd, 5, SEEK_SET), 5);
    TrackTag tag;
    EXPECT_EQ(ReadTrackTag(fd, TagFileKind::Mpeg, {}, tag).audioStart, starts[3]);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Title One");
    EXPECT_EQ(::lseek(fd, 0, SEEK_CUR), 5);
    EXPECT_EQ(::close(fd), 0);  // still the caller's to close
}

TEST_F(TagReading, AttachmentsAreMeasuredOnScansAndKeptOnRequest) {
    const std::string path = Mp3("art.mp3", {});
    std::string pictureBytes(5000, '\0');
    for (size_t i = 0; i < pictureBytes.size(); ++i) pictureBytes[i] = static_cast<char>(i * 7);
    {
        TagLib::MPEG::File file(path.c_str(), false);
        auto* picture = new TagLib::ID3v2::AttachedPictureFrame;
        picture->setMimeType("image/png");
        picture->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
        picture->setDescription("front");
        picture->setPicture(TagLib::ByteVector(pictureBytes.data(), static_cast<unsigned>(pictureBytes.size())));
        file.ID3v2Tag(true)->addFrame(picture);
        auto* object = new TagLib::ID3v2::GeneralEncapsulatedObjectFrame;
        object->setFileName("notes.txt");
        object->setDescription("notes");
        object->setObject(TagLib::ByteVector("line one\n", 9));
        file.ID3v2Tag()->addFrame(object);
        ASSERT_TRUE(file.save(TagLib::MPEG::File::ID3v2));
    }
    TrackTag scanned, full;
    ReadTrackTag(path, {}, scanned);
    EXPECT_EQ(std::tuple(scanned.Find(FrameId::Picture)->dataSize, scanned.Find(FrameId::Picture)->data.size()), std::tuple(5000u, size_t(0)));
    EXPECT_LT(scanned.HeapBytes(), 1000u);  // a library does not hold its cover art
    EXPECT_NE(SaveAttachment(*scanned.Find(FrameId::Picture), dir_.file("no.png")), "");
    EXPECT_EQ(FrameStringValue(scanned, FrameId::GeneralObject), "notes");
    ReadTrackTag(path, {TagMode::Read, true}, full);
    ASSERT_EQ(SaveAttachment(*full.Find(FrameId::Picture), dir_.file("cover.png")), "");
    EXPECT_EQ(test::ReadFile(dir_.file("cover.png")), pictureBytes);
    ASSERT_EQ(SaveAttachment(*full.Find(FrameId::GeneralObject), dir_.file("notes.txt")), "");
    EXPECT_EQ(test::ReadFile(dir_.file("notes.txt")), "line one\n");
    const std::pair<std::string_view, TagFileKind> kinds[] = {
        {"a.mp3", TagFileKind::Mpeg}, {"B.MP2", TagFileKind::Mpeg}, {"c.flac", TagFileKind::Flac}, {"e.opus", TagFileKind::Ogg},
        {"f.wav", TagFileKind::Wav},  {"h.AIFF", TagFileKind::Aiff}, {"i.au", TagFileKind::Plain}, {"dir.mp3/x", TagFileKind::Plain},
    };
    for (const auto& [name, kind] : kinds) EXPECT_EQ(TagFileKindFor(name), kind) << name;
}

TEST_F(TagReading, DamagedAndUnreadableFiles) {
    // A tag cut into its third frame: read as far as it goes, the audio start at the end.
    const auto tagged = Concat(RawId3v2(3, {{"TIT2", Latin1("Kept Title")}, {"TPE1", Latin1("Kept Artist")},
                                            {"COMM", std::string("\0eng\0lost to the cut", 20)}}),
                               test::ReadBytes(Mp3("whole.mp3", {})));
    test::WriteBytes(dir_.file("cut.mp3"), {tagged.begin(), tagged.begin() + 10 + 21 + 22 + 15});
    TrackTag tag;
    TagReadResult r = ReadTrackTag(dir_.file("cut.mp3"), {}, tag);
    EXPECT_EQ(std::tuple(r.opened, r.error, r.audioStart, r.version), std::tuple(true, "ID3v2 tag is larger than the file", 68u, TagVersion{2, 3, 0}));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title) + "|" + FrameStringValue(tag, FrameId::LeadArtist), "Kept Title|Kept Artist");
    EXPECT_FALSE(tag.Has(FrameId::Comment));

    std::mt19937 random(1234);  // scribbles over the tag body and an ID3v1 trailer never stop reading
    for (int round = 0; round < 200; ++round) {
        std::vector<uint8_t> bytes = tagged;
        for (int i = 0; i < 8; ++i) bytes[10 + random() % 60] = static_cast<uint8_t>(random());
        if (round % 2) {
            bytes = Concat(bytes, test::RawId3v1("t", "a", "1999", "c", 1, int(random() % 256)));
            bytes[bytes.size() - 1 - random() % 120] = static_cast<uint8_t>(random());
        }
        if (round == 0) bytes[8] = 0x80;  // not synchsafe: no leading tag
        test::WriteBytes(dir_.file("noise.mp3"), bytes);
        r = ReadTrackTag(dir_.file("noise.mp3"), {}, tag);
        ASSERT_TRUE(r.opened && r.fileSize == bytes.size() && r.audioStart <= bytes.size()) << round;
        ASSERT_TRUE(round > 0 || r.audioStart == 0);
        for (size_t i = 0; i < tag.size(); ++i) {
            ASSERT_LE(FrameStringValue(tag, tag[i].id).size(), kFrameValueLimit);
            FrameIntegerValue(tag, tag[i].id);
        }
    }

    const std::vector<uint8_t> flac = test::ReadBytes(Tool("cut.flac", {"flac", "-s", "-f", "-T", "TITLE=Cut", "-o", "%", "%wav"}));
    const std::pair<std::string, std::string> layouts[] = {
        {"empty.flac", ""}, {"text.flac", "this is not audio at all"}, {"empty.ogg", ""}, {"text.ogg", "OggS but not really a page"},
        {"empty.wav", ""}, {"text.aiff", "this is no AIFF file"}, {"chunkless.aiff", std::string("FORM\0\0\0\4AIFF", 12)},
        {"chunkless.wav", std::string("RIFF\4\0\0\0WAVE", 12)}, {"empty.mp3", ""}, {"empty.au", ""}, {"short.mp3", "ID3"},
        {"cut6.flac", std::string(flac.begin(), flac.begin() + 6)}, {"cut45.flac", std::string(flac.begin(), flac.begin() + 45)},
        {"cut120.flac", std::string(flac.begin(), flac.begin() + 120)},
    };
    const std::string errors[] = {"Not a valid FLAC file", "Not a valid FLAC file", "Not a valid Ogg file", "Not a valid Ogg file",
                                  "Not a valid WAV file", "Not a valid AIFF file", "", "", "", "", ""};
    for (size_t i = 0; i < std::size(layouts); ++i) {
        test::WriteFile(dir_.file(layouts[i].first), layouts[i].second);
        r = ReadTrackTag(dir_.file(layouts[i].first), {}, tag);
        EXPECT_TRUE(r.opened && r.version == TagVersion{}) << layouts[i].first;
        EXPECT_EQ(r.fileSize, layouts[i].second.size());
        const bool cut = i >= std::size(errors);  // a FLAC file cut short: some error
        EXPECT_TRUE(cut ? !r.error.empty() : r.error == errors[i] && tag.empty()) << layouts[i].first << ": " << r.error;
    }

    tag.AddText(FrameId::Title, "stale");
    r = ReadTrackTag(dir_.file("missing.mp3"), {}, tag);
    EXPECT_EQ(std::tuple(r.opened, r.error, tag.empty()), std::tuple(false, "No such file or directory", true));
    EXPECT_FALSE(ReadTrackTag(dir_.str(), {}, tag).opened);  // a directory
    ASSERT_EQ(::mkfifo(dir_.file("pipe.mp3").c_str(), 0600), 0);
    r = ReadTrackTag(dir_.file("pipe.mp3"), {}, tag);  // must not wait for a writer
    EXPECT_EQ(std::tuple(r.opened, r.error), std::tuple(false, "Not a regular file"));
    EXPECT_FALSE(ReadTrackTag(-1, TagFileKind::Mpeg, {}, tag).opened);
}

}  // namespace
}  // namespace verdin
