#pragma once
// The decode-to-file device: instead of playing the ring, it copies what the stream
// hands on into a PCM WAV file, as fast as the disk allows.
//
// Wait(frames) is where the writing happens: the stream calls it when it is a block
// ahead, and the device writes that many frames from its read position at once. The
// file gets a 44-byte placeholder on creation; the destructor rewrites it with the final
// data byte count (the count the device tried to write, also after a write error).
//
// Threads: Wait, Start and the destructor run on the stream thread that owns the device;
// positions and ErrorText may be read from the user-interface thread at the same time.
#include "engine/output/OutputDevice.h"

#include <atomic>
#include <cstdio>
#include <memory>
#include <string>

namespace verdin {

class WavFileDevice : public OutputDevice {
public:
    WavFileDevice(std::string path, PcmFormat format, uint8_t* ring, uint32_t ringSize);
    ~WavFileDevice() override;

    bool IsOpen() const override;
    int Start() override;
    void Stop() override;
    void Pause() override;
    void Resume() override;
    void Wait(uint32_t frames) override;
    uint32_t RoomToWaitFor(uint32_t frames) const override { return frames; }
    bool PacesItself() const override { return false; }
    uint32_t GetVolume() override;
    uint32_t GetPlayPosition() override;
    int64_t GetPlayedFrames() override;
    // After a write error: "Failed to write to "<path>": <reason>."
    std::string ErrorText() const override;

    const std::string& Path() const { return path_; }
    bool IsPaused() const { return paused_.load(std::memory_order_acquire); }
    // Data bytes the device has tried to write since it was made.
    uint32_t DataBytes() const { return dataBytes_.load(std::memory_order_acquire); }

private:
    struct FileCloser {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    void WriteRing(uint32_t bytes);
    void RecordError(int error);
    void Finish();

    const std::string path_;
    // The stdio buffer of file_: large, so a decode runs in few write calls. Declared
    // before file_ so that it outlives the stream that uses it.
    std::unique_ptr<char[]> buffer_;
    std::unique_ptr<std::FILE, FileCloser> file_;
    // Written by the stream thread (Start, Wait), read by any thread for the positions.
    std::atomic<uint32_t> readPosition_{0};
    std::atomic<int64_t> framesWritten_{0};
    std::atomic<uint32_t> dataBytes_{0};
    // Written by the stream thread (Pause, Resume), read by any thread.
    std::atomic<bool> paused_{false};
    // The errno of the first failed write, 0 while all is well. Written once by the
    // stream thread (release), read by any thread for ErrorText (acquire).
    std::atomic<int> writeError_{0};
};

}  // namespace verdin
