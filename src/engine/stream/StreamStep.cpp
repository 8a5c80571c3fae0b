// The stream step: decode, equalize, DSP, buffer rules, leading silence, crossfade or
// copy into the ring, commit; and what happens when the track has run out.
#include "Stream.h"

#include "engine/equalizer/Equalizer.h"
#include "engine/output/OutputDevice.h"
#include "engine/stream/SampleGain.h"
#include "engine/stream/SilenceScan.h"
#include "engine/stream/StreamOutput.h"

#include <algorithm>
#include <cstring>

namespace verdin {

namespace {

// Frames the underrun guard keeps between what is written and what is being heard.
constexpr int64_t kUnderrunMargin = 2000;
// Frames right after the play position may already be on their way to the sound card;
// the end-of-track silence cut leaves them alone (the same distance a crossfade keeps).
constexpr int64_t kCutMargin = 12000;
// The pause between tracks is produced in blocks of at most this many bytes.
constexpr uint32_t kPauseBlockBytes = 1024;

}  // namespace

// Takes the next piece of the decoder's output into the work buffer, with the track's
// gain applied: at most enough that the equalizer's output and a DSP module doubling it
// still fit. 0 at the end of the track.
uint32_t Stream::DecodeBlock() {
    if (pendingBytes_ == 0 && !NextDecodedBlock()) return 0;
    const uint32_t frameBytes = std::max(1u, format_.BytesPerFrame());
    const uint32_t room = static_cast<uint32_t>(work_.size()) / 2 - Equalizer::kOutputHeadroom;
    uint32_t take = std::min(pendingBytes_, room / frameBytes * frameBytes);
    if (take == 0) take = std::min(pendingBytes_, room);
    std::memcpy(work_.data(), pending_, take);
    ApplySampleGain(work_.data(), take, format_.bitsPerSample, options_.gain);
    pending_ += take;
    pendingBytes_ -= take;
    framesDecoded_ += take / frameBytes;
    trackFramesDecoded_ += take / frameBytes;
    return take;
}

// Asks the decoder for its next block. In a section, frames before its first one are
// dropped (blocks wholly before it are passed over) and those after its end cut off.
// False at the end of the track.
bool Stream::NextDecodedBlock() {
    const uint32_t frameBytes = std::max(1u, format_.BytesPerFrame());
    while (pendingBytes_ == 0) {
        if (section_.Ended()) return false;
        const void* block = nullptr;
        const uint32_t bytes = decoder_ && decoder_->ops && decoder_->ops->Decode ? decoder_->ops->Decode(decoder_, &block) : 0;
        PollStreamExtension(bytes == 0 || !block);
        if (bytes == 0 || !block) return false;
        pending_ = static_cast<const uint8_t*>(block);
        pendingBytes_ = bytes;
        if (!section_.Active()) break;
        const uint32_t dropped = section_.Drop(bytes / frameBytes) * frameBytes;
        pending_ += dropped;
        pendingBytes_ = section_.Keep((bytes - dropped) / frameBytes) * frameBytes;
    }
    return true;
}

// A module with the stream extension: a new title for the playing entry, and at the end
// the reason the stream stopped, if it gave one.
void Stream::PollStreamExtension(bool ended) {
    if (!streamOps_ || !decoder_) return;
    if (streamOps_->GetStreamTitle) {
        const char* title = streamOps_->GetStreamTitle(decoder_);
        if (title && *title && lastStreamTitle_ != title) {
            lastStreamTitle_ = title;
            streamTitles_.Post(lastStreamTitle_);
        }
    }
    if (ended && streamOps_->GetLastError)
        if (const char* error = streamOps_->GetLastError(decoder_); error && *error) decoderMessage_ = error;
}

// Runs the block through the equalizer unless the decoder equalizes itself. Returns the
// bytes now in the work buffer.
uint32_t Stream::Equalize(uint32_t bytes) {
    if (info_.decoderEqualizes || !equalizer_) return bytes;
    const uint32_t frameBytes = std::max(1u, format_.BytesPerFrame());
    equalizerIn_ += bytes / frameBytes;
    uint32_t result = equalizer_->Process(work_.data(), bytes, format_.bitsPerSample, format_.channels);
    // Just switched off with frames held: the equalizer hands everything back at once and
    // says so in frames rather than bytes, on that path only.
    if (equalizer_->ReturnedFrameCount()) result *= frameBytes;
    equalizerOut_ += result / frameBytes;
    return result;
}

// At the end of the track the equalizer still holds the last 256 to 511 frames; silence
// pushed after them brings them out, and whatever comes after the real frames is dropped.
uint32_t Stream::FlushEqualizer() {
    if (info_.decoderEqualizes || !equalizer_) return 0;
    const int64_t held = equalizerIn_ - equalizerOut_;
    if (held <= 0) return 0;
    const uint32_t frameBytes = std::max(1u, format_.BytesPerFrame());
    const uint32_t silenceFrames = Equalizer::kBlockFrames + Equalizer::kHopFrames;
    std::memset(work_.data(), format_.bitsPerSample == 8 ? 0x80 : 0, silenceFrames * frameBytes);
    uint32_t result = equalizer_->Process(work_.data(), silenceFrames * frameBytes, format_.bitsPerSample, format_.channels);
    if (equalizer_->ReturnedFrameCount()) result *= frameBytes;  // switched off meanwhile
    const int64_t out = std::min<int64_t>(held, result / frameBytes);
    equalizerIn_ = equalizerOut_ = 0;
    return static_cast<uint32_t>(out) * frameBytes;
}

void Stream::Step() {
    if (phase_ == Phase::kDecoding) {
        const bool endNow = endNow_.load(std::memory_order_acquire);
        const uint32_t bytes = endNow ? 0 : DecodeBlock();
        if (bytes > 0) {
            Deliver(bytes, true);
            return;
        }
        if (!endNow && format_.sampleRate > 0)
            decodedLengthMs_.store(seekBaseMs_.load(std::memory_order_acquire) +
                                       static_cast<uint32_t>(trackFramesDecoded_ * 1000 / format_.sampleRate),
                                   std::memory_order_release);
        EndDecoding();
    }
    if (pauseBytes_ == 0) {
        RequestStop();
        return;
    }
    const uint32_t bytes = static_cast<uint32_t>(std::min<uint64_t>(kPauseBlockBytes, pauseBytes_));
    pauseBytes_ -= bytes;
    std::memset(work_.data(), format_.bitsPerSample == 8 ? 0x80 : 0, bytes);
    Deliver(bytes, true);
}

// The decoder has ended (or the track was ended early): bring out what the equalizer
// holds, cut silence at the end when asked, and go on with the pause between tracks.
void Stream::EndDecoding() {
    endOfTrack_.store(true, std::memory_order_release);
    phase_ = Phase::kPause;
    if (endNow_.load(std::memory_order_acquire)) pauseBytes_ = 0;
    if (const uint32_t tail = FlushEqualizer(); tail > 0) Deliver(tail, false);
    if (options_.skipSilenceInTheEnd) TrimTrailingSilence();
}

// The stages after decoding: equalizer, DSP modules, then into the ring.
void Stream::Deliver(uint32_t bytes, bool equalize) {
    if (equalize) bytes = Equalize(bytes);
    const uint32_t frameBytes = format_.BytesPerFrame();
    if (frameBytes == 0) return;
    uint32_t frames = bytes / frameBytes;
    if (frames > 0 && options_.dsp) {
        const uint32_t maxFrames = static_cast<uint32_t>(work_.size()) / frameBytes;
        frames = std::min(maxFrames, options_.dsp.process(options_.dsp.context, work_.data(), frames,
                                                          format_.bitsPerSample, format_.channels, format_.sampleRate));
    }
    if (frames == 0) return;
    if (!ApplyBufferRules(frames)) return;
    WriteFrames(work_.data(), frames);
}

// The buffer rules for a block of n frames. False when the stream is being stopped while
// it waits for room.
bool Stream::ApplyBufferRules(uint32_t n) {
    StreamOutput* output = Output();
    if (!output) return false;
    OutputDevice* device = output->device.get();
    const int64_t written = framesWritten_.load(std::memory_order_relaxed);
    const bool userPaused = PlaybackPaused();

    // Underrun guard: about to run dry, so hold the device until the buffer is full
    // enough again, rather than let it play old sound from the looping ring.
    if (!refilling_.load(std::memory_order_relaxed) && device->GetPlayedFrames() + kUnderrunMargin > written) {
        refilling_.store(true, std::memory_order_release);
        if (!userPaused) device->Pause();
    }
    // Refill: enough is buffered again.
    if (refilling_.load(std::memory_order_relaxed) &&
        written + n > device->GetPlayedFrames() + static_cast<int64_t>(ring_.prefillFrames)) {
        refilling_.store(false, std::memory_order_release);
        prefilling_.store(false, std::memory_order_release);
        if (!userPaused) device->Resume();
    }
    // Room: never overwrite what has not been heard yet.
    int64_t played = device->GetPlayedFrames();
    while (written + n > played + static_cast<int64_t>(ring_.frames)) {
        if (StopRequested() || DeviceFailed(*device)) return false;
        AwaitDevice(*device, device->RoomToWaitFor(n));
        played = device->GetPlayedFrames();
    }
    return !StopRequested() && !DeviceFailed(*device);
}

// A device that plays on its own is waited for here, where a stop, a pause or a next
// stream linking itself cuts the wait short; a device that writes when waited on (a
// file) is called.
void Stream::AwaitDevice(OutputDevice& device, uint32_t frames) {
    if (!device.PacesItself()) return device.Wait(frames);
    const uint64_t rate = format_.sampleRate ? format_.sampleRate : 1;
    Doze(static_cast<uint32_t>(std::max<uint64_t>(1, uint64_t{frames} * 1000 / rate)));
}

// A device that can no longer play or write (the sound server died, the disk is full)
// ends the stream with the device's own explanation.
bool Stream::DeviceFailed(OutputDevice& device) {
    if (!device.Failed()) return false;
    std::string error = device.ErrorText();
    if (!Failed()) Fail(std::move(error));
    RequestStop();
    return true;
}

void Stream::WriteFrames(const uint8_t* data, uint32_t frames) {
    StreamOutput* output = Output();
    const uint32_t frameBytes = format_.BytesPerFrame();
    if (leadingSilence_) {
        const uint32_t loud = FirstLoudFrame(data, frames, format_, silenceThreshold_);
        if (loud == frames) return;
        leadingSilence_ = false;
        data += loud * frameBytes;
        frames -= loud;
    }
    uint8_t* ring = output->ring.get();
    const uint32_t ringBytes = output->ringBytes;
    const uint32_t mixed = MixIntoRing(ring, ringBytes, writePosition_, data, frames, format_, fade_);
    writePosition_ = (writePosition_ + mixed * frameBytes) % ringBytes;
    writePosition_ = CopyIntoRing(ring, ringBytes, writePosition_, data + mixed * frameBytes, (frames - mixed) * frameBytes);
    framesWritten_.store(framesWritten_.load(std::memory_order_relaxed) + frames, std::memory_order_release);
    output->device->CommitFrames(static_cast<int32_t>(frames));
}

// Skipping silence at the end, "only within buffer": when the decoder ends, the track's
// last frames are still in the ring and not yet heard. Silent frames at the end of what
// was written are taken back (the write position and count move back over them), down to
// no nearer the play position than kCutMargin frames, which may already be on their way
// to the sound card. The next track then follows the last sound at once (or the pause
// between tracks begins there); silence already heard cannot be cut.
void Stream::TrimTrailingSilence() {
    StreamOutput* output = Output();
    if (!output) return;
    const uint32_t frameBytes = format_.BytesPerFrame();
    if (frameBytes == 0) return;
    const int64_t written = framesWritten_.load(std::memory_order_relaxed);
    const int64_t floor = std::max(output->device->GetPlayedFrames() + kCutMargin,
                                   trackStartFrame_.load(std::memory_order_relaxed));
    int64_t keep = written;
    uint32_t position = writePosition_;
    while (keep > floor) {
        const uint32_t previous = (position + output->ringBytes - frameBytes) % output->ringBytes;
        if (!FrameIsSilent(output->ring.get() + previous, format_, silenceThreshold_)) break;
        position = previous;
        --keep;
    }
    if (keep == written) return;
    writePosition_ = position;
    framesWritten_.store(keep, std::memory_order_release);
    // A device that tracks or copies what was written takes the cut frames back.
    output->device->TakeBackFrames(static_cast<uint32_t>(written - keep));
}

void Stream::OnFinish() {
    if (!Output() || FinishRequested()) {
        next_.store(kClosedLink, std::memory_order_release);
        return;
    }
    PlayOut();
}

// Takes the stream linked to follow, if any, closing the link for good.
bool Stream::HandOverIfLinked(bool closeLink) {
    uintptr_t next = next_.load(std::memory_order_acquire);
    if (closeLink) next = next_.exchange(kClosedLink, std::memory_order_acq_rel);
    else if (next <= kClosedLink || !next_.compare_exchange_strong(next, kClosedLink, std::memory_order_acq_rel))
        return false;
    if (next <= kClosedLink || FinishRequested()) return false;
    auto* following = reinterpret_cast<Stream*>(next);
    following->ContinueStream(this, following->crossfadeOnHandOver_.load(std::memory_order_acquire));
    return true;
}

// The track has run out. A stream linked to follow takes the device over at once. Until
// one is, the device plays what is in the ring up to the last frame written and stops
// there; a track shorter than the ring ends its decoding long before it is heard, so the
// next track may well be linked during that wait, and then takes over with no gap. A stop
// request ends the wait at once.
void Stream::PlayOut() {
    StreamOutput* output = Output();
    OutputDevice* device = output->device.get();
    if (HandOverIfLinked(false)) return;
    const int64_t written = framesWritten_.load(std::memory_order_relaxed);
    device->SetEndOfData(written);
    // A track shorter than the pre-fill level: its end counts as reaching the level.
    if (refilling_.exchange(false, std::memory_order_acq_rel)) {
        prefilling_.store(false, std::memory_order_release);
        if (!PlaybackPaused()) device->Resume();
    }
    // A next stream that links itself meanwhile nudges this one out of its wait.
    const uint32_t step = std::max(1u, format_.sampleRate / 4);  // 250 ms
    while (!FinishRequested() && !device->PlayedOut() && !DeviceFailed(*device)) {
        if (HandOverIfLinked(false)) return;
        const int64_t left = written - device->GetPlayedFrames();
        AwaitDevice(*device, static_cast<uint32_t>(std::clamp<int64_t>(left, 1, step)));
    }
    HandOverIfLinked(true);
}

}  // namespace verdin
