#pragma once
// The application object: the settings, the player core, the command server and the
// D-Bus interface for scripts, the two timers, and the orderly teardown on quit, on
// SIGINT and SIGTERM and at the end of a session. It runs the player without windows; the
// window library derives from it and shows boxes and windows instead of printing.
#include "settings/Settings.h"
#include "shell/PlayerCore.h"
#include "shell/PlayerHost.h"
#include "shell/app/HostWindow.h"

#include <QObject>
#include <QTimer>
#include <memory>
#include <string>

namespace verdin {

struct RunOptions {
    bool headless = true;
    bool quitAfterPlay = false;
    std::string commandText;
};

class CoreApplication : public QObject, public PlayerHost {
    Q_OBJECT
public:
    // The exit code of the player's own quit; a quit with any other code (0 from plug-in
    // code) does not end the program.
    static constexpr int kQuitCode = 204;
    // The exit status of a --quit-after-play run that reported an error.
    static constexpr int kPlayFailedCode = 1;

    explicit CoreApplication(RunOptions options, QObject* parent = nullptr);
    ~CoreApplication() override;

    // Registers the command server on the session bus, and with it the interface for
    // desktop media controllers. False only when another instance owns the bus name (the
    // caller then hands its command text over); without a session bus the player runs
    // without a server, silently. Without the media controllers' name it runs on, saying so.
    bool Register();
    // The deferred start-up: plug-ins, the default playlist or the command text.
    void StartUp();
    // Runs the start-up from the event loop's first turn, so the player answers on the bus
    // (and its window shows "Retrieving track information...") while it loads.
    void ScheduleStartUp();
    // Completes a scheduled start-up now: whatever needs the player started calls this.
    void EnsureStarted();
    // Runs the event loop until the player's own quit; returns the process exit code.
    int Run();

    // The player's facade, for the faces.
    Player& GetPlayer() { return core_->Face(); }
    // The record hosted plug-ins get as their parent window.
    VerdinHostWindow* HostWindowRecord() { return hostWindow_->Record(); }
    const RunOptions& Options() const { return options_; }
    bool StartupDone() const { return core_ && core_->StartupDone(); }

    // PlayerHost, headless: boxes become lines on standard error.
    void ShowMessage(std::string_view text, MessageIcon icon) override;
    bool AskYesNo(std::string_view text, MessageIcon icon, Unanswered unanswered) override;
    void SetTimersRunning(bool running) override;
    void RefreshNow() override;
    void WindowCommandUnavailable(std::string_view command) override;
    void Quit() override;

    // Quits without asking (signals, the end of a session).
    void QuitNow();
    // Runs a command-table identifier as a menu, key or plug-in would. The window library
    // handles the window commands first.
    virtual bool DispatchCommand(uint32_t id);
    // Brings the main window to the front (a media controller's "raise"); nothing headless.
    virtual void RaiseWindow() {}

protected:
    void ProgressTick();
    // The 10 ms tick: the window's drawing, then the visualization modules.
    virtual void DisplayTick() {}
    // Teardown's first step with windows: the window layout goes into the settings before
    // they are written.
    virtual void StoreWindowState() {}
    // The teardown, once; a derived application runs it in its own destructor, while its
    // windows still exist.
    void TearDownOnce();

private:
    void WatchSignals();
    void ShowProgressLine();
    void DisplayTimerTick();
    // Runs the 10 ms timer while the timers run and something needs it: the windows, or
    // (headless too) switched-on visualization modules.
    void UpdateDisplayTimer();
    // The end of a --quit-after-play run: status 0, or kPlayFailedCode after an error.
    void QuitAfterPlay();

    RunOptions options_;
    Settings settings_;
    std::unique_ptr<PlayerCore> core_;
    std::unique_ptr<HostWindow> hostWindow_;  // what plug-ins get as their window
    // MPRIS listens to the core: declared after it, so it goes first.
    std::unique_ptr<QObject> mpris_;
    QTimer progressTimer_;
    QTimer displayTimer_;
    // One step of the display tick: the analyzer's, the oscilloscope's and the
    // visualization modules' clock.
    static constexpr int kDisplayStepMs = 10;
    bool tornDown_ = false;
    bool timersRunning_ = false;
    bool startUpScheduled_ = false;
    bool playedSomething_ = false;
    bool errorReported_ = false;  // an error message was shown (headless: printed)
    bool terminal_ = false;
    std::string lastProgressLine_;
};

}  // namespace verdin
