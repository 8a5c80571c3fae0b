#pragma once
// Wakes a device thread that sleeps in poll(): an eventfd that any thread may raise and
// the device thread polls and drains. Raising is one write() call and never blocks.
namespace verdin {

class WakeupSignal {
public:
    WakeupSignal();
    ~WakeupSignal();
    WakeupSignal(const WakeupSignal&) = delete;
    WakeupSignal& operator=(const WakeupSignal&) = delete;

    bool Valid() const { return fd_ >= 0; }
    int Fd() const { return fd_; }
    void Raise() const;
    void Drain() const;
    // Sleeps until the signal is raised or the time is up, and drains it; true when it
    // was raised. Without an eventfd (not Valid) it only sleeps.
    bool WaitMilliseconds(int milliseconds) const;

private:
    int fd_ = -1;
};

}  // namespace verdin
