#include "Presentation.h"

#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/MainWindow.h"
#include "shell/ui/WindowHost.h"
#include "shell/ui/compact/MiniWindow.h"
#include "shell/ui/compact/TrayIcon.h"

#include <QTimer>

namespace verdin {

namespace {

constexpr char kNoIconMessage[] =
    "This desktop has no notification area, so Verdin cannot hide behind its icon there. "
    "Minimized windows stay on the desktop's task list instead.";

bool (*trayCheck)() = &TrayIcon::Available;

}  // namespace

void Presentation::SetTrayCheck(bool (*check)()) { trayCheck = check ? check : &TrayIcon::Available; }

Presentation::Presentation(MainWindow& main)
    : QObject(&main),
      main_(main),
      player_(main.GetPlayer()),
      mini_(std::make_unique<MiniWindow>(main)),
      tray_(new TrayIcon(main.GetPlayer(), main.Menus().notifyIcon, main)) {
    connect(tray_, &TrayIcon::RestoreRequested, this, &Presentation::Restore);
}

Presentation::~Presentation() = default;

bool Presentation::InMiniMode() const { return player_.GetSettings().miniWindowMode != 0; }

QWidget& Presentation::InUse() const {
    if (InMiniMode()) return *mini_;
    return main_;
}

QWidget* Presentation::Owner() const {
    if (InMiniMode() && mini_->isVisible()) return mini_.get();
    return &main_;
}

bool Presentation::UseIcon() {
    if (trayCheck()) return true;
    SayNoIcon();
    return false;
}

void Presentation::SayNoIcon() {
    if (noIconSaid_) return;
    noIconSaid_ = true;
    // Not inside the minimize that noticed it: the box runs an event loop of its own.
    QTimer::singleShot(0, this, [this] { main_.Application().ShowMessage(kNoIconMessage, MessageIcon::kInformation); });
}

void Presentation::ShowInUse() {
    if (InMiniMode()) {
        main_.hide();
        mini_->ShowPlaced();
        mini_->activateWindow();
    } else {
        mini_->hide();
        main_.show();
        main_.raise();
        main_.activateWindow();
    }
}

void Presentation::ShowAtStart() {
    if (!player_.GetSettings().minimized) return ShowInUse();
    if (UseIcon()) {
        tray_->Show();
        return;
    }
    // Closed behind an icon that this desktop cannot show: the window comes up minimized.
    SetFlag(0, InMiniMode());
    ShowInUse();
    InUse().showMinimized();
}

void Presentation::SetFlag(int32_t minimized, bool mini) {
    const Settings& settings = player_.GetSettings();
    if (settings.minimized == minimized && (settings.miniWindowMode != 0) == mini) return;
    player_.ChangeSettings([&](Settings& changed) {
        changed.minimized = minimized;
        changed.miniWindowMode = mini ? 1 : 0;
    });
}

void Presentation::MiniOrMinimize() {
    if (player_.GetSettings().minimized) return;
    if (InMiniMode()) return Minimize();
    SetFlag(0, true);
    ShowInUse();
}

void Presentation::NormalWindow() {
    tray_->Hide();
    SetFlag(0, false);
    ShowInUse();
}

void Presentation::Minimize() {
    // A second minimize while hidden changes nothing: there is one icon.
    if (player_.GetSettings().minimized) return;
    QWidget& window = InUse();
    if (!UseIcon()) {
        window.showMinimized();
        return;
    }
    tray_->Show();
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.hide();
    SetFlag(1, InMiniMode());
}

void Presentation::Restore() {
    if (!player_.GetSettings().minimized) return;
    tray_->Hide();
    SetFlag(0, InMiniMode());
    ShowInUse();
}

void Presentation::MinimizedByDesktop() {
    if (player_.GetSettings().minimized) return;
    if (!trayCheck()) return SayNoIcon();
    // Not within the state change being reported.
    QTimer::singleShot(0, this, [this] {
        if (main_.isMinimized()) Minimize();
    });
}

void Presentation::Store() { mini_->Store(); }

}  // namespace verdin
