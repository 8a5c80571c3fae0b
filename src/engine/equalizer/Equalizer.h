#pragma once
// A stream's 16-band graphic equalizer, working in the frequency domain.
//
// Blocks of 512 frames, hopping by 256, are transformed with the fast Hartley transform;
// every bin is scaled by its gain (EqualizerGains.h); the block is transformed back, and
// consecutive blocks are joined with a linear crossfade over their shared 256 frames.
// Hop n gives back input frames 256n..256n+255, so nothing moves in time, but 256 to 511
// frames stay held until more input arrives.
//
// Threads: Process runs on the stream thread; SetEqualizerEnabled and
// SetEqualizerValues run on the user-interface thread at the same time, without a lock.
// A hop may run with a gain table that is partly old and partly new; that is accepted.
//
// The hops a call can run are worked on several at once (HopBatch.h): through the
// transforms, both channels and consecutive hops side by side; with every gain at 0 dB,
// without transforms, as the frames they are.
//
// One object per stream, allocated once at stream set-up; nothing here allocates after
// construction.
#include "engine/equalizer/EqualizedHops.h"
#include "engine/equalizer/EqualizerGains.h"
#include "engine/equalizer/HartleyTransform.h"
#include "engine/equalizer/SpectrumWeights.h"

#include <verdin/input.h>

#include <array>
#include <atomic>
#include <cstdint>

namespace verdin {

class Equalizer {
public:
    static constexpr uint32_t kInputCapacity = 32768;  // bytes of not yet processed PCM
    static constexpr uint32_t kBlockFrames = kHartleySize;
    static constexpr uint32_t kHopFrames = kBlockFrames / 2;
    static constexpr uint32_t kMaxChannels = 2;
    // How many bytes Process may write past the end of the block it was given: the frames
    // it held back from earlier calls (fewer than 512 frames of at most 8 bytes).
    static constexpr uint32_t kOutputHeadroom = kBlockFrames * 8;

    // enabled: the state the stream is told at set-up. The gains start at 0 dB.
    explicit Equalizer(bool enabled);
    Equalizer(const Equalizer&) = delete;
    Equalizer& operator=(const Equalizer&) = delete;

    // Switches processing on or off; nothing is recomputed.
    void SetEqualizerEnabled(bool enabled);
    // Recomputes the gain table for the track's sample rate. Returns false, and keeps the
    // table, when the rate is 0.
    bool SetEqualizerValues(const EqualizerValues& values, uint32_t sampleRate);

    // Equalizes one decoded block in place and returns how much is now in pcm:
    //  - off with nothing held: the block unchanged, `bytes` returned;
    //  - just switched off: the held frames followed by the block, and the FRAME count
    //    (bytes / bytes per frame) is returned, on this path only;
    //  - on: as many whole hops of 256 frames as the held frames and the block allow; the
    //    byte count is returned, which may be 0 and may exceed `bytes`.
    // The block may have any size: what does not fit the input buffer is taken in pieces.
    // pcm must have room for bytes + kOutputHeadroom (only `bytes` of it is read).
    // Sample formats: 8 bits (read and written as signed bytes), 16, 24 or 32 bits,
    // little-endian, 1 or 2 channels; anything else is passed through unchanged. A change
    // of format drops the held frames and starts afresh.
    uint32_t Process(uint8_t* pcm, uint32_t bytes, uint32_t bitsPerSample, uint32_t channels);
    // Forgets the held frames and the previous block, as a change of format does: the
    // next block starts afresh (a seek must not play sound from before it). Stream
    // thread, or while that thread is held.
    void Restart() { heldBits_ = heldChannels_ = 0; }
    // Whether the last Process call took the switched-off path and returned frames.
    bool ReturnedFrameCount() const { return returnedFrames_; }

private:
    void RunHops(const uint8_t* in, uint8_t* out, uint32_t hops, uint32_t bytesPerSample, uint32_t channels);
    void TakeNewGains();
    void KeepOverlap(uint32_t bytesPerSample, uint32_t channels);

    // Input buffer and its fill count in bytes. Stream thread only.
    std::array<uint8_t, kInputCapacity> input_{};
    uint32_t fill_ = 0;
    // Written by the user-interface thread (release), read by the stream thread (acquire):
    // a stream that sees a new state also sees the gains stored before it.
    std::atomic<int32_t> enabled_;
    // Stream thread only: the next hop is the first since set-up or a format change.
    int32_t firstBlock_ = 1;
    // Stream thread only: see ReturnedFrameCount().
    bool returnedFrames_ = false;
    // The format of the held frames (0 before the first block), and the function that
    // runs its hops through the transforms. Stream thread only.
    uint32_t heldBits_ = 0;
    uint32_t heldChannels_ = 0;
    HopBatchFunction equalizedHops_ = nullptr;
    // How many blocks go through the transforms side by side. Fixed at construction.
    const int lanes_;
    // The gain table. Written entry by entry by the user-interface thread and read by the
    // stream thread, both relaxed: every entry is a self-contained value, and a table
    // that is half old, half new while it is being rewritten is acceptable. Atomic entries
    // keep that overlap free of data races without a second table and a hand-over.
    std::array<std::atomic<double>, kEqualizerGainCount> gains_;
    // Counts the rewrites of the table: incremented by the user-interface thread after
    // each (release), read by the stream thread before it copies the table (acquire), so
    // the table is copied only when it has changed. A rewrite that overlaps the copy
    // counts once more and is copied again on the next call.
    std::atomic<uint32_t> gainsVersion_{0};
    // Stream thread only: the version the weights were made from, and the weights.
    uint32_t weightsVersion_ = 0;
    SpectrumWeights weights_;
    // Stream thread only: the last hop ran at 0 dB and the overlap has not been written;
    // it stands for the first 256 held frames times 512 (FlatHops.h).
    bool overlapIsInput_ = false;
    // Stream thread only: the block being worked on (one per lane), and the overlap kept
    // from the last hop (see HopBatch.h).
    alignas(64) std::array<double, kBlockFrames * kMaxHopLanes> block_{};
    alignas(64) std::array<double, kHopFrames * kMaxHopLanes> overlap_{};
};

static_assert(std::atomic<double>::is_always_lock_free);

}  // namespace verdin
