// Picking a track for a random entry: the candidates, the draw and the pick history.
#include "playlist/ProcessRandom.h"
#include "playlist/RandomEntry.h"
#include "playlist/random/SampleSpace.h"

#include "TrackFixtures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace verdin {
namespace {

// Tracks a1..a3 are by "Alpha", b1..b2 by "Beta"; in this order in the space.
std::vector<std::unique_ptr<TrackRecord>> FiveTracks() {
    std::vector<std::unique_ptr<TrackRecord>> tracks;
    for (const char* name : {"a1", "b1", "a2", "a3", "b2"}) {
        const std::string artist = name[0] == 'a' ? "Alpha" : "Beta";
        tracks.push_back(test::MakeTrack({std::string("/music/") + name + ".mp3", {{FrameId::LeadArtist, artist}}, 1000, 10}));
    }
    return tracks;
}

class Picks : public ::testing::Test {
protected:
    void SetUp() override {
        space_.ReplaceTracks(FiveTracks());
        SeedProcessRandom(12345);
    }
    const TrackRecord* Pick(const std::string& expression, int vdpHistory) {
        RandomEntry entry(expression);
        return space_.Resolve(entry, vdpHistory);
    }
    std::string Body(const TrackRecord* track) const { return track->Body(); }
    std::vector<std::string> History() const {
        std::vector<std::string> out;
        for (const TrackRecord* t : space_.PickHistory()) out.push_back(t->Body());
        return out;
    }

    SampleSpace space_;
};

TEST_F(Picks, TheDrawIsTheNextRandomValueModuloTheCandidates) {
    // Candidates of "Alpha" in space order: a1, a2, a3.
    const std::vector<std::string> alpha{"a1", "a2", "a3"};
    for (unsigned seed : {1u, 2u, 77u, 4096u}) {
        std::srand(seed);
        const std::string expected = alpha[static_cast<size_t>(std::rand()) % alpha.size()];
        SeedProcessRandom(seed);
        SampleSpace space;
        space.ReplaceTracks(FiveTracks());
        RandomEntry entry("(LEADARTIST = Alpha)");
        EXPECT_EQ(space.Resolve(entry, 5)->Body(), expected) << "seed " << seed;
    }
}

TEST_F(Picks, HistoryZeroKeepsNothingBetweenPicks) {
    for (int i = 0; i < 10; ++i) {
        const TrackRecord* picked = Pick("(LEADARTIST = Alpha)", 0);
        EXPECT_EQ(picked->Tag().Find(FrameId::LeadArtist)->text, "Alpha");
        EXPECT_TRUE(space_.PickHistory().empty());
    }
}

TEST_F(Picks, HistoryTwoWithThreeMatchesCyclesThroughAll) {
    std::vector<std::string> picks;
    for (int i = 0; i < 30; ++i) {
        picks.push_back(Body(Pick("(LEADARTIST = Alpha)", 2)));
        EXPECT_LE(space_.PickHistory().size(), 2u);
        EXPECT_EQ(History().back(), picks.back());
    }
    // Any three picks in a row are three different tracks.
    for (size_t i = 0; i + 2 < picks.size(); ++i)
        EXPECT_EQ((std::set<std::string>{picks[i], picks[i + 1], picks[i + 2]}).size(), 3u) << "at pick " << i;
}

TEST_F(Picks, AllMatchesInTheHistoryGiveTheNullTrackAndClearIt) {
    const TrackRecord* first = Pick("(LEADARTIST = Beta)", 5);
    const TrackRecord* second = Pick("(LEADARTIST = Beta)", 5);
    EXPECT_NE(first, second);
    EXPECT_EQ(History(), (std::vector<std::string>{Body(first), Body(second)}));
    const TrackRecord* third = Pick("(LEADARTIST = Beta)", 5);
    EXPECT_TRUE(third->IsNullTrack());
    EXPECT_TRUE(space_.PickHistory().empty());
    // The history emptied, any match may come again.
    EXPECT_FALSE(Pick("(LEADARTIST = Beta)", 5)->IsNullTrack());
}

TEST_F(Picks, AnExpressionMatchingNothingAlwaysGivesTheNullTrack) {
    Pick("(LEADARTIST = Alpha)", 5);
    ASSERT_EQ(space_.PickHistory().size(), 1u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(Pick("(LEADARTIST = Gamma)", 5)->IsNullTrack());
        EXPECT_TRUE(space_.PickHistory().empty());
    }
}

TEST_F(Picks, OnlyOneOldestEntryLeavesAtATime) {
    Pick("", 10);
    Pick("", 10);
    Pick("", 10);
    const std::vector<std::string> before = History();
    ASSERT_EQ(before.size(), 3u);
    // The limit drops below the history's size: one entry goes per pick, the oldest.
    Pick("", 1);
    const std::vector<std::string> after = History();
    ASSERT_EQ(after.size(), 3u);
    EXPECT_EQ(after[0], before[1]);
    EXPECT_EQ(after[1], before[2]);
}

TEST_F(Picks, APickedEntryKeepsItsTrackUntilReset) {
    RandomEntry entry("(LEADARTIST = Alpha)");
    const TrackRecord* picked = space_.Resolve(entry, 0);
    EXPECT_TRUE(entry.Picked());
    SeedProcessRandom(99);
    const unsigned expectedNext = NextProcessRandom();
    SeedProcessRandom(99);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(space_.Resolve(entry, 0), picked);
    EXPECT_EQ(NextProcessRandom(), expectedNext);  // nothing was drawn for them

    entry.SetExpression("(LEADARTIST = Beta)");
    EXPECT_FALSE(entry.Picked());
    EXPECT_EQ(space_.Resolve(entry, 0)->Tag().Find(FrameId::LeadArtist)->text, "Beta");
    entry.Reset();
    EXPECT_FALSE(entry.Picked());
}

TEST_F(Picks, ReplacingTheTracksEmptiesTheHistory) {
    Pick("", 5);
    EXPECT_EQ(space_.PickHistory().size(), 1u);
    EXPECT_TRUE(space_.Valid());
    space_.ReplaceTracks({});
    EXPECT_TRUE(space_.PickHistory().empty());
    EXPECT_FALSE(space_.Valid());
    EXPECT_TRUE(Pick("", 5)->IsNullTrack());
}

}  // namespace
}  // namespace verdin
