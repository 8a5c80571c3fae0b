#pragma once
// What one render tick hands the visualization modules: the current track's output
// format and the analyzer's values. The host does not know the engine; the shell fills
// this from the current stream.
#include <cstdint>
#include <functional>

namespace verdin {

struct VisFrame {
    int32_t sampleRate = 0;  // the current track's output format
    int32_t channels = 0;
    // Brings the analyzer's values up to date; called once per tick that renders
    // anything, before the values are read.
    std::function<void()> refresh;
    // Channel 0..1, index 0..575. The spectrum value's low byte is the module's
    // spectrum byte; the waveform value's top 8 bits (shifted right by 24) its signed
    // waveform byte.
    std::function<int32_t(int channel, int index)> spectrum;
    std::function<int32_t(int channel, int index)> waveform;
};

}  // namespace verdin
