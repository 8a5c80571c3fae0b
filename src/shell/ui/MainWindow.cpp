#include "MainWindow.h"

#include "shell/ui/WindowHost.h"

#include <QCloseEvent>

namespace verdin {

MainWindow::MainWindow(WindowApplication& application) : application_(application) {
    setObjectName(QStringLiteral("Verdin - Main Window"));
    setWindowTitle(QStringLiteral("Retrieving track information..."));
    setMinimumWidth(200);
}

MainWindow::~MainWindow() = default;

void MainWindow::RefreshDisplays(bool) {
    setWindowTitle(QString::fromStdString(application_.Core().Caption()));
}

void MainWindow::SetPositionRange(int, int) {}

void MainWindow::DisplayTick() {}

void MainWindow::closeEvent(QCloseEvent* event) {
    // The quit confirmation decides; the application quits itself when it may.
    event->ignore();
    application_.DispatchCommand(CommandFor(Action::kExit).ids[0]);
}

}  // namespace verdin
