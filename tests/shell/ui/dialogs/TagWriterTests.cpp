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

#include <filesystem>
#include <set>
#include <sys/stat.h>

namespace verdin {
namespace {

namespace fs = std::filesystem;
using Edits = std::vector<FrameEdit>;

class TagWriterTest : public ::testing::Test {
protected:
    std::string Wav(const std::string& name) {
        test::WriteWav(dir_.file(name), 2, 44100, 16, test::Bytes16(test::Sine16(44100, 2, 44100, {440.0, 550.0})));
        return dir_.file(name);
    }
    // Encodes a tone with the command; "in" and "out" stand for the source and the target.
    std::string Encoded(const std::string& name, std::vector<std::string> argv) {
        for (std::string& arg : argv) arg = arg == "in" ? Wav(name + ".wav") : arg == "out" ? dir_.file(name) : arg;
        const test::CommandResult result = test::RunCommand(argv);
        EXPECT_EQ(result.exitCode, 0) << result.output;
        fs::remove(dir_.file(name + ".wav"));
        return dir_.file(name);
    }
    static TrackTag Read(const std::string& path, TagVersion* version = nullptr) {
        TrackTag tag;
        const TagReadResult result = ReadTrackTag(path, {}, tag);
        if (version) *version = result.version;
        return tag;
    }
    // The directory's entries: a write leaves nothing behind.
    std::set<std::string> Entries() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir_.path())) names.insert(entry.path().filename().string());
        return names;
    }
    static std::string AudioOf(const std::string& path) {
        const std::string bytes = test::ReadFile(path);
        const LeadingTag leading = ParseLeadingTag({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
        return bytes.substr(leading.found ? leading.completeSize : 0);
    }
    static mode_t Mode(const std::string& path) {
        struct stat info {};
        EXPECT_EQ(::stat(path.c_str(), &info), 0);
        return info.st_mode & 07777;
    }

    test::TempDir dir_;
};

TEST_F(TagWriterTest, CommonFramesOfAnMp3AreWrittenAndTheRestKept) {
    const std::string path = Encoded("a.mp3", {"lame", "--quiet", "--id3v2-only", "--tt", "Old", "--ta", "An Artist",
                                               "--tl", "An Album", "--tn", "3/12", "in", "out"});
    const std::string audio = AudioOf(path);
    const Edits edits{{FrameId::Title, "New title"}, {FrameId::Composer, "Somebody"},
                      {FrameId::ContentType, "Acid Jazz"}, {FrameId::Year, "2004"}, {FrameId::TrackNum, ""}};
    ASSERT_EQ(WriteTagFrames(path, edits), "");
    TagVersion version;
    const TrackTag tag = Read(path, &version);
    for (const FrameEdit& edit : edits) EXPECT_EQ(FrameStringValue(tag, edit.id), edit.text);
    EXPECT_FALSE(tag.Has(FrameId::TrackNum)) << "an empty text removes the frame";
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "An Artist") << "frames not edited stay";
    EXPECT_EQ(FrameStringValue(tag, FrameId::Album), "An Album");
    EXPECT_EQ(version, (TagVersion{2, 3, 0})) << "the tag keeps its version";
    EXPECT_EQ(AudioOf(path), audio);
    EXPECT_EQ(Entries(), std::set<std::string>{"a.mp3"});
}

TEST_F(TagWriterTest, AnId3v1OnlyMp3GetsAnId3v2TagAndItsTrailerUpdated) {
    const std::string path = Encoded("v1.mp3", {"lame", "--quiet", "--id3v1-only", "--tt", "Short", "in", "out"});
    ASSERT_EQ(WriteTagFrames(path, Edits{{FrameId::Title, "Longer title"}}), "");
    TagVersion version;
    EXPECT_EQ(FrameStringValue(Read(path, &version), FrameId::Title), "Longer title");
    EXPECT_EQ(version.version, 2);
    const std::string bytes = test::ReadFile(path);
    ASSERT_GE(bytes.size(), 128u);
    EXPECT_EQ(bytes.substr(bytes.size() - 128, 15), "TAGLonger title");
}

TEST_F(TagWriterTest, FlacFilesGetTheirCommentEditedAndWavFilesAnId3Chunk) {
    const std::string flac = Encoded("a.flac", {"flac", "--silent", "-T", "ARTIST=Flac artist", "-o", "out", "in"});
    ASSERT_EQ(WriteTagFrames(flac, Edits{{FrameId::Title, "Neu"}}), "");
    TrackTag tag = Read(flac);
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "Neu");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "Flac artist");
    EXPECT_EQ(test::RunCommand({"flac", "--silent", "-t", flac}).exitCode, 0) << "the FLAC stream still tests clean";

    const std::string wav = Wav("b.wav");
    const size_t bytes = test::WavData(wav).size();
    ASSERT_EQ(WriteTagFrames(wav, Edits{{FrameId::LeadArtist, "Wave maker"}}), "");
    TagVersion version;
    EXPECT_EQ(FrameStringValue(Read(wav, &version), FrameId::LeadArtist), "Wave maker");
    EXPECT_EQ(version.version, 2);
    const test::CommandResult soxi = test::RunCommand({"soxi", "-s", wav});
    ASSERT_EQ(soxi.exitCode, 0) << soxi.output;
    EXPECT_EQ(std::stoul(soxi.output), bytes / 4) << "the sample data is all still there";
}

// Files of no layout a tag can be written to, a read-only file, an edit of a frame that
// is not writable, and a file that is not there: refused, and nothing changes.
TEST_F(TagWriterTest, WritesThatCannotBeDoneChangeNothing) {
    const std::string mp3 = test::ReadFile(Encoded("p.mp3", {"lame", "--quiet", "--id3v2-only", "in", "out"}));
    const struct {
        std::string name, contents;
        mode_t mode;
        Edits edits;
    } cases[] = {
        {"broken.mp3", std::string(3000, '\x55'), 0644, {{FrameId::Title, "x"}}},  // no MPEG frame anywhere
        {"broken.flac", "fLaC but nothing else", 0644, {{FrameId::Title, "x"}}},
        {"notes.txt", "a file of no audio layout", 0644, {{FrameId::Title, "x"}}},
        {"ro.mp3", mp3, 0444, {{FrameId::Title, "x"}}},
        {"p.mp3", mp3, 0644, {{FrameId::Title, "ok"}, {FrameId::Picture, "no"}}},
    };
    for (const auto& c : cases) {
        test::WriteFile(dir_.file(c.name), c.contents);
        ASSERT_EQ(::chmod(dir_.file(c.name).c_str(), c.mode), 0);
        const std::string error = WriteTagFrames(dir_.file(c.name), c.edits);
        EXPECT_NE(error, "") << c.name;
        if (c.mode == 0444) {
            EXPECT_EQ(error, "The file is read-only");
        }
        EXPECT_EQ(test::ReadFile(dir_.file(c.name)), c.contents) << c.name;
        EXPECT_EQ(Mode(dir_.file(c.name)), c.mode) << c.name;
        EXPECT_EQ(Entries(), (std::set<std::string>{c.name, "p.mp3"})) << c.name;
        if (c.name != "p.mp3") fs::remove(dir_.file(c.name));
    }
    EXPECT_NE(WriteTagFrames(dir_.file("missing.mp3"), Edits{{FrameId::Title, "x"}}), "");
    for (const char* name : {"a.mp3", "a.MP2", "a.flac", "a.ogg", "a.opus", "a.wav", "a.aiff"})
        EXPECT_TRUE(CanWriteTags(name)) << name;
    for (const char* name : {"a.probe", "a", "a.txt"}) EXPECT_FALSE(CanWriteTags(name)) << name;
}

TEST_F(TagWriterTest, ALinkedTrackIsWrittenThroughItsLinkAndKeepsItsPermissions) {
    const std::string path = Encoded("real.mp3", {"lame", "--quiet", "--id3v2-only", "--tt", "Before", "in", "out"});
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    fs::create_symlink(path, dir_.file("link.mp3"));
    ASSERT_EQ(WriteTagFrames(dir_.file("link.mp3"), Edits{{FrameId::Title, "After"}}), "");
    EXPECT_TRUE(fs::is_symlink(dir_.file("link.mp3")));
    EXPECT_EQ(FrameStringValue(Read(path), FrameId::Title), "After");
    EXPECT_EQ(Mode(path), 0640u);
    EXPECT_EQ(Entries(), (std::set<std::string>{"link.mp3", "real.mp3"}));
}

}  // namespace
}  // namespace verdin
