#pragma once
// Drawing the frequency analyzer and the oscilloscope into their 200 x 16 buffers of 32-bit
// pixels (bottom-up: row 0 is the bottom line). Toolkit-free: the windows copy the buffer
// to the screen in one go.
//
// Analyzer: for each channel (x offset 0 and 104) 96 one-pixel bars from spectrum bins
// 0, 6, ..., 570, each value shifted right by 4 (0..15). A bar falls by one row per paint
// unless the new value is higher; its peak mark stays for 25 paints, then sinks by
// (age - 25) >> 3 rows per paint, faster the longer it has stayed. Bar row j takes ramp
// entry 1 + 6j; the peak mark ramp entry 53 + the bar's drawn height.
//
// Oscilloscope: for each channel 96 columns spanning the first 30 ms of the waveform
// (sample index = rate x column x 30 / 96000); v = (sample >> 21) + 1024 clamped to
// 0..1920; the row v >> 7 takes ramp entry v mod 128, and the row above it, when that is
// not 0, entry 128 - (v mod 128): an anti-aliased trace across two rows.
#include <array>
#include <cstdint>
#include <functional>

namespace verdin {

inline constexpr int kScopeWidth = 200;
inline constexpr int kScopeHeight = 16;
inline constexpr int kScopeBars = 96;
inline constexpr int kRightChannelOffset = 104;

using ScopePixels = std::array<uint32_t, kScopeWidth * kScopeHeight>;

inline uint32_t& PixelAt(ScopePixels& pixels, int x, int row) { return pixels[static_cast<size_t>(row * kScopeWidth + x)]; }

// The shared colours: 128 ramp entries and the background.
struct ScopeColours {
    std::array<uint32_t, 128> ramp{};
    uint32_t background = 0;
};

// The falling bars and peaks of both channels.
struct AnalyzerHistory {
    std::array<std::array<int32_t, kScopeBars>, 2> bar{};
    std::array<std::array<int32_t, kScopeBars>, 2> peak{};
    std::array<std::array<int32_t, kScopeBars>, 2> age{};
    void Clear() { *this = AnalyzerHistory{}; }
};

// Spectrum value 0..255 of a channel at a bin; waveform sample of a channel at an index.
using SpectrumSource = std::function<int32_t(int channel, int bin)>;
using WaveformSource = std::function<int32_t(int channel, int index)>;

// spectrum null: no track, an empty picture (the history is left alone).
void PaintAnalyzer(ScopePixels& pixels, const ScopeColours& colours, AnalyzerHistory& history,
                   const SpectrumSource& spectrum);
// waveform null: no track, an empty picture.
void PaintOscilloscope(ScopePixels& pixels, const ScopeColours& colours, int sampleRate,
                       const WaveformSource& waveform);

// The 10 ms display tick's cadence: both windows are redrawn every third tick, and the
// spectrum is computed again when 30 ms have passed since the last one.
class ScopeCadence {
public:
    struct Tick {
        bool redraw = false;
        bool computeSpectrum = false;
    };
    // A track starts: the first redraw computes a spectrum.
    void TrackStarted() { spectrum_ = 30; }
    // analyzerShown: whether the spectrum would be wanted on a redraw.
    Tick Advance(bool analyzerShown);

private:
    int32_t refresh_ = 0;
    int32_t spectrum_ = 30;
};

}  // namespace verdin
