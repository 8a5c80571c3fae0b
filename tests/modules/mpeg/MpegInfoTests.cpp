// Track information and the module's own answers from MPEG_Verdin.so.
#include "MpegFixtures.h"

#include "Files.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

namespace verdin::test {
namespace {

uint32_t Milliseconds(int64_t frames, int rate) {
    return static_cast<uint32_t>(frames * 1000 / rate);
}

TEST_F(MpegModuleTest, InfoDescribesTheStreamAndTheFile) {
    for (const Mp3Fixture& f : All()) {
        SCOPED_TRACE(f.label);
        const auto info = plugin_.Info(f.path);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->sampleRate, f.sampleRate);
        EXPECT_EQ(info->channels, f.channels);
        EXPECT_EQ(info->bitsPerSample, 16);
        EXPECT_EQ(info->seekable, 1);
        EXPECT_EQ(info->decoderEqualizes, 0);
        EXPECT_EQ(info->fileSize, std::filesystem::file_size(f.path));
        const std::string name = std::filesystem::path(f.path).filename().string();
        EXPECT_STREQ(info->suggestedTitle, name.substr(0, name.size() - 4).c_str());
    }
    EXPECT_STREQ(plugin_.Info(Cbr().path)->suggestedTitle, "Song.v1 (live)");
}

TEST_F(MpegModuleTest, DurationIsExactWhereTheFileCarriesIt) {
    for (const Mp3Fixture& f : All()) {
        if (!f.carriesLength) continue;
        SCOPED_TRACE(f.label);
        EXPECT_EQ(plugin_.Info(f.path)->duration, Milliseconds(f.sourceFrames, f.sampleRate));
    }
}

TEST_F(MpegModuleTest, DurationWithoutInfoFrameIsWithinOneFrame) {
    const Mp3Fixture& f = CbrWithoutInfoFrame();
    const int64_t decodedFrames = static_cast<int64_t>(f.reference.size() / f.frameBytes());
    const auto decodedMs = static_cast<int64_t>(Milliseconds(decodedFrames, f.sampleRate));
    const int64_t oneFrameMs = 1152 * 1000 / f.sampleRate + 1;
    EXPECT_LE(std::llabs(static_cast<int64_t>(plugin_.Info(f.path)->duration) - decodedMs), oneFrameMs);
}

TEST_F(MpegModuleTest, BitRateIsPositiveForConstantAndNegativeAverageForVariableRate) {
    EXPECT_EQ(plugin_.Info(Cbr().path)->bitrate, 128000);
    EXPECT_EQ(plugin_.Info(CbrWithoutInfoFrame().path)->bitrate, 128000);
    EXPECT_EQ(plugin_.Info(Mono().path)->bitrate, 64000);

    const auto vbr = plugin_.Info(Vbr().path);
    ASSERT_LT(vbr->bitrate, 0);
    // The average is the file's bits over its length, within what the tags around the
    // audio add.
    const double fileRate = std::filesystem::file_size(Vbr().path) * 8.0 * 1000.0 / vbr->duration;
    EXPECT_NEAR(-vbr->bitrate, fileRate, fileRate * 0.02);
}

TEST_F(MpegModuleTest, ManyCallsFromSeveralThreadsGiveTheSameAnswers) {
    // Information is read with reused decoder handles: nothing may carry over from one
    // file to the next, nor between threads reading at the same time.
    std::vector<TrackInfo> expected;
    for (const Mp3Fixture& f : All()) expected.push_back(*plugin_.Info(f.path));
    std::atomic<int> mismatches{0};  // written by the readers, read after they are joined
    std::vector<std::thread> readers;
    for (int t = 0; t < 4; ++t) {
        readers.emplace_back([&, t] {
            for (int i = 0; i < 50; ++i) {
                const size_t which = static_cast<size_t>(i + t) % All().size();
                const auto info = plugin_.Info(All()[which].path);
                if (!info || std::memcmp(&*info, &expected[which], sizeof(TrackInfo)) != 0)
                    mismatches.fetch_add(1, std::memory_order_relaxed);
            }
        });
    }
    for (auto& r : readers) r.join();
    EXPECT_EQ(mismatches.load(std::memory_order_relaxed), 0);
}

TEST_F(MpegModuleTest, TakesFilesByExtensionWithoutRegardToCase) {
    const struct {
        const char* path;
        bool taken;
    } cases[] = {
        {"/music/a.mp3", true},      {"/music/B.MP3", true},     {"c.Mp2", true},
        {"d.mp1", true},             {"http://host/e.mp3", true}, {"/music/f.wav", false},
        {"/music/mp3", false},       {"/music.mp3/track", false}, {"/music/g.mp3.bak", false},
        {"/no/such/file.mp3", true}, {"", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(plugin_.IsOurFile(c.path), c.taken) << c.path;
        EXPECT_EQ(plugin_.IsOurFile(c.path), c.taken) << c.path << " asked again";
    }
}

TEST_F(MpegModuleTest, AnnouncesItsFileTypesAndName) {
    EXPECT_EQ(plugin_.FileTypeTexts(), (std::vector<std::string>{"MPEG audio", "*.mp3;*.mp2;*.mp1"}));
    const std::string description = plugin_.ops().GetDescription(plugin_.module());
    EXPECT_NE(description.find("MPEG"), std::string::npos) << description;
}

TEST_F(MpegModuleTest, AboutNamesTheModuleOnStandardError) {
    ::testing::internal::CaptureStderr();
    plugin_.ops().About(plugin_.module());
    const std::string said = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(said, std::string(plugin_.ops().GetDescription(plugin_.module())) + "\n");
}

}  // namespace
}  // namespace verdin::test
