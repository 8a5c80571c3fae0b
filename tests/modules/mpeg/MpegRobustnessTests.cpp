// Files MPEG_Verdin.so must survive: nothing crashes, nothing hangs, every answer is clear.
#include "AudioFiles.h"
#include "DecoderUnderTest.h"
#include "MpegFixtures.h"

#include "Files.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin::test {
namespace {

// Neither information nor a decoder for these.
TEST_F(MpegModuleTest, RefusesWhatIsNotAReadableMpegFile) {
    const TempDir dir;
    WriteFile(dir.file("empty.mp3"), "");
    WriteBytes(dir.file("garbage.mp3"), Garbage(64 * 1024, 1));
    WriteTruncatedCopy(Cbr().path, dir.file("three_bytes.mp3"), 3);
    std::filesystem::create_directory(dir.file("folder.mp3"));
    ASSERT_EQ(mkfifo(dir.file("pipe.mp3").c_str(), 0600), 0);  // would block a plain open()

    struct Case {
        std::string label, path;
        uint32_t dataOffset;
    };
    std::vector<Case> cases = {
        {"zero-length file", dir.file("empty.mp3"), 0},
        {"random bytes", dir.file("garbage.mp3"), 0},
        {"three bytes of a header", dir.file("three_bytes.mp3"), 0},
        {"a directory", dir.file("folder.mp3"), 0},
        {"a named pipe", dir.file("pipe.mp3"), 0},
        {"a missing file", dir.file("missing.mp3"), 0},
        {"a URL", "http://localhost:1/stream.mp3", 0},
        {"data offset past the end", Cbr().path, 1u << 30},
    };
    if (geteuid() != 0) {  // permissions do not stop root
        WriteFile(dir.file("locked.mp3"), "unreadable");
        chmod(dir.file("locked.mp3").c_str(), 0);
        cases.push_back({"an unreadable file", dir.file("locked.mp3"), 0});
    }
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_FALSE(plugin_.Info(c.path, c.dataOffset));
        DecoderUnderTest decoder(plugin_.module(), c.path, c.dataOffset);
        EXPECT_FALSE(decoder.valid());
    }
}

// Damaged but partly decodable: whatever comes out is a prefix of the real thing, and
// the decoder ends.
TEST_F(MpegModuleTest, DecodesWhatIsLeftOfATruncatedFile) {
    const TempDir dir;
    const Mp3Fixture& f = Cbr();
    const size_t fileSize = std::filesystem::file_size(f.path);
    for (size_t keep : {size_t{1000}, fileSize / 2, fileSize - 100}) {
        SCOPED_TRACE("first " + std::to_string(keep) + " bytes");
        const std::string path = dir.file("cut" + std::to_string(keep) + ".mp3");
        WriteTruncatedCopy(f.path, path, keep);
        const auto info = plugin_.Info(path);
        ASSERT_TRUE(info);  // the first frames are intact
        DecoderUnderTest decoder(plugin_.module(), path);
        ASSERT_TRUE(decoder.valid());
        const std::vector<uint8_t> pcm = decoder.DecodeToEnd(f.frameBytes());
        EXPECT_LT(pcm.size(), f.reference.size());
        // Seeking into what may be missing: the decoder still comes to an end.
        decoder.Seek(2000);
        EXPECT_LE(decoder.DecodeToEnd(f.frameBytes()).size(), f.reference.size() / 5);
    }
}

TEST_F(MpegModuleTest, GarbageAfterATagIsRefusedThroughTheDataOffset) {
    const TempDir dir;
    const std::vector<uint8_t> tag = Id3v2Tag(512);
    std::vector<uint8_t> bytes = tag;
    const std::vector<uint8_t> garbage = Garbage(8192, 7);
    bytes.insert(bytes.end(), garbage.begin(), garbage.end());
    WriteBytes(dir.file("tag_then_garbage.mp3"), bytes);
    EXPECT_FALSE(plugin_.Info(dir.file("tag_then_garbage.mp3"), static_cast<uint32_t>(tag.size())));
}

TEST_F(MpegModuleTest, BlocksHoldWholeFramesEvenFromADamagedStream) {
    // A damaged file the fuzz target found (behind its two control bytes): after a seek,
    // libmpg123 hands out half a stereo frame, which must not reach the player.
    const std::vector<uint8_t> input =
        ReadBytes(std::string(VERDIN_TEST_SOURCE_DIR) + "/fuzz/mpeg_module/corpus/torn_frame_after_seek");
    ASSERT_GT(input.size(), 2u);
    const TempDir dir;
    const std::string path = dir.file("damaged.mp3");
    WriteBytes(path, std::vector<uint8_t>(input.begin() + 2, input.end()));
    const auto info = plugin_.Info(path);
    ASSERT_TRUE(info);
    ASSERT_EQ(info->channels, 2);
    DecoderUnderTest decoder(plugin_.module(), path);
    ASSERT_TRUE(decoder.valid());
    decoder.DecodeToEnd(4);  // fails the test on a block that is not whole frames
    decoder.Seek(60);
    EXPECT_FALSE(decoder.DecodeToEnd(4).empty());
}

}  // namespace
}  // namespace verdin::test
