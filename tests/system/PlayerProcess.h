#pragma once
// Runs the real player for whole-program tests: a private D-Bus session bus, private
// configuration and data directories, the program started as a user would, and gdbus (a
// real client) to talk to it.
#include "TempDir.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace verdin::test {

// A session bus of our own, for as long as the object lives.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    bool Running() const { return pid_ > 0 && !address_.empty(); }
    const std::string& Address() const { return address_; }

private:
    TempDir dir_;
    pid_t pid_ = -1;
    std::string address_;
};

// The directories a player run keeps its files in.
struct PlayerHome {
    TempDir dir;
    std::string ConfigFile() const { return dir.file("config/Brimfell/Verdin.conf"); }
    std::string DataDirectory() const { return dir.file("data/Brimfell/Verdin"); }
    std::string DefaultPlaylist() const { return DataDirectory() + "/default.vdp"; }
    std::vector<std::string> Environment(const PrivateBus& bus) const;
};

class PlayerProcess {
public:
    // Starts build/bin/verdin with the arguments (e.g. "--headless", "/PLAY", path).
    PlayerProcess(const PlayerHome& home, const PrivateBus& bus, const std::vector<std::string>& arguments);
    ~PlayerProcess();  // kills the player if it still runs

    // Waits until the player answers on the bus.
    bool WaitUntilAnswering(std::chrono::milliseconds limit = std::chrono::seconds(15));
    // Calls a method of /Player (or /System with path "/System"); the reply as gdbus
    // prints it ("('playing',)"), or nothing when the call failed.
    std::optional<std::string> Call(const std::string& method, const std::vector<std::string>& arguments = {},
                                     const std::string& path = "/Player");
    // /System's Execute sent from this process (gdbus caps an argument at 128 KiB).
    bool Execute(const std::string& text);
    std::string Status();         // "playing", "paused" or "stopped"
    int CurrentRow();
    int RowCount();
    // Sends a signal; waits for the process to end and gives its exit code (-1: killed or
    // still running at the limit).
    void Signal(int signal);
    int WaitForExit(std::chrono::milliseconds limit = std::chrono::seconds(20));
    std::string Output() const;  // standard output and error so far
    pid_t Pid() const { return pid_; }

private:
    const PrivateBus& bus_;
    TempDir logDir_;
    pid_t pid_ = -1;
    int exitCode_ = -2;
};

// Runs one more verdin (the second start) to its end; its exit code and output.
std::pair<int, std::string> RunSecondStart(const PlayerHome& home, const PrivateBus& bus,
                                           const std::vector<std::string>& arguments);

// Waits until done() holds, checking every 20 ms.
template <typename Done>
bool WaitFor(Done done, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        struct timespec t {0, 20 * 1000 * 1000};
        nanosleep(&t, nullptr);
    }
    return true;
}

}  // namespace verdin::test
