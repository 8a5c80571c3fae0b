// Whether an added track's information is read at once.
#include "playlist/files/RetrievalRule.h"

#include "engine/input/InputModuleList.h"
#include "PcmFixtures.h"
#include "playlist/TrackRecord.h"
#include "settings/Settings.h"
#include "TempDir.h"

#include <gtest/gtest.h>

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
        {false, false, false, false, false, true},
        {false, false, false, true, false, true},
        {false, false, false, false, true, true},   // a CD-ROM file, not skipped
        {true, false, false, false, false, false},  // any file
        {true, false, false, true, false, false},   // ... a URL too
        {false, true, false, true, false, false},   // URLs
        {false, true, false, false, false, true},   // ... not local files
        {false, true, false, false, true, true},
        {false, false, true, false, true, false},   // CD-ROM files
        {false, false, true, false, false, true},   // ... not other local files
        {false, false, true, true, false, true},    // ... nor URLs
        {false, true, true, true, false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(RetrievalWanted(Skipping(c.anyFile, c.url, c.cdrom), c.isUrl, c.onCdrom), c.retrieve)
            << "skip any " << c.anyFile << " url " << c.url << " cdrom " << c.cdrom << " / url " << c.isUrl
            << " cdrom " << c.onCdrom;
    }
}

TEST(RetrievalRule, CdromsAreIso9660AndUdf) {
    EXPECT_TRUE(IsCdromFileSystemType(0x9660));
    EXPECT_TRUE(IsCdromFileSystemType(0x15013346));
    EXPECT_FALSE(IsCdromFileSystemType(0xEF53));      // ext2/3/4
    EXPECT_FALSE(IsCdromFileSystemType(0x01021994));  // tmpfs
    EXPECT_FALSE(IsCdromFileSystemType(0));
    const test::TempDir dir;
    EXPECT_FALSE(IsOnCdrom(dir.str() + "/"));
    EXPECT_FALSE(IsOnCdrom(dir.str() + "/no such directory/"));
    EXPECT_FALSE(IsOnCdrom(""));
}

TEST(RetrievalRule, TracksAreJudgedByTheirName) {
    const test::TempDir dir;
    const TrackRecord local(dir.file("a.mp3"));
    const TrackRecord url("http://host/a.mp3");
    EXPECT_TRUE(ShouldRetrieveOnAdd(local, Skipping(false, true, true)));   // not on a CD-ROM
    EXPECT_FALSE(ShouldRetrieveOnAdd(local, Skipping(true, false, false)));
    EXPECT_FALSE(ShouldRetrieveOnAdd(url, Skipping(false, true, false)));
    EXPECT_TRUE(ShouldRetrieveOnAdd(url, Skipping(false, false, true)));
}

TEST(RetrievalRule, RetrieveOnAddReadsTheFileOnlyWhenWanted) {
    InputModuleList modules;
    ASSERT_GE(modules.LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr), 2u);
    const test::TempDir dir;
    const std::string wav = dir.file("tone.wav");
    test::WriteWav(wav, 2, 44100, 16, test::Bytes16(test::Sine16(44100 / 4, 2, 44100, {440.0})));

    TrackRecord skipped(wav);
    EXPECT_FALSE(RetrieveOnAdd(skipped, Skipping(true, false, false), modules));
    EXPECT_FALSE(skipped.InfoRetrieved());
    EXPECT_EQ(skipped.Duration(), 0u);

    TrackRecord read(wav);
    EXPECT_TRUE(RetrieveOnAdd(read, Skipping(false, true, true), modules));
    EXPECT_TRUE(read.InfoRetrieved());
    EXPECT_TRUE(read.Exists());
    EXPECT_EQ(read.Duration(), 250u);

    TrackRecord missing(dir.file("missing.wav"));
    EXPECT_TRUE(RetrieveOnAdd(missing, Settings{}, modules));  // attempted...
    EXPECT_FALSE(missing.Exists());                           // ...and the file is not there
}

}  // namespace
}  // namespace verdin
