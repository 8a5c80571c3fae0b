// Track names, the rows of the playlist tree and the caches behind them, and the
// commands that reshape the tree.
#include "playlist/TrackName.h"
#include "playlist/RowMove.h"
#include "playlist/TreeCommands.h"

#include "PlaylistFixtures.h"

#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <functional>

namespace verdin {
namespace {

using test::BuildTree;
using test::DescribeTree;
using test::Label;
using test::RowLabels;
using Names = std::vector<std::string>;

TEST(TrackName, SplitsIntoPathBodyAndExtensionAndBack) {
    const std::array<const char*, 4> cases[] = {
        {"", "", "", ""}, {"a.mp3", "", "a", ".mp3"}, {"/m/a.b.mp3", "/m/", "a.b", ".mp3"}, {"/m/.hidden", "/m/", "", ".hidden"},
        {"/m.d/a", "/m.d/", "a", ""}, {"/m/", "/m/", "", ""}, {"http://host/dir/a.mp3", "http://host/dir/", "a", ".mp3"},
        {"http://host", "http://", "host", ""}, {"http://host.com", "http://", "host", ".com"},
    };
    for (const auto& [name, path, body, extension] : cases) {
        const TrackName split = SplitTrackName(name);
        EXPECT_EQ(Names({split.path, split.body, split.extension, split.Full()}), Names({path, body, extension, name})) << name;
    }
    EXPECT_TRUE(TrackRecord("http://host/dir/a.mp3").IsUrl() && TrackRecord("mms://host/a").IsUrl() && !TrackRecord("/m/a:b.mp3").IsUrl());
    const TrackRecord& null = TrackRecord::NullTrack();
    EXPECT_TRUE(null.IsNullTrack() && TrackRecord("null track").IsNullTrack() && null.FullName() == "null track"  // spelled the same: the null track
                && !TrackRecord("/m/null track").IsNullTrack() && !TrackRecord("null track.mp3").IsNullTrack());
}

Playlist& NestedAt(Playlist& main, int row) {
    EXPECT_TRUE(main.ItemAtRow(row) && main.ItemAtRow(row).item->Kind() == ItemKind::kPlaylist) << "row " << row;
    return static_cast<Playlist&>(*main.ItemAtRow(row).item);
}

TEST(Rows, NumberTheTreeDepthFirstAndTotalTheirTracks) {
    const auto main = BuildTree("a P[ b Q[ c ] d ] ?r e R[ ]");
    EXPECT_EQ(RowLabels(*main), (Names{"a", "P", "b", "Q", "c", "d", "?r", "e", "R"}));
    EXPECT_EQ(main->PlayableCount(), 6);
    for (int row = 0; row < 9; ++row) {  // each row where its holder says; playlists are named in capitals
        const RowRef ref = main->ItemAtRow(row);
        ASSERT_TRUE(ref) << row;
        const std::string label = Label(*ref.item);
        EXPECT_EQ(std::tuple(ref.holder->ItemAt(ref.index), main->RowOf(ref.holder, ref.index), RowOfItem(*main, ref.item)), std::tuple(ref.item, row, row)) << row;
        EXPECT_EQ(std::tuple(IsPlaylistRow(*main, row), IsRandomEntryRow(*main, row), IsPlayableRow(*main, row)), std::tuple(bool(std::isupper(label[0])), label[0] == '?', !std::isupper(label[0]))) << row;
    }
    EXPECT_EQ(std::tuple(Label(*main->ItemAtRow(4).holder), main->ItemAtRow(4).index, Label(*main->ItemAtRow(5).holder), main->ItemAtRow(5).index), std::tuple("Q", 0u, "P", 2u));
    Playlist& p = NestedAt(*main, 1);  // a nested playlist counts its own subtree from 0
    EXPECT_TRUE(p.RowCount() == 4 && Label(*p.ItemAtRow(2).item) == "c" && p.RowOf(&NestedAt(*main, 3), 0) == 2);
    for (int row : {-1, 9, INT_MAX, INT_MIN}) {  // outside: nothing, and a "playlist row" that walkers skip
        EXPECT_FALSE(main->ItemAtRow(row)) << row;
        EXPECT_TRUE(IsPlaylistRow(*main, row) && !IsRandomEntryRow(*main, row) && !IsPlayableRow(*main, row)) << row;
    }
    const Playlist stranger;  // what is not in the tree has no row
    const TrackItem loose("/m/x.mp3");
    EXPECT_TRUE(main->RowOf(main.get(), 5) == -1 && main->RowOf(&stranger, 0) == -1 && main->RowOf(nullptr, 0) == -1 && stranger.RowCount() == 0 && !stranger.ItemAtRow(0));
    EXPECT_TRUE(RowOfItem(*main, &loose) == -1 && RowOfItem(*main, main.get()) == -1 && RowOfItem(*main, BuildTree("P[ a ]")->ItemAt(0)) == -1 && RowOfItem(*main, nullptr) == -1);
    // Totals of durations and sizes, the random entry adding 0; which playlists are unsaved.
    for (const auto& [row, ms] : {std::pair{0, 1000u}, {2, 2000u}, {4, 4000u}})
        static_cast<TrackItem*>(main->ItemAtRow(row).item)->Track().SetInfo(test::MakeTrack({"/m/x.mp3", {}, ms, 10 * ms})->Info());
    EXPECT_EQ(std::tuple(main->Duration(), main->FileSize(), NestedAt(*main, 1).Duration(), NestedAt(*main, 3).FileSize()), std::tuple(7000u, 70000u, 6000u, 40000u));
    NestedAt(*main, 3).SetModified(true);  // only nested playlists count; the main one is saved elsewhere
    EXPECT_TRUE(HasUnsavedPlaylists(*main));
    NestedAt(*main, 3).SetModified(false);
    main->SetModified(true);
    EXPECT_FALSE(HasUnsavedPlaylists(*main));
}

// Every kind of change, made after lookups have filled the caches: the rows must then
// agree with a tree built afresh from the result.
TEST(Rows, CachesFollowEveryKindOfChange) {
    const auto track = [](const char* name) { return std::make_unique<TrackItem>(std::string("/m/") + name + ".mp3"); };
    const std::pair<std::function<void(Playlist&)>, const char*> cases[] = {
        {[&](Playlist& m) { m.AppendItem(track("g")); }, "a P[ b Q[ c d ] e ] f g"},
        {[](Playlist& m) { NestedAt(m, 3).AppendItem(std::make_unique<RandomEntry>("x")); }, "a P[ b Q[ c d ?x ] e ] f"},
        {[&](Playlist& m) { NestedAt(m, 3).InsertItem(0, track("z")); }, "a P[ b Q[ z c d ] e ] f"}, {[&](Playlist& m) { NestedAt(m, 1).InsertItem(99, track("z")); }, "a P[ b Q[ c d ] e z ] f"},
        {[](Playlist& m) { EXPECT_NE(NestedAt(m, 3).TakeItem(1), nullptr); }, "a P[ b Q[ c ] e ] f"}, {[](Playlist& m) { EXPECT_EQ(NestedAt(m, 3).TakeItem(2), nullptr); }, "a P[ b Q[ c d ] e ] f"},
        {[](Playlist& m) { NestedAt(m, 1).RemoveItem(1); }, "a P[ b e ] f"}, {[](Playlist& m) { NestedAt(m, 3).Clear(); }, "a P[ b Q[ ] e ] f"}, {[](Playlist& m) { m.Clear(); }, ""},
        {[](Playlist& m) {  // a playlist moved up knows its new parent
             auto q = NestedAt(m, 1).TakeItem(1);
             EXPECT_EQ(static_cast<Playlist&>(*q).Parent(), nullptr);
             m.InsertItem(0, std::move(q));
             EXPECT_EQ(NestedAt(m, 0).Parent(), &m);
         }, "Q[ c d ] a P[ b e ] f"},
        {[&](Playlist& m) { InsertItemAtRow(m, 4, track("y")); }, "a P[ b Q[ y c d ] e ] f"}, {[&](Playlist& m) { InsertItemAtRow(m, -1, track("y")); }, "a P[ b Q[ c d ] e ] f y"},
    };
    for (const auto& [change, expected] : cases) {
        SCOPED_TRACE(expected);
        const auto main = BuildTree("a P[ b Q[ c d ] e ] f");
        ASSERT_EQ(RowLabels(*main).size(), 8u);  // fills every cache on the way
        change(*main);
        EXPECT_EQ(DescribeTree(*main), expected);
        EXPECT_TRUE(RowLabels(*main) == RowLabels(*BuildTree(expected)) && main->PlayableCount() == BuildTree(expected)->PlayableCount());
        for (int row = 0; row < main->RowCount(); ++row) EXPECT_EQ(main->RowOf(main->ItemAtRow(row).holder, main->ItemAtRow(row).index), row);
    }
}

// The labels of the playlists (main: "main") with unsaved changes, in row order.
std::string Modified(const Playlist& main) {
    std::string out = main.Modified() ? "main" : "";
    for (int row = 0; row < main.RowCount(); ++row)
        if (IsPlaylistRow(main, row) && static_cast<const Playlist*>(main.ItemAtRow(row).item)->Modified()) out += (out.empty() ? "" : " ") + Label(*main.ItemAtRow(row).item);
    return out;
}

TEST(TreeCommands, ReshapeTheTreeAndMarkWhatChanged) {
    using Run = std::function<int(Playlist&)>;
    const auto add = [](int row) -> Run { return [row](Playlist& m) { return AddNewPlaylist(m, row, "/lists/N.vdp"); }; };
    const auto incorporate = [](std::vector<int> rows) -> Run { return [rows](Playlist& m) { return IncorporateIntoNewPlaylist(m, rows, "/lists/N.vdp"); }; };
    const auto drop = [](int row) -> Run { return [row](Playlist& m) { return int(DropPlaylist(m, row)); }; };
    const Run flatten = [](Playlist& m) { return FlattenMainPlaylist(m), 0; };
    const auto remove = [](std::vector<int> rows) -> Run { return [rows](Playlist& m) { return DeleteRows(m, rows); }; };
    const auto move = [](std::vector<int> rows, int before) -> Run { return [rows, before](Playlist& m) { return MoveRows(m, rows, before); }; };
    const auto sort = [](int row) -> Run { return [row](Playlist& m) { return SortPlaylist(row < 0 ? m : NestedAt(m, row), test::Label), 0; }; };  // case-blind, stable
    const char* const tree = "a P[ b c ] d Q[ e ] f";  // rows: 0 a, 1 P, 2 b, 3 c, 4 d, 5 Q, 6 e, 7 f
    const std::tuple<const char*, Run, int, const char*, const char*> commands[] = {  // tree, command, result, tree after, playlists changed
        // A new playlist goes before the row, in the row's holder; the result is its row.
        {"a P[ b c ]", add(3), 3, "a P[ b N[ ] c ]", "P"}, {"a P[ b c ]", add(1), 1, "a N[ ] P[ b c ]", "main"}, {"a P[ b c ]", add(-1), 4, "a P[ b c ] N[ ]", "main"},
        {"a P[ b c ]", add(4), 4, "a P[ b c ] N[ ]", "main"}, {"", add(-1), 0, "N[ ]", "main"},  // rows moved into a new playlist where the first of them was:
        // order and repeats do not matter, and a row inside a moved playlist goes with it
        {tree, incorporate({4, 0, 4}), 0, "N[ a d ] P[ b c ] Q[ e ] f", "main N"}, {tree, incorporate({3, 7}), 3, "a P[ b N[ c f ] ] d Q[ e ]", "main P N"},
        {tree, incorporate({5, 6}), 5, "a P[ b c ] d N[ Q[ e ] ] f", "main N"}, {tree, incorporate({2, 3}), 2, "a P[ N[ b c ] ] d Q[ e ] f", "P N"},
        {tree, incorporate({6, -1, 99}), 6, "a P[ b c ] d Q[ N[ e ] ] f", "Q N"}, {tree, incorporate({-1, 8}), -1, tree, ""}, {tree, incorporate({}), -1, tree, ""},
        // A dropped playlist's items take its place, a nested playlist among them.
        {"a P[ b Q[ c ] ] d", drop(1), 1, "a b Q[ c ] d", "main"}, {"a P[ b Q[ c ] ] d", drop(3), 1, "a P[ b c ] d", "P"},
        {"a P[ ] d", drop(1), 1, "a d", "main"}, {"a P[ b ] d", drop(0), 0, "a P[ b ] d", ""}, {"a P[ b ] d", drop(9), 0, "a P[ b ] d", ""},
        // Flattening leaves the tracks and random entries in row order; nothing to do is no change.
        {"a P[ b Q[ c ?r ] d ] e R[ ]", flatten, 0, "a b c ?r d e", "main"}, {"P[ Q[ R[ x ] ] ]", flatten, 0, "x", "main"}, {"a ?r b", flatten, 0, "a ?r b", ""},
        // Deleting a playlist deletes what it holds; the result counts the rows deleted directly.
        {"a P[ b Q[ c ] ] d ?r", remove({1, 2, 4}), 1, "a d ?r", "main"}, {"a P[ b Q[ c ] ] d ?r", remove({4, 2}), 2, "a P[ Q[ ] ] d ?r", "P Q"},
        {"a P[ b Q[ c ] ] d ?r", remove({6, 6, -1, 7}), 1, "a P[ b Q[ c ] ] d", "main"}, {"a P[ b Q[ c ] ] d ?r", remove({0, 1, 2, 3, 4, 5, 6}), 4, "", "main"},
        // Moved rows go, in row order, before the target row, into its holder; the result is
        // the first one's new row. A target among the moved rows gives way to the next one.
        {"a b c d", move({3}, 0), 0, "d a b c", "main"}, {"a b c d", move({2, 0}, 4), 2, "b d a c", "main"}, {"a b c d", move({0, 2}, 99), 2, "b d a c", "main"},
        {"a b c d", move({2, 0}, 1), 0, "a c b d", "main"}, {"a b c d", move({1, 2}, 1), 1, "a b c d", "main"},
        {"a P[ b c ] d", move({4}, 2), 2, "a P[ d b c ]", "main P"}, {"a P[ b c ] d", move({2}, 0), 0, "b a P[ c ] d", "main P"},
        {"a P[ b c ] d", move({1}, 3), 1, "a P[ b c ] d", "main"}, {"a P[ b c ] d", move({1, 2}, 0), 0, "P[ b c ] a d", "main"},  // not into itself; with its own item: whole
        {"b2 B1 b1 a", sort(-1), 0, "a B1 b1 b2", "main"}, {"Zed alpha P[ y X ] beta", sort(-1), 0, "alpha beta P[ X y ] Zed", "main P"},  // nested ones too
        {"b ?r a", sort(-1), 0, "?r a b", "main"}, {"z P[ c a b ] y", sort(1), 0, "z P[ a b c ] y", "P"},
    };
    for (const auto& [before, run, result, after, modified] : commands) {
        SCOPED_TRACE(std::string(before) + " -> " + after);
        const auto main = BuildTree(before);
        EXPECT_EQ(run(*main), result);
        EXPECT_EQ(DescribeTree(*main), after);
        EXPECT_EQ(Modified(*main), modified);
    }
}

}  // namespace
}  // namespace verdin
