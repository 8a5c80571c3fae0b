#include "engine/equalizer/Equalizer.h"

#include "engine/equalizer/FlatHops.h"

#include <algorithm>
#include <cstring>

namespace verdin {
namespace {

constexpr uint32_t kBlock = Equalizer::kBlockFrames;
constexpr uint32_t kHop = Equalizer::kHopFrames;

bool IsSupported(uint32_t bitsPerSample, uint32_t channels) {
    return bitsPerSample % 8 == 0 && bitsPerSample >= 8 && bitsPerSample <= 32 && channels >= 1 &&
           channels <= Equalizer::kMaxChannels;
}

}  // namespace

Equalizer::Equalizer(bool enabled) : enabled_(enabled ? 1 : 0), lanes_(HopLanes()) {
    for (auto& gain : gains_) gain.store(1.0, std::memory_order_relaxed);
    // weights_ starts flat, as the table of 1.0 it stands for.
}

void Equalizer::SetEqualizerEnabled(bool enabled) {
    enabled_.store(enabled ? 1 : 0, std::memory_order_release);
}

bool Equalizer::SetEqualizerValues(const EqualizerValues& values, uint32_t sampleRate) {
    std::array<double, kEqualizerGainCount> computed{};
    if (!ComputeEqualizerGains(values, sampleRate, computed)) return false;
    for (int i = 0; i < kEqualizerGainCount; ++i) gains_[i].store(computed[i], std::memory_order_relaxed);
    gainsVersion_.fetch_add(1, std::memory_order_release);
    return true;
}

void Equalizer::TakeNewGains() {
    const uint32_t version = gainsVersion_.load(std::memory_order_acquire);
    if (version == weightsVersion_) return;
    weightsVersion_ = version;
    std::array<double, kEqualizerGainCount> gains;
    for (int i = 0; i < kEqualizerGainCount; ++i) gains[i] = gains_[i].load(std::memory_order_relaxed);
    ComputeSpectrumWeights(gains, weights_);
}

uint32_t Equalizer::Process(uint8_t* pcm, uint32_t bytes, uint32_t bitsPerSample, uint32_t channels) {
    returnedFrames_ = false;
    if (!IsSupported(bitsPerSample, channels)) return bytes;
    if (pcm == nullptr) return 0;  // nowhere to put anything
    const uint32_t bytesPerSample = bitsPerSample / 8;
    if (bitsPerSample != heldBits_ || channels != heldChannels_) {
        // Held frames and the previous block belong to the old format: start afresh.
        fill_ = 0;
        firstBlock_ = 1;
        heldBits_ = bitsPerSample;
        heldChannels_ = channels;
        overlapIsInput_ = false;
        equalizedHops_ = EqualizedHopsFor(lanes_, bytesPerSample, channels);
    }
    const uint32_t frameBytes = bytesPerSample * channels;

    if (enabled_.load(std::memory_order_acquire) == 0) {
        if (fill_ == 0) return bytes;
        // Switching on again continues from the overlap, so it must outlive the frames.
        KeepOverlap(bytesPerSample, channels);
        // Just switched off: the held frames go out once, ahead of the block, and the
        // caller is told a frame count (it relies on that on this path).
        std::memmove(pcm + fill_, pcm, bytes);
        std::memcpy(pcm, input_.data(), fill_);
        const uint32_t frames = (fill_ + bytes) / frameBytes;
        fill_ = 0;
        returnedFrames_ = true;
        return frames;
    }

    TakeNewGains();
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
        uint32_t hops = fill_ >= blockBytes ? (fill_ - blockBytes) / hopBytes + 1 : 0;
        if (!lastPiece) hops = std::min(hops, taken >= written ? (taken - written) / hopBytes : 0);
        RunHops(input_.data(), pcm + written, hops, bytesPerSample, channels);
        const uint32_t used = hops * hopBytes;
        written += used;
        std::memmove(input_.data(), input_.data() + used, fill_ - used);
        fill_ -= used;
        if (lastPiece) return written;
    }
}

void Equalizer::KeepOverlap(uint32_t bytesPerSample, uint32_t channels) {
    if (!overlapIsInput_) return;
    // The held frames begin with the ones the next hop fades over.
    OverlapFromInput(input_.data(), lanes_, overlap_.data(), bytesPerSample, channels);
    overlapIsInput_ = false;
}

void Equalizer::RunHops(const uint8_t* in, uint8_t* out, uint32_t hops, uint32_t bytesPerSample, uint32_t channels) {
    if (hops == 0) return;
    HopBatch batch{in, out, hops, firstBlock_ != 0, lanes_, &weights_, block_.data(), overlap_.data()};
    firstBlock_ = 0;
    if (weights_.flat || !equalizedHops_) {
        RunFlatHops(batch, overlapIsInput_, bytesPerSample, channels);
        overlapIsInput_ = true;
        return;
    }
    KeepOverlap(bytesPerSample, channels);
    const uint32_t hopBytes = kHop * bytesPerSample * channels;
    const uint32_t perBatch = static_cast<uint32_t>(lanes_) / channels;
    while (hops > 0) {
        batch.hops = std::min(hops, perBatch);
        equalizedHops_(batch);
        batch.firstBlock = false;
        batch.in += batch.hops * hopBytes;
        batch.out += batch.hops * hopBytes;
        hops -= batch.hops;
    }
}

}  // namespace verdin
