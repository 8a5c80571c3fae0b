#include "OutputDevice.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace verdin {

OutputDevice::OutputDevice(PcmFormat format, uint8_t* ring, uint32_t ringSize)
    : format_(format), ring_(ring), ringSize_(ringSize) {}

OutputDevice::~OutputDevice() = default;

void OutputDevice::CommitFrames(int32_t) {}

void OutputDevice::TakeBackFrames(uint32_t) {}

void OutputDevice::Wait(uint32_t frames) {
    const uint64_t rate = format_.sampleRate ? format_.sampleRate : 1;
    const uint64_t ms = std::max<uint64_t>(10, uint64_t{frames} * 1000 / rate);
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

uint32_t OutputDevice::RoomToWaitFor(uint32_t frames) const {
    const uint32_t frameBytes = format_.BytesPerFrame();
    const uint32_t quarterRing = frameBytes ? ringSize_ / frameBytes / 4 : 0;
    return std::max(frames, std::min(format_.sampleRate / 2, quarterRing));
}

void OutputDevice::SetVolume(uint32_t) {}

uint32_t OutputDevice::GetVolume() { return 0; }

uint64_t OutputDevice::GetPlayedSeconds() {
    const int64_t frames = GetPlayedFrames();
    if (frames <= 0 || format_.sampleRate == 0) return 0;
    return static_cast<uint64_t>(frames) / format_.sampleRate;
}

bool OutputDevice::CanSetVolume() const { return false; }

void OutputDevice::SetEndOfData(int64_t framesWritten) {
    endOfData_.store(framesWritten, std::memory_order_release);
}

bool OutputDevice::PlayedOut() {
    const int64_t end = EndOfData();
    return end >= 0 && GetPlayedFrames() >= end;
}

std::string OutputDevice::ErrorText() const { return {}; }

}  // namespace verdin
