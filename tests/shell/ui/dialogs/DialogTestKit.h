#pragma once
// What the dialog tests share: a player core on private directories with the bundled
// input plug-ins, a host that records what the player said and answers its questions,
// audio fixtures, and the driving of the file choosers and boxes the dialogs open.
#include "settings/Settings.h"
#include "shell/PlayerCore.h"
#include "shell/PlayerHost.h"

#include "TempDir.h"

#include <QString>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace verdin::test {

class RecordingHost final : public PlayerHost {
public:
    struct Message {
        std::string text;
        MessageIcon icon;
    };
    std::vector<Message> messages;
    std::vector<Message> questions;
    std::deque<bool> answers;  // answers to the next questions; Yes when empty

    void ShowMessage(std::string_view text, MessageIcon icon) override { messages.push_back({std::string(text), icon}); }
    bool AskYesNo(std::string_view text, MessageIcon icon) override;
    void SetTimersRunning(bool) override {}
    void RefreshNow() override {}
    void WindowCommandUnavailable(std::string_view) override {}
    void Quit() override {}
};

// A player core whose settings, preset file and settings store live in a private
// directory; the input plug-ins are the bundled ones and the probe input, the DSP
// libraries the bundled one and the probe DSP.
class CoreFixture {
public:
    CoreFixture();
    ~CoreFixture();

    TempDir dir;
    SettingsEnvironment environment;
    Settings settings;
    RecordingHost host;
    std::unique_ptr<PlayerCore> owner;
    Player* core = nullptr;  // the facade the dialogs get
    // Where the probe plug-ins write what the host asked of them (VERDIN_PROBE_LOG).
    std::string probeLog;

    // A 16-bit stereo 44.1 kHz sine tone of the given length, as a WAV file in dir.
    std::string Tone(const std::string& name, double seconds, double amplitude = 0.5);
    // An MP3 encoded by lame from a tone, with the ID3 options given (lame's --tt etc.).
    std::string Mp3(const std::string& name, const std::vector<std::string>& tagOptions);
    // A small PNG picture (a few pixels of colour).
    std::string Png(const std::string& name);
    // The ALSA device number of the "null" PCM (-2 when ALSA does not list it).
    static int AlsaNullDevice();
};

// Acts on the next modal widget once it is open (polling the event loop for it, up to
// five seconds). Call before the code that opens it.
void AnswerNextModal(std::function<void(QWidget*)> answer);
// The next file or folder chooser: its title is recorded, then path is chosen (an empty
// path cancels it).
void ChooseInNextFileDialog(const QString& path, QString* title);

}  // namespace verdin::test
