#pragma once
// How Start, Stop, Pause and Resume reach a device thread without a lock.
//
// The wanted state is one atomic word: the mode, the run number of the last Start and a
// sequence number that every request raises. A caller changes the word with a CAS, wakes
// the device thread and waits (bounded) until the thread reports that sequence number as
// carried out. The thread always acts on the latest word, so requests that pile up while
// it is busy (a Start followed at once by a Pause) are carried out as their sum.
#include "engine/output/WakeupSignal.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

namespace verdin {

enum class DeviceMode : uint8_t { Stopped = 0, Playing = 1, Paused = 2 };

struct DeviceRequest {
    DeviceMode mode = DeviceMode::Stopped;
    uint16_t run = 0;
    uint32_t sequence = 0;

    // Bits 0-7 the mode, 8-23 the run number, 32-63 the sequence number.
    static DeviceRequest From(uint64_t word) {
        return {static_cast<DeviceMode>(word & 0xFF), static_cast<uint16_t>(word >> 8),
                static_cast<uint32_t>(word >> 32)};
    }
    uint64_t Word() const {
        return uint64_t{static_cast<uint8_t>(mode)} | (uint64_t{run} << 8) |
               (uint64_t{sequence} << 32);
    }
};

class DeviceRequests {
public:
    // How long a caller waits for the device thread to carry out a request.
    static constexpr std::chrono::seconds kTimeout{1};

    // Caller side: publishes change(current) as the new request, wakes the thread and
    // waits until it is done, the thread has ended, or the time-out has passed.
    template <typename Change>
    void Post(Change change, const WakeupSignal& wake, const std::atomic<bool>& threadEnded) {
        uint64_t old = word_.load(std::memory_order_relaxed);
        DeviceRequest next;
        do {
            next = change(DeviceRequest::From(old));
            next.sequence = DeviceRequest::From(old).sequence + 1;
        } while (!word_.compare_exchange_weak(old, next.Word(), std::memory_order_release,
                                              std::memory_order_relaxed));
        wake.Raise();
        const auto deadline = std::chrono::steady_clock::now() + kTimeout;
        while (static_cast<int32_t>(applied_.load(std::memory_order_acquire) - next.sequence) < 0 &&
               !threadEnded.load(std::memory_order_acquire) &&
               std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::microseconds(200));
    }

    // The four requests the devices share: Start (a new run), Stop, and Pause and
    // Resume, which only act on a device that is playing or paused.
    void PostStart(uint16_t run, const WakeupSignal& wake, const std::atomic<bool>& threadEnded) {
        Post([run](DeviceRequest r) {
            r.run = run;
            r.mode = DeviceMode::Playing;
            return r;
        }, wake, threadEnded);
    }
    void PostStop(const WakeupSignal& wake, const std::atomic<bool>& threadEnded) {
        Post([](DeviceRequest r) {
            r.mode = DeviceMode::Stopped;
            return r;
        }, wake, threadEnded);
    }
    void PostPause(const WakeupSignal& wake, const std::atomic<bool>& threadEnded) {
        Post([](DeviceRequest r) {
            if (r.mode == DeviceMode::Playing) r.mode = DeviceMode::Paused;
            return r;
        }, wake, threadEnded);
    }
    void PostResume(const WakeupSignal& wake, const std::atomic<bool>& threadEnded) {
        Post([](DeviceRequest r) {
            if (r.mode == DeviceMode::Paused) r.mode = DeviceMode::Playing;
            return r;
        }, wake, threadEnded);
    }

    // Device-thread side.
    uint64_t Current() const { return word_.load(std::memory_order_acquire); }
    void Done(uint64_t word) {
        applied_.store(DeviceRequest::From(word).sequence, std::memory_order_release);
    }

private:
    // Written by callers on stream threads (CAS), read by the device thread.
    std::atomic<uint64_t> word_{0};
    // The sequence number last carried out: the device thread writes, callers read.
    std::atomic<uint32_t> applied_{0};
};

}  // namespace verdin
