#pragma once
// An output device consumes a stream's ring buffer on its own.
//
// Streams never hand blocks to the sound system: they write PCM into the ring buffer
// and tell the device with CommitFrames; the device plays (or writes) the ring by
// itself and reports how far it has got. The ring belongs to the stream that opened
// the device and is handed on, with the device, from stream to stream.
//
// Threads: the stream threads call Start, Stop, Pause, Resume, CommitFrames, Wait and
// the position queries; the user-interface thread calls SetVolume, GetVolume and the
// position queries at the same time. No operation takes a lock: every word a device
// shares between threads is a std::atomic.
#include "engine/PcmFormat.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace verdin {

class OutputDevice {
public:
    OutputDevice(PcmFormat format, uint8_t* ring, uint32_t ringSize);
    virtual ~OutputDevice();
    OutputDevice(const OutputDevice&) = delete;
    OutputDevice& operator=(const OutputDevice&) = delete;

    // Nonzero when the device could be opened.
    virtual bool IsOpen() const = 0;
    // Begin consuming the ring at its start; the position counters restart at 0.
    virtual int Start() = 0;
    // Stop at once and drop whatever is queued.
    virtual void Stop() = 0;
    // Hold playback where it is; Resume continues from there.
    virtual void Pause() = 0;
    virtual void Resume() = 0;
    // Positive: the stream has just written that many frames into the ring at the
    // device's write cursor. Negative: move the device's write cursor back (the
    // crossfade hand-over passes a byte count here; only a device that keeps a copy
    // of the ring acts on it). The default does nothing.
    virtual void CommitFrames(int32_t count);
    // The stream takes back the last frames it wrote (silence cut at the end of a track):
    // they were never heard and will be written again. Unlike a negative CommitFrames,
    // the count is in frames. The default does nothing.
    virtual void TakeBackFrames(uint32_t frames);
    // The stream is that many frames ahead and lets the device catch up. The default
    // sleeps max(10, frames x 1000 / sampleRate) milliseconds.
    virtual void Wait(uint32_t frames);
    // Whether the device empties the ring at its own pace (a sound card, a sound server).
    // The stream then waits for room on its own, in a wait that a stop or pause request
    // cuts short, instead of calling Wait(). A device that writes in Wait() says no.
    virtual bool PacesItself() const { return true; }
    // How many frames the stream waits for when the ring is full and it needs room for
    // `frames`. A device that empties the ring at its own pace is waited on for 500 ms (at
    // most a quarter of the ring) at a time, so the stream decodes in bursts and wakes
    // about twice a second rather than once per block; each wake-up costs more than
    // decoding a block. A device that writes in Wait() gets exactly what was asked.
    virtual uint32_t RoomToWaitFor(uint32_t frames) const;
    // Volume 0..65535 for both channels; the defaults do nothing and report 0.
    virtual void SetVolume(uint32_t volume);
    virtual uint32_t GetVolume();
    // Byte offset in the ring that is being heard now: 0 <= value < ringSize
    // (0 when ringSize is 0).
    virtual uint32_t GetPlayPosition() = 0;
    // Frames played since Start.
    virtual int64_t GetPlayedFrames() = 0;
    // GetPlayedFrames / sampleRate, integer division.
    uint64_t GetPlayedSeconds();

    // Whether SetVolume has an audible effect (the volume control is disabled otherwise).
    virtual bool CanSetVolume() const;
    // The last stream on this device has written its final frame: frames written in
    // all since Start. A device that plays the ring by itself plays up to that frame
    // and then stays silent rather than going round the ring again. PlayedOut() tells
    // when it has got there; the default compares GetPlayedFrames() with the mark. The
    // stream calls Wait() until then, which lets a file device write the rest.
    virtual void SetEndOfData(int64_t framesWritten);
    virtual bool PlayedOut();
    // Why the device failed, for the message the user sees; empty while all is well.
    virtual std::string ErrorText() const;
    // Whether the device met an error after it was opened (a write error, a sound server
    // that went away). Cheap enough for the stream to read after every Wait; ErrorText()
    // then says what happened.
    virtual bool Failed() const { return failed_.load(std::memory_order_acquire); }

    const PcmFormat& Format() const { return format_; }
    uint8_t* Ring() const { return ring_; }
    uint32_t RingSize() const { return ringSize_; }
    uint32_t BytesPerFrame() const { return format_.BytesPerFrame(); }

protected:
    // The end mark of SetEndOfData, -1 while more data may come. Written by the stream
    // thread, read by the device's own thread.
    int64_t EndOfData() const { return endOfData_.load(std::memory_order_acquire); }
    // Raises Failed(); a device calls it after it has stored what ErrorText() reports.
    void MarkFailed() { failed_.store(true, std::memory_order_release); }

    const PcmFormat format_;
    uint8_t* const ring_;
    const uint32_t ringSize_;

private:
    std::atomic<int64_t> endOfData_{-1};
    // Set by whichever thread meets a device error (only ever from false to true); read
    // by the stream and user-interface threads.
    std::atomic<bool> failed_{false};
};

}  // namespace verdin
