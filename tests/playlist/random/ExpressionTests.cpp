// Random-entry expressions, one row per case: the text, the track, the answer.
#include "playlist/random/CompiledExpression.h"

#include "PlaylistFixtures.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

enum Track { kJazz, kBlues, kUntagged, kMiles, kHewitt, kGould, kLong };

TEST(Expression, Answers) {
    using test::MakeTrack;
    std::vector<std::unique_ptr<TrackRecord>> tracks;
    tracks.push_back(MakeTrack({"/music/Jazz/Take Five.mp3",
                                {{FrameId::LeadArtist, "Dave Brubeck Quartet"}, {FrameId::Title, "Take Five"},
                                 {FrameId::ContentType, "Acid Jazz"}, {FrameId::Year, "1959"},
                                 {FrameId::Composer, "Paul Desmond"}, {FrameId::TrackNum, "3/12"}},
                                299'900, 4'800'000}));
    tracks.push_back(MakeTrack({"/music/Blues/Mannish Boy.mp3",  // genre 0 reads "Blues " with its blank
                                {{FrameId::LeadArtist, "Muddy Waters"}, {FrameId::ContentType, "(0)"}, {FrameId::Year, "1977"}},
                                300'000, 7'000'000}));
    tracks.push_back(MakeTrack({"/music/misc/noise.wav", {}, 5'000, 1'000}));
    tracks.push_back(MakeTrack({"/music/Jazz/So What.mp3", {{FrameId::LeadArtist, "Miles Davis"}, {FrameId::Composer, "Miles Davis"}}, 545'000, 9'000'000}));
    tracks.push_back(MakeTrack({"/music/Classical/Aria.flac", {{FrameId::LeadArtist, "Angela Hewitt"}, {FrameId::Composer, "J. S. Bach"}}, 200'000, 1}));
    tracks.push_back(MakeTrack({"/music/Classical/Aria 1955.flac", {{FrameId::LeadArtist, "Glenn Gould"}, {FrameId::Composer, "J. S. Bach"}}, 110'000, 1}));
    // Texts longer than the 255 characters a comparison looks at.
    tracks.push_back(MakeTrack({"/music/" + std::string(300, 'b') + "tail.mp3", {{FrameId::LeadArtist, std::string(254, 'a') + "XYZ"}}, 1'000, 1'000}));
    const auto nested = [](size_t depth) { return std::string(depth, '(') + "YEAR = 1959" + std::string(depth, ')'); };
    const std::string blues = "((CONTENTTYPE ~ \"Blues\") | (CONTENTTYPE ~ \"Jazz\")) && (YEAR < 1970)";  // the dialog's examples
    const std::string davis = "(DURATION > 300) && ((LEADARTIST ~ \"Davis\") | (COMPOSER ~ \"Ellington\"))";
    const std::string bach = "(COMPOSER ~ \"Bach\") && (LEADARTIST !~ \"Gould\") && (DURATION < 600)";
    const struct {
        std::string text;
        Track track;
        bool expected;
    } cases[] = {
        // Empty texts and groups set no requirement; a blank text is a comparison without a name.
        {"", kJazz, true}, {"", kUntagged, true}, {"   ", kJazz, false}, {"()", kJazz, true}, {"( )", kJazz, false},
        {"(()) && (YEAR = 1959)", kJazz, true},
        // Integers: whole seconds, leading digits, a missing frame or no digits is 0, names ignore case.
        {"(DURATION < 300)", kJazz, true}, {"(DURATION < 300)", kBlues, false}, {"(DURATION = 299)", kJazz, true},
        {"DURATION < 300", kJazz, true}, {"(YEAR = 1959)", kJazz, true}, {"(YEAR != 1959)", kJazz, false},
        {"(YEAR > 1958)", kJazz, true}, {"(YEAR > 1959)", kJazz, false}, {"(YEAR >= 1959)", kJazz, true},
        {"(YEAR <= 1958)", kJazz, false}, {"(YEAR < 1960)", kJazz, true}, {"(YEAR > -5)", kJazz, true},
        {"(YEAR = +1959)", kJazz, true}, {"(YEAR = 1959abc)", kJazz, true}, {"(YEAR = \"1959\")", kJazz, true},
        {"(YEAR = abc)", kUntagged, true}, {"(YEAR < 1970)", kUntagged, true}, {"(TRACKNUM = 3)", kJazz, true},
        {"(FILESIZE > 4000000)", kJazz, true}, {"(FILESIZE = 1000)", kUntagged, true}, {"(year = 1959)", kJazz, true},
        {"(Duration < 300)", kJazz, true},
        // Strings: case-blind, genre names with their blank, only the first 255 characters.
        {"(CONTENTTYPE ~ \"jazz\")", kJazz, true}, {"(CONTENTTYPE = \"ACID JAZZ\")", kJazz, true},
        {"(CONTENTTYPE != \"acid jazz\")", kJazz, false}, {"(CONTENTTYPE !~ \"JAZZ\")", kJazz, false},
        {"(CONTENTTYPE !~ \"Blues\")", kJazz, true}, {"(CONTENTTYPE = \"Blues\")", kBlues, false},
        {"(CONTENTTYPE = \"Blues \")", kBlues, true}, {"(CONTENTTYPE ~ blues)", kBlues, true},
        {"(LEADARTIST ~ \"Brubeck\")", kJazz, true}, {"(LEADARTIST = Muddy Waters)", kBlues, true},
        {"(FILEPATH ~ \"/jazz/\")", kJazz, true}, {"(FILEPATH = \"/music/Jazz/\")", kJazz, true},
        {"(FILEBODY = \"take five\")", kJazz, true}, {"(FILEBODY ~ \".mp3\")", kJazz, false},
        {"(LEADARTIST < \"Z\")", kJazz, false}, {"(LEADARTIST >= \"A\")", kJazz, false},  // not string operators
        {"(COMPOSER < 1)", kJazz, false}, {"(COMPOSER < 1)", kUntagged, true}, {"(LEADARTIST = 0)", kUntagged, true},
        {"(FILEBODY ~ \"tail\")", kLong, false}, {"(FILEBODY ~ \"bbbb\")", kLong, true},
        {"(LEADARTIST ~ \"aX\")", kLong, true}, {"(LEADARTIST ~ \"XY\")", kLong, false},
        // Quotes: two alone are the empty string; an unclosed one loses the last character.
        {"(LEADARTIST = \"\")", kJazz, false}, {"(LEADARTIST != \"\")", kJazz, true}, {"(LEADARTIST ~ \"\")", kJazz, true},
        {"(LEADARTIST = \")", kUntagged, true}, {"(LEADARTIST ~ \"Brubeck)", kJazz, true},
        {"(LEADARTIST = \"Muddy Waters)", kBlues, false}, {"(LEADARTIST = \"Muddy Watersx)", kBlues, true},
        {"(LEADARTIST = \"Muddy Waters\" )", kBlues, false}, {"(LEADARTIST = 'Muddy Waters')", kBlues, false},
        // Operators as read: a word of operator characters, its value after a blank.
        {"(YEAR == 1959)", kJazz, false}, {"(YEAR =< 1959)", kJazz, false}, {"(YEAR <> 1959)", kJazz, false},
        {"(YEAR <=> 1959)", kJazz, true}, {"(YEAR =1959)", kJazz, false}, {"(YEAR =1959)", kUntagged, true},
        {"(YEAR ~ 19)", kJazz, false}, {"(YEAR !~ 19)", kJazz, false}, {"(YEAR 1959)", kJazz, false},
        {"(YEAR)", kJazz, false}, {"(LEADARTIST)", kJazz, false}, {"(LEADARTIST ~)", kJazz, true},
        // Names and blanks: none may follow "(", tabs are no blanks, unknown names are false.
        {"( DURATION < 300)", kJazz, false}, {"  (YEAR = 1959)", kJazz, true}, {"  YEAR = 1959", kJazz, false},
        {"(YEAR\t=\t1959)", kJazz, false}, {"(ARTIST ~ \"Dave\")", kJazz, false}, {"(ARTIST != 1)", kJazz, false},
        {"(NOFRAME = 0)", kJazz, true}, {"(YEAR   =   1959)", kJazz, true},
        // Compounds from left to right without precedence; only a connector's first character counts.
        {"(YEAR = 1900) && (DURATION > 0) | (DURATION > 0)", kJazz, false},
        {"(YEAR = 1959) | (YEAR = 1900) && (DURATION > 0)", kJazz, true},
        {"(YEAR = 1959) | (YEAR = 1900) && (DURATION > 1000)", kJazz, false},
        {"(YEAR = 1900) | (YEAR = 1959)", kJazz, true}, {"(YEAR = 1900) | (YEAR = 1901)", kJazz, false},
        {"(YEAR = 1959) && (DURATION > 0) && (FILESIZE > 0)", kJazz, true},
        {"((YEAR > 1950) && (YEAR < 1960)) | (LEADARTIST ~ \"Muddy\")", kBlues, true},
        {"((YEAR > 1950) && (YEAR < 1960)) | (LEADARTIST ~ \"Muddy\")", kUntagged, false},
        {"(YEAR = 1959) & (DURATION < 1)", kJazz, false}, {"(YEAR = 1959) &| (DURATION < 1)", kJazz, false},
        {"(YEAR = 1900) || (DURATION > 1)", kJazz, true}, {"(YEAR = 1900) |& (DURATION > 1)", kJazz, true},
        {"(YEAR = 1959) and (DURATION < 1)", kJazz, true}, {"(YEAR = 1900) or (DURATION > 1)", kJazz, false},
        {"(YEAR = 1959) + (YEAR = 1900) && (DURATION > 1)", kJazz, true},
        {"(YEAR = 1959)&&(DURATION > 1000)", kJazz, false},  // without a blank the connector runs to the end
        {"(YEAR = 1959)||(DURATION > 1000)", kJazz, true}, {"(YEAR = 1959) &&", kJazz, false},
        {"(YEAR = 1959) |", kJazz, true}, {"(YEAR = 1959)(YEAR = 1900)", kJazz, true},
        // Malformed groups: one without "(" is false, an unbalanced one runs to the end.
        {"(YEAR = 1959) && DURATION < 1000", kJazz, false}, {"(YEAR = 1959) | DURATION < 1000", kJazz, true},
        {"(YEAR = 1977) | DURATION > 0", kJazz, false}, {"(YEAR = 1959", kJazz, true}, {"((YEAR = 1959)", kJazz, true},
        {"((YEAR = 1959) && (YEAR = 1900)", kJazz, false}, {"(YEAR = 1959))", kJazz, true}, {"(", kJazz, true},
        {")(", kJazz, false}, {"(YEAR = 1959) && ((", kJazz, true}, {"(YEAR = 1959) && (()", kJazz, true},
        {blues, kJazz, true}, {blues, kBlues, false}, {blues, kUntagged, false}, {davis, kMiles, true},
        {davis, kJazz, false}, {bach, kHewitt, true}, {bach, kGould, false}, {bach, kMiles, false},
        // Deeper than any expression needs is false, not a crash; a C text ends at NUL.
        {nested(64), kJazz, true}, {nested(66), kJazz, false}, {nested(20000), kJazz, false},
        {std::string("(YEAR = 1959)\0 && (YEAR = 0)", 28), kJazz, true}, {std::string("\0(YEAR = 0)", 11), kJazz, true},
    };
    for (const auto& c : cases) {
        const CompiledExpression compiled(c.text);
        EXPECT_EQ(compiled.Matches(*tracks[c.track]), c.expected) << "[" << c.text << "] on " << tracks[c.track]->Body();
        EXPECT_EQ(compiled.Matches(*tracks[c.track]), c.expected) << "again: [" << c.text << "]";  // scratch reused
    }
}

}  // namespace
}  // namespace verdin
