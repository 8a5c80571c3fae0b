#include "DeviceThread.h"

#include <system_error>
#include <thread>

namespace verdin {

bool DeviceThread::Launch(std::shared_ptr<void> core, std::function<void()> body, std::string* error) {
    try {
        std::thread([this, core = std::move(core), body = std::move(body)] {
            body();
            ended_.store(true, std::memory_order_release);
        }).detach();
    } catch (const std::system_error& e) {
        *error = std::string("cannot start the device thread: ") + e.what();
        return false;
    }
    return true;
}

void DeviceThread::Close() {
    quit_.store(true, std::memory_order_release);
    wake_.Raise();
    const auto deadline = std::chrono::steady_clock::now() + kCloseTimeout;
    while (!Ended() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

}  // namespace verdin
