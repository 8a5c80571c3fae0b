#pragma once
// Which face of the player shows: the main window, the mini window, or neither while the
// player is hidden behind its notification icon. "miniWindowMode" says which window is in
// use, "minimized" that it is hidden behind the icon; both are kept in the settings, so a
// player closed while minimized starts hidden behind its icon.
//
// Minimizing always goes behind the icon. Only a desktop without a notification area
// makes it the desktop's own minimize; the player says once per run why it did not go to
// the icon. User-interface thread only.
#include <QObject>
#include <memory>

class QWidget;

namespace verdin {

class MainWindow;
class MiniWindow;
class Player;
class TrayIcon;

class Presentation final : public QObject {
    Q_OBJECT
public:
    explicit Presentation(MainWindow& main);
    ~Presentation() override;

    // The start: the window in use, or only the icon when the player was closed minimized.
    void ShowAtStart();
    // The keypad minus (and the mini window and minimize buttons): from the main window to
    // the mini window, from the mini window behind the icon.
    void MiniOrMinimize();
    // The keypad plus: back to the main window, from the mini window or the icon.
    void NormalWindow();
    // Hides the window in use behind the icon (or minimizes it where there is no icon).
    void Minimize();
    // Shows the hidden window again and removes the icon.
    void Restore();
    // The desktop minimized the main window (its title bar button): it goes behind the
    // icon instead.
    void MinimizedByDesktop();
    // The window dialogs and message boxes belong to.
    QWidget* Owner() const;
    // Teardown: the mini window's place into the settings.
    void Store();

    MiniWindow& Mini() { return *mini_; }
    TrayIcon& Tray() { return *tray_; }
    // How the player learns whether the desktop has a notification area (by default the
    // toolkit's answer) from now on: the tests stand one in where their platform has none.
    static void SetTrayCheck(bool (*check)());

private:
    bool UseIcon();
    bool InMiniMode() const;
    QWidget& InUse() const;
    void ShowInUse();
    void SetFlag(int32_t value, bool mini);
    void SayNoIcon();

    MainWindow& main_;
    Player& player_;
    std::unique_ptr<MiniWindow> mini_;
    TrayIcon* tray_;
    bool noIconSaid_ = false;
};

}  // namespace verdin
