// Cue sheets in playlists: a sheet stands for a row per audio track, and the rows' names
// come back the same from M3U and PLS files (saved relative to the playlist); a sheet
// that cannot be used still leaves a row whose resolving says where the sheet is wrong.
#include "PlaylistFileFixture.h"

#include "playlist/files/CueTrackPath.h"
#include "playlist/files/PlaylistWriter.h"

namespace verdin::test {
namespace {

using CueSheets = PlaylistFileTest;

TEST_F(CueSheets, ASheetsTracksAreRowsThatSurviveM3uAndPlsRoundTrips) {
    Write("disc/Image.wav");
    Write("disc/Album.cue", "\xEF\xBB\xBFTITLE Album\r\nFILE \"Image.wav\" WAVE\r\nTRACK 01 AUDIO\r\n"
                            "INDEX 01 00:00:00\r\nTRACK 02 MODE1/2352\r\nINDEX 01 00:02:00\r\n"
                            "TRACK 03 AUDIO\r\nINDEX 01 00:04:00\r\n");
    ASSERT_TRUE(Load(PathOf("disc/Album.cue")));
    ASSERT_EQ(Tree(), "$/disc/Album.cue#1 | $/disc/Album.cue#3");
    for (const PlaylistFormat format : {PlaylistFormat::kM3u, PlaylistFormat::kPls}) {
        const std::string file = PathOf("disc/list") + std::string(FormatExtension(format));
        ASSERT_TRUE(SavePlaylist(main_, file, format));
        EXPECT_EQ(ReadFile(file).find(dir_.str()), std::string::npos) << "saved relative: " << ReadFile(file);
        Playlist again;
        ASSERT_TRUE(LoadPlaylistEntries(again, file, Context()));
        EXPECT_EQ(Describe(again), Tree()) << file;
    }
    std::string error;
    const std::optional<CueTrackSource> third = ResolveCueTrack(PathOf("disc/Album.cue#3"), error);
    ASSERT_TRUE(third) << error;
    EXPECT_EQ(third->image, PathOf("disc/Image.wav"));
    EXPECT_EQ(third->begin, 4 * 75);
    EXPECT_EQ(third->end, -1);
    EXPECT_FALSE(ResolveCueTrack(PathOf("disc/Album.cue#2"), error)) << "a data track is not played";
}

TEST_F(CueSheets, ASheetThatCannotBeUsedLeavesOneRowThatSaysWhy) {
    Write("bad.cue", "FILE a.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 00:61:00\n");
    ASSERT_TRUE(Load(PathOf("bad.cue")));
    EXPECT_EQ(Tree(), "$/bad.cue#1");
    std::string error;
    EXPECT_FALSE(ResolveCueTrack(PathOf("bad.cue#1"), error));
    EXPECT_NE(error.find("line 3: INDEX needs"), std::string::npos) << error;
}

}  // namespace
}  // namespace verdin::test
