// Retrieving a track's information from real files, made here with lame and sox, through
// the input plug-ins the player ships.
#include "playlist/TrackRecord.h"

#include "engine/input/InputModuleList.h"
#include "Files.h"
#include "Process.h"
#include "TempDir.h"
#include "tags/FrameId.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace verdin {
namespace {

class TrackRetrieval : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        modules_ = new InputModuleList;
        modules_->LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr);
    }
    static void TearDownTestSuite() {
        delete modules_;
        modules_ = nullptr;
    }
    void SetUp() override {
        ASSERT_GE(modules_->ModuleCount(), 2u) << "bundled plug-ins in " << VERDIN_TEST_PLUGIN_DIR;
    }

    // One second of a stereo tone at 44.1 kHz, 128 kbit/s, with an ID3v2 tag.
    std::string MakeTaggedMp3() {
        if (!test::HaveCommand("lame") || !test::HaveCommand("sox")) return {};
        const std::string wav = dir_.file("tone.wav");
        const std::string mp3 = dir_.file("tone.mp3");
        if (test::RunCommand({"sox", "-n", "-r", "44100", "-c", "2", "-b", "16", wav, "synth", "1", "sine", "440"})
                .exitCode != 0)
            return {};
        if (test::RunCommand({"lame", "--quiet", "-b", "128", "--cbr", "--add-id3v2", "--tt", "Tone Title", "--ta",
                              "Tone Artist", wav, mp3})
                .exitCode != 0)
            return {};
        return mp3;
    }

    static uint32_t Id3v2Size(const std::string& path) {
        const std::vector<uint8_t> bytes = test::ReadBytes(path);
        if (bytes.size() < 10 || bytes[0] != 'I' || bytes[1] != 'D' || bytes[2] != '3') return 0;
        return 10u + ((bytes[6] & 0x7Fu) << 21 | (bytes[7] & 0x7Fu) << 14 | (bytes[8] & 0x7Fu) << 7 | (bytes[9] & 0x7Fu));
    }

    static InputModuleList* modules_;
    test::TempDir dir_;
};

InputModuleList* TrackRetrieval::modules_ = nullptr;

TEST_F(TrackRetrieval, ReadsTheTagAndTheModulesInformationFromAnMp3) {
    const std::string mp3 = MakeTaggedMp3();
    ASSERT_FALSE(mp3.empty()) << "lame and sox make the fixture";
    TrackRecord track(mp3);
    EXPECT_FALSE(track.InfoRetrieved());
    EXPECT_EQ(track.Duration(), 0u);
    EXPECT_EQ(track.BitsPerSample(), 8);

    ASSERT_TRUE(track.RetrieveInformation(*modules_, false));
    EXPECT_TRUE(track.InfoRetrieved());
    EXPECT_TRUE(track.Exists());
    EXPECT_EQ(track.GetTagVersion().version, 2);
    EXPECT_EQ(track.Tag().Find(FrameId::Title).has_value(), true);
    const uint32_t tagSize = Id3v2Size(mp3);
    ASSERT_GT(tagSize, 10u);
    EXPECT_EQ(track.AudioStart(), tagSize);
    EXPECT_NEAR(static_cast<double>(track.Duration()), 1000.0, 60.0);
    EXPECT_EQ(track.SampleRate(), 44100);
    EXPECT_EQ(track.Channels(), 2);
    EXPECT_EQ(track.BitsPerSample(), 16);
    EXPECT_EQ(track.Bitrate(), 128000);
    struct stat st;
    ASSERT_EQ(::stat(mp3.c_str(), &st), 0);
    EXPECT_EQ(track.FileSize(), static_cast<uint32_t>(st.st_size));
}

TEST_F(TrackRetrieval, IgnoringTagsStillFindsWhereTheAudioStarts) {
    const std::string mp3 = MakeTaggedMp3();
    ASSERT_FALSE(mp3.empty()) << "lame and sox make the fixture";
    TrackRecord track(mp3);
    ASSERT_TRUE(track.RetrieveInformation(*modules_, true));
    EXPECT_TRUE(track.Tag().empty());
    EXPECT_FALSE(track.GetTagVersion().found());
    EXPECT_EQ(track.AudioStart(), Id3v2Size(mp3));
    EXPECT_NEAR(static_cast<double>(track.Duration()), 1000.0, 60.0);
}

TEST_F(TrackRetrieval, ReadsAnEightBitMonoWaveMadeBySox) {
    ASSERT_TRUE(test::HaveCommand("sox"));
    const std::string wav = dir_.file("Low Tone.WAV");
    ASSERT_EQ(test::RunCommand({"sox", "-n", "-r", "22050", "-c", "1", "-b", "8", "-e", "unsigned-integer", wav,
                                "synth", "0.5", "sine", "440"})
                  .exitCode,
              0);
    TrackRecord track(wav);
    EXPECT_EQ(track.Body(), "Low Tone");
    EXPECT_EQ(track.Extension(), ".WAV");
    ASSERT_TRUE(track.RetrieveInformation(*modules_, false));
    EXPECT_TRUE(track.Exists());
    EXPECT_FALSE(track.GetTagVersion().found());
    EXPECT_EQ(track.AudioStart(), 0u);
    EXPECT_EQ(track.Duration(), 500u);
    EXPECT_EQ(track.SampleRate(), 22050);
    EXPECT_EQ(track.Channels(), 1);
    EXPECT_EQ(track.BitsPerSample(), 8);
}

TEST_F(TrackRetrieval, FilesThatCannotBeReadClearExists) {
    const std::string text = dir_.file("notes.txt");
    test::WriteFile(text, "not audio");
    const struct {
        std::string name;
        const char* why;
    } cases[] = {
        {dir_.file("missing.mp3"), "no such file"},
        {dir_.str(), "a directory"},
        {text, "no module takes it"},
    };
    for (const auto& c : cases) {
        TrackRecord track(c.name);
        EXPECT_FALSE(track.RetrieveInformation(*modules_, false)) << c.why;
        EXPECT_TRUE(track.InfoRetrieved()) << c.why;
        EXPECT_FALSE(track.Exists()) << c.why;
        EXPECT_EQ(track.Duration(), 0u) << c.why;
    }
}

TEST_F(TrackRetrieval, AFileThatVanishesLosesItsOldTag) {
    const std::string mp3 = MakeTaggedMp3();
    ASSERT_FALSE(mp3.empty()) << "lame and sox make the fixture";
    TrackRecord track(mp3);
    ASSERT_TRUE(track.RetrieveInformation(*modules_, false));
    ASSERT_TRUE(track.GetTagVersion().found());
    ASSERT_EQ(::unlink(mp3.c_str()), 0);
    EXPECT_FALSE(track.RetrieveInformation(*modules_, false));
    EXPECT_FALSE(track.Exists());
    EXPECT_TRUE(track.Tag().empty());
    EXPECT_FALSE(track.GetTagVersion().found());
    EXPECT_EQ(track.AudioStart(), 0u);
}

TEST_F(TrackRetrieval, AUrlGoesStraightToTheModule) {
    // Nothing listens on the discard port: the module cannot read it; no tag is read first.
    TrackRecord track("http://127.0.0.1:9/stream.mp3");
    EXPECT_FALSE(track.RetrieveInformation(*modules_, false));
    EXPECT_TRUE(track.InfoRetrieved());
    EXPECT_FALSE(track.Exists());
    EXPECT_EQ(track.AudioStart(), 0u);
}

TEST_F(TrackRetrieval, TheNullTrackIsNeverRetrieved) {
    TrackRecord& null = TrackRecord::NullTrack();
    EXPECT_FALSE(null.RetrieveInformation(*modules_, false));
    EXPECT_FALSE(null.InfoRetrieved());
    EXPECT_TRUE(null.Exists());
    EXPECT_EQ(null.Duration(), 0u);
    EXPECT_EQ(null.BitsPerSample(), 8);
}

}  // namespace
}  // namespace verdin
