// Writing the common frames back into files the tests make (lame, flac, a WAV writer):
// the frames read back, the rest of the tag and the audio stay, and a write that cannot
// be done leaves the file exactly as it was with nothing left beside it.
#include "tags/TagWriter.h"

#include "tags/FrameValues.h"
#include "tags/LeadingTag.h"
#include "tags/TagReader.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin {
namespace {

namespace fs = std::filesystem;

class TagWriterTest : public ::testing::Test {
protected:
    std::string Wav(const std::string& name) {
        const std::string path = dir_.file(name);
        test::WriteWav(path, 2, 44100, 16, test::Bytes16(test::Sine16(44100, 2, 44100, {440.0, 550.0})));
        return path;
    }
    std::string Mp3(const std::string& name, std::vector<std::string> options) {
        const std::string source = Wav(name + ".wav");
        std::vector<std::string> argv{"lame", "--quiet", "-b", "128"};
        argv.insert(argv.end(), options.begin(), options.end());
        argv.push_back(source);
        argv.push_back(dir_.file(name));
        const test::CommandResult result = test::RunCommand(argv);
        EXPECT_EQ(result.exitCode, 0) << result.output;
        fs::remove(source);
        return dir_.file(name);
    }
    std::string Flac(const std::string& name) {
        const std::string source = Wav(name + ".wav");
        const test::CommandResult result = test::RunCommand(
            {"flac", "--silent", "-T", "TITLE=Flac title", "-T", "ARTIST=Flac artist", "-o", dir_.file(name), source});
        EXPECT_EQ(result.exitCode, 0) << result.output;
        fs::remove(source);
        return dir_.file(name);
    }
    static TrackTag Read(const std::string& path, TagVersion* version = nullptr) {
        TrackTag tag;
        const TagReadResult result = ReadTrackTag(path, {}, tag);
        EXPECT_TRUE(result.opened);
        if (version) *version = result.version;
        return tag;
    }
    // The directory's entries: a write leaves no temporary file behind.
    std::vector<std::string> Entries() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir_.path())) names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    // The audio behind a leading ID3v2 tag.
    static std::string AudioOf(const std::string& path) {
        const std::string bytes = test::ReadFile(path);
        const LeadingTag leading = ParseLeadingTag({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
        return bytes.substr(leading.found ? leading.completeSize : 0);
    }

    test::TempDir dir_;
};

TEST_F(TagWriterTest, CommonFramesOfAnMp3AreWrittenAndTheRestOfTheFileKept) {
    const std::string path = Mp3("a.mp3", {"--id3v2-only", "--tt", "Old title", "--ta", "An Artist", "--tl", "An Album",
                                           "--ty", "1999", "--tn", "3/12"});
    const std::string audio = AudioOf(path);
    const std::vector<FrameEdit> edits{
        {FrameId::Title, "New title"}, {FrameId::Composer, "Somebody"}, {FrameId::Comment, "Said so"},
        {FrameId::ContentType, "Acid Jazz"}, {FrameId::Year, "2004"}, {FrameId::TrackNum, ""},
    };
    ASSERT_EQ(WriteTagFrames(path, edits), "");

    TagVersion version;
    const TrackTag tag = Read(path, &version);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "New title");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Composer), "Somebody");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Comment), "Said so");
    EXPECT_EQ(FrameStringValue(tag, FrameId::ContentType), "Acid Jazz");
    EXPECT_EQ(FrameIntegerValue(tag, FrameId::Year), 2004);
    EXPECT_FALSE(tag.Has(FrameId::TrackNum)) << "an empty text removes the frame";
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "An Artist") << "frames not edited stay";
    EXPECT_EQ(FrameStringValue(tag, FrameId::Album), "An Album");
    EXPECT_EQ(version, (TagVersion{2, 3, 0})) << "the tag keeps its version";
    EXPECT_EQ(AudioOf(path), audio) << "the audio behind the tag is untouched";
    EXPECT_EQ(Entries(), std::vector<std::string>{"a.mp3"});
}

TEST_F(TagWriterTest, AnMp3WithOnlyAnId3v1TrailerGetsAnId3v2TagAndItsTrailerUpdated) {
    const std::string path = Mp3("v1.mp3", {"--id3v1-only", "--tt", "Short", "--ta", "Band"});
    ASSERT_EQ(WriteTagFrames(path, std::vector<FrameEdit>{{FrameId::Title, "Longer title"}}), "");
    TagVersion version;
    const TrackTag tag = Read(path, &version);
    EXPECT_EQ(version.version, 2);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Longer title");
    const std::string bytes = test::ReadFile(path);
    ASSERT_GE(bytes.size(), 128u);
    const std::string trailer = bytes.substr(bytes.size() - 128);
    EXPECT_EQ(trailer.substr(0, 3), "TAG");
    EXPECT_EQ(trailer.substr(3, 12), "Longer title") << "the ID3v1 title field holds the new title too";
}

TEST_F(TagWriterTest, FlacFilesGetTheirVorbisCommentEditedAndWavFilesAnId3Chunk) {
    const std::string flac = Flac("a.flac");
    ASSERT_EQ(WriteTagFrames(flac, std::vector<FrameEdit>{{FrameId::Title, "Neu"}, {FrameId::Album, "Zusammen"}}), "");
    TrackTag tag = Read(flac);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Neu");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Album), "Zusammen");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "Flac artist");
    EXPECT_EQ(test::RunCommand({"flac", "--silent", "-t", flac}).exitCode, 0) << "the FLAC stream still tests clean";

    const std::string wav = Wav("b.wav");
    const std::vector<uint8_t> pcm = test::WavData(wav);
    ASSERT_EQ(WriteTagFrames(wav, std::vector<FrameEdit>{{FrameId::LeadArtist, "Wave maker"}}), "");
    TagVersion version;
    tag = Read(wav, &version);
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "Wave maker");
    EXPECT_EQ(version.version, 2);
    const test::CommandResult soxi = test::RunCommand({"soxi", "-s", wav});
    EXPECT_EQ(soxi.exitCode, 0) << soxi.output;
    EXPECT_EQ(std::stoul(soxi.output), pcm.size() / 4) << "the sample data is all still there";
}

TEST_F(TagWriterTest, AReadOnlyFileIsRefusedAndLeftAsItWas) {
    const std::string path = Mp3("ro.mp3", {"--id3v2-only", "--tt", "Kept"});
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    const std::string before = test::ReadFile(path);
    const std::string error = WriteTagFrames(path, std::vector<FrameEdit>{{FrameId::Title, "Changed"}});
    EXPECT_EQ(error, "The file is read-only");
    EXPECT_EQ(test::ReadFile(path), before);
    EXPECT_EQ(Entries(), std::vector<std::string>{"ro.mp3"});
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0444u);
}

TEST_F(TagWriterTest, FilesThatCannotBeWrittenAreLeftAsTheyWere) {
    struct Case {
        const char* name;
        std::string contents;
    };
    const Case cases[] = {
        {"broken.mp3", std::string(3000, '\x55')},   // no MPEG frame anywhere
        {"broken.flac", "fLaC but nothing else"},
        {"notes.txt", "a file of no audio layout"},
    };
    for (const Case& c : cases) {
        const std::string path = dir_.file(c.name);
        test::WriteFile(path, c.contents);
        const std::string error = WriteTagFrames(path, std::vector<FrameEdit>{{FrameId::Title, "x"}});
        EXPECT_FALSE(error.empty()) << c.name;
        EXPECT_EQ(test::ReadFile(path), c.contents) << c.name;
        EXPECT_EQ(Entries(), std::vector<std::string>{c.name}) << c.name;
        fs::remove(path);
    }
    EXPECT_FALSE(WriteTagFrames(dir_.file("missing.mp3"), std::vector<FrameEdit>{{FrameId::Title, "x"}}).empty());
}

TEST_F(TagWriterTest, OnlyTheCommonFramesAreWritable) {
    const std::string path = Mp3("p.mp3", {"--id3v2-only", "--tt", "T"});
    const std::string before = test::ReadFile(path);
    EXPECT_FALSE(WriteTagFrames(path, std::vector<FrameEdit>{{FrameId::Title, "ok"}, {FrameId::Picture, "no"}}).empty());
    EXPECT_EQ(test::ReadFile(path), before) << "a refused edit refuses the whole write";
    for (FrameId id : WritableFrames()) EXPECT_TRUE(IsWritableFrame(id));
    EXPECT_FALSE(IsWritableFrame(FrameId::GeneralObject));
    EXPECT_EQ(WritableFrames().size(), 9u);
    for (const char* name : {"a.mp3", "a.MP2", "a.flac", "a.ogg", "a.opus", "a.wav", "a.aiff"})
        EXPECT_TRUE(CanWriteTags(name)) << name;
    for (const char* name : {"a.probe", "a", "a.txt"}) EXPECT_FALSE(CanWriteTags(name)) << name;
}

TEST_F(TagWriterTest, ALinkedTrackIsWrittenThroughItsLinkAndKeepsItsPermissions) {
    const std::string path = Mp3("real.mp3", {"--id3v2-only", "--tt", "Before"});
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    const std::string link = dir_.file("link.mp3");
    fs::create_symlink(path, link);
    ASSERT_EQ(WriteTagFrames(link, std::vector<FrameEdit>{{FrameId::Title, "After"}}), "");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(FrameStringValue(Read(path), FrameId::Title), "After");
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
    EXPECT_EQ(Entries(), (std::vector<std::string>{"link.mp3", "real.mp3"}));
}

}  // namespace
}  // namespace verdin
