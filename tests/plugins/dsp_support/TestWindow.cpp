#include "TestWindow.h"

#include "TestDspProtocol.h"

#include <algorithm>
#include <chrono>

namespace verdin::test {

TestWindow::TestWindow() : record_{&TestWindow::Receive, this} {}

intptr_t TestWindow::Receive(VerdinHostWindow* window, uint32_t msg, uintptr_t, intptr_t lParam) {
    return static_cast<TestWindow*>(window->host)->Handle(msg, lParam);
}

intptr_t TestWindow::Handle(uint32_t msg, intptr_t lParam) {
    std::unique_lock lock(mutex_);
    const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    if (msg != WM_COPYDATA || !data || data->dwData != TEST_DSP_REPORT || !data->lpData || data->cbData == 0) {
        events_.push_back("unexpected message " + std::to_string(msg));
        return 0;
    }
    std::string event(static_cast<const char*>(data->lpData), data->cbData - 1);
    const bool gate = event.ends_with(" gate");
    events_.push_back(std::move(event));
    // Only one thread is held: a second one passing the gate meanwhile goes on, so that
    // a host letting two streams in at once fails the test instead of hanging it.
    if (gate && gateArmed_ && !held_) {
        held_ = true;
        changed_.notify_all();
        changed_.wait(lock, [this] { return !gateArmed_; });
        held_ = false;
    }
    return 1;
}

std::vector<std::string> TestWindow::Events() const {
    std::lock_guard lock(mutex_);
    return events_;
}

std::vector<std::string> TestWindow::EventsContaining(std::string_view text) const {
    std::vector<std::string> out;
    for (std::string& event : Events())
        if (event.find(text) != std::string::npos) out.push_back(std::move(event));
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
