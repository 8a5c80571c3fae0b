// The shuffled order, moving on at the end of a track, and keeping the order right while
// rows are deleted.
#include "playlist/PlayOrder.h"
#include "playlist/ProcessRandom.h"

#include "PlaylistFixtures.h"

#include <gtest/gtest.h>

#include <cstdlib>

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
    for (unsigned seed = 0; seed < 300; ++seed) {
        SeedProcessRandom(seed);
        PlayOrder order;
        order.Rebuild(*main);
        const uint32_t next = NextProcessRandom();  // one draw per row after the first, no more
        ASSERT_EQ(order.Rows(), ReferenceShuffle({1, 2, 3, 4, 7, 8}, seed)) << "seed " << seed;
        ASSERT_TRUE(next == uint32_t(std::rand()) && order.Cursor() == 0 && order.Rows().back() == 1) << "seed " << seed;  // the first playable row ends up last
    }
    for (const char* tree : {"", "P[ ]", "P[ Q[ ] ]"}) {  // nothing to play, shuffled or not, looping or not
        const auto empty = BuildTree(tree);
        PlayOrder order;
        order.Rebuild(*empty);
        EXPECT_TRUE(order.Rows().empty() && order.First() == -1) << tree;
        for (int mode = 0; mode < 4; ++mode) {
            const PlayOrder::Move move = order.MoveOn(*empty, -1, mode & 1, mode & 2);
            EXPECT_TRUE(!move.keepPlaying && IsPlaylistRow(*empty, move.row)) << tree;  // no row, or a playlist row walkers skip
        }
    }
}

TEST(MoveOn, RowOrderPassesOverPlaylistRowsAndWrapsTheShuffledOrderIsWalkedThenBuiltAnew) {
    const auto main = BuildTree("a P[ b Q[ ] ] ?r c");  // rows: 0 a, 1 P, 2 b, 3 Q, 4 ?r, 5 c
    const std::tuple<int, bool, int, bool, bool> cases[] = {  // current, loop: row, keep playing, wrapped
        {-1, false, 0, true, false}, {0, false, 2, true, false}, {2, false, 4, true, false}, {4, false, 5, true, false}, {5, false, 0, false, true}, {5, true, 0, true, true}};
    for (const auto& [current, loop, row, keepPlaying, wrapped] : cases) {
        const PlayOrder::Move move = PlayOrder().MoveOn(*main, current, false, loop);
        EXPECT_EQ(std::tuple(move.row, move.keepPlaying, move.wrapped), std::tuple(row, keepPlaying, wrapped)) << current << (loop ? " looping" : "");
    }
    const auto leading = BuildTree("P[ a ] b");  // rows: 0 P, 1 a, 2 b
    PlayOrder order;
    EXPECT_EQ(order.MoveOn(*leading, 2, false, false).row, 0);  // row 0 becomes current and playback stops
    EXPECT_EQ(order.MoveOn(*leading, 2, false, true).row, 1);   // playing on starts with the first playable row
    const auto three = BuildTree("a P[ b ] c");  // rows: 0 a, 1 P, 2 b, 3 c
    EXPECT_EQ(std::tuple(order.Following(*three, 0, false, false), order.Following(*three, 3, false, false), order.Following(*three, 3, false, true)), std::tuple(2, -1, 0));
    EXPECT_EQ(std::tuple(order.Previous(*three, 3, false, false), order.Previous(*three, 2, false, false), order.Previous(*three, 0, false, false), order.Previous(*three, 0, false, true)),
              std::tuple(2, 0, 0, 3));
    // Shuffled: the order walked, looked ahead and back in, and a new one built after it.
    const auto shuffled = BuildTree("?x a P[ ?y b ] c");
    const std::vector<RandomEntry*> entries{static_cast<RandomEntry*>(shuffled->ItemAtRow(0).item), static_cast<RandomEntry*>(shuffled->ItemAtRow(3).item)};
    for (RandomEntry* entry : entries) entry->SetPicked(nullptr);  // picked, as playing them would
    SeedProcessRandom(11);  // not looping: the pass ends, and looping it would start the next
    order.Rebuild(*shuffled);
    const std::vector<int> pass = order.Rows();
    int current = order.First();
    for (size_t i = 1; i < pass.size(); current = pass[i++]) {
        EXPECT_EQ(order.Following(*shuffled, current, true, false), pass[i]);
        const PlayOrder::Move move = order.MoveOn(*shuffled, current, true, false);
        EXPECT_TRUE(move.keepPlaying && !move.wrapped && move.row == pass[i] && entries[0]->Picked() && entries[1]->Picked());  // entries pick anew only after a pass
    }
    EXPECT_EQ(order.Following(*shuffled, current, true, true), -1);  // the next order is not drawn yet
    for (size_t i = pass.size() - 1; i > 0; --i) EXPECT_EQ(order.Previous(*shuffled, pass[i], true, false), pass[i - 1]);
    EXPECT_EQ(order.Previous(*shuffled, pass[0], true, false), pass[0]);  // at the start: stays, or wraps
    EXPECT_EQ(order.Previous(*shuffled, pass[0], true, true), pass.back());
    const PlayOrder::Move end = order.MoveOn(*shuffled, current, true, false);
    EXPECT_TRUE(end.wrapped && !end.keepPlaying && end.row == order.First() && order.Cursor() == 0);
    EXPECT_TRUE(order.Rows().back() == 0 && !entries[0]->Picked() && !entries[1]->Picked());  // rebuilt: the first playable row last again
}

TEST(RowsRemoved, RowsLeaveTheOrderAndTheCursorKeepsItsRow) {
    const auto main = BuildTree("a b c d e f g h");
    PlayOrder order;
    SeedProcessRandom(5);
    order.Rebuild(*main);
    std::vector<int> expected;
    for (int row : order.Rows())
        if (row < 1 || row > 4) expected.push_back(row > 4 ? row - 4 : row);
    order.SetCursorToRow(0);  // row 0 is always last: every row that goes stood before it
    ASSERT_EQ(order.Cursor(), 7u);
    order.RowsRemoved(1, 4);
    EXPECT_TRUE(order.Rows() == expected && order.Cursor() == 3 && order.MoveOn(*main, 0, true, true).wrapped);
    // Deleting the current row plays the one that followed it.
    const auto five = BuildTree("a b c d e");
    SeedProcessRandom(9);
    order.Rebuild(*five);
    const std::vector<int> before = order.Rows();
    const auto moved = [gone = before[1]](int row) { return row > gone ? row - 1 : row; };
    order.SetCursorToRow(before[1]);
    order.RowsRemoved(before[1], 1);
    EXPECT_EQ(order.Following(*five, -1, true, true), moved(before[2]));
    EXPECT_EQ(order.MoveOn(*five, -1, true, true).row, moved(before[2]));
    EXPECT_EQ(order.MoveOn(*five, moved(before[2]), true, true).row, moved(before[3]));
}

}  // namespace
}  // namespace verdin
