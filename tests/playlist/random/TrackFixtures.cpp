#include "TrackFixtures.h"

#include "PcmFixtures.h"
#include "Process.h"

#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace verdin::test {

std::unique_ptr<TrackRecord> MakeTrack(const TrackSpec& spec) {
    auto track = std::make_unique<TrackRecord>(spec.name);
    for (const auto& [id, text] : spec.frames) track->MutableTag().AddText(id, text);
    TrackInfo info = track->Info();
    info.duration = spec.durationMs;
    info.fileSize = spec.fileSize;
    std::strncpy(info.suggestedTitle, spec.suggestedTitle.c_str(), sizeof info.suggestedTitle - 1);
    track->SetInfo(info);
    return track;
}

void WriteToneWav(const std::string& path, int milliseconds) {
    const int frames = 44100 * milliseconds / 1000;
    WriteWav(path, 2, 44100, 16, Bytes16(Sine16(frames, 2, 44100, {440.0, 660.0})));
}

void EncodeMp3(const std::string& path, double seconds, const std::vector<std::string>& lameOptions) {
    const std::string wav = path + ".source.wav";
    WriteToneWav(wav, static_cast<int>(seconds * 1000));
    std::vector<std::string> argv{"lame", "--quiet", "--noreplaygain"};
    argv.insert(argv.end(), lameOptions.begin(), lameOptions.end());
    argv.push_back(wav);
    argv.push_back(path);
    const CommandResult result = RunCommand(argv);
    std::remove(wav.c_str());
    if (result.exitCode != 0) throw std::runtime_error("lame failed for " + path + ": " + result.output);
}

}  // namespace verdin::test
