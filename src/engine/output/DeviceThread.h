#pragma once
// The life of a device's own thread, shared by the devices that play the ring by
// themselves (AlsaDevice, PulseDevice): launching it, handing it Start, Stop, Pause and
// Resume, waking it, and asking it to end.
//
// Who calls what, from which thread:
//   - the opening thread (the device's constructor) calls Launch once, after it has
//     checked Ready();
//   - stream threads call Start, Stop, Pause and Resume; each returns once the device
//     thread has carried it out, or the thread has ended, or a second has passed
//     (DeviceRequests::kTimeout). Any thread may call Wake and Ended;
//   - the device thread, in the body given to Launch, loops while !QuitRequested(),
//     calls ServeRequest on every pass and sleeps in poll() on WakeFd(), draining it
//     with DrainWake when it fires (or lets PulseConnection poll Wakeup());
//   - the closing thread (the device's destructor) calls Close.
//
// The thread is detached and holds the device's reference-counted core, of which this
// object is part: a thread still held up in the sound system when Close gives up ends on
// its own later, and the core goes with it. Nothing here takes a lock.
#include "engine/output/DeviceRequests.h"
#include "engine/output/WakeupSignal.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace verdin {

class DeviceThread {
public:
    // How long Close waits for the thread to end.
    static constexpr std::chrono::seconds kCloseTimeout{3};

    // Whether the wake-up signal could be made; a device that is not ready stays closed.
    bool Ready() const { return wake_.Valid(); }

    // Opening thread. Runs body on a new detached thread that keeps core alive (core
    // must own this object) and marks the thread ended once body has returned. False,
    // with the reason in *error, when no thread could be started.
    bool Launch(std::shared_ptr<void> core, std::function<void()> body, std::string* error);

    // Closing thread, after a successful Launch: asks the thread to end, wakes it and
    // waits for it, at most kCloseTimeout.
    void Close();

    // Stream threads: the four requests (see DeviceRequests). Start begins the run that
    // the played-frame counter's Restart numbered.
    void Start(uint16_t run) { requests_.PostStart(run, wake_, ended_); }
    void Stop() { requests_.PostStop(wake_, ended_); }
    void Pause() { requests_.PostPause(wake_, ended_); }
    void Resume() { requests_.PostResume(wake_, ended_); }

    // Any thread: cuts the device thread's sleep short.
    void Wake() const { wake_.Raise(); }
    // Any thread: whether the device thread has finished its body.
    bool Ended() const { return ended_.load(std::memory_order_acquire); }

    // Device thread: whether Close has asked it to end.
    bool QuitRequested() const { return quit_.load(std::memory_order_acquire); }
    // Device thread: when a request has come since the last call, carries it out with
    // apply(request) and then lets the waiting caller go on.
    template <typename Apply>
    void ServeRequest(Apply&& apply) {
        const uint64_t word = requests_.Current();
        if (word == served_) return;
        apply(DeviceRequest::From(word));
        served_ = word;
        requests_.Done(word);
    }
    // Device thread: the wake-up signal to poll beside the sound system's descriptors.
    int WakeFd() const { return wake_.Fd(); }
    void DrainWake() const { wake_.Drain(); }
    const WakeupSignal& Wakeup() const { return wake_; }

private:
    WakeupSignal wake_;
    DeviceRequests requests_;
    // The request word last carried out: the device thread's own, never shared.
    uint64_t served_ = 0;
    // Set by the closing thread, read by the device thread.
    std::atomic<bool> quit_{false};
    // Set by the device thread as its last act; read by the closing thread and by
    // callers waiting for a request or for room to hand over a commit.
    std::atomic<bool> ended_{false};
};

}  // namespace verdin
