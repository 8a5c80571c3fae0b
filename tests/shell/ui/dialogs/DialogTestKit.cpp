#include "DialogTestKit.h"

#include "engine/output/AlsaDeviceList.h"
#include "engine/stream/Stream.h"
#include "settings/store/SettingsStore.h"
#include "shell/PlayerCore.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"

#include <QApplication>
#include <QFileDialog>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <stdexcept>

namespace verdin::test {

bool RecordingHost::AskYesNo(std::string_view text, MessageIcon) {
    questions.emplace_back(text);
    const bool answer = answers.empty() || answers.front();
    if (!answers.empty()) answers.pop_front();
    return answer;
}

CoreFixture::CoreFixture() : player(Start()) {
    player.Listen([this](unsigned changes) { announced |= changes; });
}

Player& CoreFixture::Start() {
    environment = {dir.str(), dir.str(), dir.str(), dir.str()};
    qputenv("VERDIN_PROBE_LOG", QByteArray::fromStdString(dir.file("probe.log")));
    // Every settings store of this process goes into the private directory.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(dir.str()));
    SetDefaults(settings_, environment);
    settings_.inputPluginsSearchPath = std::string(VERDIN_TEST_PLUGIN_DIR) + ";" + VERDIN_PROBE_DIR + ";";
    settings_.dspPluginsSearchPath = settings_.inputPluginsSearchPath;
    owner_ = std::make_unique<PlayerCore>(settings_, environment, host);
    owner_->LoadPlugins(nullptr);
    return owner_->Face();
}

CoreFixture::~CoreFixture() { owner_.reset(); }

std::string CoreFixture::ProbeLog() const {
    return FileExists(dir.file("probe.log")) ? ReadFile(dir.file("probe.log")) : std::string();
}

std::string CoreFixture::SettingsFile() const { return ReadFile(OpenUserSettingsStore()->fileName().toStdString()); }

std::string CoreFixture::Tone(const std::string& name, double seconds) {
    const int frames = static_cast<int>(seconds * 44100);
    WriteWav(dir.file(name), 2, 44100, 16, Bytes16(Sine16(frames, 2, 44100, {440.0, 660.0}, 0.5)));
    return dir.file(name);
}

std::string CoreFixture::Mp3(const std::string& name, const std::vector<std::string>& tagOptions) {
    std::vector<std::string> argv{"lame", "--quiet", "-b", "128"};
    argv.insert(argv.end(), tagOptions.begin(), tagOptions.end());
    argv.push_back(Tone(name + ".wav", 1.0));
    argv.push_back(dir.file(name));
    const CommandResult result = RunCommand(argv);
    if (result.exitCode != 0) throw std::runtime_error("lame failed: " + result.output);
    return dir.file(name);
}

std::optional<int> CoreFixture::NullDevice() {
    const auto devices = ListAlsaDevices();
    for (size_t i = 0; i < devices.size(); ++i)
        if (devices[i].name == "null") return static_cast<int>(i) - 1;  // -1 is the "default" PCM
    return std::nullopt;
}

bool CoreFixture::PlayTone() {
    player.ChangeSettings([](Settings& s) {
        s.outputType = 0;
        s.waveOutDevice = NullDevice().value_or(-1);
        s.bufferSize = 102400;
        s.bufferPrefill = 10;
    });
    player.AddPaths({Tone("playing.wav", 10.0)}, -1);
    player.Execute(Action::kPlay);
    const Stream* stream = player.CurrentStream();
    return stream && QTest::qWaitFor([stream] { return stream->PlayedMilliseconds() >= 200; }, 5000);
}

int32_t CoreFixture::Loudness() {
    player.TakeAnalyzerSnapshot();
    int32_t loudest = 0;
    for (int channel = 0; channel < 2; ++channel)
        for (int i = 0; i < 576; ++i)
            loudest = std::max(loudest, std::abs(player.CurrentStream()->GetWaveformValue(channel, i) >> 16));
    return loudest;
}

bool CoreFixture::WaitUntilHeard() {
    // The frames written by now, a block the stream may have made already and holds until
    // there is room (up to its work buffer of 25,602 frames), and the equalizer's delay.
    const Stream* stream = player.CurrentStream();
    const int64_t target = stream->FramesWritten() + 25602 + 512;
    return QTest::qWaitFor([&] { return int64_t{stream->PlayedMilliseconds()} * 44100 / 1000 >= target; }, 10000);
}

void AnswerModals(std::vector<Answer> answers) {
    if (answers.empty()) return;
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, answers = std::move(answers), deadline = QDeadlineTimer(5000)]() mutable {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal && !deadline.hasExpired()) return;
        timer->stop();
        timer->deleteLater();
        if (!modal) return;
        const Answer first = std::move(answers.front());
        answers.erase(answers.begin());
        AnswerModals(std::move(answers));  // armed first: the answer may open the next one
        first(modal);
    });
    timer->start(10);
}

Answer Box(QString* text, QMessageBox::StandardButton button) {
    return [text, button](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        *text = box ? box->text() : QStringLiteral("(no box but %1)").arg(modal->windowTitle());
        if (box && box->button(button)) box->button(button)->click();
        else modal->close();
    };
}

Answer Chooser(const QString& path, QString* title) {
    return [path, title](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        if (title) *title = modal->windowTitle();
        if (!dialog || path.isEmpty()) return void(modal->close());
        if (dialog->fileMode() == QFileDialog::Directory) dialog->setDirectory(path);
        // A file name field that has the focus keeps what was typed; whether it has the
        // focus yet depends on the window system's timing.
        if (QWidget* focused = dialog->focusWidget()) focused->clearFocus();
        dialog->selectFile(path);
        static_cast<QDialog*>(dialog)->accept();  // QFileDialog makes its override protected
    };
}

Answer Dialog(QString* title, const std::function<void(QWidget*)>& act, bool accept) {
    return [title, act, accept](QWidget* modal) {
        if (title) *title = modal->windowTitle();
        if (act) act(modal);
        if (auto* dialog = qobject_cast<QDialog*>(modal)) dialog->done(accept ? QDialog::Accepted : QDialog::Rejected);
        else modal->close();
    };
}

QAction* FindAction(const QMenu* menu, const QString& text, QString* group) {
    for (QAction* action : menu->actions()) {
        QAction* found = action->menu() ? FindAction(action->menu(), text) : action->text() == text ? action : nullptr;
        if (found && action->menu() && group) *group = action->text();
        if (found) return found;
    }
    return nullptr;
}

void Click(const QWidget& widget, const char* button) {
    QTest::mouseClick(widget.findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
}

QStringList Texts(const QListWidget* list) {
    QStringList texts;
    for (int i = 0; i < list->count(); ++i) texts << list->item(i)->text();
    return texts;
}

static std::vector<std::function<int(int, char**)>>& Registered() {
    static std::vector<std::function<int(int, char**)>> runs;
    return runs;
}

void RegisterTests(std::function<int(int, char**)> run) { Registered().push_back(std::move(run)); }

}  // namespace verdin::test

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    int failed = 0;
    for (const auto& run : verdin::test::Registered()) failed += run(argc, argv) != 0;
    return failed == 0 ? 0 : 1;
}
