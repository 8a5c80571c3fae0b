// The settings record through the settings file (QSettings in INI syntax).
#include "settings/SettingsFields.h"
#include "settings/store/SettingsStore.h"

#include "Files.h"
#include "TempDir.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace verdin {
namespace {

// Every stored value gets something other than its default, so a round trip that dropped
// or mixed up a value shows; loading keeps to the size rule, so numbers must be stored as
// byte arrays of their size, and a hand-edited number fails it.
TEST(SettingsStore, EveryValueSurvivesSaveAndLoadAndHandEditsFailTheSizeRule) {
    test::TempDir dir;
    const SettingsEnvironment env{"/p/bin", dir.str(), "/", "/m"};
    const QString file = QString::fromStdString(dir.file("Verdin.conf"));
    const auto load = [&] {
        QSettings qs(file, QSettings::IniFormat);
        QSettingsStorage storage(qs);
        Settings s;
        LoadSettings(s, storage, env);
        return s;
    };
    Settings saved;
    SetDefaults(saved, env);
    int n = 1;
    for (const SettingsField& f : SettingsFields()) {
        if (f.kind == FieldKind::Text) *f.text(saved) = std::string(f.name) + " text ünïcode " + std::to_string(n++);
        else
            for (uint32_t i = 0; i < f.size; ++i) static_cast<unsigned char*>(f.bytes(saved))[i] = uint8_t(n++ * 7 + i);
    }
    saved.rebarBandArray = {RebarBand{124, 5, 1}, {114, 6, 0}, {115, 7, 1}, {116, 8, 0}, {111, 9, 1}, {125, 1, 0}, {103, 2, 1}};
    saved.silenceLevel = -42;
    saved.version = 28;
    {
        QSettings qs(file, QSettings::IniFormat);
        QSettingsStorage storage(qs);
        ASSERT_TRUE(SaveSettings(saved, storage, env));
    }
    const Settings loaded = load();
    for (const SettingsField& f : SettingsFields()) EXPECT_EQ(StoredBytes(f, loaded), StoredBytes(f, saved)) << f.name;
    EXPECT_EQ(test::ReadFile(dir.file("default.eq")), "[All zeroes]\r\nPreAmp=0\r\n");  // the presets beside
    test::WriteFile(dir.file("Verdin.conf"), "[General]\nloopMode=1\nbufferSize=100000\n");
    const Settings edited = load();
    EXPECT_EQ(edited.loopMode, 0);
    EXPECT_EQ(edited.bufferSize, 512000);
}

}  // namespace
}  // namespace verdin
