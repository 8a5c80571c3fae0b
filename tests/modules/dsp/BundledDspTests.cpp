// The bundled DSP modules through the host: on test signals in stream-sized blocks, and on
// a WAV file the engine's stream decodes into the WAV file device with the host as its DSP
// hook, the active module switched as it plays (every block processed by the old module or
// the new one, the switch happening once), the results checked frame for frame at 16 and 8 bits.
#include "engine/input/InputModuleList.h"
#include "engine/stream/Stream.h"
#include "plugins/dsp/DspHost.h"
#include "base/SearchPath.h"

#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <thread>

namespace verdin {
namespace {

constexpr int kRate = 44100;
constexpr size_t kBlockFrames = 1152;
const std::string kPluginDir = VERDIN_TEST_PLUGIN_DIR;

// Interleaved channels of tones (frequency, amplitude) as 16-bit or unsigned 8-bit PCM.
std::vector<uint8_t> Tones(int bits, int frames, std::initializer_list<std::vector<std::pair<double, double>>> channels) {
    std::vector<uint8_t> out;
    for (int i = 0; i < frames; ++i)
        for (const auto& tones : channels) {
            double v = 0;
            for (const auto& [frequency, amplitude] : tones) v += amplitude * std::sin(2 * std::numbers::pi * frequency * i / kRate);
            const long s = std::lround(v * (bits == 16 ? 32767 : 127));
            if (bits == 16) out.insert(out.end(), {uint8_t(s & 0xFF), uint8_t((s >> 8) & 0xFF)});
            else out.push_back(uint8_t(128 + s));
        }
    return out;
}

int Sample(const std::vector<uint8_t>& pcm, int bits, size_t index) {
    return bits == 16 ? int16_t(pcm[2 * index] | (pcm[2 * index + 1] << 8)) : pcm[index] - 128;
}

// Root mean square of every step-th sample from first on.
double Rms(const std::vector<uint8_t>& pcm, int bits, size_t first, size_t step = 1) {
    double sum = 0;
    size_t n = 0;
    for (size_t i = first; i < pcm.size() * 8 / bits; i += step, ++n) sum += std::pow(Sample(pcm, bits, i), 2);
    return std::sqrt(sum / double(n));
}

class BundledDspTest : public ::testing::Test {
protected:
    // The list with the module of this description as its only entry.
    std::vector<DspModuleRef> Only(const std::string& description) {
        const auto& modules = libraries.LibraryByPath(path)->moduleDescriptions;  // found by enumeration
        const auto found = std::find(modules.begin(), modules.end(), description);
        EXPECT_NE(found, modules.end()) << description;
        return {{path, int32_t(found - modules.begin())}};
    }
    // Makes that module the only active one (Init starts it afresh).
    void Activate(const std::string& description) {
        host.ClearActiveList();
        host.SetActiveList(libraries, Only(description));
    }

    // What comes out of the host, fed stream-sized blocks with the room a stream gives.
    std::vector<uint8_t> Run(const std::vector<uint8_t>& pcm, int bits, int channels) {
        const size_t frameBytes = size_t(bits / 8) * channels;
        std::vector<uint8_t> out, work(2 * kBlockFrames * frameBytes);
        for (size_t at = 0; at < pcm.size(); at += kBlockFrames * frameBytes) {
            const size_t bytes = std::min(pcm.size() - at, kBlockFrames * frameBytes);
            std::copy_n(pcm.begin() + long(at), bytes, work.begin());
            const uint32_t frames = DspHost::Process(host.HookContext(), work.data(), uint32_t(bytes / frameBytes), bits, channels, kRate);
            EXPECT_EQ(frames, bytes / frameBytes);
            out.insert(out.end(), work.begin(), work.begin() + long(frames * frameBytes));
        }
        return out;
    }

    DspLibraryList libraries{nullptr, kPluginDir + ";"};
    std::string path = JoinPath(kPluginDir, "DSP_Verdin.so");
    DspHost host;
};

// 4:1 above -20 dBFS brings a -3 dBFS peak to about -15.9 dBFS after the attack, a gain of
// about 0.23, on both channels alike (the balance stays); a quiet tone passes untouched.
TEST_F(BundledDspTest, CompressorTurnsALoudToneDownAndLeavesAQuietOneAlone) {
    for (int bits : {16, 8}) {  // the peaks over all channels: one channel is a case of it
        SCOPED_TRACE(std::to_string(bits) + " bit");
        Activate("Compressor");
        const auto loud = Tones(bits, kRate, {{{1000, 0.7}}, {{1000, 0.35}}});
        const auto out = Run(loud, bits, 2);
        const size_t settled = loud.size() * 8 / bits / 5;
        EXPECT_NEAR(Rms(out, bits, settled) / Rms(loud, bits, settled), 0.24, 0.06);
        EXPECT_NEAR(Rms(out, bits, settled + 1, 2) / Rms(out, bits, settled, 2), 0.5, bits == 16 ? 0.02 : 0.2);
        Activate("Compressor");
        const auto quiet = Tones(bits, kRate / 2, {{{1000, 0.03}}, {{440, 0.05}}});
        EXPECT_EQ(Run(quiet, bits, 2), quiet);
    }
}

// The voice remover: L-R in both channels; the stereo widener: L' = (3L-R)/2, R' = (3R-L)/2;
// both limited to the sample range.
using Frame = std::pair<int, int>;
Frame VoiceRemoved(Frame f, int top) {
    const int difference = std::clamp(f.first - f.second, -top - 1, top);
    return {difference, difference};
}
Frame Widened(Frame f, int top) {
    const auto limit = [top](double v) { return std::clamp(static_cast<int>(std::nearbyint(v)), -top - 1, top); };
    return {limit((3.0 * f.first - f.second) / 2), limit((3.0 * f.second - f.first) / 2)};
}

TEST_F(BundledDspTest, ChangingTheActiveListWhileATrackPlays) {
    constexpr int kFrames = 300000;  // longer than the ring: 128000 frames at 16 bits, 256000 at 8
    InputModuleList modules;
    modules.LoadInputModules(kPluginDir + ";", nullptr);
    for (const int bits : {16, 8}) {
        SCOPED_TRACE(bits);
        test::TempDir dir, out;
        // A tone of its own in each channel, loud enough that the results clip at times, so
        // the two modules' results differ.
        const std::vector<uint8_t> bytes = Tones(bits, kFrames, {{{1000, 0.6}}, {{440, 0.6}}});
        test::WriteWav(dir.file("track.wav"), 2, kRate, bits, bytes);
        const auto frame = [bits](const std::vector<uint8_t>& pcm, size_t f) {
            return Frame{Sample(pcm, bits, 2 * f), Sample(pcm, bits, 2 * f + 1)};
        };
        Activate("Voice remover (centre cancel)");
        {
            StreamOptions options;
            options.dsp = {host.HookContext(), &DspHost::Process};
            OutputTarget target;
            target.kind = OutputTarget::kWavFile;
            target.decodeDirectory = out.str();
            target.title = "out";
            Stream stream(modules, options);
            ASSERT_TRUE(stream.OpenStream(dir.file("track.wav"), nullptr)) << stream.ErrorText();
            // Held by the user's pause, the file device takes nothing and the stream fills
            // its ring, so a good part of the track is processed before the switch.
            stream.PausePlayback();
            ASSERT_TRUE(stream.StartStream(target)) << stream.ErrorText();
            while (stream.FramesWritten() < 50000 && !stream.Failed()) std::this_thread::yield();
            host.SetActiveList(libraries, Only("Stereo widener"));
            stream.ResumePlayback();
            stream.WaitUntilFinished();
            EXPECT_FALSE(stream.Failed()) << stream.ErrorText();
        }  // closing the stream completes the file
        const std::vector<uint8_t> result = test::WavData(out.file("1. out.wav"));
        ASSERT_EQ(result.size(), bytes.size());
        // The first frame the widener made; from there on every frame is widened.
        const int top = bits == 8 ? 127 : 32767;
        size_t f = 0;
        while (f < kFrames && frame(result, f) == VoiceRemoved(frame(bytes, f), top)) ++f;
        const size_t switchFrame = f;
        for (; f < kFrames; ++f)
            ASSERT_EQ(frame(result, f), Widened(frame(bytes, f), top)) << "frame " << f << ", switch at " << switchFrame;
        EXPECT_GE(switchFrame, 50000u);
        EXPECT_LT(switchFrame, size_t{kFrames});
    }
}

}  // namespace
}  // namespace verdin
