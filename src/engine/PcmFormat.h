#pragma once
// The sample format of a stream and of the device it plays on.
#include <cstdint>

struct TrackInfo;

namespace verdin {

struct PcmFormat {
    uint32_t sampleRate = 1;     // frames per second
    uint32_t channels = 1;       // 1 or 2
    uint32_t bitsPerSample = 8;  // 8 or 16 from input modules; the equalizer also knows 24 and 32

    // (bits / 8) x channels, integer division as everywhere in the engine.
    uint32_t BytesPerFrame() const { return bitsPerSample / 8 * channels; }
    // Whether two tracks can share a device: same rate, channels and bits.
    bool operator==(const PcmFormat&) const = default;
};

// What the sample path carries: 8 or 16 bits, 1 or 2 channels, a rate up to 768 kHz. The
// mixing, the silence trim and the ring's sizes rely on it.
inline bool IsPlayableFormat(const PcmFormat& f) {
    return (f.bitsPerSample == 8 || f.bitsPerSample == 16) && (f.channels == 1 || f.channels == 2) &&
           f.sampleRate > 0 && f.sampleRate <= 768000;
}

// The format a track's information record announces.
PcmFormat FormatOf(const TrackInfo& info);

}  // namespace verdin
