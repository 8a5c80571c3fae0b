#include "WindowKit.h"

#include "engine/output/AlsaDeviceList.h"
#include "settings/store/SettingsStore.h"

#include "PcmFixtures.h"

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

WindowHome::WindowHome() : savedDataHome_(qgetenv("XDG_DATA_HOME")) {
    for (const char* sub : {"config", "config/Brimfell", "data", "data/Brimfell", "data/Brimfell/Verdin", "music"})
        ::mkdir(dir_.file(sub).c_str(), 0700);
    // QSettings keeps its user path for the process; it is set for each home instead.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(dir_.file("config")));
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(dir_.file("data")));
}

WindowHome::~WindowHome() { qputenv("XDG_DATA_HOME", savedDataHome_); }

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
    // Keys reach the accelerators of the active window only.
    app_->Window()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(app_->Window()));
}

}  // namespace verdin::test
