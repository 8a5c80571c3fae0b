// The parts of a stream: its worker thread and the rules of its ring buffer.
#include "engine/stream/RingLayout.h"
#include "engine/stream/RingWriter.h"
#include "engine/stream/SilenceScan.h"
#include "engine/stream/WorkerThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace verdin {
namespace {

// A worker whose steps take a few hundred yields and tell whether one is in progress.
class Worker final : public WorkerThread {
public:
    ~Worker() override { StopAndJoin(); }
    std::atomic<int> steps{0}, stopAfterSteps{-1};
    std::atomic<bool> inStep{false}, stopInOnStart{false}, finished{false};

protected:
    void OnStart() override { stopInOnStart ? RequestStop() : void(); }
    void Step() override {
        inStep = true;
        for (int i = 0; i < 300; ++i) std::this_thread::yield();
        if (++steps == stopAfterSteps) RequestStop();
        inStep = false;
    }
    void OnFinish() override { finished = true; }
};

TEST(WorkerThread, PausesAndStopsOnlyBetweenStepsEndsByAStepOrAStopAndStartsAgain) {
    Worker w;
    ASSERT_EQ(w.Start(0), WorkerThread::kRunning);
    for (int round = 0; round < 50; ++round) {
        while (!w.inStep) std::this_thread::yield();  // asked while a step runs
        w.Pause();
        ASSERT_TRUE(!w.inStep && w.GetState() == WorkerThread::kPaused) << round;
        const int paused = w.steps;
        w.Pause();  // already paused: returns at once
        w.Resume();
        ASSERT_EQ(w.GetState(), WorkerThread::kRunning);
        while (w.steps <= paused) std::this_thread::yield();  // and steps go on
    }
    w.Resume();  // already running: returns at once
    while (!w.inStep) std::this_thread::yield();
    w.Stop();
    EXPECT_TRUE(!w.inStep && w.GetState() == WorkerThread::kFinished && w.finished);

    w.stopInOnStart = true, w.finished = false, w.steps = 0;  // no step runs, yet OnFinish does
    const int32_t state = w.Start(0);
    EXPECT_TRUE(state == WorkerThread::kRunning || state == WorkerThread::kFinished);
    w.Stop();
    EXPECT_TRUE(w.finished && w.steps == 0);
    w.stopInOnStart = false, w.finished = false, w.stopAfterSteps = 3;
    w.Start(0);
    w.WaitUntilFinished();
    EXPECT_TRUE(w.steps == 3 && w.finished);
    w.finished = false;
    w.Start(0);
    w.Pause();
    w.Stop();  // while paused
    EXPECT_TRUE(w.GetState() == WorkerThread::kFinished && w.finished);
    Worker here;  // on the caller's thread: no OnFinish
    here.stopAfterSteps = 4;
    EXPECT_TRUE(here.RunHere() && here.steps == 4 && !here.finished);
}

const PcmFormat kCd{44100, 2, 16};

TEST(RingRules, LayoutSilenceCopiesAndTheCrossfadeMix) {
    const std::tuple<int32_t, int32_t, PcmFormat, uint32_t, uint32_t, uint32_t> layouts[] = {  // size, prefill %: bytes, frames, prefill frames
        {102400, 10, kCd, 102400, 25600, 10240},  // 10% is 2560, raised to the minimum
        {512000, 50, kCd, 512000, 128000, 64000}, {512007, 100, kCd, 512000, 128000, 128000},  // a multiple of 8
        {1000, 100, kCd, 102400, 25600, 25600}, {99999999, 100, kCd, 2048000, 512000, 512000},  // the options page's limits
        {102400, 100, PcmFormat{8000, 1, 8}, 102400, 102400, 102400}, {204800, 150, kCd, 204800, 51200, 51200},  // percent clamped to 100
        {102400, 10, PcmFormat{8000, 3, 24}, 102393, 11377, 10240},  // whole frames for a frame that does not divide 8
    };
    for (const auto& [size, prefill, format, bytes, frames, prefillFrames] : layouts) {
        const RingLayout r = ComputeRingLayout(size, prefill, format);
        EXPECT_EQ(std::tuple(r.bytes, r.frames, r.prefillFrames), std::tuple(bytes, frames, prefillFrames)) << size << " bytes, " << prefill << "%";
    }
    EXPECT_EQ(std::tuple(SilenceThreshold(-100, 16), SilenceThreshold(-20, 16), SilenceThreshold(-20, 8), SilenceThreshold(-60, 24)), std::tuple(0, 3276, 12, 8388));
    const int16_t pcm[] = {0, 0, 3, -3, 0, 3277, 9, 9, -3277, 0};
    const auto* bytes = reinterpret_cast<const uint8_t*>(pcm);
    // The right channel of frame 2; frame 1; all silent: the frame count; frame 0.
    EXPECT_EQ(std::tuple(FirstLoudFrame(bytes, 4, kCd, 3276), FirstLoudFrame(bytes, 4, kCd, 0), FirstLoudFrame(bytes, 1, kCd, 0), FirstLoudFrame(bytes + 16, 1, kCd, 3276)),
              std::tuple(2u, 1u, 1u, 0u));
    const uint8_t eight[] = {0x00, 0x05, 0x80};  // signed bytes: 0x80 (unsigned silence) is -128
    EXPECT_EQ(FirstLoudFrame(eight, 3, PcmFormat{8000, 1, 8}, 5), 2u);
    std::vector<uint8_t> ring(8, 0);
    const uint8_t data[] = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(CopyIntoRing(ring.data(), 8, 6, data, 6), 4u);
    EXPECT_EQ(ring, (std::vector<uint8_t>{3, 4, 5, 6, 0, 0, 1, 2}));

    // A crossfade mixes exactly its length, (n x L + (o - n) x r) / L with r = L..1,
    // truncating toward zero: old +8000, new -8000, 4 frames of a 6-frame block, written
    // from frame 14 of 16 round to frame 1; the rest is the caller's to copy.
    std::vector<int16_t> ring16(16, 8000);
    const std::vector<int16_t> block(6, -8000);
    Crossfade fade{4, 4};
    EXPECT_EQ(MixIntoRing(reinterpret_cast<uint8_t*>(ring16.data()), 32, 28, reinterpret_cast<const uint8_t*>(block.data()), 6, PcmFormat{1000, 1, 16}, fade), 4u);
    EXPECT_EQ(fade.remaining, 0u);
    EXPECT_EQ((std::vector<int16_t>{ring16[14], ring16[15], ring16[0], ring16[1], ring16[2]}), (std::vector<int16_t>{8000, 4000, 0, -4000, 8000}));
    // 8-bit samples are unsigned: o = 100, n = -50 give 100, (-150 + 300) / 3 = 50, 0.
    std::vector<uint8_t> ring8(4, 128 + 100);
    const std::vector<uint8_t> block8(3, 128 - 50);
    Crossfade fade8{3, 3};
    MixIntoRing(ring8.data(), 4, 0, block8.data(), 3, PcmFormat{1000, 1, 8}, fade8);
    EXPECT_EQ(ring8, (std::vector<uint8_t>{228, 178, 128, 228}));
    int16_t one = 1;
    const int16_t zero = 0;
    Crossfade odd{3, 2}, none{0, 0};
    MixIntoRing(reinterpret_cast<uint8_t*>(&one), 2, 0, reinterpret_cast<const uint8_t*>(&zero), 1, PcmFormat{1000, 1, 16}, odd);
    EXPECT_EQ(one, 0);  // (0 + 1 x 2) / 3
    EXPECT_EQ(MixIntoRing(reinterpret_cast<uint8_t*>(&one), 2, 0, reinterpret_cast<const uint8_t*>(&zero), 1, PcmFormat{1000, 1, 16}, none), 0u);
}

}  // namespace
}  // namespace verdin
