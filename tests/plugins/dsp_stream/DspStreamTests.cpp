// The DSP host on the real stream path: a WAV file decoded through the engine's stream
// with the host as its DSP hook, written by the WAV file device. The options page's Apply
// while a track plays: the stream goes on, and every block is processed by the old list or
// by the new one, the switch happening once. The bundled voice remover and stereo widener
// are checked here frame for frame at 16 and 8 bits; tests/modules/dsp has the rest.
#include "engine/input/InputModuleList.h"
#include "engine/stream/Stream.h"
#include "plugins/dsp/DspHost.h"
#include "base/SearchPath.h"

#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <thread>

namespace verdin {
namespace {

constexpr int kFrames = 300000;  // longer than the ring: 128000 frames at 16 bits, 256000 at 8
const std::string kPluginDir = VERDIN_TEST_PLUGIN_DIR;

// The voice remover: L-R in both channels; the stereo widener: L' = (3L-R)/2, R' = (3R-L)/2;
// both limited to the sample range.
using Frame = std::pair<int, int>;
Frame VoiceRemoved(Frame f, int top) { return {std::clamp(f.first - f.second, -top - 1, top), std::clamp(f.first - f.second, -top - 1, top)}; }
Frame Widened(Frame f, int top) {
    const auto limit = [top](double v) { return std::clamp(static_cast<int>(std::nearbyint(v)), -top - 1, top); };
    return {limit((3.0 * f.first - f.second) / 2), limit((3.0 * f.second - f.first) / 2)};
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
    for (const int bits : {16, 8}) {
        SCOPED_TRACE(bits);
        test::TempDir dir, out;
        // A tone of its own in each channel, loud enough to clip at times, so the two
        // modules' results differ; 8-bit samples are unsigned.
        const std::vector<int16_t> tone = test::Sine16(kFrames, 2, 44100, {1000.0, 440.0}, 0.6);
        std::vector<uint8_t> bytes = test::Bytes16(tone);
        if (bits == 8) bytes.assign(tone.size(), 0);
        for (size_t i = 0; bits == 8 && i < tone.size(); ++i) bytes[i] = static_cast<uint8_t>(128 + tone[i] / 256);
        test::WriteWav(dir.file("track.wav"), 2, 44100, bits, bytes);
        const auto frame = [bits](const std::vector<uint8_t>& pcm, size_t f) {
            return bits == 8 ? Frame{pcm[2 * f] - 128, pcm[2 * f + 1] - 128}
                             : Frame{int16_t(pcm[4 * f] | pcm[4 * f + 1] << 8), int16_t(pcm[4 * f + 2] | pcm[4 * f + 3] << 8)};
        };
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
