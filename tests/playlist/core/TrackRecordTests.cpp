// Retrieving a track's information from files made here with lame and sox, through the
// input plug-ins the player ships.
#include "engine/input/InputModuleList.h"

#include "Files.h"
#include "PlaylistFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace verdin {
namespace {

const InputModuleList& Modules() {
    static const InputModuleList* modules = [] {
        auto* list = new InputModuleList;
        list->LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr);
        return list;
    }();
    return *modules;
}

TEST(TrackRetrieval, ReadsTagsAndTheModulesAnswersFromRealFiles) {
    test::TempDir dir;
    const std::string mp3 = dir.file("tone.mp3");  // 1 s, 128 kbit/s, an ID3v2 tag in front
    test::EncodeMp3(mp3, 1000, {"-b", "128", "--cbr", "--add-id3v2", "--tt", "Tone Title", "--ta", "Tone Artist"});
    const std::vector<uint8_t> bytes = test::ReadBytes(mp3);
    ASSERT_EQ(std::string(bytes.begin(), bytes.begin() + 3), "ID3");
    const uint32_t tagSize = 10u + (bytes[6] << 21 | bytes[7] << 14 | bytes[8] << 7 | bytes[9]);
    for (bool ignoreTags : {false, true}) {
        SCOPED_TRACE(ignoreTags ? "tags ignored" : "tags read");
        TrackRecord track(mp3);
        EXPECT_FALSE(track.InfoRetrieved());
        EXPECT_EQ(std::tuple(track.Duration(), track.BitsPerSample()), std::tuple(0u, 8));  // before: the player's defaults
        ASSERT_TRUE(track.RetrieveInformation(Modules(), ignoreTags));
        EXPECT_TRUE(track.InfoRetrieved() && track.Exists());
        EXPECT_EQ(track.GetTagVersion().version, ignoreTags ? 0 : 2);
        EXPECT_EQ(track.Tag().Find(FrameId::Title).has_value(), !ignoreTags);
        EXPECT_EQ(track.AudioStart(), tagSize);  // found even when tags are ignored
        EXPECT_NEAR(double(track.Duration()), 1000.0, 60.0);
        EXPECT_EQ(std::tuple(track.SampleRate(), track.Channels(), track.BitsPerSample(), track.Bitrate(), track.FileSize()),
                  std::tuple(44100, 2, 16, 128000, uint32_t(bytes.size())));
    }
    // A file that vanishes loses its old tag.
    TrackRecord track(mp3);
    ASSERT_TRUE(track.RetrieveInformation(Modules(), false));
    std::filesystem::remove(mp3);
    EXPECT_FALSE(track.RetrieveInformation(Modules(), false));
    EXPECT_FALSE(track.Exists() || track.GetTagVersion().found() || !track.Tag().empty());
    EXPECT_EQ(track.AudioStart(), 0u);

    const std::string wav = dir.file("Low Tone.WAV");
    test::RunCommand({"sox", "-n", "-r", "22050", "-c", "1", "-b", "8", "-e", "unsigned-integer", wav, "synth", "0.5", "sine", "440"});
    TrackRecord low(wav);
    EXPECT_EQ(low.Body() + "|" + low.Extension(), "Low Tone|.WAV");
    ASSERT_TRUE(low.RetrieveInformation(Modules(), false));
    EXPECT_FALSE(low.GetTagVersion().found());
    EXPECT_EQ(std::tuple(low.AudioStart(), low.Duration(), low.SampleRate(), low.Channels(), low.BitsPerSample()),
              std::tuple(0u, 500u, 22050, 1, 8));
}

TEST(TrackRetrieval, WhatCannotBeReadClearsExists) {
    test::TempDir dir;
    test::WriteFile(dir.file("notes.txt"), "not audio");
    // Nothing listens on the discard port; a URL goes straight to the module, no tag read first.
    for (const std::string& name : {dir.file("missing.mp3"), dir.str(), dir.file("notes.txt"), std::string("http://127.0.0.1:9/a.mp3")}) {
        TrackRecord track(name);
        EXPECT_FALSE(track.RetrieveInformation(Modules(), false)) << name;
        EXPECT_TRUE(track.InfoRetrieved()) << name;
        EXPECT_FALSE(track.Exists()) << name;
        EXPECT_EQ(std::tuple(track.Duration(), track.AudioStart()), std::tuple(0u, 0u)) << name;
    }
    TrackRecord& null = TrackRecord::NullTrack();  // never retrieved
    EXPECT_FALSE(null.RetrieveInformation(Modules(), false));
    EXPECT_FALSE(null.InfoRetrieved());
    EXPECT_TRUE(null.Exists());
    EXPECT_EQ(std::tuple(null.Duration(), null.BitsPerSample()), std::tuple(0u, 8));
}

}  // namespace
}  // namespace verdin
