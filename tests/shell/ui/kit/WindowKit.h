#pragma once
// The windowed player in a test: a private home (settings file, user directory, music),
// settings seeded before the player starts, and the player with its main window.
#include "settings/Settings.h"
#include "shell/ui/MainWindow.h"
#include "shell/ui/WindowHost.h"

#include "TempDir.h"

#include <QByteArray>
#include <QTest>
#include <functional>
#include <memory>
#include <string>

namespace verdin::test {

class WindowHome {
public:
    // Points the settings store and the user directory into a fresh directory.
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
    QByteArray savedDataHome_;
};

class WindowRun {
public:
    // Starts the windowed player (without the command server) with an optional command
    // text, and shows its main window.
    // Destroyed, it quits: the teardown saves the playlist and the settings.
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

}  // namespace verdin::test
