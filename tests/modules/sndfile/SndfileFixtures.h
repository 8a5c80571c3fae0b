#pragma once
// Sound files for the WAV_Verdin tests, made per test in a private directory: canonical
// WAV files written directly, the other formats encoded from them with flac and sox, and
// what those tools cannot write (Opus, float WAV) with libsndfile's own encoders.
#include "PluginUnderTest.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace verdin::test {

class SndfileModuleTest : public ::testing::Test {
protected:
    // 0.5 s of 16-bit stereo at 44.1 kHz: the PCM every lossless fixture holds.
    static constexpr int kFrames = 22050;
    static constexpr int kRate = 44100;

    // The canonical 16-bit stereo WAV file holding Pcm16().
    std::string Wav16(const std::string& name);
    const std::vector<uint8_t>& Pcm16() const { return pcm16_; }

    // Runs a converter (flac, sox) from source to a new file name in the directory.
    std::string Convert(const std::vector<std::string>& tool, const std::string& source, const std::string& name);
    // Floats written with libsndfile as a 32-bit float WAV or as Opus.
    std::string WriteWithLibsndfile(const std::string& name, int format, int channels, int rate,
                                    const std::vector<float>& samples);

    TempDir dir_;
    PluginUnderTest plugin_{"WAV_Verdin.so"};

private:
    std::vector<uint8_t> pcm16_;
};

}  // namespace verdin::test
