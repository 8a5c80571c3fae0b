// The bundled DSP modules change test signals the way they should: the widener widens
// the side signal, the voice remover cancels what is centred and keeps what is panned,
// the compressor turns a loud tone down and leaves a quiet one alone.
#include "plugins/dsp/DspHost.h"
#include "base/SearchPath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numbers>
#include <optional>

namespace verdin {
namespace {

constexpr int kRate = 44100;
constexpr uint32_t kBlockFrames = 1152;

// A test signal: one float per sample in [-1, 1), interleaved.
using Signal = std::vector<float>;

Signal Tone(double frequency, double amplitude, int frames) {
    Signal out(frames);
    for (int i = 0; i < frames; ++i)
        out[i] = static_cast<float>(amplitude * std::sin(2 * std::numbers::pi * frequency * i / kRate));
    return out;
}

Signal Add(const Signal& a, const Signal& b) {
    Signal out(a.size());
    for (size_t i = 0; i < a.size(); ++i) out[i] = a[i] + b[i];
    return out;
}

Signal Scale(const Signal& a, float factor) {
    Signal out(a.size());
    for (size_t i = 0; i < a.size(); ++i) out[i] = a[i] * factor;
    return out;
}

Signal Interleave(const Signal& left, const Signal& right) {
    Signal out(2 * left.size());
    for (size_t i = 0; i < left.size(); ++i) {
        out[2 * i] = left[i];
        out[2 * i + 1] = right[i];
    }
    return out;
}

Signal Channel(const Signal& stereo, int channel) {
    Signal out(stereo.size() / 2);
    for (size_t i = 0; i < out.size(); ++i) out[i] = stereo[2 * i + channel];
    return out;
}

// Root mean square of samples [from, to) (to 0: the end).
double Rms(const Signal& s, size_t from = 0, size_t to = 0) {
    if (to == 0) to = s.size();
    double sum = 0;
    for (size_t i = from; i < to; ++i) sum += double(s[i]) * s[i];
    return std::sqrt(sum / double(to - from));
}

// PCM bytes of the signal: signed 16-bit or unsigned 8-bit, as decoders deliver them.
std::vector<uint8_t> ToPcm(const Signal& s, int bits) {
    std::vector<uint8_t> out(s.size() * bits / 8);
    for (size_t i = 0; i < s.size(); ++i) {
        if (bits == 16) {
            const auto v = static_cast<int16_t>(std::lround(std::clamp(s[i] * 32768.0f, -32768.0f, 32767.0f)));
            std::memcpy(&out[2 * i], &v, 2);
        } else {
            out[i] = static_cast<uint8_t>(std::lround(std::clamp(s[i] * 128.0f + 128.0f, 0.0f, 255.0f)));
        }
    }
    return out;
}

Signal FromPcm(const std::vector<uint8_t>& pcm, int bits) {
    Signal out(pcm.size() * 8 / bits);
    for (size_t i = 0; i < out.size(); ++i) {
        if (bits == 16) {
            int16_t v;
            std::memcpy(&v, &pcm[2 * i], 2);
            out[i] = v / 32768.0f;
        } else {
            out[i] = (pcm[i] - 128) / 128.0f;
        }
    }
    return out;
}

class BundledDspTest : public ::testing::Test {
protected:
    void SetUp() override {
        libraries.emplace(nullptr, VERDIN_TEST_PLUGIN_DIR ";");
        path = JoinPath(VERDIN_TEST_PLUGIN_DIR, "DSP_Verdin.so");
        ASSERT_NE(libraries->LibraryByPath(path), nullptr) << "DSP_Verdin.so not found by enumeration";
    }

    // Makes the module with this description the only active one.
    void Activate(const std::string& description) {
        const auto& modules = libraries->LibraryByPath(path)->moduleDescriptions;
        const auto found = std::find(modules.begin(), modules.end(), description);
        ASSERT_NE(found, modules.end()) << description;
        host.SetActiveList(*libraries, std::vector<DspModuleRef>{{path, static_cast<int32_t>(found - modules.begin())}});
        ASSERT_NE(host.ActiveList().at(0).instance, nullptr);
    }

    // Runs the PCM through the host in stream-sized blocks (each with the room a stream
    // gives) and returns what comes out.
    std::vector<uint8_t> Run(const std::vector<uint8_t>& pcm, int bits, int channels) {
        const size_t frameBytes = size_t(bits / 8) * channels;
        std::vector<uint8_t> out;
        std::vector<uint8_t> work(2 * kBlockFrames * frameBytes);
        for (size_t at = 0; at < pcm.size(); at += kBlockFrames * frameBytes) {
            const size_t bytes = std::min(pcm.size() - at, kBlockFrames * frameBytes);
            std::memcpy(work.data(), &pcm[at], bytes);
            const uint32_t frames = DspHost::Process(host.HookContext(), work.data(), uint32_t(bytes / frameBytes),
                                                     bits, channels, kRate);
            EXPECT_EQ(frames, bytes / frameBytes);
            out.insert(out.end(), work.begin(), work.begin() + frames * frameBytes);
        }
        return out;
    }

    Signal RunSignal(const Signal& s, int bits, int channels) { return FromPcm(Run(ToPcm(s, bits), bits, channels), bits); }

    std::optional<DspLibraryList> libraries;
    std::string path;
    DspHost host;
};

// Tolerances per sample width: 8-bit samples carry about 0.4 % of rounding noise.
struct Width {
    int bits;
    double tolerance;
};
const Width kWidths[] = {{16, 0.002}, {8, 0.02}};

TEST_F(BundledDspTest, WidenerDoublesTheSideAndKeepsTheMid) {
    Activate("Stereo widener");
    const int frames = kRate / 2;
    const Signal mid = Tone(440, 0.3, frames);
    const Signal side = Tone(1000, 0.1, frames);
    for (const Width& w : kWidths) {
        SCOPED_TRACE(w.bits);
        const Signal out = RunSignal(Interleave(Add(mid, side), Add(mid, Scale(side, -1))), w.bits, 2);
        const Signal left = Channel(out, 0), right = Channel(out, 1);
        const Signal outMid = Scale(Add(left, right), 0.5f), outSide = Scale(Add(left, Scale(right, -1)), 0.5f);
        EXPECT_NEAR(Rms(outSide) / Rms(side), 2.0, 20 * w.tolerance);
        EXPECT_NEAR(Rms(Add(outSide, Scale(side, -2))), 0.0, w.tolerance);  // the same side, twice as loud
        EXPECT_NEAR(Rms(Add(outMid, Scale(mid, -1))), 0.0, w.tolerance);
    }
}

TEST_F(BundledDspTest, VoiceRemoverCancelsTheCentreAndKeepsWhatIsPanned) {
    Activate("Voice remover (centre cancel)");
    const int frames = kRate / 2;
    const Signal voice = Tone(440, 0.4, frames);
    const Signal guitar = Tone(1000, 0.3, frames);
    const Signal silence(frames, 0.0f);
    for (const Width& w : kWidths) {
        SCOPED_TRACE(w.bits);
        // A centred tone alone disappears entirely.
        EXPECT_LT(Rms(RunSignal(Interleave(voice, voice), w.bits, 2)), 1e-6);
        // A tone panned hard left stays, at its level, in both channels.
        const Signal panned = RunSignal(Interleave(guitar, silence), w.bits, 2);
        EXPECT_NEAR(Rms(Channel(panned, 0)) / Rms(guitar), 1.0, 10 * w.tolerance);
        EXPECT_NEAR(Rms(Channel(panned, 1)) / Rms(guitar), 1.0, 10 * w.tolerance);
        // Together: the centred voice goes, the panned guitar remains.
        const Signal mixed = RunSignal(Interleave(Add(voice, guitar), voice), w.bits, 2);
        EXPECT_NEAR(Rms(Add(Channel(mixed, 0), Scale(guitar, -1))), 0.0, w.tolerance);
    }
}

TEST_F(BundledDspTest, WidenerAndVoiceRemoverLeaveMonoAlone) {
    const std::vector<uint8_t> mono16 = ToPcm(Tone(440, 0.5, 4000), 16);
    const std::vector<uint8_t> mono8 = ToPcm(Tone(440, 0.5, 4000), 8);
    for (const char* module : {"Stereo widener", "Voice remover (centre cancel)"}) {
        SCOPED_TRACE(module);
        Activate(module);
        EXPECT_EQ(Run(mono16, 16, 1), mono16);
        EXPECT_EQ(Run(mono8, 8, 1), mono8);
    }
}

TEST_F(BundledDspTest, CompressorTurnsALoudToneDownAndLeavesAQuietOneAlone) {
    for (const Width& w : kWidths) {
        SCOPED_TRACE(w.bits);
        for (int channels : {1, 2}) {
            SCOPED_TRACE(channels);
            Activate("Compressor");
            const Signal loud = Tone(1000, 0.7, kRate);
            const Signal in = channels == 2 ? Interleave(loud, Scale(loud, 0.5f)) : loud;
            const Signal out = RunSignal(in, w.bits, channels);
            // After the attack: 4:1 above -20 dBFS brings a -3 dBFS peak to about
            // -15.9 dBFS, a gain of about 0.23 (both channels alike, so the balance stays).
            const size_t settled = in.size() / 5;
            const double gain = Rms(out, settled) / Rms(in, settled);
            EXPECT_GT(gain, 0.18);
            EXPECT_LT(gain, 0.30);
            if (channels == 2) {
                EXPECT_NEAR(Rms(Channel(out, 1), settled / 2) / Rms(Channel(out, 0), settled / 2), 0.5,
                            10 * w.tolerance);
            }
            host.ClearActiveList();  // the next Activate starts the follower afresh

            Activate("Compressor");
            const std::vector<uint8_t> quiet = ToPcm(channels == 2 ? Interleave(Tone(1000, 0.03, kRate / 2),
                                                                                 Tone(440, 0.05, kRate / 2))
                                                                   : Tone(1000, 0.03, kRate / 2),
                                                     w.bits);
            EXPECT_EQ(Run(quiet, w.bits, channels), quiet);
            host.ClearActiveList();
        }
    }
}

TEST_F(BundledDspTest, CompressorRecoversAfterALoudPassage) {
    Activate("Compressor");
    const Signal loud = Tone(1000, 0.8, kRate / 2);
    const Signal quiet = Tone(1000, 0.05, kRate);
    Signal in = loud;
    in.insert(in.end(), quiet.begin(), quiet.end());
    const Signal out = RunSignal(in, 16, 1);
    // Right after the loud part the quiet one is still held down...
    const size_t quietStart = loud.size();
    EXPECT_LT(Rms(out, quietStart, quietStart + kRate / 50) / Rms(in, quietStart, quietStart + kRate / 50), 0.5);
    // ... and by its second half it is back at its own level.
    const size_t tail = quietStart + quiet.size() / 2;
    EXPECT_NEAR(Rms(out, tail) / Rms(in, tail), 1.0, 0.01);
}

}  // namespace
}  // namespace verdin
