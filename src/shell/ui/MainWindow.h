#pragma once
// The main window, "Verdin - Main Window".
#include <QMainWindow>

namespace verdin {

class WindowApplication;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(WindowApplication& application);
    ~MainWindow() override;

    // Title, status, position and the rest drawn again; listChanged when rows changed.
    void RefreshDisplays(bool listChanged);
    void SetPositionRange(int maximum, int page);
    // The 10 ms display tick: analyzer and oscilloscope.
    void DisplayTick();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    WindowApplication& application_;
};

}  // namespace verdin
