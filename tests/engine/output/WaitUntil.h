#pragma once
// Waits for state that the code under test publishes, with a deadline, so a failure
// shows as a failed expectation instead of a hung test.
#include <chrono>
#include <thread>

namespace verdin::test {

template <typename Predicate>
bool WaitUntil(Predicate done, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}  // namespace verdin::test
