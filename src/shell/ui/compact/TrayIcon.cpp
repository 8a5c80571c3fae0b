#include "TrayIcon.h"

#include "shell/Player.h"

#include <QSystemTrayIcon>
#include <QWidget>

namespace verdin {

std::string TipText(std::string_view status) {
    if (status.size() <= kTipBytes) return std::string(status);
    size_t end = kTipBytes;
    // Back to the first byte of the character the cut falls in (UTF-8 continuation bytes
    // are 10xxxxxx).
    while (end > 0 && (static_cast<unsigned char>(status[end]) & 0xC0) == 0x80) --end;
    return std::string(status.substr(0, end));
}

TrayIcon::TrayIcon(Player& player, QMenu* menu, QWidget& window)
    : QObject(&window), player_(player), icon_(new QSystemTrayIcon(window.windowIcon(), this)) {
    icon_->setObjectName(QStringLiteral("Verdin - Notify Icon"));
    icon_->setContextMenu(menu);
    icon_->setToolTip(QStringLiteral("Retrieving track information..."));
    connect(icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) emit RestoreRequested();
        else Refresh();
    });
    listener_ = player_.Listen([this](unsigned) {
        if (icon_->isVisible()) Refresh();
    });
}

TrayIcon::~TrayIcon() { player_.StopListening(listener_); }

bool TrayIcon::Available() { return QSystemTrayIcon::isSystemTrayAvailable(); }

void TrayIcon::Show() {
    Refresh();
    icon_->show();
}

void TrayIcon::Hide() { icon_->hide(); }

bool TrayIcon::Shown() const { return icon_->isVisible(); }

void TrayIcon::Refresh() {
    const QString tip = QString::fromStdString(TipText(player_.StatusText()));
    if (icon_->toolTip() != tip) icon_->setToolTip(tip);
}

}  // namespace verdin
