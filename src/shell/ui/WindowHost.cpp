#include "WindowHost.h"

#include "shell/ui/MainWindow.h"
#include "shell/ui/MessageBoxes.h"
#include "shell/ui/compact/Presentation.h"

#include <QApplication>

namespace verdin {

WindowApplication::WindowApplication(RunOptions options) : CoreApplication(std::move(options)) {}

WindowApplication::~WindowApplication() { TearDownOnce(); }

void WindowApplication::StartWithWindows() {
    window_ = std::make_unique<MainWindow>(*this);
    StartUp();
    window_->RefreshDisplays(~0u);
    window_->Compact().ShowAtStart();
}

QWidget* WindowApplication::DialogOwner() const { return window_ ? window_->Compact().Owner() : nullptr; }

void WindowApplication::RaiseWindow() {
    if (!window_) return;
    window_->showNormal();
    window_->raise();
    window_->activateWindow();
}

void WindowApplication::ShowMessage(std::string_view text, MessageIcon icon) {
    ShowMessageBox(DialogOwner(), text, icon);
}

bool WindowApplication::AskYesNo(std::string_view text, MessageIcon icon, Unanswered) {
    return AskYesNoBox(DialogOwner(), text, icon);
}

void WindowApplication::RefreshNow() { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

void WindowApplication::WindowCommandUnavailable(std::string_view) {}

bool WindowApplication::DispatchCommand(uint32_t id) {
    if (window_) return window_->Dispatch(id);
    return CoreApplication::DispatchCommand(id);
}

void WindowApplication::DisplayTick() {
    if (window_) window_->DisplayTick();
}

void WindowApplication::StoreWindowState() {
    if (!window_) return;
    window_->StoreLayout();
    window_->Compact().Store();
}

}  // namespace verdin
