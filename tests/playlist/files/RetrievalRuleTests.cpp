// Whether an added track's information is read at once.
#include "playlist/files/RetrievalRule.h"

#include "engine/input/InputModuleList.h"
#include "PcmFixtures.h"
#include "playlist/TrackRecord.h"
#include "settings/Settings.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <linux/magic.h>

namespace verdin {
namespace {

Settings Skipping(bool anyFile, bool url, bool cdrom) {
    Settings settings;
    settings.skipInfoForAnyFile = anyFile;
    settings.skipInfoForURL = url;
    settings.skipInfoForCDROM = cdrom;
    return settings;
}

TEST(RetrievalRule, TheSkipSettingsDecide) {
    const struct {
        bool anyFile, url, cdrom;  // the three skip settings
        bool isUrl, onCdrom;       // the track
        bool retrieve;
    } cases[] = {
        {false, false, false, false, false, true}, {false, false, false, true, false, true},
        {false, false, false, false, true, true},  {true, false, false, false, false, false},
        {true, false, false, true, false, false},  {false, true, false, true, false, false},
        {false, true, false, false, false, true},  {false, true, false, false, true, true},
        {false, false, true, false, true, false},  {false, false, true, false, false, true},
        {false, false, true, true, false, true},   {false, true, true, true, false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(RetrievalWanted(Skipping(c.anyFile, c.url, c.cdrom), c.isUrl, c.onCdrom), c.retrieve)
            << "skip any " << c.anyFile << " url " << c.url << " cdrom " << c.cdrom << " / url " << c.isUrl
            << " cdrom " << c.onCdrom;
    }
    // The kernel's own numbers of the CD-ROM file systems; no test directory is on one.
    EXPECT_TRUE(IsCdromFileSystemType(ISOFS_SUPER_MAGIC) && IsCdromFileSystemType(UDF_SUPER_MAGIC));
    EXPECT_FALSE(IsCdromFileSystemType(EXT4_SUPER_MAGIC));
    const test::TempDir dir;
    for (const std::string& path : {dir.str() + "/", dir.str() + "/no such directory/", std::string()})
        EXPECT_FALSE(IsOnCdrom(path)) << path;
    EXPECT_TRUE(ShouldRetrieveOnAdd(TrackRecord(dir.file("a.mp3")), Skipping(false, true, true)));
    EXPECT_FALSE(ShouldRetrieveOnAdd(TrackRecord(dir.file("a.mp3")), Skipping(true, false, false)));
    EXPECT_FALSE(ShouldRetrieveOnAdd(TrackRecord("http://host/a.mp3"), Skipping(false, true, false)));
    EXPECT_TRUE(ShouldRetrieveOnAdd(TrackRecord("http://host/a.mp3"), Skipping(false, false, true)));
}

TEST(RetrievalRule, RetrieveOnAddReadsTheFileOnlyWhenWanted) {
    InputModuleList modules;
    ASSERT_GE(modules.LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr), 2u);
    const test::TempDir dir;
    const std::string wav = dir.file("tone.wav");
    test::WriteWav(wav, 2, 44100, 16, test::Bytes16(test::Sine16(44100 / 4, 2, 44100, {440.0})));
    TrackRecord skipped(wav), read(wav), missing(dir.file("missing.wav"));
    EXPECT_FALSE(RetrieveOnAdd(skipped, Skipping(true, false, false), modules));
    EXPECT_FALSE(skipped.InfoRetrieved());
    EXPECT_EQ(skipped.Duration(), 0u);
    EXPECT_TRUE(RetrieveOnAdd(read, Skipping(false, true, true), modules));
    EXPECT_TRUE(read.InfoRetrieved() && read.Exists());
    EXPECT_EQ(read.Duration(), 250u);
    EXPECT_TRUE(RetrieveOnAdd(missing, Settings{}, modules));  // attempted...
    EXPECT_FALSE(missing.Exists());                           // ...and the file is not there
}

}  // namespace
}  // namespace verdin
