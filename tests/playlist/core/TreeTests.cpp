// Track names, the rows of the playlist tree and the caches behind them, and the
// commands that reshape the tree.
#include "playlist/TrackName.h"
#include "playlist/RowMove.h"
#include "playlist/TreeCommands.h"

#include "PlaylistFixtures.h"

#include <gtest/gtest.h>

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
        {"", "", "", ""},          {"a", "", "a", ""},        {"a.mp3", "", "a", ".mp3"},
        {"/m/a", "/m/", "a", ""},  {"/m/a.b.mp3", "/m/", "a.b", ".mp3"}, {"/m/.hidden", "/m/", "", ".hidden"},
        {"/m.d/a", "/m.d/", "a", ""}, {"/m.d/a.flac", "/m.d/", "a", ".flac"}, {"/m/", "/m/", "", ""},
        {"http://host/dir/a.mp3", "http://host/dir/", "a", ".mp3"}, {"http://radio.example.com/stream", "http://radio.example.com/", "stream", ""},
        {"http://host", "http://", "host", ""}, {"http://host.com", "http://", "host", ".com"},
    };
    for (const auto& [name, path, body, extension] : cases) {
        const TrackName split = SplitTrackName(name);
        EXPECT_EQ(Names({split.path, split.body, split.extension}), Names({path, body, extension})) << name;
        EXPECT_EQ(split.Full(), name);
    }
    for (const char* url : {"http://host/dir/a.mp3", "mms://host/a"}) EXPECT_TRUE(TrackRecord(url).IsUrl()) << url;
    EXPECT_FALSE(TrackRecord("/m/a:b.mp3").IsUrl());
    const TrackRecord& null = TrackRecord::NullTrack();
    EXPECT_TRUE(null.IsNullTrack() && TrackRecord("null track").IsNullTrack());  // spelled the same: the null track
    EXPECT_EQ(null.FullName(), "null track");
    EXPECT_FALSE(TrackRecord("/m/null track").IsNullTrack() || TrackRecord("null track.mp3").IsNullTrack());
}

Playlist& NestedAt(Playlist& main, int row) {
    EXPECT_TRUE(main.ItemAtRow(row) && main.ItemAtRow(row).item->Kind() == ItemKind::kPlaylist) << "row " << row;
    return static_cast<Playlist&>(*main.ItemAtRow(row).item);
}

TEST(Rows, NumberTheTreeDepthFirst) {
    const auto main = BuildTree("a P[ b Q[ c ] d ] ?r e R[ ]");
    EXPECT_EQ(RowLabels(*main), (Names{"a", "P", "b", "Q", "c", "d", "?r", "e", "R"}));
    EXPECT_EQ(main->PlayableCount(), 6);
    const struct {
        const char* holder;  // "" for the main playlist
        size_t index;
        bool playlist, random;
    } rows[] = {{"", 0, false, false}, {"", 1, true, false}, {"P", 0, false, false}, {"P", 1, true, false}, {"Q", 0, false, false},
                {"P", 2, false, false}, {"", 2, false, true}, {"", 3, false, false}, {"", 4, true, false}};
    for (int row = 0; row < 9; ++row) {
        const RowRef ref = main->ItemAtRow(row);
        ASSERT_TRUE(ref) << row;
        EXPECT_EQ(ref.holder == main.get() ? "" : Label(*ref.holder), rows[row].holder) << row;
        EXPECT_EQ(ref.index, rows[row].index) << row;
        EXPECT_EQ(ref.holder->ItemAt(ref.index), ref.item) << row;
        EXPECT_EQ(main->RowOf(ref.holder, ref.index), row);
        EXPECT_EQ(RowOfItem(*main, ref.item), row);
        EXPECT_EQ(std::tuple(IsPlaylistRow(*main, row), IsRandomEntryRow(*main, row), IsPlayableRow(*main, row)),
                  std::tuple(rows[row].playlist, rows[row].random, !rows[row].playlist)) << row;
    }
    Playlist& p = NestedAt(*main, 1);  // a nested playlist counts its own subtree from 0
    EXPECT_EQ(p.RowCount(), 4);
    EXPECT_EQ(Label(*p.ItemAtRow(2).item), "c");
    EXPECT_EQ(p.RowOf(&NestedAt(*main, 3), 0), 2);
    EXPECT_EQ(NestedAt(*main, 3).Parent(), &p);
    EXPECT_EQ(p.Parent(), main.get());

    for (int row : {-1, 9, INT_MAX, INT_MIN}) {  // outside: nothing, and a "playlist row" that walkers skip
        EXPECT_FALSE(main->ItemAtRow(row)) << row;
        EXPECT_TRUE(IsPlaylistRow(*main, row) && !IsRandomEntryRow(*main, row) && !IsPlayableRow(*main, row)) << row;
    }
    const Playlist stranger;
    const TrackItem loose("/m/x.mp3");
    const auto other = BuildTree("P[ a ]");
    for (const Playlist* holder : std::initializer_list<const Playlist*>{main.get(), &stranger, nullptr})
        EXPECT_EQ(main->RowOf(holder, holder == main.get() ? 5 : 0), -1);
    for (const PlaylistItem* item : std::initializer_list<const PlaylistItem*>{&loose, main.get(), other->ItemAt(0), nullptr})
        EXPECT_EQ(RowOfItem(*main, item), -1);
    EXPECT_EQ(stranger.RowCount(), 0);
    EXPECT_FALSE(stranger.ItemAtRow(0));
}

// Every kind of change, made after lookups have filled the caches: the rows must then
// agree with a tree built afresh from the result.
TEST(Rows, CachesFollowEveryKindOfChange) {
    const auto track = [](const char* name) { return std::make_unique<TrackItem>(std::string("/m/") + name + ".mp3"); };
    const struct {
        std::function<void(Playlist&)> change;
        const char* expected;
    } cases[] = {
        {[&](Playlist& m) { m.AppendItem(track("g")); }, "a P[ b Q[ c d ] e ] f g"},
        {[](Playlist& m) { NestedAt(m, 3).AppendItem(std::make_unique<RandomEntry>("x")); }, "a P[ b Q[ c d ?x ] e ] f"},
        {[&](Playlist& m) { NestedAt(m, 3).InsertItem(0, track("z")); }, "a P[ b Q[ z c d ] e ] f"},
        {[&](Playlist& m) { NestedAt(m, 1).InsertItem(99, track("z")); }, "a P[ b Q[ c d ] e z ] f"},
        {[](Playlist& m) { EXPECT_NE(NestedAt(m, 3).TakeItem(1), nullptr); }, "a P[ b Q[ c ] e ] f"},
        {[](Playlist& m) { EXPECT_EQ(NestedAt(m, 3).TakeItem(2), nullptr); }, "a P[ b Q[ c d ] e ] f"},
        {[](Playlist& m) { NestedAt(m, 1).RemoveItem(1); }, "a P[ b e ] f"},
        {[](Playlist& m) { NestedAt(m, 3).Clear(); }, "a P[ b Q[ ] e ] f"},
        {[](Playlist& m) { m.Clear(); }, ""},
        {[&](Playlist& m) {
             std::vector<std::unique_ptr<PlaylistItem>> items;
             items.push_back(track("x"));
             items.push_back(nullptr);  // passed over
             items.push_back(std::make_unique<Playlist>("/lists/N.vdp"));
             NestedAt(m, 3).InsertItems(1, std::move(items));
         },
         "a P[ b Q[ c x N[ ] d ] e ] f"},
        {[](Playlist& m) {
             const auto taken = NestedAt(m, 1).TakeItems({0, 2, 7});
             EXPECT_EQ(taken.size() == 2 ? Label(*taken[0]) + Label(*taken[1]) : "", "be");
         },
         "a P[ Q[ c d ] ] f"},
        {[](Playlist& m) { EXPECT_EQ(NestedAt(m, 3).TakeAllItems().size(), 2u); }, "a P[ b Q[ ] e ] f"},
        {[](Playlist& m) {  // a playlist moved up knows its new parent
             auto q = NestedAt(m, 1).TakeItem(1);
             EXPECT_EQ(static_cast<Playlist&>(*q).Parent(), nullptr);
             m.InsertItem(0, std::move(q));
             EXPECT_EQ(NestedAt(m, 0).Parent(), &m);
         },
         "Q[ c d ] a P[ b e ] f"},
        {[&](Playlist& m) { InsertItemAtRow(m, 4, track("y")); }, "a P[ b Q[ y c d ] e ] f"},
        {[&](Playlist& m) { InsertItemAtRow(m, -1, track("y")); }, "a P[ b Q[ c d ] e ] f y"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expected);
        const auto main = BuildTree("a P[ b Q[ c d ] e ] f");
        ASSERT_EQ(RowLabels(*main).size(), 8u);  // fills every cache on the way
        c.change(*main);
        EXPECT_EQ(DescribeTree(*main), c.expected);
        EXPECT_EQ(RowLabels(*main), RowLabels(*BuildTree(c.expected)));
        EXPECT_EQ(main->PlayableCount(), BuildTree(c.expected)->PlayableCount());
        for (int row = 0; row < main->RowCount(); ++row) {
            const RowRef ref = main->ItemAtRow(row);
            EXPECT_EQ(main->RowOf(ref.holder, ref.index), row);
            EXPECT_EQ(test::RowOfLabel(*main, Label(*ref.item)), row);
        }
    }
}

TEST(Rows, TotalsSlotsAndUnsavedPlaylists) {
    const auto main = BuildTree("a P[ b Q[ c ] ] ?r");
    uint32_t ms = 1000;
    for (int row : {0, 2, 4}) {
        TrackRecord& track = static_cast<TrackItem*>(main->ItemAtRow(row).item)->Track();
        TrackInfo info = track.Info();
        info.duration = ms;
        info.fileSize = 10 * ms;
        track.SetInfo(info);
        ms *= 2;
    }
    EXPECT_EQ(std::tuple(main->Duration(), main->FileSize()), std::tuple(7000u, 70000u));  // the random entry adds 0
    EXPECT_EQ(std::tuple(NestedAt(*main, 1).Duration(), NestedAt(*main, 3).FileSize()), std::tuple(6000u, 40000u));
    const PlaylistItem& random = *main->ItemAtRow(5).item;
    EXPECT_EQ(random.Path() + "|" + random.Body() + "|" + random.Extension(), "|Random entry|");
    EXPECT_EQ(NestedAt(*main, 1).Path() + "|" + NestedAt(*main, 1).Body() + "|" + NestedAt(*main, 1).Extension(), "/lists/|P|.vdp");
    EXPECT_EQ(std::tuple(int(main->ItemAt(0)->Kind()), int(main->ItemAt(1)->Kind()), int(random.Kind())), std::tuple(1, 0, 2));

    const std::pair<const char*, int> unsaved[] = {{"a b", -1}, {"a P[ b ]", 1}, {"a P[ b Q[ c ] ]", 3}, {"P[ ] Q[ ]", 1}};
    for (const auto& [tree, row] : unsaved) {  // only nested playlists count; the main one is saved elsewhere
        const auto m = BuildTree(tree);
        EXPECT_FALSE(HasUnsavedPlaylists(*m)) << tree;
        Playlist& changed = row < 0 ? *m : NestedAt(*m, row);
        changed.AppendItem(std::make_unique<TrackItem>("/m/new.mp3"));
        EXPECT_TRUE(changed.Modified());
        EXPECT_EQ(HasUnsavedPlaylists(*m), row >= 0) << tree;
        changed.SetModified(false);
        EXPECT_FALSE(HasUnsavedPlaylists(*m)) << tree;
    }
}

// The labels of the playlists (main: "main") with unsaved changes, in row order.
std::string Modified(const Playlist& main) {
    std::string out = main.Modified() ? "main" : "";
    for (int row = 0; row < main.RowCount(); ++row)
        if (IsPlaylistRow(main, row) && static_cast<const Playlist*>(main.ItemAtRow(row).item)->Modified())
            out += (out.empty() ? "" : " ") + Label(*main.ItemAtRow(row).item);
    return out;
}

struct Command {
    const char* tree;
    std::function<int(Playlist&)> run;
    int result;
    const char* expected;
    const char* modified;
};

TEST(TreeCommands, ReshapeTheTreeAndMarkWhatChanged) {
    const auto add = [](int row) { return [row](Playlist& m) { return AddNewPlaylist(m, row, "/lists/N.vdp"); }; };
    const auto incorporate = [](std::vector<int> rows) { return [rows](Playlist& m) { return IncorporateIntoNewPlaylist(m, rows, "/lists/N.vdp"); }; };
    const auto drop = [](int row) { return [row](Playlist& m) { return int(DropPlaylist(m, row)); }; };
    const auto flatten = [](Playlist& m) { return FlattenMainPlaylist(m), 0; };
    const auto remove = [](std::vector<int> rows) { return [rows](Playlist& m) { return DeleteRows(m, rows); }; };
    const auto move = [](std::vector<int> rows, int before) {
        return [rows, before](Playlist& m) { return MoveRows(m, rows, before); };
    };
    const auto sort = [](int row) {  // by label, without regard to case; ties keep their order
        return [row](Playlist& m) { return SortPlaylist(row < 0 ? m : NestedAt(m, row), [](const PlaylistItem& i) { return Label(i); }), 0; };
    };
    const char* const tree = "a P[ b c ] d Q[ e ] f";  // rows: 0 a, 1 P, 2 b, 3 c, 4 d, 5 Q, 6 e, 7 f
    const Command commands[] = {
        // A new playlist goes before the row, in the row's holder; the result is its row.
        {"a P[ b c ]", add(3), 3, "a P[ b N[ ] c ]", "P"},
        {"a P[ b c ]", add(1), 1, "a N[ ] P[ b c ]", "main"},
        {"a P[ b c ]", add(-1), 4, "a P[ b c ] N[ ]", "main"},
        {"a P[ b c ]", add(4), 4, "a P[ b c ] N[ ]", "main"},
        {"", add(-1), 0, "N[ ]", "main"},
        // Rows moved into a new playlist where the first of them was; order and repeats
        // do not matter, and a row inside a moved playlist goes with it.
        {tree, incorporate({4, 0, 4}), 0, "N[ a d ] P[ b c ] Q[ e ] f", "main N"},
        {tree, incorporate({3, 7}), 3, "a P[ b N[ c f ] ] d Q[ e ]", "main P N"},
        {tree, incorporate({5, 6}), 5, "a P[ b c ] d N[ Q[ e ] ] f", "main N"},
        {tree, incorporate({2, 3}), 2, "a P[ N[ b c ] ] d Q[ e ] f", "P N"},
        {tree, incorporate({6, -1, 99}), 6, "a P[ b c ] d Q[ N[ e ] ] f", "Q N"},
        {tree, incorporate({-1, 8}), -1, tree, ""},
        {tree, incorporate({}), -1, tree, ""},
        // A dropped playlist's items take its place, a nested playlist among them.
        {"a P[ b Q[ c ] ] d", drop(1), 1, "a b Q[ c ] d", "main"},
        {"a P[ b Q[ c ] ] d", drop(3), 1, "a P[ b c ] d", "P"},
        {"a P[ ] d", drop(1), 1, "a d", "main"},
        {"a P[ b ] d", drop(0), 0, "a P[ b ] d", ""},
        {"a P[ b ] d", drop(2), 0, "a P[ b ] d", ""},
        {"a P[ b ] d", drop(9), 0, "a P[ b ] d", ""},
        // Flattening leaves the tracks and random entries in row order; nothing to do is no change.
        {"a P[ b Q[ c ?r ] d ] e R[ ]", flatten, 0, "a b c ?r d e", "main"},
        {"P[ Q[ R[ x ] ] ]", flatten, 0, "x", "main"},
        {"a ?r b", flatten, 0, "a ?r b", ""},
        // Deleting a playlist deletes what it holds; the result counts the rows deleted directly.
        {"a P[ b Q[ c ] ] d ?r", remove({1, 2, 4}), 1, "a d ?r", "main"},
        {"a P[ b Q[ c ] ] d ?r", remove({4, 2}), 2, "a P[ Q[ ] ] d ?r", "P Q"},
        {"a P[ b Q[ c ] ] d ?r", remove({6, 6, -1, 7}), 1, "a P[ b Q[ c ] ] d", "main"},
        {"a P[ b Q[ c ] ] d ?r", remove({0, 1, 2, 3, 4, 5, 6}), 4, "", "main"},
        {"a P[ b Q[ c ] ] d ?r", remove({}), 0, "a P[ b Q[ c ] ] d ?r", ""},
        // Moved rows go, in row order, before the target row, into its holder; the result is
        // the first one's new row. A target among the moved rows gives way to the next one.
        {"a b c d", move({3}, 0), 0, "d a b c", "main"},
        {"a b c d", move({2, 0}, 4), 2, "b d a c", "main"},
        {"a b c d", move({0, 2}, 99), 2, "b d a c", "main"},
        {"a b c d", move({2, 0}, 1), 0, "a c b d", "main"},
        {"a b c d", move({1, 2}, 1), 1, "a b c d", "main"},
        {"a P[ b c ] d", move({4}, 2), 2, "a P[ d b c ]", "main P"},
        {"a P[ b c ] d", move({2}, 0), 0, "b a P[ c ] d", "main P"},
        {"a P[ b c ] d", move({1}, 3), 1, "a P[ b c ] d", "main"},  // not into itself
        {"a P[ b c ] d", move({1, 2}, 0), 0, "P[ b c ] a d", "main"},  // with its own item: whole
        {"a b", move({5}, 0), -1, "a b", ""},
        {"b2 B1 b1 a", sort(-1), 0, "a B1 b1 b2", "main"},
        {"Zed alpha P[ y X ] beta", sort(-1), 0, "alpha beta P[ X y ] Zed", "main P"},  // nested ones too
        {"b ?r a", sort(-1), 0, "?r a b", "main"},
        {"z P[ c a b ] y", sort(1), 0, "z P[ a b c ] y", "P"},
    };
    for (const Command& c : commands) {
        SCOPED_TRACE(std::string(c.tree) + " -> " + c.expected);
        const auto main = BuildTree(c.tree);
        EXPECT_EQ(c.run(*main), c.result);
        EXPECT_EQ(DescribeTree(*main), c.expected);
        EXPECT_EQ(Modified(*main), c.modified);
    }
    EXPECT_EQ(UntitledPlaylistName("/home/u/.local/share/Brimfell/Verdin/"), "/home/u/.local/share/Brimfell/Verdin/Untitled");
    EXPECT_EQ(UntitledPlaylistName("/home/u/.local/share/Brimfell/Verdin"), "/home/u/.local/share/Brimfell/Verdin/Untitled");
}

}  // namespace
}  // namespace verdin
