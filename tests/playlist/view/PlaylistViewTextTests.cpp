// The playlist view's cells and summaries.
#include "playlist/view/PlaylistViewText.h"

#include "engine/input/InputModuleList.h"

#include "PcmFixtures.h"
#include "PlaylistFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

// A track holding a length and size, its information not retrieved.
std::unique_ptr<TrackItem> Track(const std::string& name, uint32_t ms, uint32_t bytes = 1) {
    return std::make_unique<TrackItem>(test::MakeTrack({name, {}, ms, bytes}));
}
const TrackTitleFunction kBody = [](const TrackRecord& t) { return t.Body(); };

TEST(PlaylistViewText, RowsOfEachKindShowTheirCells) {
    for (const auto& [bytes, text] : {std::pair{10485759u, "10239 KB"}, {10485760u, "10 MB"}, {0u, "0 KB"}, {4294967295u, "4095 MB"}})
        EXPECT_EQ(FormatFileSize(bytes), text) << bytes;
    Playlist tree;
    tree.AppendItem(Track("/m/song.mp3", 3599999, 5000000));
    auto mix = std::make_unique<Playlist>("/lists/mix.m3u");
    mix->AppendItem(Track("/m/a.mp3", 60000, 2048));
    mix->AppendItem(Track("/m/b.mp3", 3540000, 10485760));
    tree.AppendItem(std::move(mix));
    tree.AppendItem(std::make_unique<RandomEntry>("(YEAR < 1970)"));
    // Information not retrieved: duration and size, no format cells.
    EXPECT_EQ(CellsOfRow(tree, 0, kBody), (RowCells{"song", "1.", "59:59", "", "", "", "4882 KB", ""}));
    // A nested playlist: its body, marked while unsaved, with totals only.
    EXPECT_EQ(CellsOfRow(tree, 1, kBody), (RowCells{"mix *", "", "1:00:00", "", "", "", "10 MB", ""}));
    static_cast<Playlist*>(tree.ItemAtRow(1).item)->SetModified(false);
    EXPECT_EQ(CellsOfRow(tree, 1, kBody)[0], "mix");
    EXPECT_EQ(CellsOfRow(tree, 2, kBody)[1], "3.");  // every row counts
    EXPECT_EQ(CellsOfRow(tree, 4, kBody), (RowCells{"Random entry: (YEAR < 1970)", "5.", "0:00", "", "", "", "0 KB", ""}));
    EXPECT_EQ(CellsOfRow(tree, 5, kBody), RowCells{});

    test::TempDir dir;  // retrieved: the format too
    test::WriteWav(dir.file("tone.wav"), 1, 22050, 16, test::Bytes16(test::Sine16(22050 * 3, 1, 22050, {440.0})));
    InputModuleList modules;
    modules.LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr);
    Playlist retrieved;
    auto item = std::make_unique<TrackItem>(dir.file("tone.wav"));
    ASSERT_TRUE(item->Track().RetrieveInformation(modules, false));
    retrieved.AppendItem(std::move(item));
    EXPECT_EQ(CellsOfRow(retrieved, 0, kBody), (RowCells{"tone", "1.", "0:03", "352 kb/s", "22050 Hz", "16 bit mono", "129 KB", "N/A"}));
}

TEST(PlaylistViewText, SummariesCountTracksAndTotalTheirDurations) {
    Playlist main;
    EXPECT_EQ(ListSummary(main), "No tracks");
    main.AppendItem(Track("/m/a.mp3", 200000));
    EXPECT_EQ(ListSummary(main), "One track (3:20)");
    auto nested = std::make_unique<Playlist>("/l/n.vdp");
    nested->AppendItem(Track("/m/b.mp3", 100000));
    nested->AppendItem(Track("/m/c.mp3", 3600000));
    main.AppendItem(std::move(nested));
    main.AppendItem(std::make_unique<RandomEntry>(""));
    main.AppendItem(std::make_unique<Playlist>("/l/e.vdp"));
    EXPECT_EQ(ListSummary(main), "4 tracks (1:05:00)");
    const std::pair<std::vector<int>, const char*> selections[] = {
        {{}, "No items selected"},
        {{0}, "One distinct item (one track) selected (3:20)"},
        {{1, 2}, "One distinct item (2 tracks) selected (1:01:40)"},  // a playlist with one of its own tracks
        {{0, 4, 4}, "2 distinct items (2 tracks) selected (3:20)"},
        {{5}, "One distinct item (no tracks) selected (0:00)"},
    };
    for (const auto& [rows, text] : selections) EXPECT_EQ(SelectionSummary(main, rows), text);
}

}  // namespace
}  // namespace verdin
