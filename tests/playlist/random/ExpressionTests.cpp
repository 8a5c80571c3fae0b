// Random-entry expressions, one line per case: the text, the track, the answer. Every case
// is answered by both evaluators (the one that re-reads the text and the compiled form).
#include "playlist/random/CompiledExpression.h"
#include "playlist/random/EvaluateExpression.h"

#include "TrackFixtures.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace verdin {
namespace {

using test::MakeTrack;

enum Track { kJazz, kBlues, kUntagged, kMiles, kHewitt, kGould, kLong };

const TrackRecord& TrackOf(Track which) {
    static const std::map<Track, std::unique_ptr<TrackRecord>> tracks = [] {
        std::map<Track, std::unique_ptr<TrackRecord>> t;
        t[kJazz] = MakeTrack({"/music/Jazz/Take Five.mp3",
                              {{FrameId::LeadArtist, "Dave Brubeck Quartet"},
                               {FrameId::Title, "Take Five"},
                               {FrameId::ContentType, "Acid Jazz"},
                               {FrameId::Year, "1959"},
                               {FrameId::Composer, "Paul Desmond"},
                               {FrameId::TrackNum, "3/12"}},
                              299'900,
                              4'800'000});
        // Genre 0 reads "Blues " with its trailing blank.
        t[kBlues] = MakeTrack({"/music/Blues/Mannish Boy.mp3",
                               {{FrameId::LeadArtist, "Muddy Waters"},
                                {FrameId::ContentType, "(0)"},
                                {FrameId::Year, "1977"}},
                               300'000,
                               7'000'000});
        t[kUntagged] = MakeTrack({"/music/misc/noise.wav", {}, 5'000, 1'000});
        t[kMiles] = MakeTrack({"/music/Jazz/So What.mp3",
                               {{FrameId::LeadArtist, "Miles Davis"}, {FrameId::Composer, "Miles Davis"}},
                               545'000,
                               9'000'000});
        t[kHewitt] = MakeTrack({"/music/Classical/Aria.flac",
                                {{FrameId::LeadArtist, "Angela Hewitt"}, {FrameId::Composer, "J. S. Bach"}},
                                200'000,
                                20'000'000});
        t[kGould] = MakeTrack({"/music/Classical/Aria 1955.flac",
                               {{FrameId::LeadArtist, "Glenn Gould"}, {FrameId::Composer, "J. S. Bach"}},
                               110'000,
                               10'000'000});
        // Texts longer than the 255 characters a comparison looks at.
        t[kLong] = MakeTrack({"/music/" + std::string(300, 'b') + "tail.mp3",
                              {{FrameId::LeadArtist, std::string(254, 'a') + "XYZ"}},
                              1'000,
                              1'000});
        return t;
    }();
    return *tracks.at(which);
}

struct Case {
    std::string text;
    Track track;
    bool expected;
};

void ExpectBoth(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        const TrackRecord& track = TrackOf(c.track);
        EXPECT_EQ(EvaluateExpression(track, c.text), c.expected) << "re-reading: [" << c.text << "] on " << track.Body();
        EXPECT_EQ(CompiledExpression(c.text).Matches(track), c.expected)
            << "compiled: [" << c.text << "] on " << track.Body();
    }
}

TEST(Expression, EmptyAndBlankTexts) {
    ExpectBoth({
        {"", kJazz, true},
        {"", kUntagged, true},
        {"   ", kJazz, false},  // a comparison with an empty name
        {"()", kJazz, true},    // an empty group sets no requirement either
        {"( )", kJazz, false},
        {"(()) && (YEAR = 1959)", kJazz, true},
    });
}

TEST(Expression, IntegerComparisons) {
    ExpectBoth({
        {"(DURATION < 300)", kJazz, true},  // 299.9 s is 299 whole seconds
        {"(DURATION < 300)", kBlues, false},
        {"(DURATION = 299)", kJazz, true},
        {"DURATION < 300", kJazz, true},  // a bare comparison needs no parentheses
        {"(YEAR = 1959)", kJazz, true},
        {"(YEAR != 1959)", kJazz, false},
        {"(YEAR > 1958)", kJazz, true},
        {"(YEAR > 1959)", kJazz, false},
        {"(YEAR >= 1959)", kJazz, true},
        {"(YEAR <= 1958)", kJazz, false},
        {"(YEAR < 1960)", kJazz, true},
        {"(YEAR > -5)", kJazz, true},
        {"(YEAR = +1959)", kJazz, true},
        {"(YEAR = 1959abc)", kJazz, true},  // leading digits only
        {"(YEAR = \"1959\")", kJazz, true},
        {"(YEAR = abc)", kUntagged, true},  // no digits: 0, and a missing frame is 0
        {"(YEAR < 1970)", kUntagged, true},
        {"(TRACKNUM = 3)", kJazz, true},  // "3/12"
        {"(FILESIZE > 4000000)", kJazz, true},
        {"(FILESIZE = 1000)", kUntagged, true},
        {"(year = 1959)", kJazz, true},  // variable names ignore case
        {"(Duration < 300)", kJazz, true},
    });
}

TEST(Expression, StringComparisons) {
    ExpectBoth({
        {"(CONTENTTYPE ~ \"jazz\")", kJazz, true},
        {"(CONTENTTYPE = \"ACID JAZZ\")", kJazz, true},
        {"(CONTENTTYPE != \"acid jazz\")", kJazz, false},
        {"(CONTENTTYPE !~ \"JAZZ\")", kJazz, false},
        {"(CONTENTTYPE !~ \"Blues\")", kJazz, true},
        {"(CONTENTTYPE = \"Blues\")", kBlues, false},  // the genre name keeps its blank
        {"(CONTENTTYPE = \"Blues \")", kBlues, true},
        {"(CONTENTTYPE ~ blues)", kBlues, true},
        {"(LEADARTIST ~ \"Brubeck\")", kJazz, true},
        {"(LEADARTIST = Muddy Waters)", kBlues, true},  // blanks inside VALUE are kept
        {"(FILEPATH ~ \"/jazz/\")", kJazz, true},
        {"(FILEPATH = \"/music/Jazz/\")", kJazz, true},
        {"(FILEBODY = \"take five\")", kJazz, true},
        {"(FILEBODY ~ \".mp3\")", kJazz, false},  // the body has no extension
        {"(LEADARTIST < \"Z\")", kJazz, false},   // not a string operator
        {"(LEADARTIST >= \"A\")", kJazz, false},
        {"(COMPOSER < 1)", kJazz, false},
        {"(COMPOSER < 1)", kUntagged, true},  // an empty string compares as the integer 0
        {"(LEADARTIST = 0)", kUntagged, true},
        {"(FILEBODY ~ \"tail\")", kLong, false},  // beyond the 255 characters compared
        {"(FILEBODY ~ \"bbbb\")", kLong, true},
        {"(LEADARTIST ~ \"aX\")", kLong, true},  // characters 254 and 255 are still there
        {"(LEADARTIST ~ \"XY\")", kLong, false},
    });
}

TEST(Expression, ValueQuotes) {
    ExpectBoth({
        {"(LEADARTIST = \"\")", kJazz, false},  // two quotes alone: the empty string
        {"(LEADARTIST != \"\")", kJazz, true},
        {"(LEADARTIST ~ \"\")", kJazz, true},
        {"(LEADARTIST = \")", kUntagged, true},  // one quote: empty too, compared as 0 = 0
        {"(LEADARTIST ~ \"Brubeck)", kJazz, true},  // opened, never closed: "Brubec"
        {"(LEADARTIST = \"Muddy Waters)", kBlues, false},  // "Muddy Water"
        {"(LEADARTIST = \"Muddy Watersx)", kBlues, true},
        {"(LEADARTIST = \"Muddy Waters\" )", kBlues, false},  // the last character goes, not the quote
        {"(LEADARTIST = 'Muddy Waters')", kBlues, false},     // single quotes are plain characters
    });
}

TEST(Expression, OperatorsAsRead) {
    ExpectBoth({
        {"(YEAR == 1959)", kJazz, false},
        {"(YEAR =< 1959)", kJazz, false},
        {"(YEAR <> 1959)", kJazz, false},
        {"(YEAR <=> 1959)", kJazz, true},  // "<=" read, the rest of the word skipped
        {"(YEAR =1959)", kJazz, false},    // the value is skipped with the operator: 1959 = 0
        {"(YEAR =1959)", kUntagged, true},
        {"(YEAR ~ 19)", kJazz, false},  // not an integer operator
        {"(YEAR !~ 19)", kJazz, false},
        {"(YEAR 1959)", kJazz, false},  // no operator
        {"(YEAR)", kJazz, false},
        {"(LEADARTIST)", kJazz, false},
        {"(LEADARTIST ~)", kJazz, true},  // no value: the empty string is in every text
    });
}

TEST(Expression, NamesAndBlanks) {
    ExpectBoth({
        {"( DURATION < 300)", kJazz, false},  // no blank may follow "("
        {"( DURATION < 300)", kUntagged, false},
        {"  (YEAR = 1959)", kJazz, true},  // blanks before a compound are fine
        {"  YEAR = 1959", kJazz, false},   // but not before a comparison
        {"(YEAR\t=\t1959)", kJazz, false},  // a tab is not a blank
        {"(ARTIST ~ \"Dave\")", kJazz, false},  // not a frame name
        {"(ARTIST != 1)", kJazz, false},        // unknown variables are false whatever the operator
        {"(NOFRAME = 0)", kJazz, true},        // the table's first name: a frame with no value
        {"(YEAR   =   1959)", kJazz, true},
    });
}

TEST(Expression, CompoundsWithoutPrecedence) {
    ExpectBoth({
        // (A) && (B) | (C) with A false and C true
        {"(YEAR = 1900) && (DURATION > 0) | (DURATION > 0)", kJazz, false},
        // (A) | (B) && (C): A true, B false, C true / C false
        {"(YEAR = 1959) | (YEAR = 1900) && (DURATION > 0)", kJazz, true},
        {"(YEAR = 1959) | (YEAR = 1900) && (DURATION > 1000)", kJazz, false},
        {"(YEAR = 1900) | (YEAR = 1959)", kJazz, true},
        {"(YEAR = 1900) | (YEAR = 1901)", kJazz, false},
        {"(YEAR = 1959) && (DURATION > 0) && (FILESIZE > 0)", kJazz, true},
        {"((YEAR > 1950) && (YEAR < 1960)) | (LEADARTIST ~ \"Muddy\")", kJazz, true},
        {"((YEAR > 1950) && (YEAR < 1960)) | (LEADARTIST ~ \"Muddy\")", kBlues, true},
        {"((YEAR > 1950) && (YEAR < 1960)) | (LEADARTIST ~ \"Muddy\")", kUntagged, false},
    });
}

TEST(Expression, Connectors) {
    ExpectBoth({
        {"(YEAR = 1959) & (DURATION < 1)", kJazz, false},  // only the first character counts
        {"(YEAR = 1959) &| (DURATION < 1)", kJazz, false},
        {"(YEAR = 1900) || (DURATION > 1)", kJazz, true},
        {"(YEAR = 1900) |& (DURATION > 1)", kJazz, true},
        {"(YEAR = 1959) and (DURATION < 1)", kJazz, true},  // another character: the group is ignored
        {"(YEAR = 1900) or (DURATION > 1)", kJazz, false},
        {"(YEAR = 1959) + (YEAR = 1900) && (DURATION > 1)", kJazz, true},
        // Without a blank the connector's word runs to the end: no group follows it.
        {"(YEAR = 1959)&&(DURATION > 1000)", kJazz, false},
        {"(YEAR = 1959)||(DURATION > 1000)", kJazz, true},
        {"(YEAR = 1959) &&", kJazz, false},
        {"(YEAR = 1959) |", kJazz, true},
        {"(YEAR = 1959)(YEAR = 1900)", kJazz, true},  // "(" as a connector: ignored
    });
}

TEST(Expression, MalformedGroups) {
    ExpectBoth({
        {"(YEAR = 1959) && DURATION < 1000", kJazz, false},  // a group without "(" is false
        {"(YEAR = 1959) | DURATION < 1000", kJazz, true},
        {"(YEAR = 1977) | DURATION > 0", kJazz, false},
        {"(YEAR = 1959", kJazz, true},  // unbalanced: the group runs to the end
        {"((YEAR = 1959)", kJazz, true},
        {"((YEAR = 1959) && (YEAR = 1900)", kJazz, false},
        {"(YEAR = 1959))", kJazz, true},  // the stray ")" is an ignored connector
        {"(", kJazz, true},               // "(" alone: an empty group
        {")(", kJazz, false},             // a comparison named ")("
        {"(YEAR = 1959) && ((", kJazz, true},
        {"(YEAR = 1959) && (()", kJazz, true},
    });
}

TEST(Expression, TheDialogsExamples) {
    const std::string blues = "((CONTENTTYPE ~ \"Blues\") | (CONTENTTYPE ~ \"Jazz\")) && (YEAR < 1970)";
    const std::string davis = "(DURATION > 300) && ((LEADARTIST ~ \"Davis\") | (COMPOSER ~ \"Ellington\"))";
    const std::string bach = "(COMPOSER ~ \"Bach\") && (LEADARTIST !~ \"Gould\") && (DURATION < 600)";
    ExpectBoth({
        {blues, kJazz, true},
        {blues, kBlues, false},  // 1977
        {blues, kUntagged, false},
        {davis, kMiles, true},
        {davis, kJazz, false},
        {bach, kHewitt, true},
        {bach, kGould, false},
        {bach, kMiles, false},
    });
}

TEST(Expression, DeepNestingAndEmbeddedNul) {
    const auto nested = [](int depth) {
        return std::string(static_cast<size_t>(depth), '(') + "YEAR = 1959" + std::string(static_cast<size_t>(depth), ')');
    };
    ExpectBoth({
        {nested(10), kJazz, true},
        {nested(64), kJazz, true},
        {nested(66), kJazz, false},  // deeper than any expression needs: false, not a crash
        {nested(20000), kJazz, false},
        {std::string("(YEAR = 1959)\0 && (YEAR = 0)", 28), kJazz, true},  // a C text ends at NUL
        {std::string("\0(YEAR = 0)", 11), kJazz, true},
    });
}

}  // namespace
}  // namespace verdin
