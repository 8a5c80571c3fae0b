#pragma once
// The ALSA playback devices offered by the options page.
//
// Entry 0 is the "default" PCM (device number -1, the system's choice, shown first like
// a mapper); then every PCM that ALSA's name hints list for playback, each once. The
// device number stored in the settings is the list position minus one.
#include "engine/output/OutputDeviceEntry.h"

#include <optional>
#include <string>
#include <vector>

namespace verdin {

std::vector<OutputDeviceEntry> ListAlsaDevices();

// The PCM name of a device number: -1 "default", n >= 0 the list's entry n + 1; none
// when the number is out of range.
std::optional<std::string> AlsaPcmNameOf(int deviceNumber);

}  // namespace verdin
