// Files WAV_Verdin.so must survive: nothing crashes, nothing hangs, every answer is clear.
#include "SndfileFixtures.h"

#include "AudioFiles.h"
#include "DecoderUnderTest.h"
#include "Files.h"
#include "PcmFixtures.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin::test {
namespace {

TEST_F(SndfileModuleTest, RefusesWhatIsNotAPlayableSoundFile) {
    WriteFile(dir_.file("empty.wav"), "");
    WriteBytes(dir_.file("garbage.wav"), Garbage(64 * 1024, 3));
    WriteTruncatedCopy(Wav16("tone.wav"), dir_.file("header_cut.wav"), 20);
    WriteWav(dir_.file("three_channels.wav"), 3, 8000, 16, std::vector<uint8_t>(6 * 800));
    std::filesystem::create_directory(dir_.file("folder.wav"));
    ASSERT_EQ(mkfifo(dir_.file("pipe.wav").c_str(), 0600), 0);  // would block a plain open()

    struct Case {
        std::string label, path;
        uint32_t dataOffset;
    };
    std::vector<Case> cases = {
        {"zero-length file", dir_.file("empty.wav"), 0},
        {"random bytes", dir_.file("garbage.wav"), 0},
        {"header cut short", dir_.file("header_cut.wav"), 0},
        {"three channels", dir_.file("three_channels.wav"), 0},
        {"a directory", dir_.file("folder.wav"), 0},
        {"a named pipe", dir_.file("pipe.wav"), 0},
        {"a missing file", dir_.file("missing.wav"), 0},
        {"a URL", "http://localhost:1/stream.ogg", 0},
        {"data offset past the end", dir_.file("tone.wav"), 1u << 30},
        {"data offset inside the header", dir_.file("tone.wav"), 10},
    };
    if (geteuid() != 0) {  // permissions do not stop root
        WriteFile(dir_.file("locked.wav"), "unreadable");
        chmod(dir_.file("locked.wav").c_str(), 0);
        cases.push_back({"an unreadable file", dir_.file("locked.wav"), 0});
    }
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_FALSE(plugin_.Info(c.path, c.dataOffset));
        DecoderUnderTest decoder(plugin_.module(), c.path, c.dataOffset);
        EXPECT_FALSE(decoder.valid());
    }
}

TEST_F(SndfileModuleTest, WavWithoutFramesIsAnEmptyTrack) {
    WriteWav(dir_.file("silence.wav"), 2, 44100, 16, {});
    const auto info = plugin_.Info(dir_.file("silence.wav"));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->duration, 0u);
    DecoderUnderTest decoder(plugin_.module(), dir_.file("silence.wav"));
    ASSERT_TRUE(decoder.valid());
    EXPECT_TRUE(decoder.DecodeToEnd(4).empty());
    EXPECT_EQ(decoder.Seek(1000), 0u);
}

TEST_F(SndfileModuleTest, TruncatedFilesDecodeWhatIsLeft) {
    const std::string wav = Wav16("tone.wav");
    const std::string flac = Convert({"flac", "-s"}, wav, "tone.flac");
    const struct {
        const char* label;
        std::string source;
        size_t keep;
    } cases[] = {
        {"WAV cut in the middle of a frame", wav, 44 + 40000 + 3},
        {"FLAC cut in half", flac, std::filesystem::file_size(flac) / 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        const std::string path = dir_.file(std::string("cut_") + std::filesystem::path(c.source).filename().string());
        WriteTruncatedCopy(c.source, path, c.keep);
        DecoderUnderTest decoder(plugin_.module(), path);
        ASSERT_TRUE(decoder.valid());
        const std::vector<uint8_t> pcm = decoder.DecodeToEnd(4);
        ASSERT_LT(pcm.size(), Pcm16().size());
        EXPECT_GT(pcm.size(), 0u);
        // What comes out is the start of the real thing (FLAC: up to the torn frame).
        EXPECT_TRUE(std::equal(pcm.begin(), pcm.end(), Pcm16().begin())) << "the decoded start differs";
    }
}

}  // namespace
}  // namespace verdin::test
