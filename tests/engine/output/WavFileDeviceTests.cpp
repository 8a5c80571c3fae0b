// The WAV file device and the names of its files. Whole tracks decoded through the
// stream into files, 8 and 16 bits, are tests/engine/stream's and tests/system's.
#include "engine/output/WavFileDevice.h"
#include "engine/output/WavFileName.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <numeric>
#include <tuple>

namespace verdin {
namespace {

// Fewer than 10 and fewer than 100 entries: tests/system/PlaybackTests.
TEST(WavFileName, NumberWidthFollowsTheEntryCountAndUnsafeCharactersGo) {
    std::string e150, e124;  // "é" is two bytes
    for (int i = 0; i < 150; ++i) e150 += "\xC3\xA9", e124 += i < 124 ? "\xC3\xA9" : "";
    const std::tuple<int, int, std::string, std::string> cases[] = {  // number, entries, title, name
        {7, 100, "Song", "/d/   7. Song.wav"}, {5, 1000, "Song", "/d/    5. Song.wav"},
        {1, 1, "AC/DC: Who? \"Me\" <a|b> *\\ (x) & y!", "/d/1. AC_DC_ Who_ _Me_ _a_b_ __ (x) & y!.wav"},
        // Too long for a name of 255 bytes: cut to fit exactly, never inside a character.
        {1, 1, std::string(300, 'a'), "/d/1. " + std::string(248, 'a') + ".wav"},
        {12, 1000, e150, "/d/   12. " + e124.substr(4) + ".wav"}, {1, 1, "x" + e150, "/d/1. x" + e124.substr(2) + ".wav"},
    };
    for (const auto& [number, entries, title, name] : cases) EXPECT_EQ(WavFileName("/d", number, entries, title), name) << title;
    EXPECT_EQ(FileNameSafeTitle(std::string("a\0b", 3)), "a_b");
}

// A longer file already there is overwritten, and the closed file is the canonical WAV
// file of exactly the frames handed on, round the ring and by Waits longer than it; a
// paused device holds. (Start again at the ring's start: the stream's seek test.)
TEST(WavFileDevice, WritesExactlyTheFramesHandedOnUnderTheFinalHeader) {
    test::TempDir dir;
    const std::string path = dir.file("out.wav");
    test::WriteFile(path, std::string(5000, 'x'));
    std::vector<uint8_t> ring(7 * 2), expected;  // 8-bit stereo: 7 frames
    std::iota(ring.begin(), ring.end(), uint8_t{1});
    {
        WavFileDevice device(path, {48000, 2, 8}, ring.data(), static_cast<uint32_t>(ring.size()));
        ASSERT_TRUE(device.IsOpen());
        const auto hand = [&](uint32_t frames) {
            for (uint32_t i = 0; i < frames * 2; ++i) expected.push_back(ring[expected.size() % ring.size()]);
            device.Wait(frames);
            EXPECT_EQ(device.GetPlayPosition(), expected.size() % ring.size());
            EXPECT_EQ(device.GetPlayedFrames(), static_cast<int64_t>(expected.size() / 2));
        };
        device.Start();
        hand(3);
        hand(3);
        device.Pause();
        device.Wait(4);  // held like a paused sound card: nothing is written
        device.Resume();
        for (uint32_t frames : {3u, 20u, 2u}) hand(frames);
    }
    test::WriteWav(dir.file("ref.wav"), 2, 48000, 8, expected);
    EXPECT_EQ(test::ReadBytes(path), test::ReadBytes(dir.file("ref.wav")));
}

// A directory that is missing: the stream's test (StreamToFile,
// AnUnknownFormatAndAnUnwritableDirectoryFailWithTheirTexts). A full disk:
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
    EXPECT_EQ(device.ErrorText(), "Failed to write to \"/dev/full\": No space left on device.");
    // The positions still move on, so a stream drains its ring and ends.
    EXPECT_GT(device.GetPlayedFrames(), 0);
}

}  // namespace
}  // namespace verdin
