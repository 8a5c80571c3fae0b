// Loading the settings record from a store in memory that holds odd values (wrong sizes,
// old names) as a test puts them: one table of what is stored and what loading makes of it.
#include "settings/Settings.h"
#include "settings/SettingsFields.h"
#include "settings/SettingsStorage.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <map>

namespace verdin {
namespace {

using Values = std::map<std::string, std::string>;

struct MemoryStorage final : SettingsStorage {
    Values values;
    std::optional<std::string> Read(const std::string& n) override { return values.contains(n) ? std::optional(values[n]) : std::nullopt; }
    void WriteText(const std::string& n, const std::string& text) override { values[n] = text; }
    void WriteBinary(const std::string& n, const std::string& bytes) override { values[n] = bytes; }
    bool Commit() override { return true; }
};

// Numbers and band arrays as stored: their bytes.
std::string I(int32_t v) { return std::string(reinterpret_cast<const char*>(&v), 4); }
std::string Bands(const std::array<RebarBand, 7>& b) { return std::string(reinterpret_cast<const char*>(b.data()), 84); }

TEST(SettingsLoading, EachRuleAndUpgradeStepFromWhatIsStored) {
    test::TempDir dir;
    const SettingsEnvironment env{"/opt/verdin/bin", dir.str(), "/home/u/cwd", "/home/u/Music"};
    const std::string plugins = "/opt/verdin/lib/verdin/Plug-ins;";
    Settings defaults;
    SetDefaults(defaults, env);
    const std::string completeBands = Bands({RebarBand{125, 40, 1}, {103, 20, 0}, {111, 9, 1}, {116, 0, 0}, {115, 0, 1}, {114, 0, 1}, {124, 0, 1}});
    test::WriteFile(dir.file("equalizer.dat"), "[x]\r\n");
    const struct {
        Values stored, expected;
    } cases[] = {
        // Nothing stored: the defaults of this machine, and no upgrade step.
        {{}, {{"version", I(28)}, {"initialDirectory", "/home/u/cwd"}, {"decodeDirectory", "/home/u/cwd"},
              {"sampleSpaceSearchPath", "/home/u/Music;"}, {"inputPluginsSearchPath", plugins},
              {"dspPluginsSearchPath", plugins}, {"rebarBitmap", "/opt/verdin/share/verdin/rebar_brimfell.bmp"}}},
        // Values of the wrong size and empty texts keep their defaults; long texts are cut.
        {{{"mainVolume", I(1000)}, {"loopMode", std::string("\x01\0", 2)}, {"equalizerValues", std::string(60, '\x01')},
          {"trackTitleTemplate", std::string(300, 'x')}, {"windowTitleTemplate", ""}, {"bufferPrefill", I(50)}},
         {{"mainVolume", "\xff\xff"}, {"loopMode", I(0)}, {"equalizerValues", std::string(64, '\0')},
          {"trackTitleTemplate", std::string(255, 'x')}, {"windowTitleTemplate", "%num% %title% <%status%>"}, {"bufferPrefill", I(50)}}},
        // A band array that does not sum to 808 is replaced whole; a reordered complete one is kept.
        {{{"rebarBandArray", Bands({RebarBand{103, 10, 0}, {103, 20, 0}, {111, 999, 1}, {116, 0, 0}, {115, 0, 1}, {114, 0, 1}, {124, 0, 1}})}},
         {{"rebarBandArray", Bands(defaults.rebarBandArray)}}},
        {{{"rebarBandArray", completeBands}}, {{"rebarBandArray", completeBands}}},
        // The silence level is clamped; versions before 15 always get -100.
        {{{"silenceLevel", I(-150)}, {"version", I(28)}}, {{"silenceLevel", I(-100)}}},
        {{{"silenceLevel", I(0)}, {"version", I(28)}}, {{"silenceLevel", I(-20)}}},
        {{{"silenceLevel", I(-60)}, {"version", I(14)}}, {{"silenceLevel", I(-100)}}},
        {{{"silenceLevel", I(-30)}, {"version", I(15)}}, {{"silenceLevel", I(-30)}}},
        {{{"version", I(17)}, {"trackTitleTemplate", "%TP1 - %TT2 (%ext)"}, {"windowTitleTemplate", "%tno %ttl <%sts> %php%bdp%exp"},
          {"statusStringTemplate", "%tno %title %ptt/%plt [%ptp %plp] %dut"}},
         {{"trackTitleTemplate", "%LEADARTIST% - %TITLE% (%ext%)"}, {"windowTitleTemplate", "%num% %title% <%status%> %ppath%%pbody%%pext%"},
          {"statusStringTemplate", "%num% %title% %time%/%timel% [%ptime% %ptimel%] %dur%"}}},
        // Old values read before 20 ("retrieveInformationForURLs" absent) and 22; the
        // step below 25 clears ignoreID3Tags again.
        {{{"version", I(19)}, {"ignoreID3v2Tags", I(1)}, {"decodeToFile", I(7)}},
         {{"skipInfoForURL", I(1)}, {"outputType", I(1)}, {"ignoreID3Tags", I(0)}}},
        {{{"version", I(21)}, {"skipInfoForURL", I(1)}, {"outputType", I(2)}}, {{"skipInfoForURL", I(1)}, {"outputType", I(0)}}},
        {{{"version", I(24)}, {"trackTitleTemplate", "%body%"}, {"bufferSize", I(65536)}, {"decoderThreadPriority", I(5)},
          {"ignoreID3Tags", I(1)}, {"inputPluginsSearchPath", "/old/plugins;"}},
         {{"trackTitleTemplate", "%sugtitle%"}, {"bufferSize", I(102400)}, {"playerThreadPriority", I(5)},
          {"ignoreID3Tags", I(0)}, {"inputPluginsSearchPath", plugins}, {"version", I(28)}}},
    };
    std::map<std::string, const SettingsField*> fields;
    for (const auto& f : SettingsFields()) EXPECT_TRUE(fields.emplace(f.name, &f).second) << f.name << " twice";
    for (const auto& c : cases) {
        MemoryStorage storage;
        storage.values = c.stored;
        Settings s;
        LoadSettings(s, storage, env);
        for (const auto& [name, bytes] : c.expected)
            EXPECT_EQ(StoredBytes(*fields.at(name), s), bytes) << name << " from " << testing::PrintToString(c.stored);
    }
    EXPECT_TRUE(test::FileExists(dir.file("equalizer.eq")));  // renamed below version 25
    EXPECT_FALSE(test::FileExists(dir.file("equalizer.dat")));

    // A stored volume replaces only the low half; saving writes the current version.
    MemoryStorage storage;
    storage.values["mainVolume"] = std::string("\x10\x27", 2);
    Settings s;
    LoadSettings(s, storage, env);
    EXPECT_EQ(s.Volume(), 10000);
    EXPECT_EQ(static_cast<uint32_t>(s.mainVolume), 0xFFFF2710u);
    ASSERT_TRUE(SaveSettings(s, storage, env));
    EXPECT_EQ(storage.values.at("version"), I(28));
}

}  // namespace
}  // namespace verdin
