#pragma once
// The equalizer values the engine and the decoders receive: value[i] = band[i] + pre-amp,
// plus the loudness curve when "Loudness" is ticked. The equalizer dialog and the preset
// links both form the record here, so the rule lives in one place.
#include <verdin/input.h>

#include <array>
#include <cstdint>

namespace verdin {

struct Settings;

// The loudness curve in dB, 50 Hz band first.
inline constexpr std::array<int32_t, 16> kLoudnessCurve = {4, 4, 4, 2, -1, -3, -3, -3,
                                                           -3, -3, -3, -2, 0, 3, 3, 3};

EqualizerValues MakeEqualizerRecord(const std::array<int32_t, 16>& bands, int32_t preAmp, bool loudness);
// The record of the current settings ("equalizerValues", "preAmp", "loudness").
EqualizerValues EqualizerRecordOf(const Settings& settings);

}  // namespace verdin
