#pragma once
// A frame counter that a device thread publishes and a Start() on another thread resets.
//
// Start() must reset the played-frame count at once (the stream reads it right after),
// while the device thread may be just about to publish a value counted before the
// restart. Both live in one 64-bit word: the low 48 bits are the count, the high 16 bits
// the number of the run (bumped by every Start). The device thread publishes only while
// the word still carries its run's number, so a stale count never overwrites a reset.
// 48 bits hold over 46 years of frames at 192 kHz.
#include <atomic>
#include <cstdint>

namespace verdin {

class GenerationCounter {
public:
    static constexpr int kValueBits = 48;
    static constexpr uint64_t kValueMask = (uint64_t{1} << kValueBits) - 1;

    // Starts a new run with the count 0 and returns its number. Any thread.
    uint16_t Restart() {
        uint64_t old = word_.load(std::memory_order_relaxed);
        uint64_t next;
        do {
            next = static_cast<uint64_t>(static_cast<uint16_t>(Run(old) + 1)) << kValueBits;
        } while (!word_.compare_exchange_weak(old, next, std::memory_order_release,
                                              std::memory_order_relaxed));
        return Run(next);
    }
    // Publishes value for run; does nothing when a newer run has begun. Device thread.
    void Publish(uint16_t run, uint64_t value) {
        uint64_t old = word_.load(std::memory_order_relaxed);
        const uint64_t next = (uint64_t{run} << kValueBits) | (value & kValueMask);
        while (Run(old) == run && old != next) {
            if (word_.compare_exchange_weak(old, next, std::memory_order_release,
                                            std::memory_order_relaxed))
                return;
        }
    }
    uint64_t Value() const { return word_.load(std::memory_order_acquire) & kValueMask; }
    // The run and its count, read together.
    struct Reading {
        uint16_t run;
        uint64_t value;
    };
    Reading Read() const {
        const uint64_t word = word_.load(std::memory_order_acquire);
        return {Run(word), word & kValueMask};
    }
    uint16_t CurrentRun() const { return Run(word_.load(std::memory_order_acquire)); }

private:
    static uint16_t Run(uint64_t word) { return static_cast<uint16_t>(word >> kValueBits); }
    // Written by Restart (stream thread) and Publish (device thread), read by all.
    std::atomic<uint64_t> word_{0};
};

}  // namespace verdin
