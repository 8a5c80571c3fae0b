#include "settings/Settings.h"
#include "settings/SettingsFields.h"
#include "settings/SettingsStorage.h"

#include "Files.h"
#include "MemoryStorage.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <set>

namespace verdin {
namespace {

class SettingsLoading : public ::testing::Test {
protected:
    test::TempDir dir;
    SettingsEnvironment env{"/opt/verdin/bin", dir.str(), "/home/u/cwd", "/home/u/Music"};
    test::MemoryStorage storage;
    Settings s;

    void Load() { LoadSettings(s, storage, env); }
    void PutBands(const std::array<RebarBand, 7>& bands) {
        storage.values["rebarBandArray"] = std::string(reinterpret_cast<const char*>(bands.data()), 84);
    }
};

TEST_F(SettingsLoading, AnEmptyStoreGivesTheDefaultsOfThisMachineAndSavesVersion28) {
    std::set<std::string> names;
    for (const auto& f : SettingsFields()) EXPECT_TRUE(names.insert(f.name).second) << f.name << " twice";
    Load();
    EXPECT_EQ(s.version, 28);
    EXPECT_EQ(s.initialDirectory, "/home/u/cwd");
    EXPECT_EQ(s.decodeDirectory, "/home/u/cwd");
    EXPECT_EQ(s.Volume(), 65535);
    EXPECT_EQ(s.sampleSpaceSearchPath, "/home/u/Music;");
    EXPECT_EQ(s.inputPluginsSearchPath, "/opt/verdin/lib/verdin/Plug-ins;");
    EXPECT_EQ(s.dspPluginsSearchPath, s.inputPluginsSearchPath);
    EXPECT_EQ(s.rebarBitmap, "/opt/verdin/share/verdin/rebar_brimfell.bmp");
    ASSERT_EQ(s.presets.Count(), 1u);
    EXPECT_EQ(s.presets.At(0).name, "All zeroes");
    EXPECT_EQ(s.presets.Current(), 0);
    ASSERT_TRUE(SaveSettings(s, storage, env));
    EXPECT_EQ(storage.values.at("version"), std::string("\x1c\0\0\0", 4));
    EXPECT_EQ(storage.values.at("mainVolume"), std::string("\xff\xff", 2));
}

TEST_F(SettingsLoading, ValuesOfTheWrongSizeKeepTheirDefaultsAndLongTextsAreCut) {
    storage.PutInt("mainVolume", 1000);                     // 4 bytes instead of 2
    storage.values["loopMode"] = std::string("\x01\0", 2);  // 2 bytes instead of 4
    storage.values["equalizerValues"] = std::string(60, '\x01');
    storage.values["trackTitleTemplate"] = std::string(300, 'x');
    storage.values["proxyURL"] = "";                        // an empty text is not taken
    storage.PutInt("bufferPrefill", 50);
    Load();
    EXPECT_EQ(s.mainVolume, -1);
    EXPECT_EQ(s.loopMode, 0);
    EXPECT_EQ(s.equalizerValues[0], 0);
    EXPECT_EQ(s.trackTitleTemplate, std::string(255, 'x'));
    EXPECT_EQ(s.bufferPrefill, 50);
    storage.values["mainVolume"] = std::string("\x10\x27", 2);  // 10000 replaces only the low half
    Load();
    EXPECT_EQ(s.Volume(), 10000);
    EXPECT_EQ(static_cast<uint32_t>(s.mainVolume), 0xFFFF2710u);
}

TEST_F(SettingsLoading, ABandArrayThatDoesNotSumTo808IsReplacedWhole) {
    std::array<RebarBand, 7> bands{RebarBand{103, 10, 0}, {103, 20, 0}, {111, 999, 1}, {116, 0, 0},
                                   {115, 0, 1},           {114, 0, 1},  {124, 0, 1}};
    PutBands(bands);
    Load();
    EXPECT_EQ(s.rebarBandArray[0], (RebarBand{103, 999, 0}));
    EXPECT_EQ(s.rebarBandArray[1], (RebarBand{125, 0, 0}));
    bands[0] = RebarBand{125, 40, 1};  // a reordered but complete set is kept
    PutBands(bands);
    Load();
    EXPECT_EQ(s.rebarBandArray[0], (RebarBand{125, 40, 1}));
}

TEST_F(SettingsLoading, SilenceLevelIsClampedAndOldVersionsAlwaysGetMinus100) {
    struct Case { int32_t stored, version, expected; };
    for (const Case& c : {Case{-150, 28, -100}, Case{0, 28, -20}, Case{-60, 28, -60},
                          Case{-60, 14, -100}, Case{500, 14, -100}, Case{-30, 15, -30}}) {
        storage.values.clear();
        storage.PutInt("silenceLevel", c.stored);
        storage.PutInt("version", c.version);
        Load();
        EXPECT_EQ(s.silenceLevel, c.expected) << c.stored << " at version " << c.version;
    }
}

TEST_F(SettingsLoading, Version24RewritesTheTrackTitleAndRaisesTheBuffer) {
    storage.PutInt("version", 24);
    storage.values["trackTitleTemplate"] = "%body%";
    storage.PutInt("bufferSize", 65536);
    storage.PutInt("decoderThreadPriority", 5);
    storage.PutInt("ignoreID3Tags", 1);
    storage.values["inputPluginsSearchPath"] = "/old/plugins;";
    test::WriteFile(dir.file("equalizer.dat"), "[x]\r\n");
    Load();
    EXPECT_EQ(s.trackTitleTemplate, "%sugtitle%");
    EXPECT_EQ(s.bufferSize, 102400);
    EXPECT_EQ(s.playerThreadPriority, 5);
    EXPECT_EQ(s.ignoreID3Tags, 0);
    EXPECT_EQ(s.inputPluginsSearchPath, "/opt/verdin/lib/verdin/Plug-ins;");
    EXPECT_TRUE(test::FileExists(dir.file("equalizer.eq")));
    EXPECT_FALSE(test::FileExists(dir.file("equalizer.dat")));
    EXPECT_EQ(s.version, 28);
}

TEST_F(SettingsLoading, Version17RewritesTheShortTemplateCodes) {
    storage.PutInt("version", 17);
    storage.values["trackTitleTemplate"] = "%TP1 - %TT2 (%ext)";
    storage.values["windowTitleTemplate"] = "%tno %ttl <%sts> %php%bdp%exp";
    storage.values["statusStringTemplate"] = "%tno %title %ptt/%plt [%ptp %plp] %dut";
    Load();
    EXPECT_EQ(s.trackTitleTemplate, "%LEADARTIST% - %TITLE% (%ext%)");
    EXPECT_EQ(s.windowTitleTemplate, "%num% %title% <%status%> %ppath%%pbody%%pext%");
    EXPECT_EQ(s.statusStringTemplate, "%num% %title% %time%/%timel% [%ptime% %ptimel%] %dur%");
    EXPECT_EQ(ReplaceAll("%ext%ext", "%ext", "%ext%"), "%ext%%ext%");  // on behind the inserted text
    EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
}

TEST_F(SettingsLoading, Version19And21TakeTheirOldValuesAndAFreshStoreRunsNoStep) {
    storage.PutInt("version", 19);
    storage.PutInt("ignoreID3v2Tags", 1);
    storage.PutInt("decodeToFile", 7);
    Load();
    EXPECT_EQ(s.skipInfoForURL, 1);  // old "retrieveInformationForURLs" absent
    EXPECT_EQ(s.outputType, 1);
    EXPECT_EQ(s.ignoreID3Tags, 0);   // the step below 25 clears it again
    storage.values.clear();
    storage.PutInt("version", 21);
    storage.PutInt("skipInfoForURL", 1);  // the step below 20 no longer runs
    storage.PutInt("outputType", 2);
    Load();
    EXPECT_EQ(s.skipInfoForURL, 1);
    EXPECT_EQ(s.outputType, 0);      // decodeToFile absent
    storage.values.clear();
    storage.values["inputPluginsSearchPath"] = "/mine;";
    storage.PutInt("bufferSize", 65536);
    Load();
    EXPECT_EQ(s.inputPluginsSearchPath, "/mine;");
    EXPECT_EQ(s.bufferSize, 65536);
}

}  // namespace
}  // namespace verdin
