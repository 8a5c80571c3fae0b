#include "settings/EqualizerPresetList.h"
#include "settings/EqualizerRecord.h"
#include "settings/Settings.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(EqualizerPresets, LoadingKeepsTheFirstOfANameAndStopsLinksAtAGap) {
    test::TempDir dir;
    test::WriteFile(dir.file("p.eq"), "[Rock]\r\nBand1=5\r\nBand16=-3\r\nPreAmp=2\r\nLink1=/m/a.mp3\r\nLink3=/m/c.mp3\r\n"
                                      "[Rock]\r\nBand1=9\r\n[Jazz]\r\nDefault=1\r\n[Flat]\r\nDefault=0\r\n");
    EqualizerPresetList list;
    EXPECT_EQ(list.LoadFile(dir.file("p.eq")), 3u);
    ASSERT_EQ(list.Count(), 3u);
    const EqualizerPreset& rock = list.At(0);
    EXPECT_EQ(rock.name, "Rock");
    EXPECT_EQ(rock.bands, (std::array<int32_t, 16>{5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -3}));
    EXPECT_EQ(rock.preAmp, 2);
    EXPECT_EQ(rock.links, std::vector<std::string>{"/m/a.mp3"});
    EXPECT_TRUE(list.At(1).isDefault);
    EXPECT_FALSE(list.At(2).isDefault);
    // Presets already in the list win against a file loaded later (import).
    test::WriteFile(dir.file("more.eq"), "[Jazz]\r\nBand2=4\r\n[New]\r\nBand2=4\r\n");
    EXPECT_EQ(list.LoadFile(dir.file("more.eq")), 1u);
    EXPECT_EQ(list.At(1).bands[1], 0);
    EXPECT_EQ(list.At(3).name, "New");
    EXPECT_EQ(list.LoadFile(dir.file("missing.eq")), 0u);
}

TEST(EqualizerPresets, WritingSkipsZeroBandsAndExportKeepsOtherSections) {
    test::TempDir dir;
    EqualizerPreset p{.name = "Mine", .isDefault = true, .links = {"/x/1.mp3", "/x/2.mp3"}}, zero{.name = "All zeroes"};
    p.bands[2] = -4;
    EqualizerPresetList list;
    list.Append(p);
    list.Append(zero);
    ASSERT_TRUE(list.SaveAll(dir.file("default.eq")));
    EXPECT_EQ(test::ReadFile(dir.file("default.eq")),
              "[Mine]\r\nBand3=-4\r\nPreAmp=0\r\nLink1=/x/1.mp3\r\nLink2=/x/2.mp3\r\nDefault=1\r\n[All zeroes]\r\nPreAmp=0\r\n");
    test::WriteFile(dir.file("e.eq"), "[Other]\r\nPreAmp=1\r\n[Mine]\r\nBand9=9\r\n");
    ASSERT_TRUE(EqualizerPresetList::WritePreset(dir.file("e.eq"), zero));
    p.isDefault = false;
    p.links.clear();
    ASSERT_TRUE(EqualizerPresetList::WritePreset(dir.file("e.eq"), p));
    EXPECT_EQ(test::ReadFile(dir.file("e.eq")),
              "[Other]\r\nPreAmp=1\r\n[Mine]\r\nBand3=-4\r\nPreAmp=0\r\n[All zeroes]\r\nPreAmp=0\r\n");
    for (const auto& [chosen, name] : {std::pair{"/d/mine.txt", "/d/mine.txt.eq"}, {"/d/mine.EQ", "/d/mine.EQ"},
                                      {"/d/mine", "/d/mine.eq"}, {"/d.eq/mine", "/d.eq/mine.eq"}})
        EXPECT_EQ(ExportFileName(chosen), name);
}

TEST(EqualizerPresets, ChoosingForATrackTakesTheFirstExactLinkThenTheDefault) {
    EqualizerPresetList list;
    for (int i = 1; i <= 3; ++i) {
        EqualizerPreset p{.name = std::string(1, char('@' + i)), .preAmp = -i};
        p.bands.fill(i);
        if (i > 1) p.links = {"/m/Song.mp3"};
        p.isDefault = i == 3;
        list.Append(p);
    }
    std::array<int32_t, 16> bands{};
    int32_t preAmp = 7;
    const struct {
        const char* path;
        int current;
    } cases[] = {{"/m/Song.mp3", 1}, {"/m/song.mp3", 2}};  // the case differs: the default
    for (const auto& c : cases) {
        EXPECT_TRUE(list.ChooseForTrack(c.path, bands, preAmp));
        EXPECT_EQ(list.Current(), c.current);
        EXPECT_EQ(bands[15], c.current + 1);
        EXPECT_EQ(preAmp, -(c.current + 1));
    }
    list.At(2).isDefault = false;
    EXPECT_FALSE(list.ChooseForTrack("/m/other.mp3", bands, preAmp));
    EXPECT_EQ(bands[0], 3);  // untouched
}

TEST(EqualizerPresets, ResetReadsThePresetFileAgainOrMakesAllZeroes) {
    test::TempDir dir;
    SettingsEnvironment env{"/p/bin", dir.str(), "/", "/m"};
    Settings s;
    SetDefaults(s, env);
    ASSERT_EQ(s.presets.Count(), 1u);
    test::WriteFile(PresetFilePath(env), "[One]\r\nPreAmp=1\r\n[Two]\r\nPreAmp=2\r\n");
    SetDefaults(s, env);
    ASSERT_EQ(s.presets.Count(), 2u);
    EXPECT_EQ(s.presets.At(1).preAmp, 2);
    EXPECT_EQ(s.presets.Current(), -1);
}

TEST(EqualizerRecord, ValuesArePreAmpPlusBandsPlusLoudness) {
    std::array<int32_t, 16> bands{};
    bands[0] = 5;
    bands[15] = -10;
    for (const bool loudness : {false, true}) {
        const EqualizerValues record = MakeEqualizerRecord(bands, 3, loudness);
        const std::vector<int32_t> expected = loudness ? std::vector<int32_t>{12, 7, 7, 5, 2, 0, 0, 0, 0, 0, 0, 1, 3, 6, 6, -4}
                                                       : std::vector<int32_t>{8, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, -7};
        EXPECT_EQ(std::vector<int32_t>(std::begin(record.gain), std::end(record.gain)), expected);
    }
}

}  // namespace
}  // namespace verdin
