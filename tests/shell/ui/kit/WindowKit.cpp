#include "WindowKit.h"

#include "engine/output/AlsaDeviceList.h"
#include "settings/store/SettingsStore.h"

#include "PcmFixtures.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QSettings>
#include <QTest>
#include <sys/stat.h>

namespace verdin::test {

namespace {

SettingsEnvironment Environment(const TempDir& dir) {
    return SettingsEnvironment{std::string(VERDIN_TEST_BUILD_DIR) + "/bin", dir.file("data/Brimfell/Verdin"),
                               dir.str(), dir.file("music")};
}

}  // namespace

WindowHome::WindowHome() : savedDataHome_(qgetenv("XDG_DATA_HOME")), savedConfigHome_(qgetenv("XDG_CONFIG_HOME")) {
    for (const char* sub : {"config", "config/Brimfell", "data", "data/Brimfell", "data/Brimfell/Verdin", "music"})
        ::mkdir(dir_.file(sub).c_str(), 0700);
    // QSettings keeps its user path for the process; it is set for each home instead.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(dir_.file("config")));
    // The desktop's files too (the options write file associations there).
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(dir_.file("data")));
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(dir_.file("config")));
    Seed();
}

WindowHome::~WindowHome() {
    qputenv("XDG_DATA_HOME", savedDataHome_);
    qputenv("XDG_CONFIG_HOME", savedConfigHome_);
}

void WindowHome::Seed(const std::function<void(Settings&)>& change) {
    Settings settings;
    SetDefaults(settings, Environment(dir_));
    settings.inputPluginsSearchPath = std::string(VERDIN_TEST_PLUGIN_DIR) + ";";
    settings.dspPluginsSearchPath = settings.inputPluginsSearchPath;
    settings.sampleSpaceSearchPath = dir_.file("music") + ";";
    settings.initialDirectory = dir_.file("music");
    settings.outputType = 0;
    const auto devices = ListAlsaDevices();
    for (size_t i = 0; i < devices.size(); ++i)
        if (devices[i].name == "null") settings.waveOutDevice = static_cast<int32_t>(i) - 1;
    settings.bufferPrefill = 10;
    if (change) change(settings);
    QVERIFY(SaveUserSettings(settings, Environment(dir_)));
}

Settings WindowHome::Saved() const {
    Settings settings;
    LoadUserSettings(settings, Environment(dir_));
    return settings;
}

std::string WindowHome::Tone(const std::string& name, double seconds, double frequency) const {
    const std::string path = dir_.file("music/" + name);
    const int frames = static_cast<int>(seconds * 44100);
    WriteWav(path, 2, 44100, 16, Bytes16(Sine16(frames, 2, 44100, {frequency}, 0.4)));
    return path;
}

WindowRun::WindowRun(const std::string& commandText) {
    RunOptions options;
    options.headless = false;
    options.commandText = commandText;
    app_ = std::make_unique<WindowApplication>(options);
    app_->StartWithWindows();
    // Keys reach the accelerators of the active window only (the main window may stay
    // hidden behind the mini window or the icon).
    if (!app_->Window()->isVisible()) return;
    app_->Window()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(app_->Window()));
}

ModalWatcher::ModalWatcher(Answer answer, QMessageBox::StandardButton button)
    : answer_(std::move(answer)), button_(button) {
    timer_.setInterval(10);
    QObject::connect(&timer_, &QTimer::timeout, [this] { Tick(); });
    timer_.start();
}

void ModalWatcher::Tick() {
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal) return;
    if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        boxes_.push_back(box->windowTitle() + QStringLiteral(": ") + box->text());
        QAbstractButton* button = box->button(button_);
        if (!button) button = box->button(QMessageBox::Ok);
        if (button) button->click();
        else box->reject();
        return;
    }
    const QString title = modal->windowTitle();
    if (answer_ ? answer_(*modal) : modal->close()) dialogs_.push_back(title);
}

ModalWatcher::Answer ChooseFiles(const QStringList& files) {
    return [files](QWidget& modal) {
        auto* dialog = qobject_cast<QFileDialog*>(&modal);
        if (!dialog) return false;
        // Typed into the file name field, as a user would: selectFile() leaves the field
        // alone once it has the focus.
        auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        if (!name) return false;
        if (dialog->fileMode() == QFileDialog::Directory) {
            dialog->setDirectory(files.front());
            name->setText(files.front());
        } else {
            QStringList quoted;
            for (const QString& file : files) quoted.push_back(QLatin1Char('"') + file + QLatin1Char('"'));
            name->setText(files.size() == 1 ? files.front() : quoted.join(QLatin1Char(' ')));
        }
        // The dialog's own accept checks the choice, as the OK button does.
        static_cast<QDialog*>(dialog)->accept();
        return true;
    };
}

ModalWatcher::Answer Close(const std::function<void(QWidget& dialog)>& act, bool accept) {
    return [act, accept](QWidget& modal) {
        auto* dialog = qobject_cast<QDialog*>(&modal);
        if (!dialog || qobject_cast<QFileDialog*>(&modal)) return false;
        if (act) act(modal);
        dialog->done(accept ? QDialog::Accepted : QDialog::Rejected);
        return true;
    };
}

}  // namespace verdin::test
