#pragma once
// The loudness values a tagger stored in a track's tags: ReplayGain's
// REPLAYGAIN_TRACK_GAIN / _PEAK and REPLAYGAIN_ALBUM_GAIN / _PEAK (ID3v2 TXXX frames,
// Vorbis comments, APE items), and Opus's R128_TRACK_GAIN / R128_ALBUM_GAIN.
//
// R128 gains are Q7.8 integers relative to -23 LUFS; 5 dB are added to bring them to
// ReplayGain's reference (-18 LUFS), so every gain here means the same. A ReplayGain
// value is preferred where a file has both. A value that does not read as a number is
// left out. Safe to call from several threads at once.
#include <optional>
#include <string>

namespace verdin {

struct ReplayGainTags {
    std::optional<double> trackGain, albumGain;  // dB, to ReplayGain's reference
    std::optional<double> trackPeak, albumPeak;  // linear, 1.0 = full scale
};

// Nothing for a file that cannot be read or carries none of the values.
ReplayGainTags ReadReplayGainTags(const std::string& path);

}  // namespace verdin
