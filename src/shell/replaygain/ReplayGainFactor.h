#pragma once
// The one linear gain a track is played with, from the settings and its tags.
#include "shell/replaygain/ReplayGainSettings.h"
#include "tags/ReplayGainTags.h"

#include <string>

namespace verdin {

// Off: 1. Otherwise the mode's gain (album mode takes the track's when the album's is
// missing) plus the pre-amp, or the untagged gain when the track has no gain for the
// mode. With clipping prevention the factor is cut to 1 / peak when the peak belonging
// to the gain used is known and would go past full scale.
float ReplayGainFactor(const ReplayGainSettings& settings, const ReplayGainTags& tags);

// The same for the track at path, reading its tags only when the mode is on; URLs and
// files without tags get the untagged gain.
float ReplayGainFactorFor(const ReplayGainSettings& settings, const std::string& path);

}  // namespace verdin
