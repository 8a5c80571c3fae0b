#pragma once
// The notification-area icon that stands in for the player while it is minimized. Its
// tool tip is the status line; a left click asks to restore the player; a right click
// opens the "Notify Icon" menu (the main menu and the transport), which the desktop's
// tray shows itself. It exists (is shown) only while the player is hidden behind it.
// User-interface thread only.
#include <QObject>
#include <string>
#include <string_view>

class QMenu;
class QSystemTrayIcon;
class QWidget;

namespace verdin {

class Player;

// Tool tips of notification icons hold 63 bytes; longer status lines are cut there,
// never inside a character.
inline constexpr size_t kTipBytes = 63;
std::string TipText(std::string_view status);

class TrayIcon final : public QObject {
    Q_OBJECT
public:
    TrayIcon(Player& player, QMenu* menu, QWidget& window);
    ~TrayIcon() override;

    // Whether this desktop has a notification area to put the icon in.
    static bool Available();
    void Show();
    void Hide();
    bool Shown() const;
    QSystemTrayIcon& Icon() { return *icon_; }

signals:
    // The user clicked the icon: the player should come back.
    void RestoreRequested();

private:
    void Refresh();

    Player& player_;
    QSystemTrayIcon* icon_;
    int listener_ = 0;
};

}  // namespace verdin
