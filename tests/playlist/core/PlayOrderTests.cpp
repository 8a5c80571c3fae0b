// The shuffled order, moving on at the end of a track, and keeping the order right while
// rows are deleted and inserted.
#include "playlist/PlayOrder.h"
#include "playlist/Playlist.h"
#include "playlist/ProcessRandom.h"
#include "playlist/RandomEntry.h"
#include "playlist/TreeCommands.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>

namespace verdin {
namespace {

using test::BuildTree;
using test::RowOfLabel;

std::vector<int> PlayableRows(const Playlist& main) {
    std::vector<int> rows;
    for (int row = 0; row < main.RowCount(); ++row)
        if (IsPlayableRow(main, row)) rows.push_back(row);
    return rows;
}

std::vector<RandomEntry*> RandomEntries(Playlist& main) {
    std::vector<RandomEntry*> entries;
    for (int row = 0; row < main.RowCount(); ++row)
        if (IsRandomEntryRow(main, row)) entries.push_back(static_cast<RandomEntry*>(main.ItemAtRow(row).item));
    return entries;
}

TEST(ShuffledOrder, HoldsEveryPlayableRowOnceWithTheFirstLast) {
    const auto main = BuildTree("P[ a b ] c ?r Q[ R[ d ] ] e S[ ]");
    const std::vector<int> playable = PlayableRows(*main);
    ASSERT_EQ(playable, (std::vector<int>{1, 2, 3, 4, 7, 8}));
    std::set<std::vector<int>> seen;
    for (unsigned seed = 0; seed < 300; ++seed) {
        SeedProcessRandom(seed);
        PlayOrder order;
        order.Rebuild(*main);
        std::vector<int> sorted = order.Rows();
        ASSERT_EQ(order.Rows().back(), 1) << "seed " << seed;  // the first playable row
        std::sort(sorted.begin(), sorted.end());
        ASSERT_EQ(sorted, playable) << "seed " << seed;
        EXPECT_EQ(order.Cursor(), 0u);
        seen.insert(order.Rows());
    }
    // 5! arrangements of the rows before the last one are possible; a real shuffle finds many.
    EXPECT_GT(seen.size(), 60u);
}

TEST(ShuffledOrder, TheSpecimenTreeOrdersRowsOneToThreeWithOneLast) {
    const auto main = BuildTree("P[ a b c ]");
    SeedProcessRandom(7);
    PlayOrder order;
    order.Rebuild(*main);
    ASSERT_EQ(order.Rows().size(), 3u);
    EXPECT_EQ(order.Rows().back(), 1);
    EXPECT_EQ(std::set<int>(order.Rows().begin(), order.Rows().end()), (std::set<int>{1, 2, 3}));
}

TEST(ShuffledOrder, EachRowGoesBeforeTheElementAtTheDrawnPosition) {
    // Three playable rows: [a]; b goes before position rand()%1 = 0: [b a]; c goes before
    // position k = rand()%2: [c b a] or [b c a].
    const auto main = BuildTree("a b c");
    for (unsigned seed : {1u, 2u, 3u, 4u, 5u, 6u}) {
        SeedProcessRandom(seed);
        (void)std::rand();
        const int k = std::rand() % 2;
        const std::vector<int> expected = k == 0 ? std::vector<int>{2, 1, 0} : std::vector<int>{1, 2, 0};
        SeedProcessRandom(seed);
        PlayOrder order;
        order.Rebuild(*main);
        EXPECT_EQ(order.Rows(), expected) << "seed " << seed;
    }
}

TEST(ShuffledOrder, SameSeedSameOrderAndOneDrawPerRowAfterTheFirst) {
    const auto main = BuildTree("a b P[ c d ] e f g");
    for (unsigned seed : {0u, 42u, 59999u}) {
        SeedProcessRandom(seed);
        PlayOrder first;
        first.Rebuild(*main);
        const uint32_t after = NextProcessRandom();

        SeedProcessRandom(seed);
        PlayOrder second;
        second.Rebuild(*main);
        EXPECT_EQ(first.Rows(), second.Rows());

        // Seven playable rows: six draws, so the generator stands at its seventh value.
        SeedProcessRandom(seed);
        for (int i = 0; i < 6; ++i) (void)NextProcessRandom();
        EXPECT_EQ(NextProcessRandom(), after) << "seed " << seed;
    }
}

TEST(ShuffledOrder, EmptyTreesGiveAnEmptyOrder) {
    for (const char* tree : {"", "P[ ]", "P[ Q[ ] ]"}) {
        const auto main = BuildTree(tree);
        PlayOrder order;
        order.Rebuild(*main);
        EXPECT_TRUE(order.Rows().empty()) << tree;
        EXPECT_EQ(order.First(), -1);
        for (bool loop : {false, true}) {
            const PlayOrder::Move move = order.MoveOn(*main, -1, true, loop);
            EXPECT_EQ(move.row, -1) << tree;
            EXPECT_FALSE(move.keepPlaying) << tree;
            const PlayOrder::Move plain = order.MoveOn(*main, -1, false, loop);
            EXPECT_FALSE(plain.keepPlaying) << tree;
            EXPECT_TRUE(plain.row == -1 || IsPlaylistRow(*main, plain.row)) << tree;
        }
    }
}

TEST(MoveOn, RowOrderPassesOverPlaylistRowsAndWrapsAtTheEnd) {
    // rows: 0 a, 1 P, 2 b, 3 Q, 4 ?r, 5 c
    const auto main = BuildTree("a P[ b Q[ ] ] ?r c");
    const struct {
        int current;
        bool loop;
        int row;
        bool keepPlaying;
        bool wrapped;
    } cases[] = {
        {-1, false, 0, true, false}, {0, false, 2, true, false}, {2, false, 4, true, false},
        {4, false, 5, true, false},  {5, false, 0, false, true}, {5, true, 0, true, true},
        {0, true, 2, true, false},
    };
    for (const auto& c : cases) {
        PlayOrder order;
        const PlayOrder::Move move = order.MoveOn(*main, c.current, false, c.loop);
        EXPECT_EQ(move.row, c.row) << c.current << " loop " << c.loop;
        EXPECT_EQ(move.keepPlaying, c.keepPlaying) << c.current << " loop " << c.loop;
        EXPECT_EQ(move.wrapped, c.wrapped) << c.current << " loop " << c.loop;
    }
}

TEST(MoveOn, WrappingToALeadingPlaylistRow) {
    // rows: 0 P, 1 a, 2 b
    const auto main = BuildTree("P[ a ] b");
    PlayOrder order;
    const PlayOrder::Move stop = order.MoveOn(*main, 2, false, false);
    EXPECT_EQ(stop.row, 0);  // row 0 becomes current, playback stops
    EXPECT_FALSE(stop.keepPlaying);
    const PlayOrder::Move loop = order.MoveOn(*main, 2, false, true);
    EXPECT_EQ(loop.row, 1);  // playing on starts with the first playable row
    EXPECT_TRUE(loop.keepPlaying);
}

TEST(MoveOn, ShuffleWalksTheOrderThenBuildsANewOne) {
    const auto main = BuildTree("a P[ b c ] d");
    for (bool loop : {false, true}) {
        SeedProcessRandom(11);
        PlayOrder order;
        order.Rebuild(*main);
        const std::vector<int> pass = order.Rows();
        int current = order.First();
        std::vector<int> played{current};
        for (size_t i = 1; i < pass.size(); ++i) {
            const PlayOrder::Move move = order.MoveOn(*main, current, true, loop);
            EXPECT_TRUE(move.keepPlaying);
            EXPECT_FALSE(move.wrapped);
            current = move.row;
            played.push_back(current);
        }
        EXPECT_EQ(played, pass);
        const PlayOrder::Move end = order.MoveOn(*main, current, true, loop);
        EXPECT_TRUE(end.wrapped);
        EXPECT_EQ(end.keepPlaying, loop);
        EXPECT_EQ(end.row, order.First());
        EXPECT_EQ(order.Cursor(), 0u);
        EXPECT_EQ(order.Rows().back(), 0);  // rebuilt: the first playable row is last again
    }
}

TEST(MoveOn, RandomEntriesPickAnewOnlyAfterAPass) {
    for (bool shuffle : {false, true}) {
        const auto main = BuildTree("?x a P[ ?y ] b");
        const auto entries = RandomEntries(*main);
        ASSERT_EQ(entries.size(), 2u);
        for (RandomEntry* entry : entries) entry->SetPicked(nullptr);
        SeedProcessRandom(3);
        PlayOrder order;
        order.Rebuild(*main);
        int current = shuffle ? order.First() : 0;
        for (int step = 0; step < 3; ++step) {
            const PlayOrder::Move move = order.MoveOn(*main, current, shuffle, true);
            ASSERT_FALSE(move.wrapped) << "step " << step << (shuffle ? " shuffled" : "");
            for (RandomEntry* entry : entries) EXPECT_TRUE(entry->Picked());
            current = move.row;
        }
        const PlayOrder::Move end = order.MoveOn(*main, current, shuffle, true);
        EXPECT_TRUE(end.wrapped);
        for (RandomEntry* entry : entries) EXPECT_FALSE(entry->Picked()) << (shuffle ? "shuffled" : "in order");
    }
}

TEST(MoveOn, FollowingLooksAheadWithoutMoving) {
    const auto main = BuildTree("a P[ b ] c");  // rows 0 a, 1 P, 2 b, 3 c
    PlayOrder order;
    EXPECT_EQ(order.Following(*main, 0, false, false), 2);
    EXPECT_EQ(order.Following(*main, 0, false, false), 2);
    EXPECT_EQ(order.Following(*main, 3, false, false), -1);
    EXPECT_EQ(order.Following(*main, 3, false, true), 0);

    SeedProcessRandom(5);
    order.Rebuild(*main);
    const std::vector<int> rows = order.Rows();
    EXPECT_EQ(order.Following(*main, rows[0], true, true), rows[1]);
    EXPECT_EQ(order.Cursor(), 0u);
    order.SetCursorToRow(rows[2]);
    EXPECT_EQ(order.Following(*main, rows[2], true, true), -1);  // the next order is not drawn yet
}

TEST(MoveOn, PreviousWalksBack) {
    const auto main = BuildTree("a P[ b ] c");  // rows 0 a, 1 P, 2 b, 3 c
    PlayOrder order;
    EXPECT_EQ(order.Previous(*main, 3, false, false), 2);
    EXPECT_EQ(order.Previous(*main, 2, false, false), 0);  // over the playlist row
    EXPECT_EQ(order.Previous(*main, 0, false, false), 0);  // stays at the start
    EXPECT_EQ(order.Previous(*main, 0, false, true), 3);   // loops to the end

    SeedProcessRandom(8);
    order.Rebuild(*main);
    const std::vector<int> rows = order.Rows();
    order.SetCursorToRow(rows[2]);
    EXPECT_EQ(order.Previous(*main, rows[2], true, false), rows[1]);
    EXPECT_EQ(order.Previous(*main, rows[1], true, false), rows[0]);
    EXPECT_EQ(order.Previous(*main, rows[0], true, false), rows[0]);
    EXPECT_EQ(order.Previous(*main, rows[0], true, true), rows[2]);
    EXPECT_EQ(order.Cursor(), 2u);
}

TEST(RowsRemoved, RowsLeaveTheOrderAndLaterRowsMoveUp) {
    PlayOrder order;
    const auto main = BuildTree("a b c d e f");
    SeedProcessRandom(21);
    order.Rebuild(*main);
    std::vector<int> expected;
    for (int row : order.Rows())
        if (row < 2 || row > 3) expected.push_back(row > 3 ? row - 2 : row);
    order.RowsRemoved(2, 2);
    EXPECT_EQ(order.Rows(), expected);

    order.RowsInserted(1, 3);
    for (int& row : expected)
        if (row >= 1) row += 3;
    EXPECT_EQ(order.Rows(), expected);
}

TEST(RowsRemoved, TheCursorKeepsItsRowWhenEarlierElementsGo) {
    const auto main = BuildTree("a b c d e f g h");
    for (unsigned seed : {4u, 5u, 6u}) {
        SeedProcessRandom(seed);
        PlayOrder order;
        order.Rebuild(*main);
        // Row 0 is always the last element: every row that goes now stood before it.
        order.SetCursorToRow(0);
        ASSERT_EQ(order.Cursor(), 7u);
        order.RowsRemoved(1, 4);
        ASSERT_EQ(order.Rows().size(), 4u);
        EXPECT_EQ(order.Cursor(), 3u) << "seed " << seed;
        EXPECT_EQ(order.Rows()[order.Cursor()], 0);
        EXPECT_TRUE(order.MoveOn(*main, 0, true, true).wrapped) << "seed " << seed;
    }
}

TEST(RowsRemoved, DeletingTheCurrentRowPlaysTheOneThatFollowedIt) {
    const auto main = BuildTree("a b c d e");
    SeedProcessRandom(9);
    PlayOrder order;
    order.Rebuild(*main);
    const std::vector<int> before = order.Rows();
    order.SetCursorToRow(before[1]);
    const int gone = before[1];
    order.RowsRemoved(gone, 1);
    const int follower = before[2] > gone ? before[2] - 1 : before[2];
    EXPECT_EQ(order.Following(*main, -1, true, true), follower);
    EXPECT_EQ(order.MoveOn(*main, -1, true, true).row, follower);
    const int next = before[3] > gone ? before[3] - 1 : before[3];
    EXPECT_EQ(order.MoveOn(*main, follower, true, true).row, next);
}

// Playing a whole pass with "delete tracks after playing": every track plays exactly once
// and the playlist ends empty, in row order and shuffled.
TEST(RowsRemoved, DeleteAfterPlayingPlaysEveryTrackOnce) {
    for (bool shuffle : {false, true}) {
        SCOPED_TRACE(shuffle ? "shuffled" : "in order");
        const auto main = BuildTree("a P[ b c ] d Q[ e ] f");
        SeedProcessRandom(13);
        PlayOrder order;
        order.Rebuild(*main);
        int current = shuffle ? order.First() : NextPlayableRow(*main, 0);
        std::vector<std::string> played;
        for (int step = 0; step < 10 && current >= 0 && main->PlayableCount() > 0; ++step) {
            played.push_back(test::Label(*main->ItemAtRow(current).item));
            const PlayOrder::Move move = order.MoveOn(*main, current, shuffle, false);
            // The ended row goes; rows after it move up by one.
            ASSERT_EQ(DeleteRows(*main, {current}), 1);
            order.RowsRemoved(current, 1);
            if (move.wrapped) break;
            current = move.row > current ? move.row - 1 : move.row;
        }
        std::sort(played.begin(), played.end());
        EXPECT_EQ(played, (std::vector<std::string>{"a", "b", "c", "d", "e", "f"}));
        EXPECT_EQ(main->PlayableCount(), 0);
    }
}

}  // namespace
}  // namespace verdin
