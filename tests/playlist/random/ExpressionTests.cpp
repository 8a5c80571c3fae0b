// Random-entry expressions, one row per case: the text, the track, the answer.
#include "playlist/random/CompiledExpression.h"

#include "PlaylistFixtures.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

enum Track { kJazz, kBlues, kUntagged, kMiles, kHewitt, kGould, kLong };

TEST(Expression, Answers) {
    using F = FrameId;
    const test::TrackSpec specs[] = {
        {"/music/Jazz/Take Five.mp3", {{F::LeadArtist, "Dave Brubeck Quartet"}, {F::ContentType, "Acid Jazz"}, {F::Year, "1959"}, {F::TrackNum, "3/12"}}, 299'900, 4'800'000},
        {"/music/Blues/Mannish Boy.mp3", {{F::LeadArtist, "Muddy Waters"}, {F::ContentType, "(0)"}, {F::Year, "1977"}}, 300'000, 7'000'000},  // genre 0: "Blues "
        {"/music/misc/noise.wav", {}, 5'000, 1'000},
        {"/music/Jazz/So What.mp3", {{F::LeadArtist, "Miles Davis"}, {F::Composer, "Miles Davis"}}, 545'000, 9'000'000},
        {"/music/Classical/Aria.flac", {{F::LeadArtist, "Angela Hewitt"}, {F::Composer, "J. S. Bach"}}, 200'000, 1},
        {"/music/Classical/Aria 1955.flac", {{F::LeadArtist, "Glenn Gould"}, {F::Composer, "J. S. Bach"}}, 110'000, 1},
        {"/music/" + std::string(300, 'b') + "tail.mp3", {{F::LeadArtist, std::string(254, 'a') + "XYZ"}}, 1'000, 1'000},  // beyond the 255 characters compared
    };
    const auto nested = [](size_t depth) { return std::string(depth, '(') + "YEAR = 1959" + std::string(depth, ')'); };
    const std::string blues = "((CONTENTTYPE ~ \"Blues\") | (CONTENTTYPE ~ \"Jazz\")) && (YEAR < 1970)";  // the dialog's examples
    const std::string davis = "(DURATION > 300) && ((LEADARTIST ~ \"Davis\") | (COMPOSER ~ \"Ellington\"))";
    const std::string bach = "(COMPOSER ~ \"Bach\") && (LEADARTIST !~ \"Gould\") && (DURATION < 600)";
    const std::tuple<std::string, Track, bool> cases[] = {
        // Empty texts and groups set no requirement; a blank text is a comparison without a name.
        {"", kUntagged, true}, {"   ", kJazz, false}, {"()", kJazz, true}, {"( )", kJazz, false}, {"(()) && (YEAR = 1959)", kJazz, true},
        // Integers: whole seconds, leading digits, a missing frame or no digits is 0, names ignore case.
        {"(DURATION < 300)", kJazz, true}, {"(DURATION < 300)", kBlues, false}, {"(DURATION = 299)", kJazz, true}, {"DURATION < 300", kJazz, true}, {"(YEAR = 1959)", kJazz, true},
        {"(YEAR != 1959)", kJazz, false}, {"(YEAR > 1959)", kJazz, false}, {"(YEAR >= 1959)", kJazz, true}, {"(YEAR <= 1958)", kJazz, false}, {"(YEAR < 1960)", kJazz, true},
        {"(YEAR > -5)", kJazz, true}, {"(YEAR = +1959)", kJazz, true}, {"(YEAR = 1959abc)", kJazz, true}, {"(YEAR = \"1959\")", kJazz, true}, {"(YEAR = abc)", kUntagged, true},
        {"(TRACKNUM = 3)", kJazz, true}, {"(FILESIZE > 4000000)", kJazz, true}, {"(year = 1959)", kJazz, true},
        // Strings: case-blind, genre names with their blank, only the first 255 characters.
        {"(CONTENTTYPE ~ \"jazz\")", kJazz, true}, {"(CONTENTTYPE = \"ACID JAZZ\")", kJazz, true}, {"(CONTENTTYPE != \"acid jazz\")", kJazz, false},
        {"(CONTENTTYPE !~ \"JAZZ\")", kJazz, false}, {"(CONTENTTYPE !~ \"Blues\")", kJazz, true}, {"(CONTENTTYPE = \"Blues\")", kBlues, false},
        {"(CONTENTTYPE = \"Blues \")", kBlues, true}, {"(CONTENTTYPE ~ blues)", kBlues, true}, {"(LEADARTIST = Muddy Waters)", kBlues, true}, {"(FILEPATH ~ \"/jazz/\")", kJazz, true},
        {"(FILEPATH = \"/music/Jazz/\")", kJazz, true}, {"(FILEBODY = \"take five\")", kJazz, true}, {"(FILEBODY ~ \".mp3\")", kJazz, false}, {"(LEADARTIST < \"Z\")", kJazz, false},
        {"(LEADARTIST >= \"A\")", kJazz, false},  // not string operators
        {"(COMPOSER < 1)", kJazz, true}, {"(COMPOSER < 1)", kMiles, false}, {"(LEADARTIST = 0)", kUntagged, true}, {"(FILEBODY ~ \"tail\")", kLong, false},
        {"(FILEBODY ~ \"bbbb\")", kLong, true}, {"(LEADARTIST ~ \"aX\")", kLong, true}, {"(LEADARTIST ~ \"XY\")", kLong, false},
        // Quotes: two alone are the empty string; an unclosed one loses the last character.
        {"(LEADARTIST = \"\")", kJazz, false}, {"(LEADARTIST != \"\")", kJazz, true}, {"(LEADARTIST ~ \"\")", kJazz, true}, {"(LEADARTIST = \")", kUntagged, true},
        {"(LEADARTIST ~ \"Brubeck)", kJazz, true}, {"(LEADARTIST = \"Muddy Waters)", kBlues, false}, {"(LEADARTIST = \"Muddy Watersx)", kBlues, true},
        {"(LEADARTIST = \"Muddy Waters\" )", kBlues, false}, {"(LEADARTIST = 'Muddy Waters')", kBlues, false},
        // Operators as read: a word of operator characters, its value after a blank.
        {"(YEAR == 1959)", kJazz, false}, {"(YEAR =< 1959)", kJazz, false}, {"(YEAR <=> 1959)", kJazz, true}, {"(YEAR =1959)", kJazz, false}, {"(YEAR =1959)", kUntagged, true},
        {"(YEAR ~ 19)", kJazz, false}, {"(YEAR 1959)", kJazz, false}, {"(YEAR)", kJazz, false}, {"(LEADARTIST)", kJazz, false}, {"(LEADARTIST ~)", kJazz, true},
        // Names and blanks: none may follow "(", tabs are no blanks, unknown names are false.
        {"( DURATION < 300)", kJazz, false}, {"  (YEAR = 1959)", kJazz, true}, {"  YEAR = 1959", kJazz, false}, {"(YEAR\t=\t1959)", kJazz, false}, {"(ARTIST ~ \"Dave\")", kJazz, false},
        {"(ARTIST != 1)", kJazz, false}, {"(NOFRAME = 0)", kJazz, true}, {"(YEAR   =   1959)", kJazz, true},
        // Compounds from left to right without precedence; only a connector's first character counts.
        {"(YEAR = 1900) && (DURATION > 0) | (DURATION > 0)", kJazz, false}, {"(YEAR = 1959) | (YEAR = 1900) && (DURATION > 0)", kJazz, true},
        {"(YEAR = 1959) | (YEAR = 1900) && (DURATION > 1000)", kJazz, false}, {"(YEAR = 1900) | (YEAR = 1959)", kJazz, true}, {"(YEAR = 1900) | (YEAR = 1901)", kJazz, false},
        {"((YEAR > 1950) && (YEAR < 1960)) | (LEADARTIST ~ \"Muddy\")", kBlues, true}, {"((YEAR > 1950) && (YEAR < 1960)) | (LEADARTIST ~ \"Muddy\")", kUntagged, false},
        {"(YEAR = 1959) & (DURATION < 1)", kJazz, false}, {"(YEAR = 1900) |& (DURATION > 1)", kJazz, true}, {"(YEAR = 1959) and (DURATION < 1)", kJazz, true},
        {"(YEAR = 1900) or (DURATION > 1)", kJazz, false}, {"(YEAR = 1959) + (YEAR = 1900) && (DURATION > 1)", kJazz, true}, {"(YEAR = 1959)&&(DURATION > 1000)", kJazz, false},
        {"(YEAR = 1959)||(DURATION > 1000)", kJazz, true},  // without a blank the connector runs to the end
        {"(YEAR = 1959) &&", kJazz, false}, {"(YEAR = 1959) |", kJazz, true}, {"(YEAR = 1959)(YEAR = 1900)", kJazz, true},
        // Malformed groups: one without "(" is false, an unbalanced one runs to the end.
        {"(YEAR = 1959) && DURATION < 1000", kJazz, false}, {"(YEAR = 1959) | DURATION < 1000", kJazz, true}, {"(YEAR = 1977) | DURATION > 0", kJazz, false}, {"(YEAR = 1959", kJazz, true},
        {"((YEAR = 1959) && (YEAR = 1900)", kJazz, false}, {"(YEAR = 1959))", kJazz, true}, {"(", kJazz, true}, {")(", kJazz, false}, {"(YEAR = 1959) && ((", kJazz, true},
        {"(YEAR = 1959) && (()", kJazz, true}, {blues, kJazz, true}, {blues, kBlues, false}, {blues, kUntagged, false}, {davis, kMiles, true}, {davis, kJazz, false}, {bach, kHewitt, true},
        {bach, kGould, false},
        // Deeper than any expression needs is false, not a crash; a C text ends at NUL.
        {nested(64), kJazz, true}, {nested(66), kJazz, false}, {nested(20000), kJazz, false}, {std::string("(YEAR = 1959)\0 && (YEAR = 0)", 28), kJazz, true},
        {std::string("\0(YEAR = 0)", 11), kJazz, true},
    };
    for (const auto& [text, track, expected] : cases) {
        const auto record = test::MakeTrack(specs[track]);
        const CompiledExpression compiled(text);
        EXPECT_EQ(compiled.Matches(*record), expected) << "[" << text << "] on " << record->Body();
        EXPECT_EQ(compiled.Matches(*record), expected) << "again: [" << text << "]";  // scratch reused
    }
}

}  // namespace
}  // namespace verdin
