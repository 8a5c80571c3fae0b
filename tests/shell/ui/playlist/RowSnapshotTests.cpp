// How two snapshots of the playlist's rows differ.
#include "shell/ui/playlist/RowSnapshot.h"

#include "playlist/Playlist.h"
#include "playlist/TrackItem.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(CompareRows, TellsWhatChanged) {
    TrackItem items[6] = {TrackItem("/a"), TrackItem("/b"), TrackItem("/c"), TrackItem("/d"), TrackItem("/e"), TrackItem("/f")};
    auto rows = [&](std::initializer_list<int> indices) {
        std::vector<const PlaylistItem*> list;
        for (int i : indices) list.push_back(i < 0 ? nullptr : &items[i]);
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
        {"removed at the front", rows({0, 1, 2}), rows({2}), RowChange::Kind::kReplaced, 0, 2, 0},
        {"replaced one", rows({0, 1, 2}), rows({0, 3, 2}), RowChange::Kind::kReplaced, 1, 1, 1},
        {"swapped", rows({0, 1, 2, 3}), rows({0, 2, 1, 3}), RowChange::Kind::kReordered, 1, 2, 2},
        {"reversed", rows({0, 1, 2}), rows({2, 1, 0}), RowChange::Kind::kReordered, 0, 3, 3},
        {"empty line to rows", rows({-1}), rows({0, 1}), RowChange::Kind::kReplaced, 0, 1, 2},
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

}  // namespace
}  // namespace verdin
