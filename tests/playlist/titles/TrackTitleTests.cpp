// The track title template, one line per case: template, track, expected title.
#include "playlist/titles/DurationText.h"
#include "playlist/titles/TemplateExpansion.h"
#include "playlist/titles/TrackTitle.h"

#include "TrackFixtures.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

using test::MakeTrack;

TEST(DurationText, MinutesThenHours) {
    const struct {
        int64_t seconds;
        const char* text;
    } cases[] = {
        {0, "0:00"},       {7, "0:07"},         {60, "1:00"},          {299, "4:59"},
        {3599, "59:59"},   {3600, "1:00:00"},   {3661, "1:01:01"},     {36000, "10:00:00"},
        {172800, "48:00:00"}, {4294967, "1193:02:47"},
    };
    for (const auto& c : cases) EXPECT_EQ(FormatDuration(c.seconds), c.text) << c.seconds;
}

TEST(TrackTitle, Template) {
    const auto tagged = MakeTrack({"/music/Jazz/take_five.mp3",
                                   {{FrameId::LeadArtist, "Dave Brubeck"},
                                    {FrameId::Title, "Take Five"},
                                    {FrameId::ContentType, "(125)"},
                                    {FrameId::Year, "1959"}},
                                   324'000,
                                   1000,
                                   "Suggested by the module"});
    const auto untagged = MakeTrack({"/music/misc/noise.wav", {}, 1000, 10, "noise (plug-in title)"});
    const auto noSuggestion = MakeTrack({"/music/misc/silence.wav", {}, 1000, 10, ""});
    const struct {
        const char* pattern;
        const TrackRecord* track;
        std::string expected;
    } cases[] = {
        {"%LEADARTIST% - %TITLE%", tagged.get(), "Dave Brubeck - Take Five"},
        {"%TITLE% (%YEAR%)", tagged.get(), "Take Five (1959)"},
        {"%CONTENTTYPE%|", tagged.get(), "Dance Hall |"},  // genre names keep their blank
        {"%path%|%body%|%ext%", tagged.get(), "/music/Jazz/|take_five|.mp3"},
        {"%sugtitle%", tagged.get(), "Suggested by the module"},
        {"%COMPOSER%[]", tagged.get(), "[]"},               // a frame the tag lacks: empty
        {"%NOFRAME%.", tagged.get(), "."},
        {"100%% %TITLE%", tagged.get(), "100% Take Five"},
        {"%leadartist%", tagged.get(), "%leadartist%"},     // frame names are exact
        {"%ARTIST% x", tagged.get(), "%ARTIST% x"},          // not a frame
        {"%title%", tagged.get(), "%title%"},               // a window-title variable
        {"%dur%", tagged.get(), "%dur%"},
        {"by %LEADARTIST", tagged.get(), "by Dave Brubeck"},  // cut off by the end
        {"by %NOPE", tagged.get(), "by %NOPE%"},
        {"50%", tagged.get(), "50%%"},                       // an empty name, written back
        {"%%%%", tagged.get(), "%%"},
        {"%%TITLE%%", tagged.get(), "%TITLE%"},
        {"", tagged.get(), ""},
        // Without a tag the template is not used: the module's title stands.
        {"%LEADARTIST% - %TITLE%", untagged.get(), "noise (plug-in title)"},
        {"%body%", untagged.get(), "noise (plug-in title)"},
        {"%LEADARTIST% - %TITLE%", noSuggestion.get(), ""},
    };
    for (const auto& c : cases) EXPECT_EQ(ExpandTrackTitle(*c.track, c.pattern), c.expected) << c.pattern;
}

TEST(TrackTitle, ResultsStopAtTheBufferSize) {
    const auto track = MakeTrack({"/m/x.mp3", {{FrameId::Title, std::string(200, 't')}}, 0, 0});
    const struct {
        std::string pattern;
        std::string expected;
    } cases[] = {
        {std::string(600, 'x'), std::string(kTemplateResultLimit, 'x')},
        {std::string(511, 'x'), std::string(511, 'x')},
        // The third title crosses the limit and is cut there.
        {"%TITLE%%TITLE%%TITLE%", std::string(kTemplateResultLimit, 't')},
        {std::string(500, '.') + "%TITLE%", std::string(500, '.') + std::string(11, 't')},
    };
    for (const auto& c : cases) EXPECT_EQ(ExpandTrackTitle(*track, c.pattern), c.expected) << c.pattern.size();
    EXPECT_EQ(kTemplateResultLimit, 511u);  // a 512-byte buffer with its terminating zero
}

TEST(TrackTitle, ATemplateEndsAtNul) {
    const auto track = MakeTrack({"/m/x.mp3", {{FrameId::Title, "T"}}, 0, 0});
    EXPECT_EQ(ExpandTrackTitle(*track, std::string("%TITLE%\0%TITLE%", 15)), "T");
}

}  // namespace
}  // namespace verdin
