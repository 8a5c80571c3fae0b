#include "MiniWindow.h"

#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/MainWindow.h"
#include "shell/ui/controls/PositionControl.h"
#include "shell/ui/controls/ScrollCodes.h"
#include "shell/ui/controls/StatusWindow.h"
#include "shell/ui/window/Accelerators.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>
#include <QStyle>

namespace verdin {

namespace {

constexpr int32_t kNotPlaced = 9999;
constexpr int32_t kDefaultContentWidth = 260;
constexpr int32_t kMinimumContentWidth = 60;

ScreenRect ToScreenRect(const QRect& rect) { return {rect.x(), rect.y(), rect.width(), rect.height()}; }

}  // namespace

MiniWindow::MiniWindow(MainWindow& main)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      main_(main),
      player_(main.GetPlayer()),
      status_(new StatusWindow(this)),
      position_(new PositionControl(player_, this)) {
    setObjectName(QStringLiteral("VerdinMiniWindow"));
    setWindowTitle(QStringLiteral("VerdinMiniWindow"));
    setWindowIcon(main.windowIcon());
    // The strip is dragged by any point of it; the title only shows.
    status_->setAttribute(Qt::WA_TransparentForMouseEvents);
    QFont small = font();
    small.setPixelSize(kMiniTitleHeight - 3);
    status_->setFont(small);
    InstallAccelerators(*this, [this](Action action) { main_.Run(action); });
    connect(position_, &PositionControl::StatusChanged, this,
            [this] { status_->SetText(QString::fromStdString(player_.StatusText())); });
    listener_ = player_.Listen([this](unsigned changes) { Refresh(changes); });
    Refresh(~0u);
}

MiniWindow::~MiniWindow() { player_.StopListening(listener_); }

bool MiniWindow::ShowsPosition() const { return player_.GetSettings().miniWindowShowPosition != 0; }

int32_t MiniWindow::ContentWidth() const {
    const int32_t stored = player_.GetSettings().miniWindowWidth - 2 * kMiniFrame;
    return stored >= kMinimumContentWidth ? stored : kDefaultContentWidth;
}

void MiniWindow::ShowPlaced() {
    const Settings& settings = player_.GetSettings();
    QPoint topLeft(settings.miniWindowX, settings.miniWindowY);
    if (settings.miniWindowX == kNotPlaced || settings.miniWindowY == kNotPlaced) {
        // Not placed yet: the bottom right of the area left for windows, where it snaps
        // onto the panel if there is one.
        const QScreen* screen = main_.screen() ? main_.screen() : QGuiApplication::primaryScreen();
        const QRect available = screen->availableGeometry();
        topLeft = available.bottomRight() - QPoint(ContentWidth() + 2 * kMiniFrame, 2 * kMiniFrame + kMiniTitleHeight) +
                  QPoint(1, 1);
    }
    if (!isVisible()) resize(ContentWidth() + 2 * kMiniFrame, height());
    MoveSnapped(topLeft);
    placed_ = true;
    show();
    raise();
}

void MiniWindow::MoveSnapped(QPoint topLeft) {
    const QRect wanted(topLeft, size());
    QScreen* screen = QGuiApplication::screenAt(wanted.center());
    if (!screen) screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    MiniPlacement placement;
    placement.window = ToScreenRect(wanted);
    placement.contentWidth = ContentWidth();
    placement.showPosition = ShowsPosition();
    placement.screen = ToScreenRect(screen->geometry());
    placement.taskbar =
        NearestPanel(placement.screen, ToScreenRect(screen->availableGeometry()), placement.window);
    const ScreenRect placed = PlaceMiniWindow(placement);
    shownPosition_ = placement.showPosition;
    setGeometry(placed.x, placed.y, placed.width, placed.height);
}

void MiniWindow::Store() {
    if (!placed_) return;
    const QRect now = geometry();
    player_.ChangeSettings([&](Settings& settings) {
        settings.miniWindowX = now.x();
        settings.miniWindowY = now.y();
        settings.miniWindowWidth = now.width();
    });
}

void MiniWindow::Refresh(unsigned changes) {
    if (changes & kTrackChanged) {
        const auto [maximum, page] = player_.PositionRange();
        position_->SetRange(maximum, page);
    }
    status_->SetText(QString::fromStdString(player_.StatusText()));
    position_->Refresh();
    // Turning the position bar on or off changes the height.
    if (placed_ && ShowsPosition() != shownPosition_) MoveSnapped(pos());
}

void MiniWindow::LayOutChildren() {
    const int content = width() - 2 * kMiniFrame;
    status_->setGeometry(kMiniFrame, kMiniFrame, content, kMiniTitleHeight);
    // The bar's arrow buttons lie outside the strip on both sides: only the track shows,
    // which is all a 5 pixel bar can usefully offer.
    const int arrows = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &position_->Bar()) + 2;
    position_->setGeometry(kMiniFrame - arrows, kMiniFrame + kMiniTitleHeight + 1, content + 2 * arrows,
                           kMiniPositionHeight);
    position_->setVisible(shownPosition_);
}

void MiniWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    LayOutChildren();
}

void MiniWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    dragging_ = true;
    grab_ = event->globalPosition().toPoint() - pos();
}

void MiniWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_) return QWidget::mouseMoveEvent(event);
    MoveSnapped(event->globalPosition().toPoint() - grab_);
}

void MiniWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) dragging_ = false;
    QWidget::mouseReleaseEvent(event);
}

void MiniWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    // Back to the main window, as its keypad plus does.
    if (event->button() == Qt::LeftButton) main_.Run(Action::kNormalWindow);
}

void MiniWindow::contextMenuEvent(QContextMenuEvent* event) {
    // The strip has no menu bar: the menu of the notification icon carries the whole
    // main menu and the transport.
    main_.Menus().notifyIcon->popup(event->globalPos());
}

void MiniWindow::closeEvent(QCloseEvent* event) {
    // Closing the strip is closing the player: the quit confirmation decides.
    event->ignore();
    main_.Run(Action::kExit);
}

}  // namespace verdin
