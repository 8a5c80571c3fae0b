#pragma once
// What the listener hears now, for the analyzer, the oscilloscope and visualization
// plug-ins: spectrum and waveform tables read from a stream's ring buffer at the output
// device's play position.
//
// Per channel 576 spectrum values in 0..255 (GetAnalyzerValue) and 576 waveform values
// (GetWaveformValue), each a sample left-aligned to a signed 32-bit value: the
// oscilloscope takes value >> 21, a visualization plug-in value >> 24 (a signed byte).
// A mono stream fills both channels with the same values.
//
// The stream owns one snapshot, takes it only while its output has started and clears
// it otherwise, so that every value reads 0 before the first take.
//
// Threads: everything here runs on the user-interface thread. The ring is read with
// ordinary loads while the stream thread may be writing other parts of it; the ring's
// owner keeps the 576 frames after the play position out of the stream's way, or the
// display shows a block that is being overwritten, which it tolerates.
#include "engine/PcmFormat.h"
#include "engine/analyzer/Spectrum.h"

#include <array>
#include <cstdint>
#include <span>

namespace verdin {

inline constexpr int kAnalyzerChannels = 2;

class AnalyzerSnapshot {
public:
    // The spectrum of the 512 frames at playPosition (a byte offset; reading wraps at the
    // ring's end). False, with every spectrum value 0, when the ring is empty or the
    // format is not 8, 16, 24 or 32 bits with 1 or 2 channels.
    bool TakeSpectrum(std::span<const uint8_t> ring, uint32_t playPosition, const PcmFormat& format);
    // The 576 frames at playPosition as waveform values; false as above, values then 0.
    bool TakeWaveform(std::span<const uint8_t> ring, uint32_t playPosition, const PcmFormat& format);
    // Both of the above.
    bool Take(std::span<const uint8_t> ring, uint32_t playPosition, const PcmFormat& format);
    // Every value back to 0.
    void Clear();

    // Channel 0 or 1, index 0..575; 0 outside that range.
    int32_t GetAnalyzerValue(uint32_t channel, uint32_t index) const;
    // Channel 0 or 1, index 0..WaveformLength()-1; 0 outside that range. The waveform holds
    // 30 ms of sound (the span the oscilloscope draws: at 44.1 kHz it reads up to sample
    // 1309), and never fewer than the 576 values visualization plug-ins take.
    int32_t GetWaveformValue(uint32_t channel, uint32_t index) const;
    uint32_t WaveformLength() const { return waveformLength_; }
    static uint32_t WaveformLengthFor(uint32_t sampleRate);
    static constexpr uint32_t kMaxWaveformValues = 192000 * 30 / 1000 + 1;

private:
    using Table = std::array<std::array<int32_t, kAnalyzerValues>, kAnalyzerChannels>;
    Table spectrum_{};
    std::array<std::array<int32_t, kMaxWaveformValues>, kAnalyzerChannels> waveform_{};
    uint32_t waveformLength_ = kAnalyzerValues;
    std::array<double, kHartleySize> work_{};
    std::array<int32_t, kSpectrumBins> bins_{};
};

}  // namespace verdin
