#pragma once
// "VerdinMiniWindow": a borderless strip with the status line and, when
// "miniWindowShowPosition" is set, a thin position bar under it that behaves as the main
// window's. The user drags it anywhere by the mouse; its edges snap to the screen and the
// panel edges while it moves. It shows what the player's views say and redraws when the
// player announces a change; it runs commands through the main window, so keys, the
// context menu and the main window's own buttons run the same command table.
//
// Where it stands is kept in "miniWindowX", "miniWindowY" and "miniWindowWidth" (9999
// and 0: not placed yet, the default width at the bottom right of the screen).
// User-interface thread only.
#include "shell/ui/compact/MiniGeometry.h"

#include <QPoint>
#include <QWidget>

class QMenu;

namespace verdin {

class MainWindow;
class Player;
class PositionControl;
class StatusWindow;

class MiniWindow final : public QWidget {
    Q_OBJECT
public:
    explicit MiniWindow(MainWindow& main);
    ~MiniWindow() override;

    // Places the window where the settings say (or at its default place) and shows it.
    void ShowPlaced();
    // Moves towards the top-left corner given, snapping and keeping to the screen.
    void MoveSnapped(QPoint topLeft);
    // Writes x, y and width into the settings (the teardown does this), once the window
    // has been placed: until then the settings keep saying it was never placed.
    void Store();

    StatusWindow& Status() { return *status_; }
    PositionControl& Position() { return *position_; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void Refresh(unsigned changes);
    void LayOutChildren();
    int32_t ContentWidth() const;
    bool ShowsPosition() const;

    MainWindow& main_;
    Player& player_;
    int listener_ = 0;
    StatusWindow* status_;
    PositionControl* position_;
    bool shownPosition_ = false;
    bool placed_ = false;
    bool dragging_ = false;
    QPoint grab_;  // where in the window the drag took hold
};

}  // namespace verdin
