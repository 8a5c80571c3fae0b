#pragma once
// A private PulseAudio server for tests, with one null sink named "verdin_test".
//
// The daemon runs from a private directory (its own runtime directory, home and state),
// so tests never touch a desktop's sound server and may run side by side. The process
// running the test talks to it through PULSE_SERVER, which the server sets while it
// lives and restores afterwards. The sink is loaded with norewinds=1, so its monitor
// records the first frames of a new stream too.
#include "TempDir.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace verdin::test {

class PulseServer {
public:
    static constexpr const char* kSinkName = "verdin_test";

    // Whether the pulseaudio program is installed at all.
    static bool Installed();

    // Starts the daemon and waits (up to 10 s) until its socket answers.
    PulseServer();
    // Stops the daemon (and kills it if it does not end in time).
    ~PulseServer();

    bool Running() const { return pid_ > 0 && ready_; }  // not copyable: it owns the daemon
    // Why the server is not running, with the end of its log.
    const std::string& Error() const { return error_; }
    // "unix:<socket path>"
    std::string Address() const { return "unix:" + socket_; }
    // Ends the daemon abruptly (SIGKILL), as a crashed server would.
    void Kill();

private:
    std::string LogTail() const;

    TempDir dir_;
    std::string socket_;
    pid_t pid_ = -1;
    bool ready_ = false;
    std::string error_;
    std::optional<std::string> savedServer_;
};

// Records the sink's monitor with parec as raw signed 16-bit samples into a file.
class MonitorRecorder {
public:
    // Starts parec and waits until the first samples arrive, so that whatever plays
    // afterwards is recorded. Failed() tells when it could not start.
    MonitorRecorder(const PulseServer& server, int sampleRate, int channels);
    ~MonitorRecorder();

    bool Failed() const { return pid_ <= 0 || !error_.empty(); }
    const std::string& Error() const { return error_; }
    // The samples recorded so far, interleaved.
    std::vector<int16_t> Samples() const;
    // Waits until the recording holds at least count samples; false on time-out.
    bool WaitForSamples(size_t count, std::chrono::milliseconds timeout) const;
    // Ends parec; Samples() then holds the whole recording.
    void Stop();

private:
    TempDir dir_;
    std::string file_;
    pid_t pid_ = -1;
    std::string error_;
};

}  // namespace verdin::test
