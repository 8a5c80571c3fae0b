// Reading the other formats the player decodes: FLAC and Ogg Vorbis comments, ID3v2
// chunks and INFO lists of WAV and AIFF files, and trailers on files of other kinds.
// Tags are written by the format's own tools where they can, else by TagLib.
#include "tags/FrameDisplay.h"
#include "tags/FrameValues.h"
#include "tags/TagReader.h"

#include "Files.h"
#include "TagFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <taglib/aifffile.h>
#include <taglib/attachedpictureframe.h>
#include <taglib/generalencapsulatedobjectframe.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mpegfile.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/xiphcomment.h>

namespace verdin {
namespace {

TEST(FormatReading, FlacVorbisComment) {
    test::TempDir dir;
    const std::string wav = dir.file("source.wav");
    const std::string path = dir.file("tagged.flac");
    test::MakeWav(wav);
    test::Run({"flac", "-s", "-f", "-T", "TITLE=Flac Title", "-T", "ARTIST=Flac Artist", "-T", "ARTIST=Guest",
               "-T", "ALBUMARTIST=The Band", "-T", "DATE=2004-05-06", "-T", "TRACKNUMBER=3", "-T", "TRACKTOTAL=12",
               "-T", "GENRE=Acid Jazz", "-T", "COMMENT=first", "-T", "DESCRIPTION=second", "-T", "DISCNUMBER=1",
               "-T", "DISCTOTAL=2", "-T", "ORGANIZATION=Label", "-T", "UNKNOWNFIELD=x", "-o", path, wav});
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.version, TagVersion{});  // a Vorbis comment is no ID3 tag
    EXPECT_EQ(r.audioStart, 0u);
    EXPECT_EQ(tag.sources(), kSourceXiph);

    const std::pair<FrameId, std::string_view> values[] = {
        {FrameId::Title, "Flac Title"},   {FrameId::LeadArtist, "Flac Artist/Guest"},
        {FrameId::Band, "The Band"},      {FrameId::Year, "2004-05-06"},
        {FrameId::TrackNum, "3/12"},      {FrameId::ContentType, "Acid Jazz"},
        {FrameId::PartInSet, "1/2"},      {FrameId::Publisher, "Label"},
    };
    for (const auto& [id, text] : values) EXPECT_EQ(FrameStringValue(tag, id), text) << FrameIndex(id);
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::Year), 2004);
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::TrackNum), 3);
    int comments = 0;
    for (std::size_t i = 0; i < tag.size(); ++i) comments += tag[i].id == FrameId::Comment;
    EXPECT_EQ(comments, 2);
}

TEST(FormatReading, FlacWithoutTagsAndWithANumericGenre) {
    test::TempDir dir;
    const std::string wav = dir.file("source.wav");
    const std::string path = dir.file("plain.flac");
    test::MakeWav(wav);
    test::Run({"flac", "-s", "-f", "--no-padding", "-o", path, wav});
    TrackTag tag;
    ReadTrackTag(path, {}, tag);
    // flac writes its vendor string only; no frames come of it.
    EXPECT_TRUE(tag.empty());

    test::Run({"metaflac", "--set-tag=GENRE=125", path});
    ReadTrackTag(path, {}, tag);
    EXPECT_EQ(FrameStringValue(tag, FrameId::ContentType), "Dance Hall ");
}

TEST(FormatReading, OggVorbisComment) {
    test::TempDir dir;
    const std::string path = dir.file("tagged.ogg");
    test::Run({"sox", "-n", "-r", "44100", "-c", "2", path, "synth", "0.3", "sine", "440"});
    {
        TagLib::Ogg::Vorbis::File file(path.c_str(), false);
        ASSERT_TRUE(file.isValid());
        file.tag()->addField("TITLE", "Ogg Title");
        file.tag()->addField("ARTIST", "Ogg Artist");
        file.tag()->addField("YEAR", "1977");
        file.tag()->addField("COMPOSER", "Somebody");
        ASSERT_TRUE(file.save());
    }
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(tag.sources(), kSourceXiph);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Ogg Title");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "Ogg Artist");
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::Year), 1977);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Composer), "Somebody");
}

// No Opus encoder is at hand, so the two header packets are put together by hand.
TEST(FormatReading, OpusTags) {
    auto le32 = [](std::uint32_t v) {
        std::string s(4, '\0');
        for (int i = 0; i < 4; ++i) s[static_cast<std::size_t>(i)] = static_cast<char>(v >> (8 * i));
        return s;
    };
    const std::string head = std::string("OpusHead\1\2\x38\1", 12) + le32(48000) + std::string("\0\0\0", 3);
    std::string tags = "OpusTags" + le32(4) + "test" + le32(3);
    for (std::string field : {"TITLE=Opus Title", "ARTIST=Opus Artist", "GENRE=RX"}) tags += le32(static_cast<std::uint32_t>(field.size())) + field;

    test::TempDir dir;
    const std::string path = dir.file("tagged.opus");
    const auto pages = test::Concat(test::Concat(test::OggPage(7, 0, 2, head), test::OggPage(7, 1, 0, tags)),
                                    test::OggPage(7, 2, 4, std::string(1, '\x08')));  // an audio packet ends it
    test::WriteBytes(path, pages);
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(tag.sources(), kSourceXiph);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Opus Title");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "Opus Artist");
    EXPECT_EQ(FrameStringValue(tag, FrameId::ContentType), "Remix ");

    // The same pages under an .ogg name are recognised by their first packet.
    const std::string renamed = dir.file("opus-inside.ogg");
    test::WriteBytes(renamed, test::ReadBytes(path));
    EXPECT_EQ(ReadTrackTag(renamed, {}, tag).error, "");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Opus Title");
}

TEST(FormatReading, WavId3ChunkFirstThenInfoList) {
    test::TempDir dir;
    const std::string path = dir.file("tagged.wav");
    test::MakeWav(path);
    {
        TagLib::RIFF::WAV::File file(path.c_str(), false);
        ASSERT_TRUE(file.isValid());
        file.ID3v2Tag()->setTitle("Id3 Title");
        file.InfoTag()->setTitle("Info Title");
        file.InfoTag()->setArtist("Info Artist");
        file.InfoTag()->setGenre("Chanson");
        ASSERT_TRUE(file.save());
    }
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.version.version, 2);  // the ID3v2 chunk
    EXPECT_EQ(r.audioStart, 0u);      // a chunk inside the file, not a leading tag
    EXPECT_EQ(tag.sources(), kSourceId3v2 | kSourceRiffInfo);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Id3 Title");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "Info Artist");
    EXPECT_EQ(FrameStringValue(tag, FrameId::ContentType), "Chanson");
}

TEST(FormatReading, AiffId3Chunk) {
    test::TempDir dir;
    const std::string path = dir.file("tagged.aiff");
    test::Run({"sox", "-n", "-r", "44100", "-c", "2", "-b", "16", path, "synth", "0.2", "sine", "440"});
    {
        TagLib::RIFF::AIFF::File file(path.c_str(), false);
        ASSERT_TRUE(file.isValid());
        file.tag()->setTitle("Aiff Title");
        file.tag()->setTrack(7);
        ASSERT_TRUE(file.save());
    }
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.version, (TagVersion{2, 4, 0}));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Aiff Title");
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::TrackNum), 7);
}

TEST(FormatReading, OtherFilesStillCarryTrailersAndLeadingTags) {
    test::TempDir dir;
    const std::string au = dir.file("source.au");
    test::Run({"sox", "-n", "-r", "8000", "-c", "1", au, "synth", "0.1", "sine", "440"});
    const std::string path = dir.file("tagged.au");
    const auto v2 = test::RawId3v2(3, {{"TIT2", test::Latin1("Au Title")}});
    const auto v1 = test::RawId3v1("V1 Title", "V1 Artist", "", "2001", "", 9, 0);
    test::WriteBytes(path, test::Concat(test::Concat(v2, test::ReadBytes(au)), v1));

    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_EQ(r.error, "");
    EXPECT_EQ(r.version, (TagVersion{2, 3, 0}));
    EXPECT_EQ(r.audioStart, v2.size());
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Au Title");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "V1 Artist");
    EXPECT_EQ(FrameStringValue(tag, FrameId::TrackNum), "9");
    EXPECT_EQ(FrameStringValue(tag, FrameId::ContentType), "Blues ");
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::Year), 2001);

    // The trailer alone gives the ID3v1 version.
    test::WriteBytes(path, test::Concat(test::ReadBytes(au), v1));
    EXPECT_EQ(ReadTrackTag(path, {}, tag).version, (TagVersion{1, 1, 0}));
}

TEST(FormatReading, AttachmentsAreMeasuredOnScansAndKeptOnRequest) {
    test::TempDir dir;
    const std::string path = dir.file("art.mp3");
    test::MakeMp3(path, {});
    std::string pictureBytes(5000, '\0');
    for (std::size_t i = 0; i < pictureBytes.size(); ++i) pictureBytes[i] = static_cast<char>(i * 7);
    const std::string objectBytes = "line one\nline two\n";
    {
        TagLib::MPEG::File file(path.c_str(), false);
        auto* picture = new TagLib::ID3v2::AttachedPictureFrame;
        picture->setMimeType("image/png");
        picture->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
        picture->setDescription("front");
        picture->setPicture(TagLib::ByteVector(pictureBytes.data(), static_cast<unsigned>(pictureBytes.size())));
        file.ID3v2Tag(true)->addFrame(picture);
        auto* object = new TagLib::ID3v2::GeneralEncapsulatedObjectFrame;
        object->setMimeType("text/plain");
        object->setFileName("notes.txt");
        object->setDescription("notes");
        object->setObject(TagLib::ByteVector(objectBytes.data(), static_cast<unsigned>(objectBytes.size())));
        file.ID3v2Tag()->addFrame(object);
        file.ID3v2Tag()->setTitle("With Art");
        ASSERT_TRUE(file.save(TagLib::MPEG::File::ID3v2));
    }

    TrackTag scanned;
    ReadTrackTag(path, {}, scanned);
    const FrameView seen = *scanned.Find(FrameId::Picture);
    EXPECT_EQ(seen.dataSize, pictureBytes.size());
    EXPECT_TRUE(seen.data.empty());
    EXPECT_LT(scanned.HeapBytes(), 1000u);  // a library does not hold its cover art
    EXPECT_EQ(FrameStringValue(scanned, FrameId::Picture), "front");
    EXPECT_EQ(FrameStringValue(scanned, FrameId::GeneralObject), "notes");
    EXPECT_NE(SaveAttachment(seen, dir.file("no.png")), "");

    TrackTag full;
    ReadTrackTag(path, {TagMode::Read, true}, full);
    const FrameView picture = *full.Find(FrameId::Picture);
    EXPECT_EQ(JoinFrameDetails(FrameDetails(picture)), "Description: front - Picture type: Cover (front) - MIME type: image/png");
    ASSERT_EQ(SaveAttachment(picture, dir.file("cover.png")), "");
    EXPECT_EQ(test::ReadFile(dir.file("cover.png")), pictureBytes);
    const FrameView object = *full.Find(FrameId::GeneralObject);
    EXPECT_EQ(JoinFrameDetails(FrameDetails(object)), "Description: notes - MIME type: text/plain - File name: notes.txt");
    ASSERT_EQ(SaveAttachment(object, dir.file("notes.txt")), "");
    EXPECT_EQ(test::ReadFile(dir.file("notes.txt")), objectBytes);
}

TEST(FormatReading, KindFollowsTheExtension) {
    const std::pair<std::string_view, TagFileKind> rows[] = {
        {"a.mp3", TagFileKind::Mpeg}, {"B.MP2", TagFileKind::Mpeg},  {"c.flac", TagFileKind::Flac},
        {"d.ogg", TagFileKind::Ogg},  {"e.opus", TagFileKind::Ogg},  {"f.wav", TagFileKind::Wav},
        {"g.aif", TagFileKind::Aiff}, {"h.AIFF", TagFileKind::Aiff}, {"i.au", TagFileKind::Plain},
        {"mp3", TagFileKind::Plain},  {"dir.mp3/x", TagFileKind::Plain},
    };
    for (const auto& [name, kind] : rows) EXPECT_EQ(TagFileKindFor(name), kind) << name;
}

}  // namespace
}  // namespace verdin
