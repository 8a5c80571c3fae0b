#include "WavFileDevice.h"

#include "engine/output/WavHeader.h"

#include <cerrno>
#include <algorithm>
#include <cstring>

namespace verdin {

namespace {
// Decoding writes blocks of a few kilobytes; a buffer this size turns them into
// few large writes.
constexpr size_t kFileBufferSize = 256 * 1024;
}  // namespace

WavFileDevice::WavFileDevice(std::string path, PcmFormat format, uint8_t* ring, uint32_t ringSize)
    : OutputDevice(format, ring, ringSize), path_(std::move(path)) {
    // "w" truncates: an existing file of the same name is overwritten. "e": close on exec.
    file_.reset(std::fopen(path_.c_str(), "wbe"));
    if (!file_) return;
    buffer_ = std::make_unique<char[]>(kFileBufferSize);
    std::setvbuf(file_.get(), buffer_.get(), _IOFBF, kFileBufferSize);
    const uint8_t placeholder[kWavHeaderSize] = {};
    if (std::fwrite(placeholder, 1, sizeof placeholder, file_.get()) != sizeof placeholder)
        RecordError(errno);
}

WavFileDevice::~WavFileDevice() { Finish(); }

void WavFileDevice::Finish() {
    if (!file_) return;
    std::FILE* f = file_.get();
    if (std::fflush(f) != 0) RecordError(errno);
    const auto header = MakeWavHeader(format_, dataBytes_.load(std::memory_order_relaxed));
    if (std::fseek(f, 0, SEEK_SET) != 0 ||
        std::fwrite(header.data(), 1, header.size(), f) != header.size() || std::fflush(f) != 0)
        RecordError(errno);
    file_.reset();
}

bool WavFileDevice::IsOpen() const { return file_ != nullptr; }

int WavFileDevice::Start() {
    readPosition_.store(0, std::memory_order_release);
    framesWritten_.store(0, std::memory_order_release);
    return 0;
}

void WavFileDevice::Stop() {}

void WavFileDevice::Pause() { paused_.store(true, std::memory_order_release); }

void WavFileDevice::Resume() { paused_.store(false, std::memory_order_release); }

void WavFileDevice::Wait(uint32_t frames) {
    if (!file_ || ringSize_ == 0) return;
    // A paused file device holds like a paused sound card: it writes nothing until it is
    // resumed (the stream keeps it paused while its buffer fills, and the user's pause
    // holds decoding to files too), and it sleeps as a sound card's wait would.
    if (paused_.load(std::memory_order_acquire)) {
        OutputDevice::Wait(frames);
        return;
    }
    const uint64_t bytes = uint64_t{frames} * BytesPerFrame();
    uint64_t left = bytes;
    while (left > 0) {
        const uint32_t chunk = static_cast<uint32_t>(std::min<uint64_t>(left, ringSize_));
        WriteRing(chunk);
        left -= chunk;
    }
    framesWritten_.store(framesWritten_.load(std::memory_order_relaxed) + frames,
                         std::memory_order_release);
}

// Writes bytes (at most ringSize) from the read position, wrapping at the ring's end.
void WavFileDevice::WriteRing(uint32_t bytes) {
    const uint32_t at = readPosition_.load(std::memory_order_relaxed);
    const uint32_t first = std::min(bytes, ringSize_ - at);
    // After the first error the bytes are still counted (the header then says what the
    // writer tried to write) but no longer sent to a disk that refuses them.
    if (writeError_.load(std::memory_order_relaxed) == 0) {
        if (std::fwrite(ring_ + at, 1, first, file_.get()) != first ||
            std::fwrite(ring_, 1, bytes - first, file_.get()) != bytes - first)
            RecordError(errno);
    }
    readPosition_.store(static_cast<uint32_t>((uint64_t{at} + bytes) % ringSize_),
                        std::memory_order_release);
    dataBytes_.store(dataBytes_.load(std::memory_order_relaxed) + bytes, std::memory_order_release);
}

void WavFileDevice::RecordError(int error) {
    int expected = 0;
    if (writeError_.compare_exchange_strong(expected, error ? error : EIO, std::memory_order_release,
                                            std::memory_order_relaxed))
        MarkFailed();
}

uint32_t WavFileDevice::GetVolume() { return 0; }

uint32_t WavFileDevice::GetPlayPosition() {
    return ringSize_ ? readPosition_.load(std::memory_order_acquire) : 0;
}

int64_t WavFileDevice::GetPlayedFrames() {
    return ringSize_ ? framesWritten_.load(std::memory_order_acquire) : 0;
}

std::string WavFileDevice::ErrorText() const {
    const int error = writeError_.load(std::memory_order_acquire);
    if (error == 0) return {};
    return "Failed to write to \"" + path_ + "\": " + std::strerror(error) + ".";
}

}  // namespace verdin
