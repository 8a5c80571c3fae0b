#pragma once
// How the player evens out the loudness of tracks from their ReplayGain tags. Kept apart
// from the settings record, in a file of its own (ReplayGainFile.h); off by default.
namespace verdin {

enum class ReplayGainMode { kOff = 0, kTrack = 1, kAlbum = 2 };  // album falls back to track

struct ReplayGainSettings {
    static constexpr double kMinDb = -20.0, kMaxDb = 20.0;  // for both gains below

    ReplayGainMode mode = ReplayGainMode::kOff;
    double preAmpDb = 0.0;         // added to the tagged gain
    double untaggedGainDb = 0.0;   // for tracks without a gain for the mode
    bool preventClipping = true;   // the gain is cut so that the tagged peak stays at full scale

    bool operator==(const ReplayGainSettings&) const = default;
};

}  // namespace verdin
