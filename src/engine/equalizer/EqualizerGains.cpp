#include "engine/equalizer/EqualizerGains.h"

#include <cmath>

namespace verdin {

std::optional<EqualizerBandBins> ComputeEqualizerBandBins(uint32_t sampleRate) {
    if (sampleRate == 0) return std::nullopt;
    EqualizerBandBins bins{};
    uint32_t below = 0;  // the bin of the band below; 0 below band 0
    for (int band = 0; band < kEqualizerBands; ++band) {
        uint32_t bin = (kEqualizerBandCentres[band] << 9) / sampleRate;
        if (bin <= below) bin = below + 1;
        bins[band] = below = bin;
    }
    return bins;
}

bool ComputeEqualizerGains(const EqualizerValues& values, uint32_t sampleRate,
                           std::span<double, kEqualizerGainCount> gains) {
    const std::optional<EqualizerBandBins> bins = ComputeEqualizerBandBins(sampleRate);
    if (!bins) return false;
    constexpr uint32_t kComputedBins = kEqualizerGainCount / 2;  // 0..255; the rest mirrors them

    uint32_t k = 0;
    for (int segment = 0; segment < kEqualizerBands && k < kComputedBins; ++segment) {
        const uint32_t lower = segment == 0 ? 0 : (*bins)[segment - 1];
        const uint32_t upper = (*bins)[segment];
        // The band values are whole dB but the curve between them is not: the
        // interpolation is done in doubles (and in 64 bits, so no difference overflows).
        const double from = values.gain[segment];
        const double to = values.gain[segment + 1 < kEqualizerBands ? segment + 1 : segment];
        for (; k < upper && k < kComputedBins; ++k) {
            const double dB = from + (to - from) * (k - lower) / (upper - lower);
            gains[k] = std::pow(10.0, dB * 0.05);
        }
    }
    // Past the last band's bin (k >= 16 here, so k - 1 exists) the last gain holds.
    for (; k < kComputedBins; ++k) gains[k] = gains[k - 1];
    for (k = 0; k < kComputedBins; ++k) gains[kEqualizerGainCount - 1 - k] = gains[k];
    return true;
}

}  // namespace verdin
