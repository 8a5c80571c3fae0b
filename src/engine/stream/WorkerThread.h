#pragma once
// The base of every stream thread: a loop of Steps on a thread of its own, controlled
// from another thread through request flags, never through a lock.
//
// The controlling thread (the user interface) raises stopRequested, finishRequested or
// pauseRequested and then waits until `state` shows that the thread has seen the request:
// 0 starting, 1 running, 2 finished, 3 paused. A Step is never interrupted: Stop, Pause
// and Resume return between Steps. The waits use std::atomic wait/notify on `state`
// (the thread notifies at every change), so they wake as soon as the state changes
// instead of polling. The other way round, every request also raises a wake-up signal, so
// a thread that dozes between Steps (Doze, or the pause) sees it at once: it may doze long
// without making Stop or Pause wait.
#include "engine/output/WakeupSignal.h"

#include <atomic>
#include <cstdint>
#include <thread>

namespace verdin {

class WorkerThread {
public:
    enum State : int32_t { kStarting = 0, kRunning = 1, kFinished = 2, kPaused = 3 };

    WorkerThread() = default;
    // Stops the thread if it still runs; a derived class must stop it in its own
    // destructor already, while its Step can still run.
    virtual ~WorkerThread();
    WorkerThread(const WorkerThread&) = delete;
    WorkerThread& operator=(const WorkerThread&) = delete;

    // Sets `state` to starting, creates the thread at the given priority (the player's
    // priority steps: 0 normal, positive higher, negative lower) and waits until it runs
    // or has already finished; returns that state (1 or 2). A second Start while the
    // thread exists returns the current state.
    int32_t Start(int priority);
    // Asks the thread to stop (finishRequested and stopRequested) and waits until it has
    // finished: after the current Step and OnFinish have run.
    void Stop();
    // Asks the thread to pause; returns once no Step is in progress (at once when the
    // thread is not running).
    void Pause();
    // Clears the pause request; returns once the thread runs again (at once when it is
    // not paused).
    void Resume();
    // Runs the thread's loop on the calling thread (without OnStart, OnFinish or a thread
    // of its own) until stopRequested is set; returns stopRequested.
    bool RunHere();

    int32_t GetState() const { return state_.load(std::memory_order_acquire); }
    // Waits until the thread has finished (at once when it never started or has ended).
    void WaitUntilFinished() const { WaitUntilState(kFinished); }
    // Any thread: cuts the thread's current Doze short (something it waits for changed).
    void Nudge() const { nudge_.Raise(); }

protected:
    virtual void OnStart() {}
    virtual void Step() = 0;
    virtual void OnFinish() {}

    bool StopRequested() const { return stopRequested_.load(std::memory_order_acquire) != 0; }
    bool FinishRequested() const { return finishRequested_.load(std::memory_order_acquire) != 0; }
    // The thread's own wait between Steps: returns after the given time, or earlier when
    // a request or a Nudge came.
    void Doze(uint32_t milliseconds) const { nudge_.WaitMilliseconds(static_cast<int>(milliseconds)); }
    // A Step ends the thread by itself with this (the end of a track and its pause).
    void RequestStop() { stopRequested_.store(1, std::memory_order_release); }

    // Stops and joins the thread: for derived destructors.
    void StopAndJoin();

private:
    void Body();
    void SetState(State s);
    void WaitWhileState(int32_t s) const;
    void WaitUntilState(int32_t s) const;

    std::thread thread_;
    // Raised after every request and by Nudge; waited on by Doze and while paused.
    WakeupSignal nudge_;
    // Raised by the controlling thread (release), read by the worker (acquire); cleared by
    // the worker when it begins.
    std::atomic<int32_t> stopRequested_{0};
    std::atomic<int32_t> finishRequested_{0};
    std::atomic<int32_t> pauseRequested_{0};
    // Written by the worker (release, with notify_all), read and waited on by the
    // controlling thread (acquire). Start sets it to kStarting before the thread exists.
    std::atomic<int32_t> state_{kFinished};
};

// Applies one of the player's thread priority steps to the calling thread, as a nice
// value (raising needs privileges; a refusal is ignored and the thread runs as it is).
void ApplyThreadPriority(int priority);

}  // namespace verdin
