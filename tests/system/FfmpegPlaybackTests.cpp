// Files for the FFmpeg input plug-in, encoded here by ffmpeg from a synthesised tone, played
// by the whole player into WAV files: the module sorts first among the bundled ones and
// must take these files, and the player must write exactly the frames the module decodes.
#include "SystemFixture.h"

#include "PcmFixtures.h"
#include "Process.h"

#include <filesystem>

namespace verdin::test {
namespace {

using namespace std::chrono_literals;

TEST_F(SystemTest, FfmpegFilesDecodeWholeLosslessOnesToTheirSourceSamples) {
    SeedSettings([this](Settings& s) { DecodeToFiles(s); });
    const std::string source = Tone("source.wav", 0.5, 440), music = home_.dir.file("music/");
    const std::pair<std::vector<std::string>, std::string> encodings[] = {
        {{"-c:a", "alac"}, "alac.m4a"}, {{"-c:a", "wavpack"}, "pack.wv"}, {{"-c:a", "aac"}, "lossy.m4a"},
        {{"-af", "pan=5.1|FC=c0|LFE=c1", "-c:a", "wavpack"}, "surround.wv"}};
    for (const auto& [options, name] : encodings) {
        std::vector<std::string> argv{"ffmpeg", "-v", "error", "-i", source};
        argv.insert(argv.end(), options.begin(), options.end());
        argv.push_back(music + name);
        ASSERT_EQ(RunCommand(argv).exitCode, 0) << name;
    }
    auto player = Start({"--headless", "--quit-after-play", "/PLAY", music + "alac.m4a", music + "pack.wv",
                         music + "lossy.m4a", music + "surround.wv", source});
    ASSERT_EQ(player->WaitForExit(30s), 0) << player->Output();
    // The files are numbered in play order; a title comes from the tags where there are any.
    const auto decoded = [this](char number) {
        for (const auto& file : std::filesystem::directory_iterator(OutDirectory()))
            if (file.path().filename().string().starts_with(std::string{number, '.'})) return WavData(file.path());
        return std::vector<uint8_t>{};
    };
    const std::vector<uint8_t> pcm = WavData(source);
    for (const char number : {'1', '2', '5'}) EXPECT_TRUE(decoded(number) == pcm) << number;
    for (const char number : {'3', '4'}) EXPECT_EQ(decoded(number).size(), pcm.size()) << number;
}

}  // namespace
}  // namespace verdin::test
