#include "DialogTestKit.h"

#include "engine/output/AlsaDeviceList.h"
#include "settings/store/SettingsStore.h"

#include "PcmFixtures.h"
#include "Process.h"

#include <QApplication>
#include <QFileDialog>
#include <QImage>
#include <QSettings>
#include <QTimer>
#include <chrono>
#include <stdexcept>

namespace verdin::test {

bool RecordingHost::AskYesNo(std::string_view text, MessageIcon icon) {
    questions.push_back({std::string(text), icon});
    if (answers.empty()) return true;
    const bool answer = answers.front();
    answers.pop_front();
    return answer;
}

CoreFixture::CoreFixture() {
    environment = {dir.str(), dir.str(), dir.str(), dir.str()};
    probeLog = dir.file("probe.log");
    qputenv("VERDIN_PROBE_LOG", QByteArray::fromStdString(probeLog));
    // Every settings store of this process goes into the private directory.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(dir.str()));
    SetDefaults(settings, environment);
    settings.inputPluginsSearchPath = std::string(VERDIN_TEST_PLUGIN_DIR) + ";" + VERDIN_PROBE_DIR + ";";
    settings.dspPluginsSearchPath = settings.inputPluginsSearchPath;
    owner = std::make_unique<PlayerCore>(settings, environment, host);
    owner->LoadPlugins(nullptr);
    core = &owner->Face();
}

CoreFixture::~CoreFixture() { owner.reset(); }

std::string CoreFixture::Tone(const std::string& name, double seconds, double amplitude) {
    const int rate = 44100;
    const int frames = static_cast<int>(seconds * rate);
    WriteWav(dir.file(name), 2, rate, 16, Bytes16(Sine16(frames, 2, rate, {440.0, 660.0}, amplitude)));
    return dir.file(name);
}

std::string CoreFixture::Mp3(const std::string& name, const std::vector<std::string>& tagOptions) {
    const std::string wav = Tone(name + ".source.wav", 1.0);
    std::vector<std::string> argv{"lame", "--quiet", "-b", "128"};
    argv.insert(argv.end(), tagOptions.begin(), tagOptions.end());
    argv.push_back(wav);
    argv.push_back(dir.file(name));
    const CommandResult result = RunCommand(argv);
    if (result.exitCode != 0) throw std::runtime_error("lame failed: " + result.output);
    return dir.file(name);
}

std::string CoreFixture::Png(const std::string& name) {
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(QColor(200, 30, 90));
    image.setPixelColor(1, 1, QColor(10, 220, 40));
    if (!image.save(QString::fromStdString(dir.file(name)), "PNG")) throw std::runtime_error("cannot write " + name);
    return dir.file(name);
}

int CoreFixture::AlsaNullDevice() {
    const auto devices = ListAlsaDevices();
    for (size_t i = 0; i < devices.size(); ++i)
        if (devices[i].name == "null") return static_cast<int>(i) - 1;
    return -2;
}

void AnswerNextModal(std::function<void(QWidget*)> answer) {
    auto* timer = new QTimer;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    QObject::connect(timer, &QTimer::timeout, [timer, answer = std::move(answer), deadline] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal && std::chrono::steady_clock::now() < deadline) return;
        timer->stop();
        timer->deleteLater();
        if (modal) answer(modal);
    });
    timer->start(10);
}

void ChooseInNextFileDialog(const QString& path, QString* title) {
    AnswerNextModal([path, title](QWidget* modal) {
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        if (title) *title = modal->windowTitle();
        if (!dialog || path.isEmpty()) {
            modal->close();
            return;
        }
        if (dialog->fileMode() == QFileDialog::Directory) dialog->setDirectory(path);
        // The dialog leaves a file name field that has the focus as the user typed it,
        // and whether it has the focus yet depends on the window system's timing.
        if (QWidget* focused = dialog->focusWidget()) focused->clearFocus();
        dialog->selectFile(path);
        static_cast<QDialog*>(dialog)->accept();  // QFileDialog makes its override protected
    });
}

}  // namespace verdin::test
