#pragma once
// What the dialog tests share: a player on private directories with the bundled and the
// probe plug-ins, audio fixtures, a tone on the ALSA null device, and the answering of
// the boxes and choosers the dialogs open.
#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/PlayerHost.h"

#include "TempDir.h"

#include <QListWidget>
#include <QMessageBox>
#include <QtTest>
#include <deque>
#include <memory>
#include <optional>

namespace verdin {
class PlayerCore;
}

namespace verdin::test {

// Answers the core's own questions (the dialogs show their boxes themselves).
class RecordingHost final : public PlayerHost {
public:
    std::vector<std::string> questions;
    std::deque<bool> answers;  // to the next questions; Yes when none is left

    void ShowMessage(std::string_view, MessageIcon) override {}
    bool AskYesNo(std::string_view text, MessageIcon) override;
    void SetTimersRunning(bool) override {}
    void RefreshNow() override {}
    void WindowCommandUnavailable(std::string_view) override {}
    void Quit() override {}
};

class CoreFixture {
public:
    CoreFixture();
    ~CoreFixture();

    TempDir dir;
    SettingsEnvironment environment;
    RecordingHost host;
    unsigned announced = 0;  // what the player announced, as PlayerChange bits

private:
    Settings settings_;
    std::unique_ptr<PlayerCore> owner_;
    Player& Start();

public:
    Player& player;  // the facade, as the dialogs get it

    // What the probe plug-ins were asked, a line per call; the settings file as saved.
    std::string ProbeLog() const;
    std::string SettingsFile() const;
    // A 16-bit stereo 44.1 kHz two-tone WAV file; an MP3 of one by lame with tag options.
    std::string Tone(const std::string& name, double seconds);
    std::string Mp3(const std::string& name, const std::vector<std::string>& tagOptions);
    // The ALSA device number of the "null" PCM, when ALSA lists it.
    static std::optional<int> NullDevice();
    // Plays a 10-second tone on the null device; true once 200 ms were heard.
    bool PlayTone();
    // The loudest waveform value heard now; a wait until what is made from now on is heard.
    int32_t Loudness();
    bool WaitUntilHeard();
};

// The base of the test classes: a new core for every test function.
class CoreTests : public QObject {
    Q_OBJECT
private slots:
    void init() { fixture = std::make_unique<CoreFixture>(); }
    void cleanup() { fixture.reset(); }

protected:
    std::unique_ptr<CoreFixture> fixture;
    Player& player() const { return fixture->player; }
};

// Each next modal window (polled for up to five seconds) gets the next answer.
using Answer = std::function<void(QWidget*)>;
void AnswerModals(std::vector<Answer> answers);
// A message box: its text is recorded, the button pressed.
Answer Box(QString* text, QMessageBox::StandardButton button = QMessageBox::Ok);
// A file or folder chooser: its title is recorded, path chosen (empty: cancelled).
Answer Chooser(const QString& path, QString* title = nullptr);
// A dialog: its title is recorded, act done, then it is accepted or rejected.
Answer Dialog(QString* title, const std::function<void(QWidget*)>& act = {}, bool accept = false);

// The action of a menu or its submenus with this text; group gets the submenu's title.
QAction* FindAction(const QMenu* menu, const QString& text, QString* group = nullptr);
// Clicks the push button of that object name.
void Click(const QWidget& parent, const char* button);
QStringList Texts(const QListWidget* list);

// The test classes of the program register themselves; main runs them in turn.
void RegisterTests(std::function<int(int, char**)> run);
template <typename Tests>
bool Register() {
    RegisterTests([](int argc, char** argv) {
        Tests tests;
        return QTest::qExec(&tests, argc, argv);
    });
    return true;
}

}  // namespace verdin::test
