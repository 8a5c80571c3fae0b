#include "TestWindow.h"

#include "TestDspProtocol.h"

#include <algorithm>
#include <chrono>

namespace verdin::test {

intptr_t TestWindow::Receive(VerdinHostWindow* window, uint32_t msg, uintptr_t, intptr_t lParam) {
    auto* self = static_cast<TestWindow*>(window->host);
    std::unique_lock lock(self->mutex_);
    const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    if (msg != WM_COPYDATA || !data || data->dwData != TEST_DSP_REPORT || !data->lpData || data->cbData == 0) {
        self->events_.push_back("unexpected message " + std::to_string(msg));
        return 0;
    }
    self->events_.emplace_back(static_cast<const char*>(data->lpData), data->cbData - 1);
    // Only one thread is held: a second one passing the gate meanwhile goes on, so that a
    // host letting two streams in at once fails the test instead of hanging it.
    if (self->events_.back().ends_with(" gate") && self->gateArmed_ && !self->held_) {
        self->held_ = true;
        self->changed_.notify_all();
        self->changed_.wait(lock, [self] { return !self->gateArmed_; });
        self->held_ = false;
    }
    return 1;
}

std::vector<std::string> TestWindow::Events() const {
    std::lock_guard lock(mutex_);
    return events_;
}

std::vector<std::string> TestWindow::EventsContaining(std::string_view text) const {
    std::vector<std::string> out = Events();
    std::erase_if(out, [&](const std::string& event) { return event.find(text) == std::string::npos; });
    return out;
}

size_t TestWindow::CountOf(std::string_view event) const {
    const std::vector<std::string> all = Events();
    return static_cast<size_t>(std::count(all.begin(), all.end(), event));
}

void TestWindow::ClearEvents() {
    std::lock_guard lock(mutex_);
    events_.clear();
}

void TestWindow::ArmGate() {
    std::lock_guard lock(mutex_);
    gateArmed_ = true;
}

bool TestWindow::WaitUntilHeld() {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(10), [this] { return held_; });
}

void TestWindow::OpenGate() {
    std::lock_guard lock(mutex_);
    gateArmed_ = false;
    changed_.notify_all();
}

}  // namespace verdin::test
