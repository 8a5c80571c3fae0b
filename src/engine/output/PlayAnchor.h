#pragma once
// Where playback stood at a moment, so that a position can be read at any time without
// asking the sound server: a device thread that looks at the server's clock only every
// few hundred milliseconds publishes an anchor (frames played, the steady clock at that
// moment, whether playback runs on from there), and readers move it on by the time since,
// never past the frames the device had handed to the server.
//
// Why: every look at the server's clock is a wake-up of the device thread, and a
// wake-up costs more than decoding a block. The analyzer and the oscilloscope still need
// the position to the millisecond, and the stream needs it for room in the ring.
//
// One writer (the device thread), any number of readers, no lock: a sequence number that
// is odd while the writer is in the middle, around fields that are atomics themselves; a
// reader tries again when the number changed while it read.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>

namespace verdin {

class PlayAnchor {
public:
    struct Point {
        uint16_t run = 0;      // the device run (GenerationCounter) the point belongs to
        int64_t frames = 0;    // played frames at `stampNs`
        int64_t stampNs = 0;   // steady clock, nanoseconds
        int64_t limit = 0;     // frames handed to the server: never moved beyond
        bool running = false;  // playback runs on from there at the format's rate
    };

    static int64_t NowNs() {
        return std::chrono::duration_cast<std::chrono::nanoseconds>(
                   std::chrono::steady_clock::now().time_since_epoch())
            .count();
    }

    // Device thread only.
    void Publish(const Point& p) {
        const uint32_t s = sequence_.load(std::memory_order_relaxed);
        sequence_.store(s + 1, std::memory_order_relaxed);
        std::atomic_thread_fence(std::memory_order_release);
        run_.store(p.run, std::memory_order_relaxed);
        frames_.store(p.frames, std::memory_order_relaxed);
        stampNs_.store(p.stampNs, std::memory_order_relaxed);
        limit_.store(p.limit, std::memory_order_relaxed);
        running_.store(p.running, std::memory_order_relaxed);
        sequence_.store(s + 2, std::memory_order_release);
    }

    // Any thread: the played frames at nowNs for `run`, or nothing when the anchor belongs
    // to another run (a Start has just reset the count).
    std::optional<int64_t> FramesAt(uint16_t run, int64_t nowNs, uint32_t sampleRate) const {
        Point p;
        for (;;) {
            const uint32_t before = sequence_.load(std::memory_order_acquire);
            p.run = run_.load(std::memory_order_relaxed);
            p.frames = frames_.load(std::memory_order_relaxed);
            p.stampNs = stampNs_.load(std::memory_order_relaxed);
            p.limit = limit_.load(std::memory_order_relaxed);
            p.running = running_.load(std::memory_order_relaxed);
            std::atomic_thread_fence(std::memory_order_acquire);
            if ((before & 1) == 0 && sequence_.load(std::memory_order_relaxed) == before) break;
        }
        if (p.run != run) return std::nullopt;
        if (!p.running || nowNs <= p.stampNs) return p.frames;
        const int64_t elapsed = (nowNs - p.stampNs) * static_cast<int64_t>(sampleRate) / 1'000'000'000;
        return std::max(p.frames, std::min(p.frames + elapsed, p.limit));
    }

private:
    std::atomic<uint32_t> sequence_{0};
    std::atomic<uint16_t> run_{0};
    std::atomic<int64_t> frames_{0};
    std::atomic<int64_t> stampNs_{0};
    std::atomic<int64_t> limit_{0};
    std::atomic<bool> running_{false};
};

}  // namespace verdin
