// Rows: the tree flattened depth first, and the caches that make row lookups fast.
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>

namespace verdin {
namespace {

using test::BuildTree;
using test::DescribeTree;
using test::RowLabels;

Playlist& NestedAt(Playlist& main, int row) {
    const RowRef ref = main.ItemAtRow(row);
    EXPECT_TRUE(ref && ref.item->Kind() == ItemKind::kPlaylist) << "row " << row;
    return static_cast<Playlist&>(*ref.item);
}

TEST(RowNumbering, NumbersTheTreeDepthFirst) {
    const auto main = BuildTree("a P[ b Q[ c ] d ] ?r e R[ ]");
    EXPECT_EQ(main->RowCount(), 9);
    EXPECT_EQ(main->PlayableCount(), 6);
    EXPECT_EQ(RowLabels(*main), (std::vector<std::string>{"a", "P", "b", "Q", "c", "d", "?r", "e", "R"}));

    const struct {
        int row;
        const char* holder;  // label of the holding playlist, "" for the main playlist
        size_t index;
        bool playlistRow;
        bool randomRow;
    } rows[] = {
        {0, "", 0, false, false}, {1, "", 1, true, false},  {2, "P", 0, false, false},
        {3, "P", 1, true, false}, {4, "Q", 0, false, false}, {5, "P", 2, false, false},
        {6, "", 2, false, true},  {7, "", 3, false, false}, {8, "", 4, true, false},
    };
    for (const auto& r : rows) {
        const RowRef ref = main->ItemAtRow(r.row);
        ASSERT_TRUE(ref) << r.row;
        EXPECT_EQ(ref.holder == main.get() ? "" : test::Label(*ref.holder), r.holder) << r.row;
        EXPECT_EQ(ref.index, r.index) << r.row;
        EXPECT_EQ(ref.holder->ItemAt(ref.index), ref.item) << r.row;
        EXPECT_EQ(main->RowOf(ref.holder, ref.index), r.row);
        EXPECT_EQ(IsPlaylistRow(*main, r.row), r.playlistRow) << r.row;
        EXPECT_EQ(IsRandomEntryRow(*main, r.row), r.randomRow) << r.row;
        EXPECT_EQ(IsPlayableRow(*main, r.row), !r.playlistRow) << r.row;
    }
    // A nested playlist counts its own subtree from 0.
    Playlist& p = NestedAt(*main, 1);
    EXPECT_EQ(p.RowCount(), 4);
    EXPECT_EQ(test::Label(*p.ItemAtRow(2).item), "c");
    EXPECT_EQ(p.RowOf(&NestedAt(*main, 3), 0), 2);
}

TEST(RowNumbering, RowsOutsideTheTreeNameNothing) {
    const auto main = BuildTree("a P[ b ]");
    for (int row : {-1, -2, 3, 4, INT_MAX, INT_MIN}) {
        EXPECT_FALSE(main->ItemAtRow(row)) << row;
        EXPECT_TRUE(IsPlaylistRow(*main, row)) << row;  // so that walkers skip it
        EXPECT_FALSE(IsRandomEntryRow(*main, row)) << row;
        EXPECT_FALSE(IsPlayableRow(*main, row)) << row;
    }
    EXPECT_EQ(main->RowOf(main.get(), 2), -1);           // index past the items
    EXPECT_EQ(main->RowOf(nullptr, 0), -1);
    const Playlist stranger;
    EXPECT_EQ(main->RowOf(&stranger, 0), -1);            // not in this tree

    const Playlist empty;
    EXPECT_EQ(empty.RowCount(), 0);
    EXPECT_FALSE(empty.ItemAtRow(0));
    EXPECT_TRUE(IsPlaylistRow(empty, 0));
}

TEST(RowNumbering, OneNestedPlaylistOfThreeTracksHasFourRows) {
    const auto main = BuildTree("P[ a b c ]");
    EXPECT_EQ(main->RowCount(), 4);
    EXPECT_TRUE(IsPlaylistRow(*main, 0));
    for (int row = 1; row < 4; ++row) EXPECT_TRUE(IsPlayableRow(*main, row));
}

// Every kind of change, made after the caches have been filled by lookups; the rows must
// then agree with a tree built afresh from the result.
TEST(RowNumbering, CachesFollowEveryKindOfChange) {
    const char* const start = "a P[ b Q[ c d ] e ] f";
    const struct {
        const char* what;
        std::function<void(Playlist&)> change;
        const char* expected;
    } cases[] = {
        {"append to main", [](Playlist& m) { m.AppendItem(std::make_unique<TrackItem>("/m/g.mp3")); },
         "a P[ b Q[ c d ] e ] f g"},
        {"append deep", [](Playlist& m) { NestedAt(m, 3).AppendItem(std::make_unique<RandomEntry>("x")); },
         "a P[ b Q[ c d ?x ] e ] f"},
        {"insert deep at 0", [](Playlist& m) { NestedAt(m, 3).InsertItem(0, std::make_unique<TrackItem>("/m/z.mp3")); },
         "a P[ b Q[ z c d ] e ] f"},
        {"insert past the end", [](Playlist& m) { NestedAt(m, 1).InsertItem(99, std::make_unique<TrackItem>("/m/z.mp3")); },
         "a P[ b Q[ c d ] e z ] f"},
        {"take deep", [](Playlist& m) { EXPECT_NE(NestedAt(m, 3).TakeItem(1), nullptr); },
         "a P[ b Q[ c ] e ] f"},
        {"take out of range", [](Playlist& m) { EXPECT_EQ(NestedAt(m, 3).TakeItem(2), nullptr); },
         "a P[ b Q[ c d ] e ] f"},
        {"remove a nested playlist", [](Playlist& m) { NestedAt(m, 1).RemoveItem(1); }, "a P[ b e ] f"},
        {"clear deep", [](Playlist& m) { NestedAt(m, 3).Clear(); }, "a P[ b Q[ ] e ] f"},
        {"clear main", [](Playlist& m) { m.Clear(); }, ""},
        {"insert several", [](Playlist& m) {
             std::vector<std::unique_ptr<PlaylistItem>> items;
             items.push_back(std::make_unique<TrackItem>("/m/x.mp3"));
             items.push_back(nullptr);  // passed over
             items.push_back(std::make_unique<Playlist>("/lists/N.vdp"));
             NestedAt(m, 3).InsertItems(1, std::move(items));
         },
         "a P[ b Q[ c x N[ ] d ] e ] f"},
        {"take several", [](Playlist& m) {
             const auto taken = NestedAt(m, 1).TakeItems({0, 2, 7});
             ASSERT_EQ(taken.size(), 2u);
             EXPECT_EQ(test::Label(*taken[0]), "b");
             EXPECT_EQ(test::Label(*taken[1]), "e");
         },
         "a P[ Q[ c d ] ] f"},
        {"take all deep", [](Playlist& m) { EXPECT_EQ(NestedAt(m, 3).TakeAllItems().size(), 2u); },
         "a P[ b Q[ ] e ] f"},
        {"move a playlist up", [](Playlist& m) {
             auto q = NestedAt(m, 1).TakeItem(1);
             EXPECT_EQ(static_cast<Playlist&>(*q).Parent(), nullptr);
             m.InsertItem(0, std::move(q));
         },
         "Q[ c d ] a P[ b e ] f"},
        {"insert at a row", [](Playlist& m) { InsertItemAtRow(m, 4, std::make_unique<TrackItem>("/m/y.mp3")); },
         "a P[ b Q[ y c d ] e ] f"},
        {"insert at row -1", [](Playlist& m) { InsertItemAtRow(m, -1, std::make_unique<TrackItem>("/m/y.mp3")); },
         "a P[ b Q[ c d ] e ] f y"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto main = BuildTree(start);
        ASSERT_EQ(main->RowCount(), 8);  // fills every cache on the way
        for (int row = 0; row < 8; ++row) ASSERT_TRUE(main->ItemAtRow(row));
        c.change(*main);
        EXPECT_EQ(DescribeTree(*main), c.expected);
        const auto fresh = BuildTree(c.expected);
        EXPECT_EQ(RowLabels(*main), RowLabels(*fresh));
        EXPECT_EQ(main->PlayableCount(), fresh->PlayableCount());
        for (int row = 0; row < main->RowCount(); ++row) {
            const RowRef ref = main->ItemAtRow(row);
            EXPECT_EQ(main->RowOf(ref.holder, ref.index), row);
            EXPECT_EQ(test::RowOfLabel(*main, test::Label(*ref.item)), row);
        }
    }
}

TEST(RowNumbering, NestedPlaylistsKnowTheirParent) {
    const auto main = BuildTree("P[ Q[ a ] ]");
    Playlist& p = NestedAt(*main, 0);
    Playlist& q = NestedAt(*main, 1);
    EXPECT_EQ(main->Parent(), nullptr);
    EXPECT_EQ(p.Parent(), main.get());
    EXPECT_EQ(q.Parent(), &p);
    auto taken = p.TakeAllItems();
    EXPECT_EQ(q.Parent(), nullptr);
    main->InsertItems(0, std::move(taken));
    EXPECT_EQ(q.Parent(), main.get());
}

TEST(RowNumbering, DurationsAndSizesSumOverTheTree) {
    const auto main = BuildTree("a P[ b Q[ c ] ] ?r");
    uint32_t ms = 1000;
    for (int row = 0; row < main->RowCount(); ++row) {
        const RowRef ref = main->ItemAtRow(row);
        if (ref.item->Kind() != ItemKind::kTrack) continue;
        TrackInfo info = static_cast<TrackItem&>(*ref.item).Track().Info();
        info.duration = ms;
        info.fileSize = ms * 10;
        static_cast<TrackItem&>(*ref.item).Track().SetInfo(info);
        ms *= 2;
    }
    EXPECT_EQ(main->Duration(), 7000u);  // 1000 + 2000 + 4000; the random entry adds 0
    EXPECT_EQ(main->FileSize(), 70000u);
    EXPECT_EQ(NestedAt(*main, 1).Duration(), 6000u);
    EXPECT_EQ(NestedAt(*main, 3).FileSize(), 40000u);
    EXPECT_EQ(main->ItemAtRow(5).item->Duration(), 0u);
}

TEST(RowNumbering, ItemKindsAnswerTheirSlots) {
    const auto main = BuildTree("a P[ ] ?expr");
    const PlaylistItem& track = *main->ItemAt(0);
    const PlaylistItem& playlist = *main->ItemAt(1);
    const PlaylistItem& random = *main->ItemAt(2);
    EXPECT_EQ(static_cast<int>(track.Kind()), 1);
    EXPECT_EQ(static_cast<int>(playlist.Kind()), 0);
    EXPECT_EQ(static_cast<int>(random.Kind()), 2);
    EXPECT_EQ(track.Path() + track.Body() + track.Extension(), "/m/a.mp3");
    EXPECT_EQ(playlist.Path() + "|" + playlist.Body() + "|" + playlist.Extension(), "/lists/|P|.vdp");
    EXPECT_EQ(random.Path() + "|" + random.Body() + "|" + random.Extension(), "|Random entry|");
}

TEST(RowNumbering, UnsavedPlaylistsAreNestedOnesWithChanges) {
    const struct {
        const char* tree;
        int modifyRow;  // -1: the main playlist
        bool unsaved;
    } cases[] = {
        {"a b", -1, false},              // only the main playlist changed
        {"a P[ b ]", -1, false},
        {"a P[ b ]", 1, true},
        {"a P[ b Q[ c ] ]", 3, true},    // deep down
        {"P[ ] Q[ ]", 1, true},
    };
    for (const auto& c : cases) {
        const auto main = BuildTree(c.tree);
        EXPECT_FALSE(HasUnsavedPlaylists(*main)) << c.tree;
        Playlist& changed = c.modifyRow < 0 ? *main : NestedAt(*main, c.modifyRow);
        changed.AppendItem(std::make_unique<TrackItem>("/m/new.mp3"));
        EXPECT_TRUE(changed.Modified());
        EXPECT_EQ(HasUnsavedPlaylists(*main), c.unsaved) << c.tree;
        changed.SetModified(false);
        EXPECT_FALSE(HasUnsavedPlaylists(*main)) << c.tree;
    }
}

}  // namespace
}  // namespace verdin
