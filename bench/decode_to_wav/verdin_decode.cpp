// verdin-decode: decodes tracks into WAV files through the player's whole stream path
// (input module, equalizer stage, ring buffer rules, the WAV file device), as the player
// does with the output "Decode to .WAV file without playback".
//
//   verdin-decode [-o directory] [-e] [-g dB,dB,...] track...
//     -o  where the files go (default: the working directory); "<n>. <title>.wav"
//     -e  switch the equalizer on (all bands at 0 dB unless -g says otherwise)
//     -g  the 16 band values in dB, 50 Hz band first, separated by commas
#include "engine/input/InputModuleList.h"
#include "engine/stream/Stream.h"
#include "playlist/TrackName.h"
#include "base/Locations.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

// "6,4,2,..." into the 16 band values; false unless there are exactly 16 whole numbers.
bool ParseBandValues(const char* text, EqualizerValues& values) {
    const char* at = text;
    for (int band = 0; band < 16; ++band) {
        char* end = nullptr;
        const long dB = std::strtol(at, &end, 10);
        if (end == at || (band < 15 && *end != ',') || (band == 15 && *end != '\0')) return false;
        values.gain[band] = static_cast<int32_t>(dB);
        at = end + 1;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    std::string directory = verdin::CurrentDirectory();
    bool equalize = false;
    EqualizerValues bands{};
    bool usage = false;
    std::vector<std::string> tracks;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "-o") == 0 && i + 1 < argc) directory = argv[++i];
        else if (std::strcmp(argv[i], "-e") == 0) equalize = true;
        else if (std::strcmp(argv[i], "-g") == 0 && i + 1 < argc) usage |= !ParseBandValues(argv[++i], bands);
        else tracks.emplace_back(argv[i]);
    }
    if (tracks.empty() || usage) {
        std::fprintf(stderr, "usage: verdin-decode [-o directory] [-e] [-g dB,dB,...(16)] track...\n");
        return 2;
    }
    verdin::InputModuleList modules;
    modules.LoadInputModules(verdin::PluginDirectoryFor(verdin::ProgramDirectory()) + ";", nullptr);

    verdin::StreamOptions options;
    options.equalizerEnabled = equalize;
    options.equalizerValues = bands;
    int failures = 0;
    for (size_t i = 0; i < tracks.size(); ++i) {
        verdin::Stream stream(modules, options);
        verdin::OutputTarget target;
        target.kind = verdin::OutputTarget::kWavFile;
        target.decodeDirectory = directory;
        target.trackNumber = static_cast<int32_t>(i + 1);
        target.entryCount = static_cast<int32_t>(tracks.size());
        target.title = verdin::SplitTrackName(tracks[i]).body;
        if (!stream.OpenStream(tracks[i], nullptr) || !stream.StartStream(target)) {
            std::fprintf(stderr, "Verdin: %s\n", stream.ErrorText().c_str());
            ++failures;
            continue;
        }
        stream.WaitUntilFinished();
        if (stream.Failed()) {
            std::fprintf(stderr, "Verdin: %s\n", stream.ErrorText().c_str());
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
