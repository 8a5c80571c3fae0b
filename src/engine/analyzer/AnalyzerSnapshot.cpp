#include "engine/analyzer/AnalyzerSnapshot.h"

#include <algorithm>
#include <optional>

namespace verdin {
namespace {

// Frames of a ring buffer from a byte offset on, wrapping at the ring's end (byte by
// byte, so even a ring that is not a whole number of frames reads safely). The snapshot
// spans far less than the ring, so an offset is brought back into it by one subtraction;
// only a sample that straddles the end is read with a division per byte.
struct RingFrames {
    std::span<const uint8_t> ring;
    uint64_t start;
    uint32_t frameBytes;
    uint32_t bytesPerSample;

    // The sample left-aligned in 32 bits: 16-bit s gives s << 16, 24-bit s << 8, and
    // unsigned 8-bit u gives (u - 128) << 24.
    int32_t LeftAligned(uint32_t frame, uint32_t channel) const {
        uint64_t offset = start + uint64_t{frame} * frameBytes + channel * bytesPerSample;
        if (offset >= ring.size()) offset %= ring.size();
        uint32_t bits = 0;
        if (offset + bytesPerSample <= ring.size()) {
            for (uint32_t b = 0; b < bytesPerSample; ++b) bits |= uint32_t{ring[offset + b]} << (8 * b);
        } else {
            for (uint32_t b = 0; b < bytesPerSample; ++b) bits |= uint32_t{ring[(offset + b) % ring.size()]} << (8 * b);
        }
        bits <<= 32 - 8 * bytesPerSample;
        if (bytesPerSample == 1) bits ^= 0x80000000u;  // unsigned to signed
        return static_cast<int32_t>(bits);
    }
};

std::optional<RingFrames> FramesAt(std::span<const uint8_t> ring, uint32_t playPosition, const PcmFormat& format) {
    const uint32_t bits = format.bitsPerSample;
    const bool known = (bits == 8 || bits == 16 || bits == 24 || bits == 32) &&
                       (format.channels == 1 || format.channels == 2);
    if (!known || ring.empty()) return std::nullopt;
    return RingFrames{ring, playPosition % ring.size(), format.BytesPerFrame(), bits / 8};
}

}  // namespace

bool AnalyzerSnapshot::TakeSpectrum(std::span<const uint8_t> ring, uint32_t playPosition, const PcmFormat& format) {
    const std::optional<RingFrames> frames = FramesAt(ring, playPosition, format);
    if (!frames) {
        for (auto& channel : spectrum_) channel.fill(0);
        return false;
    }
    for (uint32_t c = 0; c < format.channels; ++c) {
        // Scaled to about +-64: the top 16 bits / 512, which for 8-bit data is
        // (byte + 128, taken as a signed byte) x 0.5 and for 24 and 32 bits uses only the
        // two most significant bytes.
        for (int i = 0; i < kHartleySize; ++i) work_[i] = (frames->LeftAligned(i, c) >> 16) / 512.0;
        ComputeSpectrumBins(work_, bins_);
        StretchSpectrum(bins_, spectrum_[c]);
    }
    if (format.channels == 1) spectrum_[1] = spectrum_[0];
    return true;
}

bool AnalyzerSnapshot::TakeWaveform(std::span<const uint8_t> ring, uint32_t playPosition, const PcmFormat& format) {
    const std::optional<RingFrames> frames = FramesAt(ring, playPosition, format);
    if (!frames) {
        for (auto& channel : waveform_) channel.fill(0);
        return false;
    }
    waveformLength_ = WaveformLengthFor(format.sampleRate);
    for (uint32_t c = 0; c < format.channels; ++c)
        for (uint32_t i = 0; i < waveformLength_; ++i) waveform_[c][i] = frames->LeftAligned(i, c);
    if (format.channels == 1) waveform_[1] = waveform_[0];
    return true;
}

uint32_t AnalyzerSnapshot::WaveformLengthFor(uint32_t sampleRate) {
    const uint64_t span = uint64_t{sampleRate} * 30 / 1000 + 1;
    return static_cast<uint32_t>(std::clamp<uint64_t>(span, kAnalyzerValues, kMaxWaveformValues));
}

bool AnalyzerSnapshot::Take(std::span<const uint8_t> ring, uint32_t playPosition, const PcmFormat& format) {
    const bool spectrum = TakeSpectrum(ring, playPosition, format);
    const bool waveform = TakeWaveform(ring, playPosition, format);
    return spectrum && waveform;
}

void AnalyzerSnapshot::Clear() {
    for (auto& channel : spectrum_) channel.fill(0);
    for (auto& channel : waveform_) channel.fill(0);
}

int32_t AnalyzerSnapshot::GetAnalyzerValue(uint32_t channel, uint32_t index) const {
    return channel < kAnalyzerChannels && index < kAnalyzerValues ? spectrum_[channel][index] : 0;
}

int32_t AnalyzerSnapshot::GetWaveformValue(uint32_t channel, uint32_t index) const {
    return channel < kAnalyzerChannels && index < waveformLength_ ? waveform_[channel][index] : 0;
}

}  // namespace verdin
