#include "engine/output/WavFileDevice.h"
#include "engine/output/WavFileName.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <numeric>

namespace verdin {
namespace {

using test::ReadBytes;
using test::TempDir;

// The header a canonical PCM WAV file must have, built here field by field.
std::vector<uint8_t> ExpectedHeader(uint32_t channels, uint32_t rate, uint32_t bits,
                                    uint32_t dataBytes) {
    std::vector<uint8_t> h;
    auto text = [&](const char* s) {
        for (int i = 0; i < 4; ++i) h.push_back(static_cast<uint8_t>(s[i]));
    };
    auto u32 = [&](uint32_t v) {
        for (int i = 0; i < 4; ++i) h.push_back(static_cast<uint8_t>(v >> (8 * i)));
    };
    auto u16 = [&](uint32_t v) {
        h.push_back(static_cast<uint8_t>(v));
        h.push_back(static_cast<uint8_t>(v >> 8));
    };
    text("RIFF");
    u32(dataBytes + 36);
    text("WAVE");
    text("fmt ");
    u32(16);
    u16(1);
    u16(channels);
    u32(rate);
    u32(bits / 8 * channels * rate);
    u16(bits / 8 * channels);
    u16(bits);
    text("data");
    u32(dataBytes);
    return h;
}

std::vector<uint8_t> Concat(std::vector<uint8_t> a, const std::vector<uint8_t>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TEST(WavFileName, NumberWidthFollowsTheEntryCount) {
    struct Case {
        int number, entries;
        const char* expected;
    };
    const Case cases[] = {
        {3, 9, "/music/3. Song.wav"},        {3, 12, "/music/  3. Song.wav"},
        {12, 12, "/music/ 12. Song.wav"},    {7, 99, "/music/  7. Song.wav"},
        {7, 100, "/music/   7. Song.wav"},   {100, 100, "/music/ 100. Song.wav"},
        {5, 1000, "/music/    5. Song.wav"}, {1000, 1000, "/music/ 1000. Song.wav"},
        {12345, 20000, "/music/ 12345. Song.wav"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(WavFileName("/music", c.number, c.entries, "Song"), c.expected)
            << c.number << " of " << c.entries;
}

TEST(WavFileName, CharactersAFileNameCannotHoldBecomeUnderscores) {
    EXPECT_EQ(WavFileName("/d", 1, 1, "AC/DC: Who? \"Me\" <a|b> *\\"),
              "/d/1. AC_DC_ Who_ _Me_ _a_b_ __.wav");
    EXPECT_EQ(FileNameSafeTitle(std::string("a\0b", 3)), "a_b");
    EXPECT_EQ(FileNameSafeTitle("Plain title, with (punctuation) & stuff!"),
              "Plain title, with (punctuation) & stuff!");
}

TEST(WavFileDevice, ZeroFramesGiveA44ByteFileSaying36And0) {
    TempDir dir;
    const std::string path = dir.file("empty.wav");
    uint8_t ring[64] = {};
    {
        WavFileDevice device(path, {44100, 2, 16}, ring, sizeof ring);
        ASSERT_TRUE(device.IsOpen());
        device.Start();
    }
    EXPECT_EQ(ReadBytes(path), ExpectedHeader(2, 44100, 16, 0));
}

TEST(WavFileDevice, WritesExactlyTheFramesHandedOnWithTheFinalHeader) {
    struct Case {
        PcmFormat format;
        uint32_t ringFrames;
        std::vector<uint32_t> waits;  // frames per Wait call
    };
    const Case cases[] = {
        {{8000, 1, 8}, 100, {30, 30, 30}},             // 8-bit mono: alignment 1
        {{44100, 2, 16}, 64, {16, 40, 64, 10}},        // wraps round the ring
        {{22050, 1, 16}, 50, {120}},                   // one Wait longer than the ring
        {{48000, 2, 8}, 7, {3, 3, 3, 3, 3}},
    };
    for (const Case& c : cases) {
        TempDir dir;
        const std::string path = dir.file("out.wav");
        const uint32_t bpf = c.format.BytesPerFrame();
        std::vector<uint8_t> ring(c.ringFrames * bpf);
        std::iota(ring.begin(), ring.end(), uint8_t{1});
        std::vector<uint8_t> expected;
        {
            WavFileDevice device(path, c.format, ring.data(), static_cast<uint32_t>(ring.size()));
            ASSERT_TRUE(device.IsOpen());
            device.Start();
            uint64_t at = 0;
            uint64_t frames = 0;
            for (uint32_t n : c.waits) {
                for (uint64_t i = 0; i < uint64_t{n} * bpf; ++i)
                    expected.push_back(ring[(at + i) % ring.size()]);
                at = (at + uint64_t{n} * bpf) % ring.size();
                frames += n;
                device.Wait(n);
                EXPECT_EQ(device.GetPlayPosition(), at);
                EXPECT_EQ(device.GetPlayedFrames(), static_cast<int64_t>(frames));
            }
            EXPECT_FALSE(device.Failed());
            EXPECT_EQ(device.ErrorText(), "");
        }
        const auto header = ExpectedHeader(c.format.channels, c.format.sampleRate,
                                           c.format.bitsPerSample,
                                           static_cast<uint32_t>(expected.size()));
        EXPECT_EQ(ReadBytes(path), Concat(header, expected))
            << c.format.channels << "ch " << c.format.bitsPerSample << " bit";
        EXPECT_EQ(test::WavData(path), expected);
    }
}

TEST(WavFileDevice, EightBitMonoHeaderHasAlignmentOneAndRateBytesPerSecond) {
    TempDir dir;
    const std::string path = dir.file("mono8.wav");
    uint8_t ring[16] = {};
    { WavFileDevice device(path, {11025, 1, 8}, ring, sizeof ring); }
    const auto bytes = ReadBytes(path);
    ASSERT_EQ(bytes.size(), 44u);
    EXPECT_EQ(bytes[32] | (bytes[33] << 8), 1);
    EXPECT_EQ(bytes[28] | (bytes[29] << 8) | (bytes[30] << 16), 11025);
}

TEST(WavFileDevice, StartResetsPositionsAndAPausedDeviceHolds) {
    TempDir dir;
    uint8_t ring[40] = {};
    WavFileDevice device(dir.file("x.wav"), {8000, 2, 16}, ring, sizeof ring);
    device.Start();
    device.Wait(3);
    EXPECT_EQ(device.GetPlayPosition(), 12u);
    device.Pause();
    EXPECT_TRUE(device.IsPaused());
    device.Wait(2);  // held like a paused sound card: nothing is written
    EXPECT_EQ(device.GetPlayedFrames(), 3);
    EXPECT_EQ(device.DataBytes(), 12u);
    device.Resume();
    EXPECT_FALSE(device.IsPaused());
    device.Wait(2);
    EXPECT_EQ(device.GetPlayedFrames(), 5);
    device.Start();
    EXPECT_EQ(device.GetPlayPosition(), 0u);
    EXPECT_EQ(device.GetPlayedFrames(), 0);
    EXPECT_EQ(device.DataBytes(), 20u);  // the file keeps what was written before
    EXPECT_EQ(device.GetVolume(), 0u);
}

TEST(WavFileDevice, AnExistingFileIsOverwritten) {
    TempDir dir;
    const std::string path = dir.file("again.wav");
    test::WriteFile(path, std::string(5000, 'x'));
    uint8_t ring[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    {
        WavFileDevice device(path, {8000, 1, 8}, ring, sizeof ring);
        device.Start();
        device.Wait(4);
    }
    EXPECT_EQ(ReadBytes(path), Concat(ExpectedHeader(1, 8000, 8, 4), {1, 2, 3, 4}));
}

TEST(WavFileDevice, AFileThatCannotBeCreatedLeavesTheDeviceClosed) {
    TempDir dir;
    uint8_t ring[8] = {};
    const std::string missing = dir.file("no/such/dir/t.wav");
    WavFileDevice device(missing, {8000, 1, 8}, ring, sizeof ring);
    EXPECT_FALSE(device.IsOpen());
    EXPECT_EQ(device.Path(), missing);
    device.Start();  // every operation is harmless on a closed device
    device.Wait(100);
    EXPECT_EQ(device.GetPlayedFrames(), 0);
    EXPECT_FALSE(test::FileExists(missing));
}

TEST(WavFileDevice, AnUnwritableDirectoryLeavesTheDeviceClosed) {
    TempDir dir;
    chmod(dir.str().c_str(), 0500);
    // Permissions do not stop root (CI runs as root); /proc takes no new files from anyone.
    const std::string path = geteuid() == 0 ? "/proc/self/verdin-test.wav" : dir.file("t.wav");
    uint8_t ring[8] = {};
    WavFileDevice device(path, {8000, 1, 8}, ring, sizeof ring);
    EXPECT_FALSE(device.IsOpen()) << path;
    EXPECT_FALSE(test::FileExists(path));
}

TEST(WavFileDevice, AFullDiskIsReportedNotSwallowed) {
    // /dev/full accepts the open and fails every write with ENOSPC.
    if (!test::FileExists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    std::vector<uint8_t> ring(4096, 0x55);
    WavFileDevice device("/dev/full", {44100, 2, 16}, ring.data(),
                         static_cast<uint32_t>(ring.size()));
    ASSERT_TRUE(device.IsOpen());
    device.Start();
    // Enough to overflow the write buffer, so the disk is really asked.
    for (int i = 0; i < 200 && !device.Failed(); ++i) device.Wait(1024);
    EXPECT_TRUE(device.Failed());
    EXPECT_NE(device.ErrorText().find("Failed to write to \"/dev/full\""), std::string::npos)
        << device.ErrorText();
    EXPECT_NE(device.ErrorText().find("No space left on device"), std::string::npos);
    // The positions still move on, so a stream drains its ring and ends.
    EXPECT_GT(device.GetPlayedFrames(), 0);
}

}  // namespace
}  // namespace verdin
