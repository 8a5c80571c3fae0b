// The preset file's rules and the choice of a preset for a track. Saving, deleting,
// importing and exporting through the equalizer dialog are its own tests
// (tests/shell/ui/dialogs/EqualizerDialogTests).
#include "settings/EqualizerPresetList.h"
#include "settings/EqualizerRecord.h"
#include "settings/Settings.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

// Loading keeps the first preset of a name (against the list on import: the dialog's
// test) and stops the links at a gap; a track's preset is chosen from what was loaded;
// writing skips zero bands, and writing one preset into a file (an export) keeps the other
// sections; Reset reads the preset file again.
TEST(EqualizerPresets, ThePresetFileReadChosenFromAndWritten) {
    test::TempDir dir;
    const SettingsEnvironment env{"/p/bin", dir.str(), "/", "/m"};
    test::WriteFile(PresetFilePath(env), "[Rock]\r\nBand1=5\r\nBand16=-3\r\nPreAmp=2\r\nLink1=/m/a.mp3\r\nLink3=/m/c.mp3\r\n"
                                         "[Rock]\r\nBand1=9\r\n[Jazz]\r\nDefault=1\r\n[Flat]\r\nDefault=0\r\nLink1=/m/a.mp3\r\n");
    Settings s;
    SetDefaults(s, env);
    EqualizerPresetList& list = s.presets;
    ASSERT_EQ(list.Count(), 3u);
    const EqualizerPreset& rock = list.At(0);
    EXPECT_EQ(rock.bands, (std::array<int32_t, 16>{5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -3}));
    EXPECT_EQ(rock.preAmp, 2);
    EXPECT_EQ(rock.links, std::vector<std::string>{"/m/a.mp3"});
    EXPECT_TRUE(list.At(1).isDefault && !list.At(2).isDefault);
    // A track takes the first preset linked to it exactly, else the default.
    std::array<int32_t, 16> bands{};
    int32_t preAmp = 0;
    EXPECT_TRUE(list.ChooseForTrack("/m/a.mp3", bands, preAmp));
    EXPECT_EQ(list.Current(), 0);
    EXPECT_EQ(bands, rock.bands);
    EXPECT_EQ(preAmp, 2);
    EXPECT_TRUE(list.ChooseForTrack("/m/A.mp3", bands, preAmp));
    EXPECT_EQ(list.Current(), 1);
    EXPECT_EQ(bands, (std::array<int32_t, 16>{}));
    EXPECT_EQ(preAmp, 0);
    list.At(1).isDefault = false;
    bands[0] = 9;
    EXPECT_FALSE(list.ChooseForTrack("/m/other.mp3", bands, preAmp));
    EXPECT_EQ(bands[0], 9);  // untouched

    EqualizerPreset mine{.name = "Mine", .isDefault = true, .links = {"/x/1.mp3", "/x/2.mp3"}};
    mine.bands[2] = -4;
    EqualizerPresetList written;
    written.Append(mine);
    written.Append(EqualizerPreset{.name = "All zeroes"});
    ASSERT_TRUE(written.SaveAll(dir.file("default.eq")));
    EXPECT_EQ(test::ReadFile(dir.file("default.eq")),
              "[Mine]\r\nBand3=-4\r\nPreAmp=0\r\nLink1=/x/1.mp3\r\nLink2=/x/2.mp3\r\nDefault=1\r\n[All zeroes]\r\nPreAmp=0\r\n");
    test::WriteFile(dir.file("e.eq"), "[Other]\r\nPreAmp=1\r\n[Mine]\r\nBand9=9\r\n[After]\r\n");
    ASSERT_TRUE(EqualizerPresetList::WritePreset(dir.file("e.eq"), EqualizerPreset{.name = "Mine", .preAmp = 3}));
    EXPECT_EQ(test::ReadFile(dir.file("e.eq")), "[Other]\r\nPreAmp=1\r\n[Mine]\r\nPreAmp=3\r\n[After]\r\n");

    SetDefaults(s, env);  // the file saved above, not added to what was there
    ASSERT_EQ(s.presets.Count(), 2u);
    EXPECT_EQ(s.presets.At(0).name, "Mine");
}

TEST(EqualizerRecord, ValuesArePreAmpPlusBandsPlusLoudness) {
    std::array<int32_t, 16> bands{5};
    bands[15] = -10;
    const EqualizerValues plain = MakeEqualizerRecord(bands, 3, false), loud = MakeEqualizerRecord(bands, 3, true);
    EXPECT_EQ(std::vector<int32_t>(plain.gain, plain.gain + 16), (std::vector<int32_t>{8, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, -7}));
    EXPECT_EQ(std::vector<int32_t>(loud.gain, loud.gain + 16), (std::vector<int32_t>{12, 7, 7, 5, 2, 0, 0, 0, 0, 0, 0, 1, 3, 6, 6, -4}));
}

}  // namespace
}  // namespace verdin
