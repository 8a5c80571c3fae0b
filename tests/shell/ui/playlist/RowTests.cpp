// Row snapshots of the playlist tree, how two of them differ, and moving rows.
#include "playlist/RowMove.h"
#include "shell/ui/playlist/RowSnapshot.h"

#include "playlist/Playlist.h"
#include "playlist/TrackItem.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

// "a b [c d] e": tracks named by letters, a nested playlist "p" around c and d.
std::unique_ptr<Playlist> Tree(const std::string& shape) {
    auto main = std::make_unique<Playlist>();
    Playlist* into = main.get();
    for (char c : shape) {
        if (c == '[') {
            auto nested = std::make_unique<Playlist>("/lists/p.m3u");
            Playlist* raw = nested.get();
            into->AppendItem(std::move(nested));
            into = raw;
        } else if (c == ']') {
            into = into->Parent();
        } else if (c != ' ') {
            into->AppendItem(std::make_unique<TrackItem>(std::string("/music/") + c + ".wav"));
        }
    }
    return main;
}

// The tree written back in the same shape.
std::string Shape(const Playlist& playlist) {
    std::string shape;
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem* item = playlist.ItemAt(i);
        if (!shape.empty()) shape += ' ';
        if (item->Kind() == ItemKind::kPlaylist) shape += '[' + Shape(static_cast<const Playlist&>(*item)) + ']';
        else shape += item->Body();
    }
    return shape;
}

TEST(CompareRows, TellsWhatChanged) {
    PlaylistItem* items[6];
    auto main = Tree("a b c d e f");
    for (int i = 0; i < 6; ++i) items[i] = main->ItemAt(static_cast<size_t>(i));
    auto rows = [&](std::initializer_list<int> indices) {
        std::vector<const PlaylistItem*> list;
        for (int i : indices) list.push_back(i < 0 ? nullptr : items[i]);
        return list;
    };
    struct Case {
        const char* name;
        std::vector<const PlaylistItem*> before, after;
        RowChange::Kind kind;
        int first, removed, inserted;
    };
    const Case cases[] = {
        {"same", rows({0, 1, 2}), rows({0, 1, 2}), RowChange::Kind::kSame, 3, 0, 0},
        {"appended", rows({0, 1}), rows({0, 1, 2, 3}), RowChange::Kind::kReplaced, 2, 0, 2},
        {"inserted in the middle", rows({0, 1, 2}), rows({0, 4, 5, 1, 2}), RowChange::Kind::kReplaced, 1, 0, 2},
        {"removed at the front", rows({0, 1, 2}), rows({2}), RowChange::Kind::kReplaced, 0, 2, 0},
        {"replaced one", rows({0, 1, 2}), rows({0, 3, 2}), RowChange::Kind::kReplaced, 1, 1, 1},
        {"swapped", rows({0, 1, 2, 3}), rows({0, 2, 1, 3}), RowChange::Kind::kReordered, 1, 2, 2},
        {"reversed", rows({0, 1, 2}), rows({2, 1, 0}), RowChange::Kind::kReordered, 0, 3, 3},
        {"empty line to rows", rows({-1}), rows({0, 1}), RowChange::Kind::kReplaced, 0, 1, 2},
        {"rows to empty line", rows({0, 1}), rows({-1}), RowChange::Kind::kReplaced, 0, 2, 1},
        {"same count, other items", rows({0, 1}), rows({2, 3}), RowChange::Kind::kReplaced, 0, 2, 2},
        {"a repeated item is no reordering", rows({0, 1}), rows({1, 1}), RowChange::Kind::kReplaced, 0, 1, 1},
        {"both ends kept", rows({0, 1, 2, 3, 4}), rows({0, 5, 4}), RowChange::Kind::kReplaced, 1, 3, 1},
    };
    for (const Case& c : cases) {
        const RowChange change = CompareRows(c.before, c.after);
        EXPECT_EQ(change.kind, c.kind) << c.name;
        if (c.kind == RowChange::Kind::kSame) continue;
        EXPECT_EQ(change.first, c.first) << c.name;
        EXPECT_EQ(change.removed, c.removed) << c.name;
        EXPECT_EQ(change.inserted, c.inserted) << c.name;
    }
}

TEST(MoveRows, PutsItemsBeforeTheTargetRow) {
    struct Case {
        const char* tree;
        std::vector<int> rows;
        int before;
        const char* expected;
        int firstRow;
    };
    const Case cases[] = {
        {"a b c d", {3}, 0, "d a b c", 0},
        {"a b c d", {0}, 4, "b c d a", 3},
        {"a b c d", {0, 2}, 4, "b d a c", 2},
        {"a b c d", {0, 2}, 99, "b d a c", 2},
        {"a b c d", {1, 2}, 1, "a b c d", 1},   // before one of themselves: nothing moves
        {"a b c d", {2, 0}, 1, "a c b d", 0},   // row order, not the order given
        {"a [b c] d", {4}, 2, "a [d b c]", 2},  // into the nested playlist, now changed
        {"a [b c] d", {2}, 0, "b a [c] d", 0},  // out of it
        {"a [b c] d", {1}, 3, "a [b c] d", 1},  // a playlist before its own item: stays
        {"a [b c] d", {1, 2}, 0, "[b c] a d", 0},  // with its own item: it moves whole
        {"a b", {5}, 0, "a b", -1},             // no such row
    };
    for (const Case& c : cases) {
        auto main = Tree(c.tree);
        EXPECT_EQ(MoveRows(*main, c.rows, c.before), c.firstRow) << c.tree << " " << c.before;
        EXPECT_EQ(Shape(*main), c.expected) << c.tree << " " << c.before;
        EXPECT_EQ(static_cast<int>(RowItems(*main).size()), main->RowCount());
        if (c.tree == std::string("a [b c] d") && c.before == 2) {
            EXPECT_TRUE(static_cast<const Playlist*>(main->ItemAt(1))->Modified());
        }
    }
}

}  // namespace
}  // namespace verdin
