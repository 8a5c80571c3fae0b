#include "SystemFixture.h"

#include "engine/output/AlsaDeviceList.h"
#include "settings/store/SettingsStore.h"

#include "PcmFixtures.h"

#include <QSettings>
#include <cmath>
#include <sys/stat.h>

namespace verdin::test {

namespace {

SettingsEnvironment EnvironmentOf(const PlayerHome& home) {
    return SettingsEnvironment{std::string(VERDIN_TEST_BUILD_DIR) + "/bin", home.DataDirectory(),
                               home.dir.str(), home.dir.file("home/Music")};
}

}  // namespace

void SystemTest::SetUp() {
    ASSERT_TRUE(bus_.Running()) << "no private D-Bus session";
    for (const char* sub : {"config", "config/Brimfell", "data", "data/Brimfell", "data/Brimfell/Verdin", "home",
                            "run", "music", "out"})
        ::mkdir(home_.dir.file(sub).c_str(), 0700);
}

void SystemTest::SeedSettings(const std::function<void(Settings&)>& change) {
    Settings settings;
    SetDefaults(settings, EnvironmentOf(home_));
    change(settings);
    QSettings file(QString::fromStdString(home_.ConfigFile()), QSettings::IniFormat);
    QSettingsStorage storage(file);
    ASSERT_TRUE(SaveSettings(settings, storage, EnvironmentOf(home_)));
}

Settings SystemTest::LoadSavedSettings() const {
    Settings settings;
    QSettings file(QString::fromStdString(home_.ConfigFile()), QSettings::IniFormat);
    QSettingsStorage storage(file);
    LoadSettings(settings, storage, EnvironmentOf(home_));
    return settings;
}

void SystemTest::UseNullSoundCard(Settings& settings) {
    settings.outputType = 0;
    const auto devices = ListAlsaDevices();
    for (size_t i = 0; i < devices.size(); ++i)
        if (devices[i].name == "null") settings.waveOutDevice = static_cast<int32_t>(i) - 1;
    settings.bufferPrefill = 10;
}

void SystemTest::DecodeToFiles(Settings& settings) const {
    settings.outputType = 1;
    settings.decodeDirectory = OutDirectory();
}

std::string SystemTest::Tone(const std::string& name, double seconds, double frequency) {
    const std::string path = home_.dir.file("music/" + name);
    const int frames = static_cast<int>(seconds * 44100);
    WriteWav(path, 2, 44100, 16, Bytes16(Sine16(frames, 2, 44100, {frequency}, 0.4)));
    return path;
}

std::string SystemTest::PlaylistText(const std::vector<std::string>& entries) {
    std::string text = "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\n";
    for (size_t i = 0; i < entries.size(); ++i) text += "Entry" + std::to_string(i + 1) + "=" + entries[i] + "\r\n";
    return text + "NumberOfEntries=" + std::to_string(entries.size()) + "\r\n";
}

std::unique_ptr<PlayerProcess> SystemTest::Start(const std::vector<std::string>& arguments) {
    auto player = std::make_unique<PlayerProcess>(home_, bus_, arguments);
    EXPECT_TRUE(player->WaitUntilAnswering()) << player->Output();
    return player;
}

}  // namespace verdin::test
