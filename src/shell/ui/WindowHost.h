#pragma once
// The windowed player: the application object with message boxes, dialogs and the main
// window instead of lines on standard error. The main window is the face of exactly the
// same player core the headless player runs; it adds no playback logic of its own.
#include "shell/app/CoreApplication.h"

#include <verdin/window.h>

#include <QPointer>
#include <memory>

namespace verdin {

class MainWindow;

class WindowApplication final : public CoreApplication {
    Q_OBJECT
public:
    explicit WindowApplication(RunOptions options);
    ~WindowApplication() override;

    // Creates the main window (hidden), runs the deferred start-up, then shows the main or
    // the mini window, or only the notification icon when the player was closed minimized.
    void StartWithWindows();
    MainWindow* Window() const { return window_.get(); }
    // The window that owns dialogs and message boxes.
    QWidget* DialogOwner() const;

    // PlayerHost with windows.
    void ShowMessage(std::string_view text, MessageIcon icon) override;
    bool AskYesNo(std::string_view text, MessageIcon icon, Unanswered unanswered) override;
    void RefreshNow() override;
    void WindowCommandUnavailable(std::string_view command) override;
    bool DispatchCommand(uint32_t id) override;
    void RaiseWindow() override;

protected:
    void DisplayTick() override;
    void StoreWindowState() override;

private:
    std::unique_ptr<MainWindow> window_;
};

}  // namespace verdin
