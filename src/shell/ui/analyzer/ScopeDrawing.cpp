#include "ScopeDrawing.h"

#include <algorithm>

namespace verdin {

void PaintAnalyzer(ScopePixels& pixels, const ScopeColours& colours, AnalyzerHistory& history,
                   const SpectrumSource& spectrum) {
    pixels.fill(colours.background);
    if (!spectrum) return;
    for (int channel = 0; channel < 2; ++channel) {
        const int offset = channel == 0 ? 0 : kRightChannelOffset;
        for (int b = 0; b < kScopeBars; ++b) {
            int32_t& bar = history.bar[static_cast<size_t>(channel)][static_cast<size_t>(b)];
            int32_t& peak = history.peak[static_cast<size_t>(channel)][static_cast<size_t>(b)];
            int32_t& age = history.age[static_cast<size_t>(channel)][static_cast<size_t>(b)];
            int32_t v = spectrum(channel, 6 * b) >> 4;
            // The bar falls by a row a paint unless the sound rises above it.
            --bar;
            if (v <= bar) v = bar;
            else bar = v;
            if (age > 25) peak -= (age - 25) >> 3;
            ++age;
            if (v > peak) {
                peak = v;
                age = 0;
            }
            v = std::min(v, 15);
            const int x = offset + b;
            for (int j = 0; j < v; ++j) PixelAt(pixels, x, j) = colours.ramp[static_cast<size_t>(1 + 6 * j)];
            // A peak that has sunk below the bottom line is no longer seen.
            if (peak >= 0) PixelAt(pixels, x, std::min(peak, 15)) = colours.ramp[static_cast<size_t>(53 + std::max(v, 0))];
        }
    }
}

void PaintOscilloscope(ScopePixels& pixels, const ScopeColours& colours, int sampleRate,
                       const WaveformSource& waveform) {
    pixels.fill(colours.background);
    if (!waveform) return;
    for (int channel = 0; channel < 2; ++channel) {
        const int offset = channel == 0 ? 0 : kRightChannelOffset;
        for (int x = 0; x < kScopeBars; ++x) {
            const int index = static_cast<int>(static_cast<int64_t>(sampleRate) * x * 30 / 96000);
            const int32_t v = std::clamp((waveform(channel, index) >> 21) + 1024, 0, 1920);
            const int row = v >> 7;
            const int fraction = v % 128;
            PixelAt(pixels, offset + x, row) = colours.ramp[static_cast<size_t>(fraction)];
            if (fraction != 0) PixelAt(pixels, offset + x, row + 1) = colours.ramp[static_cast<size_t>(128 - fraction)];
        }
    }
}

ScopeCadence::Tick ScopeCadence::Advance(bool analyzerShown) {
    refresh_ += 10;
    spectrum_ += 10;
    Tick tick;
    if (refresh_ < 30) return tick;
    refresh_ -= 30;
    tick.redraw = true;
    if (analyzerShown && spectrum_ >= 30) {
        tick.computeSpectrum = true;
        spectrum_ = 0;
    }
    return tick;
}

}  // namespace verdin
