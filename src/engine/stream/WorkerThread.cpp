#include "WorkerThread.h"

#include <algorithm>
#include <chrono>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace verdin {

namespace {
// A paused thread wakes for a request through the nudge; the timeout is only a fallback
// for a missing eventfd.
constexpr uint32_t kPausedDozeMs = 500;
}

WorkerThread::~WorkerThread() { StopAndJoin(); }

void WorkerThread::StopAndJoin() {
    if (thread_.joinable()) {
        Stop();
        thread_.join();
    }
}

void WorkerThread::SetState(State s) {
    state_.store(s, std::memory_order_release);
    state_.notify_all();
}

void WorkerThread::WaitWhileState(int32_t s) const {
    for (int32_t now = state_.load(std::memory_order_acquire); now == s;
         now = state_.load(std::memory_order_acquire))
        state_.wait(now, std::memory_order_acquire);
}

void WorkerThread::WaitUntilState(int32_t s) const {
    for (int32_t now = state_.load(std::memory_order_acquire); now != s;
         now = state_.load(std::memory_order_acquire))
        state_.wait(now, std::memory_order_acquire);
}

int32_t WorkerThread::Start(int priority) {
    if (thread_.joinable()) {
        if (GetState() != kFinished) return GetState();
        thread_.join();  // a finished thread may be started again
    }
    state_.store(kStarting, std::memory_order_release);
    thread_ = std::thread([this, priority] {
        ApplyThreadPriority(priority);
        Body();
    });
    WaitWhileState(kStarting);
    return GetState();
}

void WorkerThread::Stop() {
    finishRequested_.store(1, std::memory_order_release);
    stopRequested_.store(1, std::memory_order_release);
    nudge_.Raise();
    if (thread_.joinable()) WaitUntilState(kFinished);
}

void WorkerThread::Pause() {
    pauseRequested_.store(1, std::memory_order_release);
    nudge_.Raise();
    if (GetState() == kRunning) WaitWhileState(kRunning);
}

void WorkerThread::Resume() {
    pauseRequested_.store(0, std::memory_order_release);
    nudge_.Raise();
    if (GetState() == kPaused) WaitWhileState(kPaused);
}

bool WorkerThread::RunHere() {
    while (!StopRequested()) {
        if (pauseRequested_.load(std::memory_order_acquire)) Doze(kPausedDozeMs);
        else Step();
    }
    return StopRequested();
}

void WorkerThread::Body() {
    stopRequested_.store(0, std::memory_order_relaxed);
    finishRequested_.store(0, std::memory_order_relaxed);
    pauseRequested_.store(0, std::memory_order_relaxed);
    // OnStart runs before the controlling thread leaves Start, so Start's caller sees
    // whatever OnStart decided (a stop request included).
    OnStart();
    SetState(kRunning);
    while (!StopRequested()) {
        if (pauseRequested_.load(std::memory_order_acquire)) {
            if (GetState() != kPaused) SetState(kPaused);
            Doze(kPausedDozeMs);
        } else {
            if (GetState() != kRunning) SetState(kRunning);
            Step();
        }
    }
    OnFinish();
    SetState(kFinished);
}

void ApplyThreadPriority(int priority) {
    const int nice = std::clamp(-3 * priority, -15, 19);
    const auto tid = static_cast<id_t>(::syscall(SYS_gettid));
    (void)::setpriority(PRIO_PROCESS, tid, nice);
}

}  // namespace verdin
