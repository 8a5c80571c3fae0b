// The playlist view's cells and summaries.
#include "playlist/view/PlaylistViewText.h"

#include "PcmFixtures.h"
#include "PlaylistFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

// A track holding a length and size, its information not retrieved.
std::unique_ptr<TrackItem> Track(const std::string& name, uint32_t ms, uint32_t bytes = 1) { return std::make_unique<TrackItem>(test::MakeTrack({name, {}, ms, bytes})); }

TEST(PlaylistViewText, RowsOfEachKindShowTheirCellsAndSummariesCountTracksAndTotalTheirDurations) {
    const TrackTitleFunction body = [](const TrackRecord& t) { return t.Body(); };
    for (const auto& [bytes, text] : {std::pair{10485759u, "10239 KB"}, {10485760u, "10 MB"}, {0u, "0 KB"}, {4294967295u, "4095 MB"}}) EXPECT_EQ(FormatFileSize(bytes), text) << bytes;
    Playlist tree;
    EXPECT_EQ(ListSummary(tree), "No tracks");
    tree.AppendItem(Track("/m/song.mp3", 3599999, 5000000));
    EXPECT_EQ(ListSummary(tree), "One track (59:59)");
    auto mix = std::make_unique<Playlist>("/lists/mix.m3u");
    mix->AppendItem(Track("/m/a.mp3", 60000, 2048));
    mix->AppendItem(Track("/m/b.mp3", 3540000, 10485760));
    tree.AppendItem(std::move(mix));
    tree.AppendItem(std::make_unique<RandomEntry>("(YEAR < 1970)"));
    tree.AppendItem(std::make_unique<Playlist>("/l/e.vdp"));
    // Information not retrieved: duration and size, no format cells.
    EXPECT_EQ(CellsOfRow(tree, 0, body), (RowCells{"song", "1.", "59:59", "", "", "", "4882 KB", ""}));
    // A nested playlist: its body, marked while unsaved, with totals only.
    EXPECT_EQ(CellsOfRow(tree, 1, body), (RowCells{"mix *", "", "1:00:00", "", "", "", "10 MB", ""}));
    static_cast<Playlist*>(tree.ItemAtRow(1).item)->SetModified(false);
    EXPECT_EQ(CellsOfRow(tree, 1, body)[0] + CellsOfRow(tree, 2, body)[1], "mix3.");  // every row counts
    EXPECT_EQ(CellsOfRow(tree, 4, body), (RowCells{"Random entry: (YEAR < 1970)", "5.", "0:00", "", "", "", "0 KB", ""}));
    EXPECT_EQ(CellsOfRow(tree, 6, body), RowCells{});
    EXPECT_EQ(ListSummary(tree), "4 tracks (1:59:59)");  // the random entry counts
    const std::pair<std::vector<int>, const char*> selections[] = {
        {{}, "No items selected"}, {{0}, "One distinct item (one track) selected (59:59)"},
        {{1, 2}, "One distinct item (2 tracks) selected (1:00:00)"},  // a playlist with one of its own tracks
        {{0, 4, 4}, "2 distinct items (2 tracks) selected (59:59)"}, {{5}, "One distinct item (no tracks) selected (0:00)"},
    };
    for (const auto& [rows, text] : selections) EXPECT_EQ(SelectionSummary(tree, rows), text);

    test::TempDir dir;  // retrieved: the format too
    test::WriteWav(dir.file("tone.wav"), 1, 22050, 16, test::Bytes16(test::Sine16(22050 * 3, 1, 22050, {440.0})));
    Playlist retrieved;
    retrieved.AppendItem(std::make_unique<TrackItem>(dir.file("tone.wav")));
    ASSERT_TRUE(static_cast<TrackItem*>(retrieved.ItemAt(0))->Track().RetrieveInformation(test::BundledModules(), false));
    EXPECT_EQ(CellsOfRow(retrieved, 0, body), (RowCells{"tone", "1.", "0:03", "352 kb/s", "22050 Hz", "16 bit mono", "129 KB", "N/A"}));
}

}  // namespace
}  // namespace verdin
