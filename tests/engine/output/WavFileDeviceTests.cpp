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

using test::TempDir;

TEST(WavFileName, NumberWidthFollowsTheEntryCountAndUnsafeCharactersGo) {
    const struct {
        int number, entries;
        const char* title;
        const char* expected;
    } cases[] = {
        {3, 9, "Song", "/d/3. Song.wav"},          {3, 12, "Song", "/d/  3. Song.wav"},
        {12, 12, "Song", "/d/ 12. Song.wav"},      {7, 100, "Song", "/d/   7. Song.wav"},
        {100, 100, "Song", "/d/ 100. Song.wav"},   {5, 1000, "Song", "/d/    5. Song.wav"},
        {12345, 20000, "Song", "/d/ 12345. Song.wav"},
        {1, 1, "AC/DC: Who? \"Me\" <a|b> *\\", "/d/1. AC_DC_ Who_ _Me_ _a_b_ __.wav"},
        {1, 1, "Plain, (punctuation) & stuff!", "/d/1. Plain, (punctuation) & stuff!.wav"},
    };
    for (const auto& c : cases) EXPECT_EQ(WavFileName("/d", c.number, c.entries, c.title), c.expected) << c.title;
    EXPECT_EQ(FileNameSafeTitle(std::string("a\0b", 3)), "a_b");
}

// Each case overwrites a file that is already there, and the closed file must be the
// canonical WAV file of exactly the frames handed on.
TEST(WavFileDevice, WritesExactlyTheFramesHandedOnUnderTheFinalHeader) {
    const struct {
        PcmFormat format;
        uint32_t ringFrames;
        std::vector<uint32_t> waits;  // frames per Wait call
    } cases[] = {
        {{44100, 2, 16}, 16, {}},                   // nothing: a 44-byte file saying 36 and 0
        {{8000, 1, 8}, 100, {30, 30, 30}},          // 8-bit mono: alignment 1
        {{44100, 2, 16}, 64, {16, 40, 64, 10}},     // wraps round the ring
        {{22050, 1, 16}, 50, {120}},                // one Wait longer than the ring
        {{48000, 2, 8}, 7, {3, 3, 3, 3, 3}},
    };
    for (const auto& c : cases) {
        TempDir dir;
        const std::string path = dir.file("out.wav");
        test::WriteFile(path, std::string(5000, 'x'));
        const uint32_t bpf = c.format.BytesPerFrame();
        std::vector<uint8_t> ring(c.ringFrames * bpf), expected;
        std::iota(ring.begin(), ring.end(), uint8_t{1});
        {
            WavFileDevice device(path, c.format, ring.data(), static_cast<uint32_t>(ring.size()));
            ASSERT_TRUE(device.IsOpen());
            device.Start();
            for (uint32_t n : c.waits) {
                for (uint32_t i = 0; i < n * bpf; ++i) expected.push_back(ring[(expected.size()) % ring.size()]);
                device.Wait(n);
                EXPECT_EQ(device.GetPlayPosition(), expected.size() % ring.size());
                EXPECT_EQ(device.GetPlayedFrames(), static_cast<int64_t>(expected.size() / bpf));
            }
            EXPECT_FALSE(device.Failed());
            EXPECT_EQ(device.ErrorText(), "");
        }
        test::WriteWav(dir.file("ref.wav"), int(c.format.channels), int(c.format.sampleRate), int(c.format.bitsPerSample),
                       expected);
        EXPECT_EQ(test::ReadBytes(path), test::ReadBytes(dir.file("ref.wav"))) << c.format.bitsPerSample << " bit";
    }
}

TEST(WavFileDevice, StartResetsPositionsAndAPausedDeviceHolds) {
    TempDir dir;
    uint8_t ring[40] = {};
    WavFileDevice device(dir.file("x.wav"), {8000, 2, 16}, ring, sizeof ring);
    device.Start();
    device.Wait(3);
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

TEST(WavFileDevice, AFileThatCannotBeCreatedLeavesTheDeviceClosed) {
    TempDir dir;
    ASSERT_EQ(::mkdir(dir.file("locked").c_str(), 0500), 0);
    // Permissions do not stop root (CI runs as root); /proc takes no new files from anyone.
    const std::string unwritable = geteuid() == 0 ? "/proc/self/verdin-test.wav" : dir.file("locked/t.wav");
    uint8_t ring[8] = {};
    for (const std::string& path : {dir.file("no/such/dir/t.wav"), unwritable}) {
        WavFileDevice device(path, {8000, 1, 8}, ring, sizeof ring);
        EXPECT_FALSE(device.IsOpen()) << path;
        EXPECT_EQ(device.Path(), path);
        device.Start();  // every operation is harmless on a closed device
        device.Wait(100);
        EXPECT_EQ(device.GetPlayedFrames(), 0);
        EXPECT_FALSE(test::FileExists(path));
    }
}

TEST(WavFileDevice, AFullDiskIsReportedNotSwallowed) {
    // /dev/full accepts the open and fails every write with ENOSPC.
    if (!test::FileExists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    std::vector<uint8_t> ring(4096, 0x55);
    WavFileDevice device("/dev/full", {44100, 2, 16}, ring.data(), static_cast<uint32_t>(ring.size()));
    ASSERT_TRUE(device.IsOpen());
    device.Start();
    // Enough to overflow the write buffer, so the disk is really asked.
    for (int i = 0; i < 200 && !device.Failed(); ++i) device.Wait(1024);
    EXPECT_TRUE(device.Failed());
    EXPECT_NE(device.ErrorText().find("Failed to write to \"/dev/full\""), std::string::npos) << device.ErrorText();
    EXPECT_NE(device.ErrorText().find("No space left on device"), std::string::npos);
    // The positions still move on, so a stream drains its ring and ends.
    EXPECT_GT(device.GetPlayedFrames(), 0);
}

}  // namespace
}  // namespace verdin
