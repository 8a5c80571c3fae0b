#pragma once
// What the window and dialog tests share: a private home (settings file, user directory,
// music) seeded before the player starts, the windowed player with its main window, and
// the answering of the modal windows it opens.
#include "settings/Settings.h"
#include "shell/ui/MainWindow.h"
#include "shell/ui/WindowHost.h"

#include "TempDir.h"

#include <QByteArray>
#include <QMessageBox>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

namespace verdin::test {

class WindowHome {
public:
    // Points the settings store and the user directory into a fresh directory, and seeds
    // the settings file with Seed().
    WindowHome();
    ~WindowHome();
    WindowHome(const WindowHome&) = delete;
    WindowHome& operator=(const WindowHome&) = delete;

    // Writes the settings file: the defaults, the test build's plug-ins, ALSA's null
    // device as the sound card (real time, nothing kept), then whatever change makes.
    void Seed(const std::function<void(Settings&)>& change = {});
    // The settings as the player last saved them.
    Settings Saved() const;
    // A stereo 16-bit 44.1 kHz WAV tone in the home's music directory.
    std::string Tone(const std::string& name, double seconds, double frequency = 440) const;
    std::string Path(const std::string& name) const { return dir_.file(name); }

private:
    TempDir dir_;
    QByteArray savedDataHome_, savedConfigHome_;
};

class WindowRun {
public:
    // Starts the windowed player (without the command server) with an optional command
    // text, and shows its main window. Destroyed, it quits: the teardown saves the
    // playlist and the settings.
    explicit WindowRun(const std::string& commandText = {});

    MainWindow& Window() { return *app_->Window(); }
    Player& Core() { return app_->GetPlayer(); }

private:
    std::unique_ptr<WindowApplication> app_;
};

// Waits, running the event loop, until the condition holds; false on time-out.
inline bool WaitUntil(const std::function<bool()>& condition, int milliseconds = 10000) {
    return QTest::qWaitFor(condition, milliseconds);
}

// Answers the modal windows that open while it lives (message boxes, file choosers, the
// URL prompt, the dialogs) as a user would, from a timer, and remembers what they said.
class ModalWatcher {
public:
    // answer: what to do with a modal window other than a message box; it returns false
    // to leave the window open (it is offered again on the next tick). Without an answer
    // such a window is closed. Message boxes are answered with the first of button, OK.
    using Answer = std::function<bool(QWidget& modal)>;
    explicit ModalWatcher(Answer answer = {}, QMessageBox::StandardButton button = QMessageBox::Yes);

    // Title and text of each message box answered, as "title: text".
    const QStringList& Boxes() const { return boxes_; }
    // Window titles of the other modal windows answered.
    const QStringList& Dialogs() const { return dialogs_; }

private:
    void Tick();

    Answer answer_;
    QMessageBox::StandardButton button_;
    QTimer timer_;
    QStringList boxes_;
    QStringList dialogs_;
};

// Answers for the toolkit's file dialog: choose these files (or this directory) and
// accept.
ModalWatcher::Answer ChooseFiles(const QStringList& files);
// A dialog other than a file dialog: act on it, then accept or reject.
ModalWatcher::Answer Close(const std::function<void(QWidget& dialog)>& act = {}, bool accept = false);

}  // namespace verdin::test
