#include "engine/stream/WorkerThread.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace verdin {
namespace {

// A worker whose steps can be held at a gate by the test, so the test can tell exactly
// whether a step is in progress when a control call returns.
class GatedWorker final : public WorkerThread {
public:
    ~GatedWorker() override { StopAndJoin(); }

    std::atomic<int> steps{0};
    std::atomic<bool> inStep{false};
    std::atomic<bool> gateOpen{true};
    std::atomic<bool> stopInOnStart{false};
    std::atomic<bool> finished{false};
    std::atomic<int> stopAfterSteps{-1};

protected:
    void OnStart() override {
        if (stopInOnStart) RequestStop();
    }
    void Step() override {
        inStep = true;
        while (!gateOpen.load()) std::this_thread::yield();
        if (++steps == stopAfterSteps.load()) RequestStop();
        inStep = false;
    }
    void OnFinish() override { finished = true; }
};

TEST(WorkerThread, AStopAskedForInOnStartRunsNoStepButStillFinishes) {
    GatedWorker w;
    w.stopInOnStart = true;
    const int32_t state = w.Start(0);
    EXPECT_TRUE(state == WorkerThread::kRunning || state == WorkerThread::kFinished);
    w.Stop();
    EXPECT_EQ(w.GetState(), WorkerThread::kFinished);
    EXPECT_TRUE(w.finished);
    EXPECT_EQ(w.steps, 0);
}

TEST(WorkerThread, PauseReturnsBetweenStepsAndResumeContinues) {
    GatedWorker w;
    w.gateOpen = false;
    ASSERT_EQ(w.Start(0), WorkerThread::kRunning);
    while (!w.inStep) std::this_thread::yield();

    std::atomic<bool> pauseReturned{false};
    std::thread pauser([&] {
        w.Pause();
        pauseReturned = true;
    });
    // Pause must wait for the step held at the gate.
    for (int i = 0; i < 50 && !pauseReturned; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_FALSE(pauseReturned);
    w.gateOpen = true;
    pauser.join();
    EXPECT_FALSE(w.inStep);
    EXPECT_EQ(w.GetState(), WorkerThread::kPaused);

    const int stepsWhilePaused = w.steps;
    w.Pause();  // already paused: returns at once
    EXPECT_EQ(w.steps, stepsWhilePaused);

    w.Resume();
    EXPECT_EQ(w.GetState(), WorkerThread::kRunning);
    w.Resume();  // already running: returns at once
    while (w.steps <= stepsWhilePaused) std::this_thread::yield();
    w.Stop();
    EXPECT_EQ(w.GetState(), WorkerThread::kFinished);
    EXPECT_TRUE(w.finished);
}

TEST(WorkerThread, AStepThatEndsTheThreadLeadsToOnFinishAndAStoppedThreadCanStartAgain) {
    GatedWorker w;
    w.stopAfterSteps = 3;
    w.Start(0);
    w.WaitUntilFinished();
    EXPECT_EQ(w.steps, 3);
    EXPECT_TRUE(w.finished);

    w.finished = false;
    w.stopAfterSteps = 5;
    w.Start(0);
    w.WaitUntilFinished();
    EXPECT_EQ(w.steps, 5);
    EXPECT_TRUE(w.finished);
}

TEST(WorkerThread, StopWhilePausedEndsTheThread) {
    GatedWorker w;
    w.Start(0);
    w.Pause();
    w.Stop();
    EXPECT_EQ(w.GetState(), WorkerThread::kFinished);
    EXPECT_TRUE(w.finished);
}

TEST(WorkerThread, RunHereLoopsOnTheCallersThreadUntilAStepStops) {
    GatedWorker w;
    w.stopAfterSteps = 4;
    EXPECT_TRUE(w.RunHere());
    EXPECT_EQ(w.steps, 4);
    EXPECT_FALSE(w.finished);  // no OnFinish outside a thread
}

}  // namespace
}  // namespace verdin
