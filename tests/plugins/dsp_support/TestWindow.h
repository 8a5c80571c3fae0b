#pragma once
// The host window record a test hands to the DSP host as the parent window. The test
// plug-ins report every call to it (TestDspProtocol.h); it keeps the reports in the order
// they arrive, from whichever thread sends them.
//
// The gate: while armed, a "gate" report holds the plug-in's ModifySamples (and with it the
// stream thread inside the host) until the test opens the gate. One thread at a time is
// held; others pass. The test learns that a thread is held from the window, not a sleep.
#include <verdin/window.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace verdin::test {

class TestWindow {
public:
    TestWindow() : record_{&TestWindow::Receive, this} {}
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    VerdinHostWindow* record() { return &record_; }
    // Every report so far, "<library>/<module> <event>"; those that contain text; the
    // number of reports equal to event.
    std::vector<std::string> Events() const;
    std::vector<std::string> EventsContaining(std::string_view text) const;
    size_t CountOf(std::string_view event) const;
    void ClearEvents();

    void ArmGate();
    // Waits until a thread is held at the gate (at most 10 s); false on time-out.
    bool WaitUntilHeld();
    // Lets the held thread (and any later one) go on; the gate is disarmed.
    void OpenGate();

private:
    static intptr_t Receive(VerdinHostWindow* window, uint32_t msg, uintptr_t wParam, intptr_t lParam);

    VerdinHostWindow record_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> events_;
    bool gateArmed_ = false;
    bool held_ = false;
};

}  // namespace verdin::test
