// Broken files and tags: each gives a clear result, never a crash or a hang.
#include "tags/FrameValues.h"
#include "tags/TagErrorMessage.h"
#include "tags/TagReader.h"

#include "Files.h"
#include "TagFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>

namespace verdin {
namespace {

std::vector<std::uint8_t> TaggedMp3Bytes(const test::TempDir& dir) {
    const std::string audio = dir.file("audio.mp3");
    test::MakeMp3(audio, {});
    const auto id3 = test::RawId3v2(3, {{"TIT2", test::Latin1("Kept Title")},
                                        {"TPE1", test::Latin1("Kept Artist")},
                                        {"COMM", std::string("\0eng\0lost to the cut", 20)}});
    return test::Concat(id3, test::ReadBytes(audio));
}

TEST(DamagedFiles, TruncatedTagIsReadAsFarAsItGoes) {
    test::TempDir dir;
    std::vector<std::uint8_t> bytes = TaggedMp3Bytes(dir);
    // Header (10), TIT2 (21), TPE1 (22), then cut into the comment frame.
    bytes.resize(10 + 21 + 22 + 15);
    const std::string path = dir.file("cut.mp3");
    test::WriteBytes(path, bytes);
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_TRUE(r.opened);
    EXPECT_EQ(r.error, "ID3v2 tag is larger than the file");
    EXPECT_EQ(ComposeTagErrorMessage(r.error),
              "ID3Lib v3.05a said \"ID3v2 tag is larger than the file\", but we couldn't care less.");
    EXPECT_EQ(r.audioStart, bytes.size());  // pointed at the end, not past it
    EXPECT_EQ(r.version, (TagVersion{2, 3, 0}));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Kept Title");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "Kept Artist");
    EXPECT_FALSE(tag.Has(FrameId::Comment));
}

TEST(DamagedFiles, GarbageInsideTagsNeverStopsReading) {
    test::TempDir dir;
    const std::vector<std::uint8_t> original = TaggedMp3Bytes(dir);
    std::mt19937 random(1234);
    const std::string path = dir.file("noise.mp3");
    for (int round = 0; round < 200; ++round) {
        std::vector<std::uint8_t> bytes = original;
        // Scribble over the tag body (not its header) and the ID3v1 area at the end.
        for (int i = 0; i < 8; ++i) bytes[10 + random() % 60] = static_cast<std::uint8_t>(random());
        if (round % 2) {
            const auto v1 = test::RawId3v1("t", "a", "b", "1999", "c", 1, static_cast<int>(random() % 256));
            bytes = test::Concat(bytes, v1);
            bytes[bytes.size() - 1 - random() % 120] = static_cast<std::uint8_t>(random());
        }
        test::WriteBytes(path, bytes);
        TrackTag tag;
        const TagReadResult r = ReadTrackTag(path, {}, tag);
        ASSERT_TRUE(r.opened);
        ASSERT_EQ(r.fileSize, bytes.size());
        ASSERT_LE(r.audioStart, bytes.size());
        for (std::size_t i = 0; i < tag.size(); ++i) {
            ASSERT_LE(FrameStringValue(tag, tag[i].id).size(), kFrameValueLimit);
            FrameIntegerValue(tag, tag[i].id);
        }
    }
}

TEST(DamagedFiles, NotSynchsafeHeaderIsNoLeadingTag) {
    test::TempDir dir;
    std::vector<std::uint8_t> bytes = TaggedMp3Bytes(dir);
    bytes[8] = 0x80;
    const std::string path = dir.file("badsize.mp3");
    test::WriteBytes(path, bytes);
    TrackTag tag;
    const TagReadResult r = ReadTrackTag(path, {}, tag);
    EXPECT_TRUE(r.opened);
    EXPECT_EQ(r.audioStart, 0u);
}

TEST(DamagedFiles, WrongOrEmptyContentForEachLayout) {
    test::TempDir dir;
    struct Row {
        std::string name;
        std::string contents;
        std::string error;
    };
    const Row rows[] = {
        {"empty.flac", "", "Not a valid FLAC file"},
        {"text.flac", "this is not audio at all", "Not a valid FLAC file"},
        {"empty.ogg", "", "Not a valid Ogg file"},
        {"text.ogg", "OggS but not really a page", "Not a valid Ogg file"},
        {"empty.wav", "", "Not a valid WAV file"},
        {"text.aiff", "this is no AIFF file", "Not a valid AIFF file"},
        {"chunkless.aiff", std::string("FORM\0\0\0\4AIFF", 12), ""},
        {"chunkless.wav", std::string("RIFF\4\0\0\0WAVE", 12), ""},
        {"empty.mp3", "", ""},
        {"empty.au", "", ""},
        {"short.mp3", "ID3", ""},
    };
    for (const Row& row : rows) {
        const std::string path = dir.file(row.name);
        test::WriteFile(path, row.contents);
        TrackTag tag;
        const TagReadResult r = ReadTrackTag(path, {}, tag);
        EXPECT_TRUE(r.opened) << row.name;
        EXPECT_EQ(r.error, row.error) << row.name;
        EXPECT_EQ(r.version, TagVersion{}) << row.name;
        EXPECT_TRUE(tag.empty()) << row.name;
        EXPECT_EQ(r.fileSize, row.contents.size()) << row.name;
    }
}

TEST(DamagedFiles, TruncatedFlacStopsCleanly) {
    test::TempDir dir;
    const std::string wav = dir.file("source.wav");
    const std::string path = dir.file("cut.flac");
    test::MakeWav(wav);
    test::Run({"flac", "-s", "-f", "-T", "TITLE=Cut", "-o", path, wav});
    std::vector<std::uint8_t> bytes = test::ReadBytes(path);
    for (std::size_t cut : {std::size_t{6}, std::size_t{45}, std::size_t{120}}) {
        test::WriteBytes(path, std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + static_cast<long>(cut)));
        TrackTag tag;
        const TagReadResult r = ReadTrackTag(path, {}, tag);
        EXPECT_TRUE(r.opened) << cut;
        EXPECT_EQ(r.fileSize, cut);
        EXPECT_FALSE(r.error.empty()) << cut;
    }
}

TEST(DamagedFiles, ThingsThatAreNotReadableFiles) {
    test::TempDir dir;
    TrackTag tag;
    tag.AddText(FrameId::Title, "stale");

    const TagReadResult missing = ReadTrackTag(dir.file("missing.mp3"), {}, tag);
    EXPECT_FALSE(missing.opened);
    EXPECT_EQ(missing.error, "No such file or directory");
    EXPECT_TRUE(tag.empty());

    EXPECT_FALSE(ReadTrackTag(dir.str(), {}, tag).opened);  // a directory

    const std::string fifo = dir.file("pipe.mp3");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const TagReadResult pipe = ReadTrackTag(fifo, {}, tag);  // must not wait for a writer
    EXPECT_FALSE(pipe.opened);
    EXPECT_EQ(pipe.error, "Not a regular file");

    EXPECT_FALSE(ReadTrackTag(-1, TagFileKind::Mpeg, {}, tag).opened);
}

}  // namespace
}  // namespace verdin
