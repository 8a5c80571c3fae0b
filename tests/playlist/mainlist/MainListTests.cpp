// The main list keeps its current row and play order consistent through every edit, and
// tells its listeners once per edit.
#include "playlist/mainlist/MainList.h"

#include "engine/input/InputModuleList.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "settings/Settings.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <set>

namespace verdin {
namespace {

// The rows as text: a track by its body's first letter, a random entry as "r", a nested
// playlist as "[", the current row in capitals.
std::string Rows(const MainList& list) {
    std::string text;
    for (int row = 0; row < list.RowCount(); ++row) {
        const PlaylistItem* item = list.ItemAt(row);
        const char c = item->Kind() == ItemKind::kPlaylist      ? '['
                       : item->Kind() == ItemKind::kRandomEntry ? 'r'
                                                                : item->Body()[0];
        text += row == list.CurrentRow() ? static_cast<char>(std::toupper(c)) : c;
    }
    return text;
}

class MainListTest : public ::testing::Test {
protected:
    MainListTest() {
        list_.SetDeferredRetrieval(true);  // the files are empty: nothing is read
        for (const char* name : {"a", "b", "c", "d", "e", "f"}) test::WriteFile(dir_.file(std::string(name) + ".wav"), "");
        list_.Listen([this](const ListChange& change) { changes_.push_back(change); });
    }
    std::string File(char name) const { return dir_.file(std::string(1, name) + ".wav"); }
    void Add(const std::string& names, int atRow = -1, MainList* list = nullptr) {
        std::vector<std::string> paths;
        for (char name : names) paths.push_back(File(name));
        (list ? *list : list_).Add(paths, atRow);
    }
    std::string Rows() const { return verdin::Rows(list_); }
    std::string Current() const { return list_.ItemAt(list_.CurrentRow())->Body(); }

    test::TempDir dir_;
    Settings settings_;
    InputModuleList modules_;
    MainList list_{settings_, modules_};
    std::vector<ListChange> changes_;
};

TEST_F(MainListTest, TheCurrentEntryStaysCurrentThroughEveryEditAndMovingOnNeverSkipsAnEntry) {
    // The edit, the rows after it, the entry moving on plays.
    const std::tuple<const char*, std::function<void(MainList&)>, const char*, const char*> cases[] = {
        {"insert before", [](MainList& l) { l.Insert(0, std::make_unique<RandomEntry>("x")); }, "rabCdef", "d"},
        {"delete before", [](MainList& l) { l.Delete({0, 1}); }, "Cdef", "d"},
        {"delete the current entry", [](MainList& l) { l.Delete({2}); }, "abDef", "d"},
        {"delete it and the next", [](MainList& l) { l.Delete({3, 2}); }, "abEf", "e"},
        {"delete to the end", [](MainList& l) { l.Delete({2, 3, 4, 5}); }, "aB", "a"},
        {"sort backwards", [](MainList& l) { l.Sort([](const PlaylistItem& i) { return std::string(1, 'z' - i.Body()[0]); }); }, "fedCba", "b"},
        {"move it to the top", [](MainList& l) { l.Move({2}, 0); }, "Cabdef", "a"},
        {"incorporate it", [](MainList& l) { l.Incorporate({2, 3}, "/lists/new"); }, "ab[Cdef", "d"},
        {"new playlist before it", [](MainList& l) { l.AddNewPlaylist(2, "/lists/new"); }, "ab[Cdef", "d"},
        {"incorporate, drop", [](MainList& l) { l.Incorporate({2, 3}, "/n"), l.DropPlaylist(2); }, "abCdef", "d"},
        {"incorporate, flatten", [](MainList& l) { l.Incorporate({0, 1}, "/n"), l.Flatten(); }, "abCdef", "d"},
    };
    for (const auto& [name, edit, rows, next] : cases) {
        SCOPED_TRACE(name);
        MainList list(settings_, modules_);
        list.SetDeferredRetrieval(true);
        Add("abcdef", -1, &list);
        list.SetCurrent(2);
        edit(list);
        EXPECT_EQ(verdin::Rows(list), rows);
        EXPECT_EQ(list.ItemAt(list.MoveOn(true).row)->Body(), next);
    }
}

TEST_F(MainListTest, AFinishedEntryIsDeletedByItselfNeverByTheRowItHad) {
    Add("abcd");
    list_.SetCurrent(1);
    list_.MoveOn(false, true);
    EXPECT_EQ(Rows(), "aCd");
    // The user deleted the playing entry meanwhile: moving on deletes nothing more.
    list_.Delete({1});
    list_.MoveOn(false, true);
    EXPECT_EQ(Rows(), "aD");
}

TEST_F(MainListTest, TheShuffledPassGoesOnWithoutTheDeletedRows) {
    settings_.shuffleMode = 1;
    Add("abcdef");
    const std::vector<int> order = list_.ShuffledRows();
    ASSERT_EQ(order.size(), 6u);
    EXPECT_EQ(order.back(), 0) << "the first playable row always ends up last";
    list_.SetCurrent(order[0]);
    const std::string deleted = list_.ItemAt(order[2])->Body();
    list_.Delete({order[2]});
    std::set<std::string> played{Current()};
    for (PlayOrder::Move move = list_.MoveOn(false); !move.wrapped; move = list_.MoveOn(false))
        EXPECT_TRUE(played.insert(Current()).second) << Current() << " twice in one pass";
    EXPECT_EQ(played.size(), 5u);
    EXPECT_FALSE(played.contains(deleted));
}

TEST_F(MainListTest, AnEditFillingAnEmptyListMakesItsFirstEntryCurrentAndEachEditIsToldOnce) {
    Add("ab");
    EXPECT_EQ(Rows(), "Ab");
    ASSERT_EQ(changes_.size(), 1u);
    EXPECT_TRUE(changes_[0].rows && changes_[0].current && !changes_[0].cleared);
    list_.SetCurrent(1);
    Add("c", 0);
    EXPECT_EQ(Rows(), "caB");
    list_.Clear();
    ASSERT_EQ(changes_.size(), 4u);
    EXPECT_TRUE(changes_.back().cleared);
    EXPECT_EQ(Rows(), "");
    Add("d");
    EXPECT_EQ(Rows(), "D");
}

TEST_F(MainListTest, DeferredTracksAreListedAndTheirInformationPlacedWhereverTheyMoved) {
    Add("abc");
    std::vector<DeferredTrack> deferred = list_.TakeDeferred();
    ASSERT_EQ(deferred.size(), 3u);
    EXPECT_TRUE(list_.TakeDeferred().empty());
    list_.Move({0}, 3);  // a moves to the end: its row hint is stale
    std::vector<RetrievedTrack> read;
    for (const DeferredTrack& track : deferred) {
        auto record = std::make_unique<TrackRecord>(track.path);
        record->SetInfo(TrackInfo{.fileSize = 7});
        read.push_back({track.row, std::move(record)});
    }
    changes_.clear();
    list_.Fill(std::move(read));
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(static_cast<const TrackItem*>(list_.ItemAt(row))->Track().FileSize(), 7u) << row;
    ASSERT_EQ(changes_.size(), 1u);
    EXPECT_TRUE(changes_[0].texts && !changes_[0].rows);
}

}  // namespace
}  // namespace verdin
