// The bundled DSP modules on test signals, through the host in stream-sized blocks.
#include "plugins/dsp/DspHost.h"
#include "base/SearchPath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace verdin {
namespace {

constexpr int kRate = 44100;
constexpr size_t kBlockFrames = 1152;

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

// Root mean square of every step-th sample from first on, at most count of them.
double Rms(const std::vector<uint8_t>& pcm, int bits, size_t first, size_t step = 1, size_t count = SIZE_MAX) {
    double sum = 0;
    size_t n = 0;
    for (size_t i = first; i < pcm.size() * 8 / bits && n < count; i += step, ++n) sum += std::pow(Sample(pcm, bits, i), 2);
    return std::sqrt(sum / double(n));
}

class BundledDspTest : public ::testing::Test {
protected:
    // Makes the module with this description the only active one (Init starts it afresh).
    void Activate(const std::string& description) {
        host.ClearActiveList();
        const auto& modules = libraries.LibraryByPath(path)->moduleDescriptions;  // found by enumeration
        const auto found = std::find(modules.begin(), modules.end(), description);
        ASSERT_NE(found, modules.end()) << description;
        host.SetActiveList(libraries, std::vector<DspModuleRef>{{path, int32_t(found - modules.begin())}});
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

    DspLibraryList libraries{nullptr, VERDIN_TEST_PLUGIN_DIR ";"};
    std::string path = JoinPath(VERDIN_TEST_PLUGIN_DIR, "DSP_Verdin.so");
    DspHost host;
};

// Their formulas on every stereo frame are checked through a playing stream at 8 and 16
// bits (tests/plugins/dsp_stream).
TEST_F(BundledDspTest, WidenerAndVoiceRemoverLeaveMonoAlone) {
    for (const char* module : {"Stereo widener", "Voice remover (centre cancel)"}) {
        Activate(module);
        for (int bits : {8, 16}) EXPECT_EQ(Run(Tones(bits, 4000, {{{440, 0.5}}}), bits, 1), Tones(bits, 4000, {{{440, 0.5}}})) << module;
    }
}

// 4:1 above -20 dBFS brings a -3 dBFS peak to about -15.9 dBFS after the attack, a gain of
// about 0.23, on both channels alike (the balance stays); a quiet tone passes untouched,
// and one after a loud passage is held down at first, then back at its own level.
TEST_F(BundledDspTest, CompressorTurnsALoudToneDownLeavesAQuietOneAloneAndRecovers) {
    for (int bits : {16, 8})
        for (int channels : {1, 2}) {
            SCOPED_TRACE(std::to_string(bits) + " bit, " + std::to_string(channels) + " channels");
            Activate("Compressor");
            const auto loud = channels == 2 ? Tones(bits, kRate, {{{1000, 0.7}}, {{1000, 0.35}}}) : Tones(bits, kRate, {{{1000, 0.7}}});
            const auto out = Run(loud, bits, channels);
            const size_t settled = loud.size() * 8 / bits / 5;
            EXPECT_NEAR(Rms(out, bits, settled) / Rms(loud, bits, settled), 0.24, 0.06);
            if (channels == 2) {
                EXPECT_NEAR(Rms(out, bits, settled + 1, 2) / Rms(out, bits, settled, 2), 0.5, bits == 16 ? 0.02 : 0.2);
            }
            Activate("Compressor");
            const auto quiet = channels == 2 ? Tones(bits, kRate / 2, {{{1000, 0.03}}, {{440, 0.05}}}) : Tones(bits, kRate / 2, {{{1000, 0.03}}});
            EXPECT_EQ(Run(quiet, bits, channels), quiet);
        }
    Activate("Compressor");
    auto in = Tones(16, kRate / 2, {{{1000, 0.8}}});
    const size_t quietStart = in.size() / 2, tail = quietStart + kRate / 2;
    const auto quiet = Tones(16, kRate, {{{1000, 0.05}}});
    in.insert(in.end(), quiet.begin(), quiet.end());
    const auto out = Run(in, 16, 1);
    EXPECT_LT(Rms(out, 16, quietStart, 1, kRate / 50) / Rms(in, 16, quietStart, 1, kRate / 50), 0.5);
    EXPECT_NEAR(Rms(out, 16, tail) / Rms(in, 16, tail), 1.0, 0.01);
}

}  // namespace
}  // namespace verdin
