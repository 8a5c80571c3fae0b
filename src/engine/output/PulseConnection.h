#pragma once
// A connection to the PulseAudio server on a plain pa_mainloop, driven by whoever owns
// it: first the thread that opens a device (within a deadline, so that a missing or
// dead server never holds it up), then the device's own thread.
#include "engine/output/OutputDeviceEntry.h"
#include "engine/output/WakeupSignal.h"

#include <pulse/context.h>
#include <pulse/mainloop.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace verdin {

using PulseDeadline = std::chrono::steady_clock::time_point;

// How long opening a device or listing the sinks may take when the server does not
// answer.
constexpr std::chrono::milliseconds kPulseConnectTimeout{1500};

class PulseConnection {
public:
    // Connects to the server the environment names (PULSE_SERVER, the user's runtime
    // directory); never starts a server. Null with the reason in *error when no server
    // answers before the deadline.
    static std::unique_ptr<PulseConnection> Connect(PulseDeadline deadline, std::string* error);
    ~PulseConnection();
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    pa_context* Context() const { return context_; }
    bool Alive() const;
    std::string LastError() const;

    // One pass of the loop: waits at most timeoutMs for server traffic (or for the
    // wake-up signal, when one is set), then runs the callbacks. False once the loop
    // cannot run any more.
    bool Iterate(int timeoutMs);
    // Iterates until done() holds; false on deadline or a lost connection.
    bool RunUntil(const std::function<bool()>& done, PulseDeadline deadline);
    // Lets another thread cut Iterate's wait short.
    void SetWakeup(const WakeupSignal* wakeup) { wakeup_ = wakeup; }

    // The server's sinks with the default sink first; empty on failure.
    std::vector<OutputDeviceEntry> Sinks(PulseDeadline deadline);

private:
    PulseConnection() = default;
    static int PollWithWakeup(struct pollfd* fds, unsigned long count, int timeout, void* self);

    pa_mainloop* loop_ = nullptr;
    pa_context* context_ = nullptr;
    const WakeupSignal* wakeup_ = nullptr;
};

// The device list of the options page: the server's sinks, the default sink first.
std::vector<OutputDeviceEntry> ListPulseDevices();

}  // namespace verdin
