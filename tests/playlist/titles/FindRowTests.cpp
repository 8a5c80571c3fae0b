// Find in playlist: which row a search lands on.
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "playlist/titles/FindRow.h"
#include "playlist/titles/TrackTitle.h"

#include "TrackFixtures.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

using test::MakeTrack;

// row 0  "Ann - Acid jazz"            /Music/jazz-less/a1.mp3
// row 1  playlist /lists/Road Trip.vdp
// row 2    "Bob - Blue Train"         /Music/b/take_two.mp3
// row 3    random entry (COMPOSER ~ "Monk")
// row 4  "Cy - Acid jazz reprise"     /Music/c/c3.mp3
class Find : public ::testing::Test {
protected:
    Find() {
        main_.AppendItem(Track("/Music/jazz-less/a1.mp3", "Ann", "Acid jazz"));
        auto trip = std::make_unique<Playlist>("/lists/Road Trip.vdp");
        trip->AppendItem(Track("/Music/b/take_two.mp3", "Bob", "Blue Train"));
        trip->AppendItem(std::make_unique<RandomEntry>("(COMPOSER ~ \"Monk\")"));
        main_.AppendItem(std::move(trip));
        main_.AppendItem(Track("/Music/c/c3.mp3", "Cy", "Acid jazz reprise"));
    }
    static std::unique_ptr<PlaylistItem> Track(const std::string& name, const std::string& artist,
                                               const std::string& title) {
        return std::make_unique<TrackItem>(
            MakeTrack({name, {{FrameId::LeadArtist, artist}, {FrameId::Title, title}}, 1000, 1}));
    }
    // What the view shows: a track's title, a playlist's name, "Random entry".
    static std::string TitleOf(const PlaylistItem& item) {
        if (item.Kind() == ItemKind::kTrack)
            return ExpandTrackTitle(static_cast<const TrackItem&>(item).Track(), "%LEADARTIST% - %TITLE%");
        if (item.Kind() == ItemKind::kPlaylist) return item.Body();
        return "Random entry";
    }
    int Search(int focused, const std::string& text, bool caseSensitive) const {
        return FindRow(main_, FirstRowToSearch(focused, main_.RowCount()), text, caseSensitive, TitleOf);
    }

    Playlist main_;
};

TEST_F(Find, Rows) {
    const struct {
        int focused;
        const char* text;
        bool caseSensitive;
        int expected;
    } cases[] = {
        {-1, "JAZZ", false, 0},   // no focus: from the first row
        {-1, "JAZZ", true, -1},   // the titles say "jazz" (and no file name has it but one directory)
        {-1, "jazz", true, 0},
        {0, "jazz", false, 4},    // from the row after the focused one
        {4, "jazz", false, 0},    // past the last row the search wraps round
        {2, "Acid", true, 4},
        {4, "Blue", false, 2},
        {2, "Blue", false, 2},    // the only match is the focused row: found again after a full round
        {-1, "road trip", false, 1},  // a nested playlist by its name
        {-1, "take_two", false, 2},   // a track by its file name
        {-1, ".MP3", false, 0},
        {-1, "music", false, -1},     // not by its directory
        {-1, "jazz-less", false, -1},
        {-1, "monk", false, 3},       // a random entry by its expression
        {-1, "Random entry", true, 3},
        {-1, "", false, 0},
        {3, "", false, 4},
        {-1, "nowhere", false, -1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Search(c.focused, c.text, c.caseSensitive), c.expected)
            << "\"" << c.text << "\" after row " << c.focused << (c.caseSensitive ? " (case)" : "");
}

TEST_F(Find, StartRowsOutsideTheTreeStartAtTheTop) {
    EXPECT_EQ(FirstRowToSearch(-1, 5), 0);
    EXPECT_EQ(FirstRowToSearch(0, 5), 1);
    EXPECT_EQ(FirstRowToSearch(4, 5), 0);
    EXPECT_EQ(FirstRowToSearch(17, 5), 0);
    EXPECT_EQ(FindRow(main_, 99, "Ann", false, TitleOf), 0);
    EXPECT_EQ(FindRow(main_, -7, "Cy", false, TitleOf), 4);
}

TEST_F(Find, AnEmptyPlaylistFindsNothing) {
    const Playlist empty;
    EXPECT_EQ(FindRow(empty, 0, "", false, TitleOf), -1);
    EXPECT_EQ(FindRow(empty, FirstRowToSearch(-1, 0), "a", true, TitleOf), -1);
}

TEST(FindMessage, QuotesTheSearchText) {
    EXPECT_EQ(CannotFindMessage("Blue Train"), "Cannot find the string \"Blue Train\".");
    EXPECT_EQ(CannotFindMessage(""), "Cannot find the string \"\".");
}

}  // namespace
}  // namespace verdin
