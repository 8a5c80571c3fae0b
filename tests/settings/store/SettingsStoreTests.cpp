#include "settings/SettingsFields.h"
#include "settings/store/SettingsStore.h"

#include "Files.h"
#include "TempDir.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace verdin {
namespace {

// Gives every stored value something other than its default, so a round trip that
// dropped or mixed up a value shows.
void Scramble(Settings& s) {
    int n = 1;
    for (const SettingsField& f : SettingsFields()) {
        if (f.kind == FieldKind::Text) {
            *f.text(s) = std::string(f.name) + " text ünïcode " + std::to_string(n);
        } else {
            auto* bytes = static_cast<unsigned char*>(f.bytes(s));
            for (uint32_t i = 0; i < f.size; ++i) bytes[i] = static_cast<unsigned char>(n * 7 + i);
        }
        ++n;
    }
    s.rebarBandArray = {RebarBand{124, 5, 1}, RebarBand{114, 6, 0}, RebarBand{115, 7, 1}, RebarBand{116, 8, 0},
                        RebarBand{111, 9, 1}, RebarBand{125, 1, 0}, RebarBand{103, 2, 1}};
    s.silenceLevel = -42;
    s.version = 28;
}

TEST(SettingsStore, EveryValueSurvivesSaveAndLoadThroughTheSettingsFile) {
    test::TempDir dir;
    SettingsEnvironment env{"/p/bin", dir.str(), "/", "/m"};
    const QString file = QString::fromStdString(dir.file("Verdin.conf"));
    Settings saved;
    SetDefaults(saved, env);
    Scramble(saved);
    {
        QSettings qs(file, QSettings::IniFormat);
        QSettingsStorage storage(qs);
        ASSERT_TRUE(SaveSettings(saved, storage, env));
    }
    Settings loaded;
    {
        QSettings qs(file, QSettings::IniFormat);
        QSettingsStorage storage(qs);
        LoadSettings(loaded, storage, env);
    }
    for (const SettingsField& f : SettingsFields())
        EXPECT_EQ(StoredBytes(f, loaded), StoredBytes(f, saved)) << f.name;
}

TEST(SettingsStore, NumbersAreByteArraysOfTheirSizeAndTextsAreStrings) {
    test::TempDir dir;
    SettingsEnvironment env{"/p/bin", dir.str(), "/", "/m"};
    const QString file = QString::fromStdString(dir.file("Verdin.conf"));
    Settings s;
    SetDefaults(s, env);
    {
        QSettings qs(file, QSettings::IniFormat);
        QSettingsStorage storage(qs);
        ASSERT_TRUE(SaveSettings(s, storage, env));
    }
    QSettings qs(file, QSettings::IniFormat);
    EXPECT_EQ(qs.value("mainVolume").typeId(), QMetaType::QByteArray);
    EXPECT_EQ(qs.value("mainVolume").toByteArray().size(), 2);
    EXPECT_EQ(qs.value("rebarBandArray").toByteArray().size(), 84);
    EXPECT_EQ(qs.value("mainWindowPlacement").toByteArray().size(), 44);
    EXPECT_EQ(qs.value("windowTitleTemplate").toString(), "%num% %title% <%status%>");
    // The preset file is written beside, in the user directory.
    EXPECT_EQ(test::ReadFile(dir.file("default.eq")), "[All zeroes]\r\nPreAmp=0\r\n");
}

TEST(SettingsStore, HandEditedNumbersFailTheSizeRule) {
    test::TempDir dir;
    SettingsEnvironment env{"/p/bin", dir.str(), "/", "/m"};
    test::WriteFile(dir.file("Verdin.conf"), "[General]\nloopMode=1\nbufferSize=100000\n");
    QSettings qs(QString::fromStdString(dir.file("Verdin.conf")), QSettings::IniFormat);
    QSettingsStorage storage(qs);
    Settings s;
    LoadSettings(s, storage, env);
    EXPECT_EQ(s.loopMode, 0);
    EXPECT_EQ(s.bufferSize, 512000);
}

}  // namespace
}  // namespace verdin
