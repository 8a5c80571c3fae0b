// Track information and the module's own answers from WAV_Verdin.so.
#include "SndfileFixtures.h"

#include "Files.h"
#include "PcmFixtures.h"

#include <filesystem>

namespace verdin::test {
namespace {

TEST_F(SndfileModuleTest, InfoDescribesEachFormat) {
    const std::string wav = Wav16("Take 2.final.wav");
    std::vector<uint8_t> bytes(8000);
    WriteWav(dir_.file("eight.wav"), 1, 8000, 8, bytes);
    const struct {
        const char* label;
        std::string path;
        std::string title;
        int32_t bitsPerSample;
        int32_t bitrate;  // 0: a negative average, checked below
    } cases[] = {
        {"16-bit WAV", wav, "Take 2.final", 16, kRate * 2 * 16},
        {"8-bit WAV", dir_.file("eight.wav"), "eight", 8, 8000 * 8},
        {"AIFF", Convert({"sox"}, wav, "tone.aiff"), "tone", 16, kRate * 2 * 16},
        {"AU", Convert({"sox"}, wav, "tone.au"), "tone", 16, kRate * 2 * 16},
        {"FLAC", Convert({"flac", "-s"}, wav, "tone.flac"), "tone", 16, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        const auto info = plugin_.Info(c.path);
        ASSERT_TRUE(info);
        EXPECT_STREQ(info->suggestedTitle, c.title.c_str());
        EXPECT_EQ(info->fileSize, std::filesystem::file_size(c.path));
        EXPECT_EQ(info->seekable, 1);
        EXPECT_EQ(info->decoderEqualizes, 0);
        EXPECT_EQ(info->duration, c.bitsPerSample == 8 ? 1000u : 500u);
        EXPECT_EQ(info->bitsPerSample, c.bitsPerSample);
        if (c.bitrate) {
            EXPECT_EQ(info->bitrate, c.bitrate);
        } else {
            // Compressed: the file's bits over the track's length.
            EXPECT_NEAR(-info->bitrate, std::filesystem::file_size(c.path) * 8.0 / 0.5, 100.0);
        }
    }
}

TEST_F(SndfileModuleTest, TakesFilesByExtensionWithoutRegardToCase) {
    const struct {
        const char* path;
        bool taken;
    } cases[] = {
        {"a.wav", true},   {"B.WAV", true},  {"c.aif", true},   {"d.AIFF", true},  {"e.aifc", true},
        {"f.au", true},    {"g.snd", true},  {"h.flac", true},  {"i.ogg", true},   {"j.oga", true},
        {"k.Opus", true},  {"l.mp3", false}, {"wav", false},    {"/x.wav/y", false}, {"m.wav.txt", false},
        {"http://host/n.flac", true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(plugin_.IsOurFile(c.path), c.taken) << c.path;
        EXPECT_EQ(plugin_.IsOurFile(c.path), c.taken) << c.path << " asked again";
    }
}

TEST_F(SndfileModuleTest, AnnouncesItsFileTypesAndName) {
    const std::vector<std::string> expected = {
        "WAV audio", "*.wav", "AIFF audio", "*.aif;*.aiff;*.aifc", "Sun/NeXT audio", "*.au;*.snd",
        "FLAC audio", "*.flac", "Ogg Vorbis audio", "*.ogg;*.oga", "Opus audio", "*.opus",
    };
    EXPECT_EQ(plugin_.FileTypeTexts(), expected);
    // Every extension the module takes is offered in the open dialogs, and the other way round.
    for (size_t i = 1; i < expected.size(); i += 2) {
        size_t start = 0;
        while (start < expected[i].size()) {
            size_t end = expected[i].find(';', start);
            if (end == std::string::npos) end = expected[i].size();
            const std::string extension = expected[i].substr(start + 1, end - start - 1);
            EXPECT_TRUE(plugin_.IsOurFile("file" + extension)) << extension;
            start = end + 1;
        }
    }

    ::testing::internal::CaptureStderr();
    plugin_.ops().About(plugin_.module());
    const std::string description = plugin_.ops().GetDescription(plugin_.module());
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), description + "\n");
    EXPECT_NE(description.find("libsndfile"), std::string::npos) << description;
}

}  // namespace
}  // namespace verdin::test
