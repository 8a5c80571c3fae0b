// The DSP host on the real stream path: a WAV file decoded through the engine's stream
// with the host as its DSP hook, written by the WAV file device. The options page's Apply
// while a track plays: the stream goes on, and every block is processed by the old list or
// by the new one, the switch happening once. (What each module does to a frame is checked
// on its own in tests/modules/dsp.)
#include "engine/input/InputModuleList.h"
#include "engine/stream/Stream.h"
#include "plugins/dsp/DspHost.h"
#include "base/SearchPath.h"

#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <thread>

namespace verdin {
namespace {

constexpr int kFrames = 300000;  // longer than the ring, which holds 128000 frames
const std::string kPluginDir = VERDIN_TEST_PLUGIN_DIR;

std::pair<int, int> Frame(const std::vector<int16_t>& pcm, size_t f) { return {pcm[2 * f], pcm[2 * f + 1]}; }
int Limit(double value) { return std::clamp(static_cast<int>(std::nearbyint(value)), -32768, 32767); }
// The voice remover: L-R in both channels; the stereo widener: L' = (3L-R)/2, R' = (3R-L)/2.
std::pair<int, int> VoiceRemoved(std::pair<int, int> f) { return {Limit(f.first - f.second), Limit(f.first - f.second)}; }
std::pair<int, int> Widened(std::pair<int, int> f) {
    return {Limit((3.0 * f.first - f.second) / 2), Limit((3.0 * f.second - f.first) / 2)};
}

TEST(DspStream, ChangingTheActiveListWhileATrackPlays) {
    InputModuleList modules;
    modules.LoadInputModules(kPluginDir + ";", nullptr);
    DspLibraryList libraries(nullptr, kPluginDir + ";");
    const DspLibrary* library = libraries.LibraryByPath(JoinPath(kPluginDir, "DSP_Verdin.so"));
    ASSERT_NE(library, nullptr);
    const auto only = [&](const std::string& description) {
        const auto& names = library->moduleDescriptions;
        return std::vector<DspModuleRef>{{library->path, int(std::find(names.begin(), names.end(), description) - names.begin())}};
    };
    test::TempDir dir, out;
    // A tone of its own in each channel, so the two modules' results differ.
    const std::vector<int16_t> in = test::Sine16(kFrames, 2, 44100, {1000.0, 440.0}, 0.35);
    test::WriteWav(dir.file("track.wav"), 2, 44100, 16, test::Bytes16(in));
    DspHost host;
    host.SetActiveList(libraries, only("Voice remover (centre cancel)"));
    {
        StreamOptions options;
        options.pauseBetweenTracks = 0;
        options.crossfadeLength = 0;
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
        host.SetActiveList(libraries, only("Stereo widener"));
        stream.ResumePlayback();
        stream.WaitUntilFinished();
        EXPECT_FALSE(stream.Failed()) << stream.ErrorText();
    }  // closing the stream completes the file
    const std::vector<uint8_t> bytes = test::WavData(out.file("1. out.wav"));
    ASSERT_EQ(bytes.size(), in.size() * 2);
    std::vector<int16_t> result(in.size());
    std::memcpy(result.data(), bytes.data(), bytes.size());
    // The first frame the widener made; from there on every frame is widened.
    size_t f = 0;
    while (f < kFrames && Frame(result, f) == VoiceRemoved(Frame(in, f))) ++f;
    const size_t switchFrame = f;
    for (; f < kFrames; ++f) ASSERT_EQ(Frame(result, f), Widened(Frame(in, f))) << "frame " << f << ", switch at " << switchFrame;
    EXPECT_GE(switchFrame, 50000u);
    EXPECT_LT(switchFrame, size_t{kFrames});
}

}  // namespace
}  // namespace verdin
