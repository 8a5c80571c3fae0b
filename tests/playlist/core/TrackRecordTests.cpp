// Retrieving a track's information from files made here with lame and sox, through the
// input plug-ins the player ships.
#include "Files.h"
#include "PcmFixtures.h"
#include "PlaylistFixtures.h"
#include "Process.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace verdin {
namespace {

TEST(TrackRetrieval, ReadsTagsAndTheModulesAnswersFromRealFilesAndWhatCannotBeReadClearsExists) {
    test::TempDir dir;
    const std::string mp3 = dir.file("tone.mp3");  // 1 s, 128 kbit/s, an ID3v2 tag in front
    test::WriteWav(dir.file("tone.wav"), 2, 44100, 16, test::Bytes16(test::Sine16(44100, 2, 44100, {440.0})));
    ASSERT_EQ(test::RunCommand({"lame", "--quiet", "-b", "128", "--cbr", "--add-id3v2", "--tt", "Tone Title", "--ta", "Tone Artist", dir.file("tone.wav"), mp3}).exitCode, 0);
    const std::vector<uint8_t> bytes = test::ReadBytes(mp3);
    const uint32_t tagSize = 10u + (bytes[6] << 21 | bytes[7] << 14 | bytes[8] << 7 | bytes[9]);
    for (bool ignoreTags : {false, true}) {
        SCOPED_TRACE(ignoreTags ? "tags ignored" : "tags read");
        TrackRecord track(mp3);
        EXPECT_EQ(std::tuple(track.InfoRetrieved(), track.Duration(), track.BitsPerSample()), std::tuple(false, 0u, 8));  // before: the player's defaults
        ASSERT_TRUE(track.RetrieveInformation(test::BundledModules(), ignoreTags));
        EXPECT_TRUE(track.InfoRetrieved() && track.Exists() && track.Tag().Find(FrameId::Title).has_value() == !ignoreTags);
        EXPECT_EQ(std::tuple(track.GetTagVersion().version, track.AudioStart()), std::tuple(ignoreTags ? 0 : 2, tagSize));  // the start found even when tags are ignored
        EXPECT_NEAR(double(track.Duration()), 1000.0, 60.0);
        EXPECT_EQ(std::tuple(track.SampleRate(), track.Channels(), track.BitsPerSample(), track.Bitrate(), track.FileSize()), std::tuple(44100, 2, 16, 128000, uint32_t(bytes.size())));
    }
    TrackRecord track(mp3);  // a file that vanishes loses its old tag
    ASSERT_TRUE(track.RetrieveInformation(test::BundledModules(), false));
    std::filesystem::remove(mp3);
    EXPECT_FALSE(track.RetrieveInformation(test::BundledModules(), false) || track.Exists() || track.GetTagVersion().found() || !track.Tag().empty() || track.AudioStart() != 0);

    // Nothing listens on the discard port; a URL goes straight to the module, no tag read first.
    test::WriteFile(dir.file("notes.txt"), "not audio");
    for (const std::string& name : {dir.file("missing.mp3"), dir.str(), dir.file("notes.txt"), std::string("http://127.0.0.1:9/a.mp3")}) {
        TrackRecord unread(name);
        EXPECT_FALSE(unread.RetrieveInformation(test::BundledModules(), false)) << name;
        EXPECT_EQ(std::tuple(unread.InfoRetrieved(), unread.Exists(), unread.Duration(), unread.AudioStart()), std::tuple(true, false, 0u, 0u)) << name;
    }
    TrackRecord& null = TrackRecord::NullTrack();  // never retrieved
    EXPECT_TRUE(!null.RetrieveInformation(test::BundledModules(), false) && !null.InfoRetrieved() && null.Exists() && null.Duration() == 0 && null.BitsPerSample() == 8);
}

}  // namespace
}  // namespace verdin
