#include "settings/SettingsFields.h"
#include "settings/store/SettingsStore.h"

#include "Files.h"
#include "TempDir.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace verdin {
namespace {

class SettingsStore : public ::testing::Test {
protected:
    void Save(const Settings& s) {
        QSettings qs(file, QSettings::IniFormat);
        QSettingsStorage storage(qs);
        ASSERT_TRUE(SaveSettings(s, storage, env));
    }
    Settings Load() {
        QSettings qs(file, QSettings::IniFormat);
        QSettingsStorage storage(qs);
        Settings s;
        LoadSettings(s, storage, env);
        return s;
    }

    test::TempDir dir;
    SettingsEnvironment env{"/p/bin", dir.str(), "/", "/m"};
    QString file = QString::fromStdString(dir.file("Verdin.conf"));
};

// Every stored value gets something other than its default, so a round trip that dropped
// or mixed up a value shows.
TEST_F(SettingsStore, EveryValueSurvivesSaveAndLoadThroughTheSettingsFile) {
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
    Save(saved);
    const Settings loaded = Load();
    for (const SettingsField& f : SettingsFields()) EXPECT_EQ(StoredBytes(f, loaded), StoredBytes(f, saved)) << f.name;
}

TEST_F(SettingsStore, NumbersAreByteArraysOfTheirSizeTextsAreStringsAndHandEditsFailTheSizeRule) {
    Settings s;
    SetDefaults(s, env);
    Save(s);
    {
        QSettings qs(file, QSettings::IniFormat);
        EXPECT_EQ(qs.value("mainVolume").typeId(), QMetaType::QByteArray);
        for (const auto& [name, size] : {std::pair{"mainVolume", 2}, {"rebarBandArray", 84}, {"mainWindowPlacement", 44}})
            EXPECT_EQ(qs.value(name).toByteArray().size(), size) << name;
        EXPECT_EQ(qs.value("windowTitleTemplate").toString(), "%num% %title% <%status%>");
    }
    // The preset file is written beside, in the user directory.
    EXPECT_EQ(test::ReadFile(dir.file("default.eq")), "[All zeroes]\r\nPreAmp=0\r\n");
    test::WriteFile(dir.file("Verdin.conf"), "[General]\nloopMode=1\nbufferSize=100000\n");
    const Settings edited = Load();
    EXPECT_EQ(edited.loopMode, 0);
    EXPECT_EQ(edited.bufferSize, 512000);
}

}  // namespace
}  // namespace verdin
