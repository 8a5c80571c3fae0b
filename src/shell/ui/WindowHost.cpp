#include "WindowHost.h"

#include "shell/ui/MainWindow.h"

#include <QApplication>
#include <QMessageBox>

namespace verdin {

namespace {

QMessageBox::Icon BoxIcon(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::kWarning: return QMessageBox::Warning;
        case MessageIcon::kError: return QMessageBox::Critical;
        case MessageIcon::kQuestion: return QMessageBox::Question;
        default: return QMessageBox::Information;
    }
}

}  // namespace

WindowApplication::WindowApplication(RunOptions options) : CoreApplication(std::move(options)) {
    hostWindow_.sendMessage = &WindowApplication::SendMessage;
    hostWindow_.host = this;
}

WindowApplication::~WindowApplication() { TearDownOnce(); }

void WindowApplication::StartWithWindows() {
    window_ = std::make_unique<MainWindow>(*this);
    StartUp(&hostWindow_);
    window_->RefreshDisplays(true);
    window_->show();
}

QWidget* WindowApplication::DialogOwner() const { return window_.get(); }

void WindowApplication::ShowMessage(std::string_view text, MessageIcon icon) {
    QMessageBox box(BoxIcon(icon), QStringLiteral("Verdin"), QString::fromStdString(std::string(text)),
                    QMessageBox::Ok, DialogOwner());
    box.exec();
}

bool WindowApplication::AskYesNo(std::string_view text, MessageIcon icon) {
    QMessageBox box(BoxIcon(icon), QStringLiteral("Verdin"), QString::fromStdString(std::string(text)),
                    QMessageBox::Yes | QMessageBox::No, DialogOwner());
    return box.exec() == QMessageBox::Yes;
}

void WindowApplication::Refresh(bool listChanged) {
    CoreApplication::Refresh(listChanged);
    if (window_) window_->RefreshDisplays(listChanged);
}

void WindowApplication::RefreshNow() {
    Refresh(false);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void WindowApplication::SetPositionRange(int maximum, int page) {
    if (window_) window_->SetPositionRange(maximum, page);
}

void WindowApplication::WindowCommandUnavailable(std::string_view) {}

bool WindowApplication::DispatchCommand(uint32_t id) {
    if (window_) return window_->Dispatch(id);
    return CoreApplication::DispatchCommand(id);
}

void WindowApplication::DisplayTick() {
    if (window_) window_->DisplayTick();
}

void WindowApplication::StoreWindowState() {
    if (window_) window_->StoreLayout();
}

intptr_t WindowApplication::SendMessage(VerdinHostWindow* window, uint32_t msg, uintptr_t wParam, intptr_t) {
    auto* self = static_cast<WindowApplication*>(window->host);
    if (msg == WM_COMMAND) return self->DispatchCommand(static_cast<uint32_t>(wParam & 0xFFFF)) ? 1 : 0;
    return 0;
}

}  // namespace verdin
