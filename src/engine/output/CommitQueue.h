#pragma once
// The commits of the streams on their way to a device thread: a bounded queue of signed
// counts, lock-free, for several producers (two streams write during a crossfade) and one
// consumer. Each slot carries a sequence number that tells whose turn it is: a producer
// claims a slot by advancing the tail, fills it and publishes it with the slot's
// sequence; the consumer takes slots in order and hands them back one lap later.
#include <atomic>
#include <cstdint>
#include <memory>

namespace verdin {

class CommitQueue {
public:
    explicit CommitQueue(uint32_t capacityPowerOfTwo = 8192)
        : mask_(capacityPowerOfTwo - 1), slots_(new Slot[capacityPowerOfTwo]) {
        for (uint64_t i = 0; i <= mask_; ++i) slots_[i].sequence.store(i, std::memory_order_relaxed);
    }

    // Any thread. False when the queue is full.
    bool Push(int32_t value) {
        uint64_t position = tail_.load(std::memory_order_relaxed);
        for (;;) {
            Slot& slot = slots_[position & mask_];
            const uint64_t sequence = slot.sequence.load(std::memory_order_acquire);
            const auto lag = static_cast<int64_t>(sequence - position);
            if (lag == 0) {
                if (tail_.compare_exchange_weak(position, position + 1, std::memory_order_relaxed)) {
                    slot.value = value;
                    slot.sequence.store(position + 1, std::memory_order_release);
                    return true;
                }
            } else if (lag < 0) {
                return false;
            } else {
                position = tail_.load(std::memory_order_relaxed);
            }
        }
    }

    // The consumer thread only. False when nothing is waiting.
    bool Pop(int32_t* value) {
        Slot& slot = slots_[head_ & mask_];
        if (slot.sequence.load(std::memory_order_acquire) != head_ + 1) return false;
        *value = slot.value;
        slot.sequence.store(head_ + mask_ + 1, std::memory_order_release);
        ++head_;
        return true;
    }

private:
    struct Slot {
        // Producers and the consumer hand the slot over through it (release/acquire).
        std::atomic<uint64_t> sequence{0};
        // Written by the producer that claimed the slot before it publishes the sequence;
        // read by the consumer after it has seen it.
        int32_t value = 0;
    };
    const uint64_t mask_;
    std::unique_ptr<Slot[]> slots_;
    // Claimed by producers with a CAS; read by producers only.
    std::atomic<uint64_t> tail_{0};
    // The consumer's own position.
    uint64_t head_ = 0;
};

}  // namespace verdin
