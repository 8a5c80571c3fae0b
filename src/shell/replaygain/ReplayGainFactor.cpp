#include "shell/replaygain/ReplayGainFactor.h"

#include <cmath>

namespace verdin {

float ReplayGainFactor(const ReplayGainSettings& settings, const ReplayGainTags& tags) {
    if (settings.mode == ReplayGainMode::kOff) return 1.0f;
    std::optional<double> gain = tags.trackGain, peak = tags.trackPeak;
    if (settings.mode == ReplayGainMode::kAlbum && tags.albumGain) gain = tags.albumGain, peak = tags.albumPeak;
    const double db = gain ? *gain + settings.preAmpDb : settings.untaggedGainDb;
    double factor = std::pow(10.0, db / 20.0);
    if (settings.preventClipping && peak && *peak > 0 && factor * *peak > 1.0) factor = 1.0 / *peak;
    return static_cast<float>(factor);
}

float ReplayGainFactorFor(const ReplayGainSettings& settings, const std::string& path) {
    if (settings.mode == ReplayGainMode::kOff) return 1.0f;
    const bool url = path.find("://") != std::string::npos;
    return ReplayGainFactor(settings, url ? ReplayGainTags{} : ReadReplayGainTags(path));
}

}  // namespace verdin
