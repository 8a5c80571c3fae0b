#pragma once
// The ReplayGain settings in "ReplayGain.ini" in the user directory, an INI group of
// their own beside (not inside) the settings record's file:
//   [ReplayGain]
//   Mode=off|track|album
//   PreAmp=<dB>  UntaggedGain=<dB>  (-20 to 20)
//   PreventClipping=true|false
// A missing file or key gives the default. A file that cannot be parsed, or a value
// that is not one of these, gives the default for what it spoils and a message naming
// it; reading never fails otherwise.
#include "shell/replaygain/ReplayGainSettings.h"

#include <string>

namespace verdin {

struct ReplayGainLoad {
    ReplayGainSettings settings;
    std::string problem;  // empty when the file read cleanly (or is not there)
};

std::string ReplayGainFilePath(const std::string& userDirectory);

ReplayGainLoad LoadReplayGainSettings(const std::string& userDirectory);
// Writes the whole group; false when the file could not be written.
bool SaveReplayGainSettings(const ReplayGainSettings& settings, const std::string& userDirectory);

}  // namespace verdin
