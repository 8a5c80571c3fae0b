#include "SndfileFixtures.h"

#include "AudioFiles.h"
#include "PcmFixtures.h"

#include <sndfile.h>
#include <stdexcept>

namespace verdin::test {

std::string SndfileModuleTest::Wav16(const std::string& name) {
    if (pcm16_.empty()) pcm16_ = Bytes16(Sine16(kFrames, 2, kRate, {440.0, 660.0}));
    const std::string path = dir_.file(name);
    WriteWav(path, 2, kRate, 16, pcm16_);
    return path;
}

std::string SndfileModuleTest::Convert(const std::vector<std::string>& tool, const std::string& source,
                                       const std::string& name) {
    const std::string target = dir_.file(name);
    std::vector<std::string> argv = tool;
    if (tool.front() == "flac") argv.insert(argv.end(), {"-o", target, source});
    else argv.insert(argv.end(), {source, target});
    RunOrThrow(argv);
    return target;
}

std::string SndfileModuleTest::WriteWithLibsndfile(const std::string& name, int format, int channels, int rate,
                                                   const std::vector<float>& samples) {
    const std::string path = dir_.file(name);
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = format;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (!file) throw std::runtime_error("libsndfile cannot write " + path + ": " + sf_strerror(nullptr));
    sf_command(file, SFC_SET_CLIPPING, nullptr, SF_FALSE);
    const sf_count_t frames = static_cast<sf_count_t>(samples.size()) / channels;
    const sf_count_t written = sf_writef_float(file, samples.data(), frames);
    sf_close(file);
    if (written != frames) throw std::runtime_error("libsndfile wrote only part of " + path);
    return path;
}

}  // namespace verdin::test
