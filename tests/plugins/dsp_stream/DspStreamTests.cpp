// The DSP host on the real stream path: a WAV file decoded through the engine's stream
// with the host as its DSP hook, written by the WAV file device, checked sample for
// sample against what the active modules must make of the input.
#include "engine/input/InputModuleList.h"
#include "engine/stream/Stream.h"
#include "plugins/dsp/DspHost.h"
#include "base/SearchPath.h"

#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <thread>

namespace verdin {
namespace {

using test::TempDir;

constexpr int kRate = 44100;
const std::string kPluginDir = VERDIN_TEST_PLUGIN_DIR;

const InputModuleList& InputModules() {
    static InputModuleList* modules = [] {
        auto* list = new InputModuleList;
        list->LoadInputModules(kPluginDir + ";", nullptr);
        return list;
    }();
    return *modules;
}

// Stereo test material: a centred "voice" tone and a hard-left "guitar" tone, as
// interleaved 16-bit samples, or as unsigned 8-bit ones.
std::vector<uint8_t> Material(int frames, int bits) {
    std::vector<uint8_t> out;
    for (int i = 0; i < frames; ++i) {
        const double voice = 0.4 * std::sin(2 * std::numbers::pi * 440.0 * i / kRate);
        const double guitar = 0.3 * std::sin(2 * std::numbers::pi * 1000.0 * i / kRate);
        for (double value : {voice + guitar, voice}) {
            if (bits == 16) {
                const auto s = static_cast<int16_t>(std::lround(value * 32767));
                out.push_back(static_cast<uint8_t>(s & 0xFF));
                out.push_back(static_cast<uint8_t>((s >> 8) & 0xFF));
            } else {
                out.push_back(static_cast<uint8_t>(std::lround(128 + value * 127)));
            }
        }
    }
    return out;
}

int Sample(const std::vector<uint8_t>& pcm, int bits, size_t index) {
    if (bits == 16) return static_cast<int16_t>(pcm[2 * index] | (pcm[2 * index + 1] << 8));
    return pcm[index] - 128;
}

int Limit(int value, int bits) { return bits == 16 ? std::clamp(value, -32768, 32767) : std::clamp(value, -128, 127); }

// What the voice remover makes of frame f: L-R in both channels.
std::pair<int, int> VoiceRemoved(const std::vector<uint8_t>& in, int bits, size_t f) {
    const int d = Limit(Sample(in, bits, 2 * f) - Sample(in, bits, 2 * f + 1), bits);
    return {d, d};
}

// What the stereo widener makes of frame f: mid kept, side doubled (L' = (3L-R)/2,
// R' = (3R-L)/2), rounded to even as the module rounds.
std::pair<int, int> Widened(const std::vector<uint8_t>& in, int bits, size_t f) {
    const int l = Sample(in, bits, 2 * f), r = Sample(in, bits, 2 * f + 1);
    return {Limit(static_cast<int>(std::nearbyint((3.0 * l - r) / 2)), bits),
            Limit(static_cast<int>(std::nearbyint((3.0 * r - l) / 2)), bits)};
}

std::pair<int, int> FrameOf(const std::vector<uint8_t>& pcm, int bits, size_t f) {
    return {Sample(pcm, bits, 2 * f), Sample(pcm, bits, 2 * f + 1)};
}

class DspStreamTest : public ::testing::Test {
protected:
    void SetUp() override {
        libraries.emplace(nullptr, kPluginDir + ";");
        plugin = JoinPath(kPluginDir, "DSP_Verdin.so");
        ASSERT_NE(libraries->LibraryByPath(plugin), nullptr);
    }

    int ModuleIndex(const std::string& description) const {
        const auto& modules = libraries->LibraryByPath(plugin)->moduleDescriptions;
        return static_cast<int>(std::find(modules.begin(), modules.end(), description) - modules.begin());
    }
    std::vector<DspModuleRef> Only(const std::string& description) const {
        return {{plugin, ModuleIndex(description)}};
    }

    StreamOptions Options() {
        StreamOptions options;
        options.pauseBetweenTracks = 0;
        options.crossfadeLength = 0;
        options.dsp.context = host.HookContext();
        options.dsp.process = &DspHost::Process;
        return options;
    }

    OutputTarget FileTarget() const {
        OutputTarget target;
        target.kind = OutputTarget::kWavFile;
        target.decodeDirectory = out.str();
        target.title = "out";
        return target;
    }
    std::string OutputPath() const { return out.file("1. out.wav"); }

    std::string WriteTrack(const std::vector<uint8_t>& pcm, int bits) {
        const std::string path = dir.file("track" + std::to_string(bits) + ".wav");
        test::WriteWav(path, 2, kRate, bits, pcm);
        return path;
    }

    TempDir dir, out;
    std::optional<DspLibraryList> libraries;
    std::string plugin;
    DspHost host;
};

TEST_F(DspStreamTest, TheVoiceRemoverTakesTheCentreOutOfADecodedTrack) {
    for (int bits : {16, 8}) {
        SCOPED_TRACE(bits);
        const std::vector<uint8_t> in = Material(60000, bits);
        host.SetActiveList(*libraries, Only("Voice remover (centre cancel)"));
        {
            Stream stream(InputModules(), Options());
            ASSERT_TRUE(stream.OpenStream(WriteTrack(in, bits), nullptr)) << stream.ErrorText();
            ASSERT_TRUE(stream.StartStream(FileTarget())) << stream.ErrorText();
            stream.WaitUntilFinished();
            EXPECT_FALSE(stream.Failed()) << stream.ErrorText();
        }  // closing the stream completes the file
        const std::vector<uint8_t> result = test::WavData(OutputPath());
        ASSERT_EQ(result.size(), in.size());
        size_t mismatches = 0;
        for (size_t f = 0; f < in.size() / (bits / 8) / 2; ++f)
            if (FrameOf(result, bits, f) != VoiceRemoved(in, bits, f)) ++mismatches;
        EXPECT_EQ(mismatches, 0u);
        // Audibly changed: the louder centred tone is gone, only the panned one is left.
        EXPECT_NE(result, in);
    }
}

// The options page's Apply while a track plays: the stream goes on, and every block is
// processed by the old list or by the new one, the switch happening once.
TEST_F(DspStreamTest, ChangingTheActiveListWhileATrackPlays) {
    const int bits = 16;
    const int frames = 300000;  // longer than the ring, which holds 128000 frames
    const std::vector<uint8_t> in = Material(frames, bits);
    host.SetActiveList(*libraries, Only("Voice remover (centre cancel)"));
    {
        Stream stream(InputModules(), Options());
        ASSERT_TRUE(stream.OpenStream(WriteTrack(in, bits), nullptr)) << stream.ErrorText();
        // Held by the user's pause, the file device takes nothing and the stream fills
        // its ring, so a good part of the track is processed before the switch.
        stream.PausePlayback();
        ASSERT_TRUE(stream.StartStream(FileTarget())) << stream.ErrorText();
        while (stream.FramesWritten() < 50000 && !stream.Failed()) std::this_thread::yield();
        host.SetActiveList(*libraries, Only("Stereo widener"));
        stream.ResumePlayback();
        stream.WaitUntilFinished();
        EXPECT_FALSE(stream.Failed()) << stream.ErrorText();
    }
    const std::vector<uint8_t> result = test::WavData(OutputPath());
    ASSERT_EQ(result.size(), in.size());
    // The first frame the widener made; from there on every frame is widened.
    size_t f = 0;
    while (f < static_cast<size_t>(frames) && FrameOf(result, bits, f) == VoiceRemoved(in, bits, f)) ++f;
    const size_t switchFrame = f;
    for (; f < static_cast<size_t>(frames); ++f)
        ASSERT_EQ(FrameOf(result, bits, f), Widened(in, bits, f)) << "frame " << f << " after the switch at " << switchFrame;
    EXPECT_GE(switchFrame, 50000u);
    EXPECT_LT(switchFrame, static_cast<size_t>(frames));
}

}  // namespace
}  // namespace verdin
