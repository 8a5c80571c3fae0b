#include "WakeupSignal.h"

#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace verdin {

WakeupSignal::WakeupSignal() : fd_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

WakeupSignal::~WakeupSignal() {
    if (fd_ >= 0) close(fd_);
}

void WakeupSignal::Raise() const {
    const uint64_t one = 1;
    // A full counter (EAGAIN) still wakes the poller; nothing else can fail here.
    [[maybe_unused]] ssize_t n = write(fd_, &one, sizeof one);
}

void WakeupSignal::Drain() const {
    uint64_t count;
    [[maybe_unused]] ssize_t n = read(fd_, &count, sizeof count);
}

bool WakeupSignal::WaitMilliseconds(int milliseconds) const {
    struct pollfd fd{fd_, POLLIN, 0};
    if (poll(&fd, 1, milliseconds) <= 0 || !(fd.revents & POLLIN)) return false;
    Drain();
    return true;
}

}  // namespace verdin
