#include "playlist/view/PlaylistViewText.h"

#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"

#include "engine/input/InputModuleList.h"

#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

// A track holding the given length and size, its information not retrieved.
std::unique_ptr<TrackItem> Track(const std::string& name, uint32_t ms, uint32_t bytes) {
    auto item = std::make_unique<TrackItem>(name);
    TrackInfo info = item->Track().Info();
    info.duration = ms;
    info.fileSize = bytes;
    item->Track().SetInfo(info);
    return item;
}

const TrackTitleFunction kBody = [](const TrackRecord& t) { return t.Body(); };

TEST(PlaylistViewText, FileSizesSwitchToMegabytesAtTenMegabytes) {
    EXPECT_EQ(FormatFileSize(10485759), "10239 KB");
    EXPECT_EQ(FormatFileSize(10485760), "10 MB");
    EXPECT_EQ(FormatFileSize(0), "0 KB");
    EXPECT_EQ(FormatFileSize(4294967295u), "4095 MB");
}

TEST(PlaylistViewText, RowsOfEachKindShowTheirCells) {
    Playlist main;
    main.AppendItem(Track("/m/song.mp3", 3599999, 5000000));
    auto mix = std::make_unique<Playlist>("/lists/mix.m3u");
    mix->AppendItem(Track("/m/a.mp3", 60000, 2048));
    mix->AppendItem(Track("/m/b.mp3", 3540000, 10485760));
    main.AppendItem(std::move(mix));
    main.AppendItem(std::make_unique<RandomEntry>("(YEAR < 1970)"));

    // A track whose information was not retrieved: duration and size, no format cells.
    EXPECT_EQ(CellsOfRow(main, 0, kBody), (RowCells{"song", "1.", "59:59", "", "", "", "4882 KB", ""}));
    EXPECT_FALSE(static_cast<TrackItem*>(main.ItemAtRow(0).item)->Track().InfoRetrieved());
    // A nested playlist: its body, marked while unsaved, with totals only.
    EXPECT_EQ(CellsOfRow(main, 1, kBody), (RowCells{"mix *", "", "1:00:00", "", "", "", "10 MB", ""}));
    static_cast<Playlist*>(main.ItemAtRow(1).item)->SetModified(false);
    EXPECT_EQ(CellsOfRow(main, 1, kBody)[0], "mix");
    EXPECT_EQ(CellsOfRow(main, 2, kBody)[1], "3.");  // every row counts
    EXPECT_EQ(CellsOfRow(main, 4, kBody), (RowCells{"Random entry: (YEAR < 1970)", "5.", "0:00", "", "", "", "0 KB", ""}));
    EXPECT_EQ(CellsOfRow(main, 5, kBody), RowCells{});
}

TEST(PlaylistViewText, ARetrievedTrackShowsItsFormat) {
    test::TempDir dir;
    test::WriteWav(dir.file("tone.wav"), 1, 22050, 16, test::Bytes16(test::Sine16(22050 * 3, 1, 22050, {440.0})));
    InputModuleList modules;
    modules.LoadInputModules(std::string(VERDIN_TEST_PLUGIN_DIR) + ";", nullptr);
    Playlist main;
    auto item = std::make_unique<TrackItem>(dir.file("tone.wav"));
    ASSERT_TRUE(item->Track().RetrieveInformation(modules, false));
    main.AppendItem(std::move(item));
    EXPECT_EQ(CellsOfRow(main, 0, kBody), (RowCells{"tone", "1.", "0:03", "352 kb/s", "22050 Hz", "16 bit mono",
                                                    "129 KB", "N/A"}));
}

TEST(PlaylistViewText, SummariesCountTracksAndTotalTheirDurations) {
    Playlist main;
    EXPECT_EQ(ListSummary(main), "No tracks");
    main.AppendItem(Track("/m/a.mp3", 200000, 1));
    EXPECT_EQ(ListSummary(main), "One track (3:20)");
    auto nested = std::make_unique<Playlist>("/l/n.vdp");
    nested->AppendItem(Track("/m/b.mp3", 100000, 1));
    nested->AppendItem(Track("/m/c.mp3", 3600000, 1));
    main.AppendItem(std::move(nested));
    main.AppendItem(std::make_unique<RandomEntry>(""));
    EXPECT_EQ(ListSummary(main), "4 tracks (1:05:00)");

    EXPECT_EQ(SelectionSummary(main, {}), "No items selected");
    EXPECT_EQ(SelectionSummary(main, {0}), "One distinct item (one track) selected (3:20)");
    // The nested playlist with one of its own tracks: one distinct item holding two tracks.
    EXPECT_EQ(SelectionSummary(main, {1, 2}), "One distinct item (2 tracks) selected (1:01:40)");
    EXPECT_EQ(SelectionSummary(main, {0, 4, 4}), "2 distinct items (2 tracks) selected (3:20)");
    auto empty = std::make_unique<Playlist>("/l/e.vdp");
    main.AppendItem(std::move(empty));
    EXPECT_EQ(SelectionSummary(main, {5}), "One distinct item (no tracks) selected (0:00)");
}

}  // namespace
}  // namespace verdin
