#include "engine/equalizer/Equalizer.h"

#include "engine/equalizer/SampleBytes.h"

#include <algorithm>
#include <cstring>

namespace verdin {
namespace {

constexpr uint32_t kBlock = Equalizer::kBlockFrames;
constexpr uint32_t kHop = Equalizer::kHopFrames;
constexpr double kInverseBlock = 0.001953125;  // 1/512: two transforms scale by 512

// The crossfade weights ramp[k] = k/256, shared by every equalizer of the process.
const std::array<double, kHop>& RampTable() {
    static const std::array<double, kHop> ramp = [] {
        std::array<double, kHop> r{};
        for (uint32_t k = 0; k < kHop; ++k) r[k] = k * 0.00390625;
        return r;
    }();
    return ramp;
}

// Reads one channel of a 512-frame block into doubles.
template <int Bytes>
void ReadBlock(const uint8_t* first, uint32_t stride, double* out) {
    for (uint32_t i = 0; i < kBlock; ++i) out[i] = ReadSignedSample<Bytes>(first + i * stride);
}

// Writes one channel of a hop: the tail of the previous block faded into the head of the
// current one, scaled back by 1/512, truncated and clipped.
template <int Bytes>
void WriteHop(const double* previousTail, const double* current, uint8_t* first, uint32_t stride) {
    const double* ramp = RampTable().data();
    for (uint32_t k = 0; k < kHop; ++k) {
        const double faded = previousTail[k] + (current[k] - previousTail[k]) * ramp[k];
        WriteSignedSample<Bytes>(first + k * stride, ToSample<Bytes>(faded * kInverseBlock));
    }
}

struct SampleCodec {
    void (*read)(const uint8_t* first, uint32_t stride, double* out);
    void (*write)(const double* previousTail, const double* current, uint8_t* first, uint32_t stride);
};

// Indexed by bytes per sample - 1. 8-bit samples go through as signed bytes although
// 8-bit PCM is unsigned: the stream depends on exactly this behaviour, so it stays.
constexpr std::array<SampleCodec, 4> kCodecs = {{
    {ReadBlock<1>, WriteHop<1>},
    {ReadBlock<2>, WriteHop<2>},
    {ReadBlock<3>, WriteHop<3>},
    {ReadBlock<4>, WriteHop<4>},
}};

bool IsSupported(uint32_t bitsPerSample, uint32_t channels) {
    return bitsPerSample % 8 == 0 && bitsPerSample >= 8 && bitsPerSample <= 32 && channels >= 1 &&
           channels <= Equalizer::kMaxChannels;
}

// Scales the spectrum of a transformed block. Bins k and 512-k together give the real
// part (sum x 0.5, stored at k) and the imaginary part (difference x 0.5, stored at
// 512-k) of frequency k; every entry is then multiplied by the gain of its own index (so
// the imaginary part of k takes the mirrored entry 512-k, which equals gain[k-1]), and
// the pairs are turned back into Hartley coefficients. Bins 0 and 256 pair with
// themselves and are scaled as they are.
//
// The way back is the inverse of the way there: plain sum and difference. Doing it "the
// same way", halves included, would return half of every block, and a table of 0 dB
// gains must give the input frames back; that property decides.
void ApplyGains(double* h, const double* gain) {
    h[0] *= gain[0];
    h[kHop] *= gain[kHop];
    for (uint32_t k = 1; k < kHop; ++k) {
        const double a = h[k], b = h[kBlock - k];
        const double re = (a + b) * 0.5 * gain[k];
        const double im = (a - b) * 0.5 * gain[kBlock - k];
        h[k] = re + im;
        h[kBlock - k] = re - im;
    }
}

}  // namespace

Equalizer::Equalizer(bool enabled) : enabled_(enabled ? 1 : 0) {
    for (auto& gain : gains_) gain.store(1.0, std::memory_order_relaxed);
    RampTable();  // built here rather than on the stream thread's first hop
}

void Equalizer::SetEqualizerEnabled(bool enabled) {
    enabled_.store(enabled ? 1 : 0, std::memory_order_release);
}

bool Equalizer::SetEqualizerValues(const EqualizerValues& values, uint32_t sampleRate) {
    std::array<double, kEqualizerGainCount> computed{};
    if (!ComputeEqualizerGains(values, sampleRate, computed)) return false;
    for (int i = 0; i < kEqualizerGainCount; ++i) gains_[i].store(computed[i], std::memory_order_relaxed);
    return true;
}

void Equalizer::TakeGainSnapshot() {
    for (int i = 0; i < kEqualizerGainCount; ++i) gainsInUse_[i] = gains_[i].load(std::memory_order_relaxed);
}

uint32_t Equalizer::Process(uint8_t* pcm, uint32_t bytes, uint32_t bitsPerSample, uint32_t channels) {
    returnedFrames_ = false;
    if (!IsSupported(bitsPerSample, channels)) return bytes;
    if (pcm == nullptr) return 0;  // nowhere to put anything
    if (bitsPerSample != heldBits_ || channels != heldChannels_) {
        // Held frames and the previous block belong to the old format: start afresh.
        fill_ = 0;
        firstBlock_ = 1;
        heldBits_ = bitsPerSample;
        heldChannels_ = channels;
    }
    const uint32_t bytesPerSample = bitsPerSample / 8;
    const uint32_t frameBytes = bytesPerSample * channels;

    if (enabled_.load(std::memory_order_acquire) == 0) {
        if (fill_ == 0) return bytes;
        // Just switched off: the held frames go out once, ahead of the block, and the
        // caller is told a frame count (it relies on that on this path).
        std::memmove(pcm + fill_, pcm, bytes);
        std::memcpy(pcm, input_.data(), fill_);
        const uint32_t frames = (fill_ + bytes) / frameBytes;
        fill_ = 0;
        returnedFrames_ = true;
        return frames;
    }

    TakeGainSnapshot();
    const uint32_t hopBytes = kHop * frameBytes;
    const uint32_t blockBytes = kBlock * frameBytes;
    uint32_t taken = 0;    // bytes of the block moved into the input buffer so far
    uint32_t written = 0;  // bytes of output written to pcm so far
    // A block larger than the free room is taken in pieces. Output goes to pcm from its
    // start and may run ahead of the input by up to 255 frames (the frames held before
    // the call); before the last piece a hop waits until the input it would overwrite has
    // been taken. That wait never stalls: a full buffer holds far more than the output
    // is ahead.
    for (;;) {
        const uint32_t piece = std::min(bytes - taken, kInputCapacity - fill_);
        std::memcpy(input_.data() + fill_, pcm + taken, piece);
        fill_ += piece;
        taken += piece;
        const bool lastPiece = taken == bytes;
        uint32_t start = 0;
        while (fill_ - start >= blockBytes && (lastPiece || written + hopBytes <= taken)) {
            RunHop(input_.data() + start, pcm + written, bytesPerSample, channels);
            start += hopBytes;
            written += hopBytes;
        }
        std::memmove(input_.data(), input_.data() + start, fill_ - start);
        fill_ -= start;
        if (lastPiece) return written;
    }
}

void Equalizer::RunHop(const uint8_t* in, uint8_t* out, uint32_t bytesPerSample, uint32_t channels) {
    const SampleCodec& codec = kCodecs[bytesPerSample - 1];
    const uint32_t stride = bytesPerSample * channels;
    for (uint32_t c = 0; c < channels; ++c) {
        codec.read(in + c * bytesPerSample, stride, block_.data());
        FastHartleyTransform(block_);
        ApplyGains(block_.data(), gainsInUse_.data());
        FastHartleyTransform(block_);
        double* previousTail = previous_[c].data() + kHop;
        if (firstBlock_ != 0) {
            // The first block stands in for its own predecessor. Its overlap is this
            // block's first half (the frames the fade covers), not its second half: a
            // literal copy of the whole block would fade frame 256+k into frame k and
            // break the rule that 0 dB gives every input frame back.
            std::copy_n(block_.data(), kHop, previousTail);
        }
        codec.write(previousTail, block_.data(), out + c * bytesPerSample, stride);
        std::copy_n(block_.data() + kHop, kHop, previousTail);
    }
    firstBlock_ = 0;
}

}  // namespace verdin
