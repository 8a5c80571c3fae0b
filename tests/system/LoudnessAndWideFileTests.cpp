// Files the sample path does not carry as they are, and ReplayGain, decoded to WAV files
// by the real player: files of three and six channels come out folded into stereo with
// the ITU weights, 24-bit samples as their top 16 bits, each with its exact frame count;
// a FLAC tagged -6 dB plays 6 dB below the same FLAC untagged, which stays bit-identical.
#include "SystemFixture.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"

#include <cmath>
#include <cstring>

namespace verdin::test {
namespace {

using namespace std::chrono_literals;

std::vector<int32_t> RawSamples(const std::string& path, int bits) {  // sox's native-endian raw output
    const std::vector<uint8_t> bytes = ReadBytes(path);
    std::vector<int32_t> samples(bytes.size() / (bits / 8));
    for (size_t i = 0; i < samples.size(); ++i) {
        int16_t s16;
        if (bits == 32) std::memcpy(&samples[i], &bytes[4 * i], 4);
        else std::memcpy(&s16, &bytes[2 * i], 2), samples[i] = s16;
    }
    return samples;
}

std::vector<int32_t> Pcm16(const std::vector<uint8_t>& bytes) {
    std::vector<int32_t> samples(bytes.size() / 2);
    for (size_t i = 0; i < samples.size(); ++i) samples[i] = int16_t(bytes[2 * i] | bytes[2 * i + 1] << 8);
    return samples;
}

double Rms(const std::vector<int32_t>& samples) {
    double sum = 0;
    for (const int32_t s : samples) sum += double(s) * s;
    return std::sqrt(sum / double(samples.size()));
}

void Sox(const std::vector<std::string>& arguments) {
    std::vector<std::string> argv{"sox"};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    ASSERT_EQ(RunCommand(argv).exitCode, 0) << arguments.back();
}

TEST_F(SystemTest, WideFilesFoldIntoStereoAndTaggedLoudnessIsEvenedOut) {
    SeedSettings([this](Settings& s) { DecodeToFiles(s); });
    WriteFile(home_.DataDirectory() + "/ReplayGain.ini", "[ReplayGain]\nMode=track\n");
    const std::string plain = Tone("plain.wav", 1.0, 440);
    ASSERT_EQ(RunCommand({"flac", "-s", "-o", home_.dir.file("music/plain.flac"), plain}).exitCode, 0);
    ASSERT_EQ(RunCommand({"flac", "-s", "-T", "REPLAYGAIN_TRACK_GAIN=-6.00 dB", "-o", home_.dir.file("music/tagged.flac"), plain}).exitCode, 0);
    const double k = std::sqrt(0.5);
    // name, channels, bits, speakers' weights on the left and the right before normalising
    const std::tuple<std::string, int, int, std::vector<double>, std::vector<double>> wide[] = {
        {"six", 6, 16, {1, 0, k, 0, k, 0}, {0, 1, k, 0, 0, k}},
        {"three", 3, 16, {1, 0, k}, {0, 1, k}},
        {"deep", 2, 24, {1, 0}, {0, 1}},
    };
    std::vector<std::string> arguments{"--headless", "--quit-after-play", "/PLAY", home_.dir.file("music/plain.flac"),
                                       home_.dir.file("music/tagged.flac")};
    for (const auto& [name, channels, bits, left, right] : wide) {
        const std::string path = home_.dir.file("music/" + name + ".wav");
        std::vector<std::string> synth{"-r", "44100", "-n", "-b", std::to_string(bits), "-c", std::to_string(channels), path,
                                       "synth", "13231s"};
        for (int c = 0; c < channels; ++c) synth.insert(synth.end(), {c % 2 ? "square" : "sine", std::to_string(150 + 170 * c)});
        Sox(synth);
        Sox({path, "-t", bits == 16 ? "s16" : "s32", path + ".raw"});
        arguments.push_back(path);
    }
    auto player = Start(arguments);
    ASSERT_EQ(player->WaitForExit(30s), 0) << player->Output();
    const auto decoded = [&](int row, const std::string& name) { return Pcm16(WavData(OutDirectory() + "/" + std::to_string(row) + ". " + name + ".wav")); };

    const std::vector<int32_t> untouched = decoded(1, "plain"), quieter = decoded(2, "tagged");
    EXPECT_EQ(untouched, Pcm16(WavData(plain)));
    EXPECT_NEAR(20 * std::log10(Rms(quieter) / Rms(untouched)), -6.0, 0.1);

    for (size_t row = 0; row < std::size(wide); ++row) {
        const auto& [name, channels, bits, left, right] = wide[row];
        SCOPED_TRACE(name);
        const std::vector<int32_t> in = RawSamples(home_.dir.file("music/" + name + ".wav.raw"), bits == 16 ? 16 : 32);
        const std::vector<int32_t> out = decoded(int(row) + 3, name);
        const size_t frames = in.size() / size_t(channels);
        ASSERT_EQ(frames, 13231u);
        ASSERT_EQ(out.size(), 2 * frames);
        double norm = 0, leftSum = 0, rightSum = 0;
        for (int c = 0; c < channels; ++c) leftSum += left[size_t(c)], rightSum += right[size_t(c)];
        norm = std::max(leftSum, rightSum);
        int worst = 0;
        for (size_t f = 0; f < frames; ++f) {
            double l = 0, r = 0;
            for (size_t c = 0; c < size_t(channels); ++c) {
                const double s = bits == 16 ? in[f * channels + c] : std::floor(in[f * channels + c] / 65536.0);
                l += left[c] * s, r += right[c] * s;
            }
            worst = std::max({worst, int(std::abs(out[2 * f] - l / norm)), int(std::abs(out[2 * f + 1] - r / norm))});
        }
        EXPECT_LE(worst, 1);
    }
}

}  // namespace
}  // namespace verdin::test
