#pragma once
// What the device tests share: waiting for published state, a clock to let real time
// pass by, the positions of a device that plays the ring by itself, and tones played on a
// sound server and found again in its recording.
#include "engine/output/AlsaDevice.h"

#include "PulseServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <functional>
#include <numbers>
#include <thread>
#include <vector>

namespace verdin::test {

// Waits until done() holds, at most timeout: a failure fails, it does not hang.
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

// Starts a 44.1 kHz stereo 16-bit device on its full ring: its positions must move at
// the rate, hold while it is paused (after at most `slack` frames of a last update) and
// move on after Resume.
inline void ExpectPositionsKeepTime(OutputDevice& device, int64_t slack) {
    device.Start();
    device.CommitFrames(static_cast<int32_t>(device.RingSize() / 4));
    ASSERT_TRUE(WaitUntil([&] { return device.GetPlayedFrames() > 2000; }));
    const auto t0 = std::chrono::steady_clock::now();
    const int64_t f0 = device.GetPlayedFrames();
    ASSERT_TRUE(WaitUntil([&] { return device.GetPlayedFrames() >= f0 + 13230; }));
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    EXPECT_NEAR((device.GetPlayedFrames() - f0) / seconds, 44100.0, 44100.0 * 0.25);
    EXPECT_LT(device.GetPlayPosition(), device.RingSize());
    EXPECT_EQ(device.GetPlayPosition() % 4, 0u);
    device.Pause();
    const int64_t held = device.GetPlayedFrames();
    ASSERT_TRUE(LetRealTimePass(6615));
    EXPECT_LE(device.GetPlayedFrames() - held, slack);
    const int64_t settled = device.GetPlayedFrames();
    ASSERT_TRUE(LetRealTimePass(4410));
    EXPECT_EQ(device.GetPlayedFrames(), settled);
    device.Resume();
    EXPECT_TRUE(WaitUntil([&] { return device.GetPlayedFrames() > settled + 2000; }));
}

// Stereo 16-bit cosine at 44.1 kHz, each channel its own frequency; its loud first sample
// marks the start in a recording.
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

// Plays through a device on the server as a stream starting its output does (start,
// pause, feed, resume) up to the end mark `frames`, and returns what the sink's monitor
// heard from the first sound on, with 0.2 s after the end.
inline std::vector<int16_t> Heard(const PulseServer& server, OutputDevice& device, int64_t frames,
                                  const std::function<void(OutputDevice&)>& feed) {
    MonitorRecorder recorder(server, 44100, 2);
    EXPECT_FALSE(recorder.Failed()) << recorder.Error();
    EXPECT_TRUE(device.IsOpen()) << device.ErrorText();
    device.Start();
    device.Pause();
    feed(device);
    device.SetEndOfData(frames);
    device.Resume();
    EXPECT_TRUE(WaitUntil([&] { return device.PlayedOut(); }, std::chrono::seconds(5)));
    recorder.WaitForSamples(recorder.Samples().size() + 8820 * 2, std::chrono::seconds(3));
    recorder.Stop();
    std::vector<int16_t> heard = recorder.Samples();
    heard.erase(heard.begin(), std::find_if(heard.begin(), heard.end(), [](int16_t s) { return s != 0; }));
    return heard;
}

}  // namespace verdin::test
