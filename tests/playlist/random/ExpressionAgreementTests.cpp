// The compiled form must answer exactly as the evaluator that re-reads the text, for any
// text. Texts here are made from the pieces expressions are built of, shuffled together
// by a seeded generator, so that odd shapes (stray parentheses, connectors without
// blanks, cut-off quotes) come up in great numbers.
#include "playlist/random/CompiledExpression.h"
#include "playlist/random/EvaluateExpression.h"

#include "TrackFixtures.h"

#include <gtest/gtest.h>

#include "Files.h"

#include <array>
#include <filesystem>
#include <random>
#include <string>

namespace verdin {
namespace {

constexpr std::array<const char*, 30> kPieces{
    "(",    ")",   " ",         "  ",          "&&",       "|",        "&",      "or",   "YEAR",    "DURATION",
    "year", "TRACKNUM", "LEADARTIST", "CONTENTTYPE", "FILEBODY", "FILEPATH", "ARTIST", "=",    "!=",      "~",
    "!~",   "<",   ">=",        "<=",          "\"jazz\"", "\"",       "1959",   "300",  "\tx",     "Brubeck",
};

std::string RandomText(std::mt19937& random) {
    std::uniform_int_distribution<int> length(0, 24);
    std::uniform_int_distribution<size_t> piece(0, kPieces.size() - 1);
    std::string text;
    for (int n = length(random); n > 0; --n) text += kPieces[piece(random)];
    return text;
}

std::vector<std::unique_ptr<TrackRecord>> Tracks() {
    std::vector<std::unique_ptr<TrackRecord>> tracks;
    tracks.push_back(test::MakeTrack({"/music/Jazz/Take Five.mp3",
                                      {{FrameId::LeadArtist, "Dave Brubeck"},
                                       {FrameId::ContentType, "Acid Jazz"},
                                       {FrameId::Year, "1959"},
                                       {FrameId::TrackNum, "3"}},
                                      299'900,
                                      4'800'000}));
    tracks.push_back(test::MakeTrack({"/music/x/jazz.mp3", {{FrameId::Year, "300"}}, 300'000, 300}));
    tracks.push_back(test::MakeTrack({"noise", {}, 0, 0}));
    return tracks;
}

TEST(ExpressionAgreement, CompiledAndReReadingAnswerAlikeOnGeneratedTexts) {
    const auto tracks = Tracks();
    std::mt19937 random(20240611);
    int trueAnswers = 0;
    int falseAnswers = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = RandomText(random);
        const CompiledExpression compiled(text);
        for (const auto& track : tracks) {
            const bool expected = EvaluateExpression(*track, text);
            ASSERT_EQ(compiled.Matches(*track), expected) << "[" << text << "] on " << track->Body();
            (expected ? trueAnswers : falseAnswers)++;
        }
    }
    // The texts must exercise both answers, or the comparison proves little.
    EXPECT_GT(trueAnswers, 2000);
    EXPECT_GT(falseAnswers, 2000);
}

// The fuzz target's seed corpus, among them inputs the fuzzer found.
TEST(ExpressionAgreement, CompiledAndReReadingAnswerAlikeOnTheFuzzCorpus) {
    const auto tracks = Tracks();
    const std::filesystem::path corpus = std::filesystem::path(VERDIN_TEST_SOURCE_DIR) / "fuzz/expression/corpus";
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(corpus)) {
        const std::string input = test::ReadFile(entry.path().string());
        const std::string text = input.substr(0, input.find('\xFF'));
        const CompiledExpression compiled(text);
        for (const auto& track : tracks)
            EXPECT_EQ(compiled.Matches(*track), EvaluateExpression(*track, text)) << entry.path().filename();
        ++files;
    }
    EXPECT_GE(files, 10);
}

}  // namespace
}  // namespace verdin
