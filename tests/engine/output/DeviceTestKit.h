#pragma once
// What the device tests share: waiting for published state, a clock to let real time
// pass by, and test tones found again in a recording.
#include "engine/output/AlsaDevice.h"

#include <chrono>
#include <cmath>
#include <cstring>
#include <numbers>
#include <thread>
#include <vector>

namespace verdin::test {

// Waits until done() holds, at most timeout, so a failure is a failed expectation and
// not a hung test.
template <typename Predicate>
bool WaitUntil(Predicate done, std::chrono::milliseconds timeout = std::chrono::seconds(3)) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// Lets real time pass as a playing device counts it (frames at 44.1 kHz on the ALSA null
// PCM), so a test can check that another device stood still meanwhile.
inline bool LetRealTimePass(int32_t frames) {
    std::vector<uint8_t> ring(size_t(frames) * 4);
    AlsaDevice clock("null", {44100, 2, 16}, ring.data(), static_cast<uint32_t>(ring.size()));
    clock.Start();
    clock.CommitFrames(frames);
    return WaitUntil([&] { return clock.GetPlayedFrames() >= frames; });
}

// Interleaved stereo 16-bit cosine (its very first sample is loud and marks the start in a
// recording), each channel its own frequency.
inline std::vector<int16_t> StereoTone(int frames, double left, double right, double amplitude) {
    std::vector<int16_t> out(size_t(frames) * 2);
    for (int i = 0; i < frames; ++i)
        for (int c = 0; c < 2; ++c)
            out[2 * i + c] = static_cast<int16_t>(
                std::lround(amplitude * 32767 * std::cos((c ? right : left) * 2 * std::numbers::pi * i / 44100)));
    return out;
}

inline void CopyToRing(std::vector<uint8_t>& ring, size_t atFrame, const std::vector<int16_t>& tone) {
    std::memcpy(ring.data() + atFrame * 4, tone.data(), tone.size() * 2);
}

// The samples from the first non-zero one on (empty when all are silent).
inline std::vector<int16_t> FromFirstSound(const std::vector<int16_t>& samples) {
    size_t i = 0;
    while (i < samples.size() && samples[i] == 0) ++i;
    return {samples.begin() + long(i), samples.end()};
}

}  // namespace verdin::test
