// The shuffled order, moving on at the end of a track, and keeping the order right while
// rows are deleted and inserted.
#include "playlist/PlayOrder.h"
#include "playlist/ProcessRandom.h"
#include "playlist/TreeCommands.h"

#include "PlaylistFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>

namespace verdin {
namespace {

using test::BuildTree;

// The documented shuffle with the C library's generator: each playable row in turn goes
// before the element at rand() % the order's length (the first into the empty order).
std::vector<int> ReferenceShuffle(const std::vector<int>& playable, unsigned seed) {
    std::srand(seed);
    std::vector<int> order;
    for (int row : playable) order.insert(order.begin() + (order.empty() ? 0 : std::rand() % long(order.size())), row);
    return order;
}

TEST(ShuffledOrder, IsTheDocumentedShuffleOfThePlayableRows) {
    const auto main = BuildTree("P[ a b ] c ?r Q[ R[ d ] ] e S[ ]");
    std::set<std::vector<int>> seen;
    for (unsigned seed = 0; seed < 300; ++seed) {
        SeedProcessRandom(seed);
        PlayOrder order;
        order.Rebuild(*main);
        const uint32_t next = NextProcessRandom();  // one draw per row after the first, no more
        ASSERT_EQ(order.Rows(), ReferenceShuffle({1, 2, 3, 4, 7, 8}, seed)) << "seed " << seed;
        ASSERT_EQ(next, uint32_t(std::rand())) << "seed " << seed;
        ASSERT_EQ(order.Cursor(), 0u);
        ASSERT_EQ(order.Rows().back(), 1);  // the first playable row always ends up last
        seen.insert(order.Rows());
    }
    EXPECT_GT(seen.size(), 60u);  // of the 5! arrangements of the others
    for (const char* tree : {"", "P[ ]", "P[ Q[ ] ]"}) {
        const auto empty = BuildTree(tree);
        PlayOrder order;
        order.Rebuild(*empty);
        EXPECT_TRUE(order.Rows().empty()) << tree;
        EXPECT_EQ(order.First(), -1);
        for (bool shuffle : {false, true})
            for (bool loop : {false, true}) {
                const PlayOrder::Move move = order.MoveOn(*empty, -1, shuffle, loop);
                EXPECT_FALSE(move.keepPlaying) << tree;
                EXPECT_TRUE(move.row == -1 || IsPlaylistRow(*empty, move.row)) << tree;
            }
    }
}

TEST(MoveOn, RowOrderPassesOverPlaylistRowsAndWrapsAtTheEnd) {
    const auto main = BuildTree("a P[ b Q[ ] ] ?r c");  // rows: 0 a, 1 P, 2 b, 3 Q, 4 ?r, 5 c
    const struct {
        int current;
        bool loop;
        PlayOrder::Move move;
    } cases[] = {{-1, false, {0, true, false}}, {0, false, {2, true, false}}, {2, false, {4, true, false}},
                 {4, false, {5, true, false}},  {5, false, {0, false, true}}, {5, true, {0, true, true}}};
    for (const auto& c : cases) {
        PlayOrder order;
        const PlayOrder::Move move = order.MoveOn(*main, c.current, false, c.loop);
        EXPECT_EQ(std::tuple(move.row, move.keepPlaying, move.wrapped), std::tuple(c.move.row, c.move.keepPlaying, c.move.wrapped))
            << c.current << (c.loop ? " looping" : "");
    }
    const auto leading = BuildTree("P[ a ] b");  // rows: 0 P, 1 a, 2 b
    PlayOrder order;
    EXPECT_EQ(order.MoveOn(*leading, 2, false, false).row, 0);  // row 0 becomes current and playback stops
    EXPECT_EQ(order.MoveOn(*leading, 2, false, true).row, 1);   // playing on starts with the first playable row

    const auto three = BuildTree("a P[ b ] c");  // rows: 0 a, 1 P, 2 b, 3 c
    EXPECT_EQ(order.Following(*three, 0, false, false), 2);
    EXPECT_EQ(order.Following(*three, 3, false, false), -1);
    EXPECT_EQ(order.Following(*three, 3, false, true), 0);
    const std::tuple<int, bool, int> previous[] = {{3, false, 2}, {2, false, 0}, {0, false, 0}, {0, true, 3}};
    for (const auto& [current, loop, expected] : previous) EXPECT_EQ(order.Previous(*three, current, false, loop), expected);
}

TEST(MoveOn, ShuffleWalksTheOrderLooksAheadAndBackThenBuildsANewOne) {
    const auto main = BuildTree("?x a P[ ?y b ] c");
    for (bool loop : {false, true}) {
        std::vector<RandomEntry*> entries;
        for (int row : {0, 3}) entries.push_back(static_cast<RandomEntry*>(main->ItemAtRow(row).item));
        for (RandomEntry* entry : entries) entry->SetPicked(nullptr);
        SeedProcessRandom(11);
        PlayOrder order;
        order.Rebuild(*main);
        const std::vector<int> pass = order.Rows();
        int current = order.First();
        for (size_t i = 1; i < pass.size(); ++i) {
            EXPECT_EQ(order.Following(*main, current, true, loop), pass[i]);
            const PlayOrder::Move move = order.MoveOn(*main, current, true, loop);
            EXPECT_TRUE(move.keepPlaying && !move.wrapped);
            EXPECT_EQ(move.row, pass[i]);
            EXPECT_TRUE(entries[0]->Picked() && entries[1]->Picked());  // random entries pick anew only after a pass
            current = move.row;
        }
        EXPECT_EQ(order.Following(*main, current, true, loop), -1);  // the next order is not drawn yet
        for (size_t i = pass.size() - 1; i > 0; --i) EXPECT_EQ(order.Previous(*main, pass[i], true, false), pass[i - 1]);
        EXPECT_EQ(order.Previous(*main, pass[0], true, false), pass[0]);  // at the start: stays
        EXPECT_EQ(order.Previous(*main, pass[0], true, true), pass.back());
        EXPECT_EQ(order.Cursor(), pass.size() - 1);
        const PlayOrder::Move end = order.MoveOn(*main, current, true, loop);
        EXPECT_TRUE(end.wrapped);
        EXPECT_EQ(end.keepPlaying, loop);
        EXPECT_EQ(end.row, order.First());
        EXPECT_EQ(order.Cursor(), 0u);
        EXPECT_EQ(order.Rows().back(), 0);  // rebuilt: the first playable row last again
        EXPECT_FALSE(entries[0]->Picked() || entries[1]->Picked());
    }
}

TEST(RowsRemoved, RowsLeaveTheOrderAndTheCursorKeepsItsRow) {
    const auto main = BuildTree("a b c d e f g h");
    for (unsigned seed : {4u, 5u, 21u}) {
        SeedProcessRandom(seed);
        PlayOrder order;
        order.Rebuild(*main);
        std::vector<int> expected;
        for (int row : order.Rows())
            if (row < 1 || row > 4) expected.push_back(row > 4 ? row - 4 : row);
        order.SetCursorToRow(0);  // row 0 is always last: every row that goes stood before it
        ASSERT_EQ(order.Cursor(), 7u);
        order.RowsRemoved(1, 4);
        EXPECT_EQ(order.Rows(), expected) << "seed " << seed;
        EXPECT_EQ(order.Cursor(), 3u) << "seed " << seed;
        EXPECT_TRUE(order.MoveOn(*main, 0, true, true).wrapped) << "seed " << seed;
    }
    PlayOrder order;
    SeedProcessRandom(21);
    order.Rebuild(*main);
    std::vector<int> expected = order.Rows();
    order.RowsInserted(1, 3);
    for (int& row : expected) row += row >= 1 ? 3 : 0;
    EXPECT_EQ(order.Rows(), expected);

    // Deleting the current row plays the one that followed it.
    const auto five = BuildTree("a b c d e");
    SeedProcessRandom(9);
    order.Rebuild(*five);
    const std::vector<int> before = order.Rows();
    const int gone = before[1];
    order.SetCursorToRow(gone);
    order.RowsRemoved(gone, 1);
    const auto moved = [&](int row) { return row > gone ? row - 1 : row; };
    EXPECT_EQ(order.Following(*five, -1, true, true), moved(before[2]));
    EXPECT_EQ(order.MoveOn(*five, -1, true, true).row, moved(before[2]));
    EXPECT_EQ(order.MoveOn(*five, moved(before[2]), true, true).row, moved(before[3]));
}

// A whole pass with "delete tracks after playing": every track plays once and the
// playlist ends empty, in row order and shuffled.
TEST(RowsRemoved, DeleteAfterPlayingPlaysEveryTrackOnce) {
    for (bool shuffle : {false, true}) {
        const auto main = BuildTree("a P[ b c ] d Q[ e ] f");
        SeedProcessRandom(13);
        PlayOrder order;
        order.Rebuild(*main);
        int current = shuffle ? order.First() : NextPlayableRow(*main, 0);
        std::vector<std::string> played;
        for (int step = 0; step < 10 && current >= 0 && main->PlayableCount() > 0; ++step) {
            played.push_back(test::Label(*main->ItemAtRow(current).item));
            const PlayOrder::Move move = order.MoveOn(*main, current, shuffle, false);
            ASSERT_EQ(DeleteRows(*main, {current}), 1);
            order.RowsRemoved(current, 1);
            if (move.wrapped) break;
            current = move.row > current ? move.row - 1 : move.row;
        }
        std::sort(played.begin(), played.end());
        EXPECT_EQ(played, (std::vector<std::string>{"a", "b", "c", "d", "e", "f"})) << shuffle;
        EXPECT_EQ(main->PlayableCount(), 0);
    }
}

}  // namespace
}  // namespace verdin
