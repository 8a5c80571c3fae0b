// The commands that reshape the tree.
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "playlist/TreeCommands.h"
#include "TreeText.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

using test::BuildTree;
using test::DescribeTree;
using test::RowOfLabel;

// The labels of the playlists (main: "main") with unsaved changes, in row order.
std::string ModifiedPlaylists(const Playlist& main) {
    std::string out = main.Modified() ? "main" : "";
    for (int row = 0; row < main.RowCount(); ++row) {
        const PlaylistItem& item = *main.ItemAtRow(row).item;
        if (item.Kind() == ItemKind::kPlaylist && static_cast<const Playlist&>(item).Modified())
            out += (out.empty() ? "" : " ") + test::Label(item);
    }
    return out;
}

TEST(TreeCommands, AddNewPlaylistGoesBeforeTheRowInItsHolder) {
    const struct {
        const char* tree;
        int row;
        const char* expected;
        const char* modified;
    } cases[] = {
        {"a P[ b c ]", 3, "a P[ b N[ ] c ]", "P"},
        {"a P[ b c ]", 0, "N[ ] a P[ b c ]", "main"},
        {"a P[ b c ]", 1, "a N[ ] P[ b c ]", "main"},
        {"a P[ b c ]", -1, "a P[ b c ] N[ ]", "main"},
        {"a P[ b c ]", 4, "a P[ b c ] N[ ]", "main"},
        {"", -1, "N[ ]", "main"},
    };
    for (const auto& c : cases) {
        const auto main = BuildTree(c.tree);
        const int row = AddNewPlaylist(*main, c.row, "/lists/N.vdp");
        EXPECT_EQ(DescribeTree(*main), c.expected) << c.tree << " at " << c.row;
        EXPECT_EQ(row, RowOfLabel(*main, "N"));
        EXPECT_EQ(ModifiedPlaylists(*main), c.modified) << c.tree << " at " << c.row;  // not N itself
    }
}

TEST(TreeCommands, IncorporateMovesTheRowsIntoANewPlaylistWhereTheFirstWas) {
    // rows of "a P[ b c ] d Q[ e ] f": 0 a, 1 P, 2 b, 3 c, 4 d, 5 Q, 6 e, 7 f
    const char* const tree = "a P[ b c ] d Q[ e ] f";
    const struct {
        std::vector<int> rows;
        const char* expected;
        const char* modified;
    } cases[] = {
        {{0, 4}, "N[ a d ] P[ b c ] Q[ e ] f", "main N"},
        {{4, 0, 4}, "N[ a d ] P[ b c ] Q[ e ] f", "main N"},             // order and repeats do not matter
        {{3, 7}, "a P[ b N[ c f ] ] d Q[ e ]", "main P N"},              // from two playlists
        {{5, 6}, "a P[ b c ] d N[ Q[ e ] ] f", "main N"},                // e moves with Q
        {{2, 3}, "a P[ N[ b c ] ] d Q[ e ] f", "P N"},
        {{6, -1, 99}, "a P[ b c ] d Q[ N[ e ] ] f", "Q N"},
    };
    for (const auto& c : cases) {
        const auto main = BuildTree(tree);
        const int row = IncorporateIntoNewPlaylist(*main, c.rows, "/lists/N.vdp");
        EXPECT_EQ(DescribeTree(*main), c.expected);
        EXPECT_EQ(row, RowOfLabel(*main, "N"));
        EXPECT_EQ(ModifiedPlaylists(*main), c.modified) << c.expected;
    }
    const auto main = BuildTree(tree);
    EXPECT_EQ(IncorporateIntoNewPlaylist(*main, {}, "/lists/N.vdp"), -1);
    EXPECT_EQ(IncorporateIntoNewPlaylist(*main, {-1, 8}, "/lists/N.vdp"), -1);
    EXPECT_EQ(DescribeTree(*main), tree);
    EXPECT_EQ(ModifiedPlaylists(*main), "");
}

TEST(TreeCommands, DropPlaylistPutsItsItemsInItsPlace) {
    const struct {
        const char* tree;
        int row;
        bool dropped;
        const char* expected;
        const char* modified;
    } cases[] = {
        {"a P[ b Q[ c ] ] d", 1, true, "a b Q[ c ] d", "main"},
        {"a P[ b Q[ c ] ] d", 3, true, "a P[ b c ] d", "P"},
        {"a P[ ] d", 1, true, "a d", "main"},
        {"a P[ b ] d", 0, false, "a P[ b ] d", ""},  // a track
        {"a P[ b ] d", 2, false, "a P[ b ] d", ""},
        {"a P[ b ] d", -1, false, "a P[ b ] d", ""},
        {"a P[ b ] d", 9, false, "a P[ b ] d", ""},
    };
    for (const auto& c : cases) {
        const auto main = BuildTree(c.tree);
        EXPECT_EQ(DropPlaylist(*main, c.row), c.dropped) << c.tree << " row " << c.row;
        EXPECT_EQ(DescribeTree(*main), c.expected);
        EXPECT_EQ(ModifiedPlaylists(*main), c.modified) << c.tree << " row " << c.row;
    }
    // The items keep their tree: a dropped playlist's nested playlist now hangs on main.
    const auto main = BuildTree("P[ Q[ c ] ]");
    ASSERT_TRUE(DropPlaylist(*main, 0));
    EXPECT_EQ(static_cast<Playlist*>(main->ItemAt(0))->Parent(), main.get());
    EXPECT_EQ(main->RowCount(), 2);
}

TEST(TreeCommands, FlattenLeavesOnlyTracksAndRandomEntriesInRowOrder) {
    const struct {
        const char* tree;
        const char* expected;
        bool modified;
    } cases[] = {
        {"a P[ b Q[ c ?r ] d ] e R[ ]", "a b c ?r d e", true},
        {"P[ Q[ R[ x ] ] ]", "x", true},
        {"a ?r b", "a ?r b", false},  // nothing to flatten: nothing changes
        {"", "", false},
    };
    for (const auto& c : cases) {
        const auto main = BuildTree(c.tree);
        FlattenMainPlaylist(*main);
        EXPECT_EQ(DescribeTree(*main), c.expected);
        EXPECT_EQ(main->Modified(), c.modified) << c.tree;
        EXPECT_EQ(main->RowCount(), main->PlayableCount());
    }
}

TEST(TreeCommands, SortOrdersByKeyIgnoringCaseAndKeepsTiesInOrder) {
    // The key is the body; items whose keys differ only in case keep their order.
    const struct {
        const char* tree;
        const char* expected;
    } cases[] = {
        {"c A b", "A b c"},
        {"b2 B1 b1 a", "a B1 b1 b2"},
        {"Zed alpha P[ y X ] beta", "alpha beta P[ X y ] Zed"},
        {"b ?r a", "?r a b"},  // a random entry's key is its label here ("?" sorts first)
    };
    const SortKey byLabel = [](const PlaylistItem& item) { return test::Label(item); };
    for (const auto& c : cases) {
        const auto main = BuildTree(c.tree);
        SortPlaylist(*main, byLabel);
        EXPECT_EQ(DescribeTree(*main), c.expected) << c.tree;
    }
    // Sorting a nested playlist leaves the rest of the tree alone.
    const auto main = BuildTree("z P[ c a b ] y");
    SortPlaylist(*static_cast<Playlist*>(main->ItemAt(1)), byLabel);
    EXPECT_EQ(DescribeTree(*main), "z P[ a b c ] y");
    EXPECT_EQ(ModifiedPlaylists(*main), "P");
}

TEST(TreeCommands, DeleteRemovesTheRowsAndEverythingInDeletedPlaylists) {
    // rows of "a P[ b Q[ c ] ] d ?r": 0 a, 1 P, 2 b, 3 Q, 4 c, 5 d, 6 ?r
    const char* const tree = "a P[ b Q[ c ] ] d ?r";
    const struct {
        std::vector<int> rows;
        int deleted;
        const char* expected;
        const char* modified;
    } cases[] = {
        {{0}, 1, "P[ b Q[ c ] ] d ?r", "main"},
        {{1, 2, 4}, 1, "a d ?r", "main"},           // inside a deleted playlist: goes with it
        {{4, 2}, 2, "a P[ Q[ ] ] d ?r", "P Q"},
        {{6, 6, -1, 7}, 1, "a P[ b Q[ c ] ] d", "main"},
        {{0, 1, 2, 3, 4, 5, 6}, 4, "", "main"},
        {{}, 0, "a P[ b Q[ c ] ] d ?r", ""},
    };
    for (const auto& c : cases) {
        const auto main = BuildTree(tree);
        EXPECT_EQ(DeleteRows(*main, c.rows), c.deleted) << c.expected;
        EXPECT_EQ(DescribeTree(*main), c.expected);
        EXPECT_EQ(ModifiedPlaylists(*main), c.modified) << c.expected;
    }
}

TEST(TreeCommands, RowOfItemFindsAnyKindOfItem) {
    const auto main = BuildTree("a P[ b Q[ c ] ] ?r");
    for (int row = 0; row < main->RowCount(); ++row)
        EXPECT_EQ(RowOfItem(*main, main->ItemAtRow(row).item), row);
    const TrackItem stranger("/m/x.mp3");
    EXPECT_EQ(RowOfItem(*main, &stranger), -1);
    EXPECT_EQ(RowOfItem(*main, nullptr), -1);
    EXPECT_EQ(RowOfItem(*main, main.get()), -1);
    const auto other = BuildTree("P[ a ]");
    EXPECT_EQ(RowOfItem(*main, other->ItemAt(0)), -1);  // a playlist of another tree
}

TEST(TreeCommands, UntitledPlaylistsAreNamedInTheUserDirectory) {
    for (const char* directory : {"/home/u/.local/share/Brimfell/Verdin", "/home/u/.local/share/Brimfell/Verdin/"}) {
        const std::string name = UntitledPlaylistName(directory);
        EXPECT_EQ(name, "/home/u/.local/share/Brimfell/Verdin/Untitled");
        const Playlist playlist(name);
        EXPECT_EQ(playlist.Body(), "Untitled");
        EXPECT_EQ(playlist.Extension(), "");
    }
}

}  // namespace
}  // namespace verdin
