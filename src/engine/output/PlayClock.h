#pragma once
// Real-time pacing for a device whose sound system does not keep time (the ALSA `null`
// PCM swallows everything at once; a device whose sound server went away hears nothing):
// frames count as played at the format's rate, but never more than were handed over.
#include <algorithm>
#include <chrono>
#include <cstdint>

namespace verdin {

class PlayClock {
public:
    using Clock = std::chrono::steady_clock;

    explicit PlayClock(uint32_t sampleRate) : rate_(sampleRate ? sampleRate : 1) {}

    // Forget elapsed time: call when playback (re)starts after a pause or a stop.
    void Restart(Clock::time_point now) {
        last_ = now;
        carryNs_ = 0;
    }
    // Moves played on by the time since the last call, up to handed. The fraction of a
    // frame left over is carried to the next call, so the rate does not drift; time
    // spent with nothing to play is not banked.
    int64_t Advance(int64_t played, int64_t handed, Clock::time_point now) {
        const int64_t elapsedNs =
            std::chrono::duration_cast<std::chrono::nanoseconds>(now - last_).count();
        last_ = now;
        if (elapsedNs > 0) carryNs_ = std::min(carryNs_ + elapsedNs, kMaxCarryNs);
        const int64_t frames = carryNs_ * rate_ / 1'000'000'000;
        if (played + frames >= handed) {
            carryNs_ = 0;
            return handed > played ? handed : played;
        }
        carryNs_ -= frames * 1'000'000'000 / rate_;
        return played + frames;
    }

private:
    // A device thread wakes every few milliseconds; more than this means it was held
    // up, and the products above must stay within 64 bits.
    static constexpr int64_t kMaxCarryNs = 10'000'000'000;
    int64_t rate_;
    Clock::time_point last_{};
    int64_t carryNs_ = 0;
};

}  // namespace verdin
