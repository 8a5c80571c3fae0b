#pragma once
// From the 16 band values (dB) to the equalizer's 512 per-bin gains.
//
// Each band has a bin: its centre frequency in 512ths of the sample rate, raised where
// needed so that the bins strictly increase from at least 1. The dB curve runs linearly
// between consecutive bins, band j's value sitting at the lower edge of its segment (the
// bin of band j-1, or bin 0 for band 0): one band centre below its own, on purpose. Above
// the last band's bin the last gain holds up to bin 255; entries 256..511 mirror 0..255
// as entry 511-k = entry k.
#include <verdin/input.h>

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace verdin {

inline constexpr int kEqualizerBands = 16;
inline constexpr int kEqualizerGainCount = 512;

// Centre frequencies (Hz) the design uses, 50 Hz band first.
inline constexpr std::array<uint32_t, kEqualizerBands> kEqualizerBandCentres = {
    50, 130, 220, 300, 430, 600, 820, 1160, 1680, 2370, 3320, 4690, 6680, 9430, 13300, 18800};

using EqualizerBandBins = std::array<uint32_t, kEqualizerBands>;

// The bins of the bands at this sample rate; none for a rate of 0.
std::optional<EqualizerBandBins> ComputeEqualizerBandBins(uint32_t sampleRate);

// Fills all 512 gains (linear factors); false, leaving gains untouched, for a rate of 0.
bool ComputeEqualizerGains(const EqualizerValues& values, uint32_t sampleRate,
                           std::span<double, kEqualizerGainCount> gains);

}  // namespace verdin
