// Title templates, the status line and finding rows, one line per case: the template (or
// search), the player's state, the expected text (or row). The state comes from a tree:
//   row 0  track A  "Ann - Alpha"   125.7 s     /music/a/Alpha.mp3
//   row 1  playlist /lists/mix.m3u
//   row 2    track B  "Bob - Beta"  3599.5 s    /music/b/Beta.mp3
//   row 3    random entry (YEAR < 1970)
//   row 4  track D  (no tag; "Delta tone" from its module)  3600 s  /music/d/Delta.wav
#include "playlist/titles/FindRow.h"
#include "playlist/titles/StatusLine.h"
#include "playlist/titles/TemplateExpansion.h"
#include "playlist/titles/TrackTitle.h"
#include "playlist/titles/WindowTitle.h"

#include "PlaylistFixtures.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

using test::MakeTrack;

TEST(TrackTitle, ExpandsTheTemplateWhereTheTrackHasATag) {
    const auto tagged = MakeTrack({"/music/Jazz/take_five.mp3", {{FrameId::LeadArtist, "Dave Brubeck"}, {FrameId::Title, "Take Five"}, {FrameId::ContentType, "(125)"},
                                   {FrameId::Year, "1959"}}, 324'000, 1000, "Suggested by the module"});
    const auto untagged = MakeTrack({"/music/misc/noise.wav", {}, 1000, 10, "noise (plug-in title)"});
    const auto noSuggestion = MakeTrack({"/music/misc/silence.wav", {}, 1000, 10, ""});
    const auto longTitle = MakeTrack({"/m/x.mp3", {{FrameId::Title, std::string(200, 't')}}, 0, 0});
    const std::tuple<std::string, const TrackRecord*, std::string> cases[] = {  // template, track: title

        {"%LEADARTIST% - %TITLE%", tagged.get(), "Dave Brubeck - Take Five"}, {"%CONTENTTYPE%|", tagged.get(), "Dance Hall |"},  // genre names keep their blank
        {"%path%|%body%|%ext%|%sugtitle%", tagged.get(), "/music/Jazz/|take_five|.mp3|Suggested by the module"}, {"%COMPOSER%[]%NOFRAME%", tagged.get(), "[]"},  // frames the tag lacks: empty
        {"100%% %TITLE% (%YEAR%)", tagged.get(), "100% Take Five (1959)"}, {"%leadartist%|%ARTIST% x|%title%|%dur%", tagged.get(), "%leadartist%|%ARTIST% x|%title%|%dur%"},  // not here
        {"by %LEADARTIST", tagged.get(), "by Dave Brubeck"},  // cut off by the end
        {"by %NOPE", tagged.get(), "by %NOPE%"}, {"50%", tagged.get(), "50%%"},  // an empty name, written back
        {"%%%%", tagged.get(), "%%"}, {"%%TITLE%%", tagged.get(), "%TITLE%"}, {"", tagged.get(), ""}, {std::string("%TITLE%\0%TITLE%", 15), tagged.get(), "Take Five"},  // a template ends at NUL
        {"%LEADARTIST% - %TITLE%", untagged.get(), "noise (plug-in title)"},  // no tag: the module's title stands
        {"%body%", untagged.get(), "noise (plug-in title)"}, {"%LEADARTIST% - %TITLE%", noSuggestion.get(), ""},
        // Results stop at the 511 characters of a 512-byte buffer.
        {std::string(600, 'x'), longTitle.get(), std::string(511, 'x')}, {"%TITLE%%TITLE%%TITLE%", longTitle.get(), std::string(511, 't')},
        {std::string(500, '.') + "%TITLE%", longTitle.get(), std::string(500, '.') + std::string(11, 't')},
    };
    for (const auto& [pattern, track, expected] : cases) EXPECT_EQ(ExpandTrackTitle(*track, pattern), expected) << pattern;
}

constexpr TitleTemplates kDefaults{"%LEADARTIST% - %TITLE%", "%num% %title% <%status%>", "%num% %title% %time% (%dur%)"};

class Titles : public ::testing::Test {
protected:
    Titles() {
        main_.AppendItem(std::make_unique<TrackItem>(MakeTrack({"/music/a/Alpha.mp3", {{FrameId::LeadArtist, "Ann"}, {FrameId::Title, "Alpha"}}, 125'700, 100})));
        auto mix = std::make_unique<Playlist>("/lists/mix.m3u");
        mix->AppendItem(std::make_unique<TrackItem>(MakeTrack({"/music/b/Beta.mp3", {{FrameId::LeadArtist, "Bob"}, {FrameId::Title, "Beta"}}, 3'599'500, 100})));
        mix->AppendItem(std::make_unique<RandomEntry>("(YEAR < 1970)"));
        main_.AppendItem(std::move(mix));
        main_.AppendItem(std::make_unique<TrackItem>(MakeTrack({"/music/d/Delta.wav", {}, 3'600'000, 100, "Delta tone"})));
    }
    // The row's track loaded in the player, with a window or status template in place.
    TitleState Loaded(int row, uint32_t ms = 0, std::string_view window = kDefaults.windowTitle,
                      std::string_view status = kDefaults.statusString, PlayerStatus player = PlayerStatus::Playing) const {
        return MakeTitleState(main_, row, &static_cast<const TrackItem*>(main_.ItemAtRow(row).item)->Track(), ms, player, {kDefaults.trackTitle, window, status});
    }
    // Nothing loaded; row current.
    TitleState Idle(int row, std::string_view window = kDefaults.windowTitle, std::string_view status = kDefaults.statusString) const {
        return MakeTitleState(main_, row, nullptr, 0, PlayerStatus::Stopped, {kDefaults.trackTitle, window, status});
    }
    Playlist main_;
};

TEST_F(Titles, WindowTitleAndStatusString) {
    const TrackRecord elsewhere("/elsewhere/x.mp3");
    const auto gamma = MakeTrack({"/music/c/Gamma.mp3", {{FrameId::LeadArtist, "Cy"}, {FrameId::Title, "Gamma"}}, 61'000, 1});
    const std::pair<TitleState, std::string> cases[] = {

        {Loaded(2), "3. Bob - Beta <playing>"}, {Loaded(0, 0, kDefaults.windowTitle, "", PlayerStatus::Paused), "1. Ann - Alpha <paused>"},
        {Loaded(4, 0, kDefaults.windowTitle, "", PlayerStatus::Stopped), "5. Delta tone <stopped>"},  // no tag
        {Loaded(2, 0, "%dur%|%pdur%"), "59:59|59:59"}, {Loaded(4, 0, "%dur%|%pdur%|%sugtitle%"), "1:00:00|2:02:05|Delta tone"},  // the main playlist: 7325 s
        {Loaded(2, 0, "[%ppath%][%pbody%][%pext%]"), "[/lists/][mix][.m3u]"}, {Loaded(0, 0, "[%ppath%][%pbody%][%pext%]"), "[][][]"},  // the main playlist has no file
        {Loaded(0, 0, "%path%|%body%|%ext%|%sugtitle%"), "/music/a/|Alpha|.mp3|"}, {Loaded(2, 0, "%TITLE% %Title% %foo% %time% %ptimel%"), "%TITLE% %Title% %foo% %time% %ptimel%"},
        {Idle(2, "%num% %title% <%status%>"), "3. Bob - Beta <stopped>"},  // nothing loaded: the current row stands in
        {Idle(-1, "[%num%][%title%][%dur%][%ppath%] %status%"), "[][][][] stopped"}, {Idle(1, "[%num%][%body%][%pbody%]"), "[][][]"},  // a playlist's own row
        {Idle(3, "[%num%][%body%][%pbody%]"), "[][][mix]"},  // an entry not yet picked
        {MakeTitleState(main_, 0, &elsewhere, 0, PlayerStatus::Playing, {"", "%num% %body%", ""}), "1. x"},
    };
    for (const auto& [state, expected] : cases) EXPECT_EQ(ExpandWindowTitle(state), expected) << state.templates.windowTitle;
    static_cast<RandomEntry*>(main_.ItemAtRow(3).item)->SetPicked(gamma.get());
    EXPECT_EQ(ExpandWindowTitle(Idle(3, "%num% %title% %dur% %pbody%")), "4. Cy - Gamma 1:01 mix");  // picked: its track

    Playlist empty;
    const TitleTemplates any{"%TITLE%", "%num% %title% %status% %foo%", "%time% %foo%"};
    const TitleState idle = MakeTitleState(empty, -1, nullptr, 0, PlayerStatus::Stopped, any);
    EXPECT_EQ(ExpandWindowTitle(idle) + "|" + ExpandStatusString(idle), "Empty playlist|Empty playlist");
    const auto loaded = MakeTrack({"/m/t.mp3", {{FrameId::Title, "T"}}, 1000, 1});  // from elsewhere: still shown
    EXPECT_EQ(ExpandWindowTitle(MakeTitleState(empty, -1, loaded.get(), 0, PlayerStatus::Playing, any)), " T playing %foo%");

    // The status string.
    std::string times, repeated;
    for (int i = 0; i < 64; ++i) times += "%time%", repeated += "10:00:00";  // 6 characters in, 8 out
    const std::string cut = std::string(505, '.') + "%ptimel%";
    const std::pair<TitleState, std::string> statusCases[] = {

        {Loaded(2, 83'900), "3. Bob - Beta 1:23 (59:59)"}, {Loaded(2, 83'900, "", "%timel%|%ptime%|%ptimel%"), "58:36|3:28|1:58:37"},  // whole seconds, each term first
        {Loaded(4, 3'599'999, "", "%time%|%timel%"), "59:59|0:01"}, {Loaded(4, 3'600'000, "", "%time%|%timel%"), "1:00:00|0:00"}, {Loaded(0, 200'000, "", "%timel%"), "0:00"},  // a position past the end
        {Idle(4, "", "%time%|%timel%|%ptime%|%ptimel%"), "0:00|1:00:00|1:02:04|1:00:01"},  // no time yet
        {Idle(-1, "", "%time%|%timel%|%ptime%|%ptimel%"), "0:00|0:00|0:00|2:02:05"}, {Loaded(2, 0, "", "100%% %foo% %TITLE%!"), "100%  !"},  // other names give nothing here
        {Loaded(2, 0, "", "%% %%%% %"), "% %% %"}, {Loaded(2, 61'000, "", "at %time"), "at 1:01"}, {Loaded(2, 0, "", "%status% %body%%ext%"), "playing Beta.mp3"},
        {Loaded(2, 36'000'000, "", times), repeated.substr(0, kTemplateResultLimit)}, {Loaded(2, 0, "", cut), std::string(505, '.') + "2:05"},  // what the first pass cut short is what the times see
    };
    for (const auto& [state, expected] : statusCases) EXPECT_EQ(ExpandStatusString(state), expected) << state.templates.statusString;

    Playlist main;  // percent signs in the track survive the pass that puts in the times
    main.AppendItem(std::make_unique<TrackItem>(MakeTrack({"/m/100% pure.mp3", {{FrameId::LeadArtist, "DJ %time%"}, {FrameId::Title, "100% Pure"}}, 5000, 1})));
    const TitleState pure = MakeTitleState(main, 0, &static_cast<const TrackItem*>(main.ItemAt(0))->Track(), 2500,
                                           PlayerStatus::Playing, {"%LEADARTIST% - %TITLE%", "", "%title% [%body%] %time%"});
    EXPECT_EQ(ExpandStatusTemplate(pure), "DJ %%time%% - 100%% Pure [100%% pure] %time%");
    EXPECT_EQ(ExpandStatusString(pure), "DJ %time% - 100% Pure [100% pure] 0:02");

    const TitleState playing = Loaded(2, 83'900);
    const std::tuple<int32_t, PositionDrag, TitleState, std::string> lines[] = {  // state, dragging, title: the line

        {1, {}, playing, "Retrieving information, please wait..."},
        {2, {true, 3600}, playing, "Loading track..."},  // before any dragging
        {9, {}, playing, "3. Bob - Beta 1:23 (59:59)"},  // not a state: shown as normal
        {0, {true, 75}, playing, "Move to 1:15 (59:59)"}, {0, {true, 3600}, Loaded(4), "Move to 1:00:00 (1:00:00)"}, {0, {true, 3600}, Idle(2), "3. Bob - Beta 0:00 (59:59)"},  // no track loaded: no dragging
    };
    for (const auto& [state, drag, title, expected] : lines) EXPECT_EQ(ComposeStatusText(state, drag, ExpandStatusTemplate(title), title), expected) << state;
}

TEST_F(Titles, FindLandsOnTheNextRowWhoseTitleOrNameHoldsTheText) {
    // What the view shows: a track's title, a playlist's name, "Random entry"; also searched:
    // a track's file name and a random entry's expression, never a directory.
    const auto titleOf = [](const PlaylistItem& item) {
        if (item.Kind() == ItemKind::kTrack) return ExpandTrackTitle(static_cast<const TrackItem&>(item).Track(), "%LEADARTIST% - %TITLE%");
        return item.Kind() == ItemKind::kPlaylist ? item.Body() : std::string("Random entry");
    };
    const std::tuple<int, const char*, bool, int> cases[] = {  // focused row, text, case-sensitive: row
        {-1, "alpha", false, 0}, {-1, "ALPHA", true, -1}, {0, "a", false, 2}, {4, "Ann", false, 0},  // wraps round
        {2, "Bob", true, 2},  // the only match is the focused row: found again after a full round
        {-1, "MIX", false, 1}, {-1, "beta.mp3", false, 2}, {-1, "music", false, -1}, {-1, "delta.WAV", false, 4},
        {-1, "1970", false, 3}, {-1, "Random entry", true, 3}, {-1, "", false, 0}, {3, "", false, 4}, {-1, "nowhere", false, -1},
    };
    for (const auto& [focused, text, caseSensitive, expected] : cases)
        EXPECT_EQ(FindRow(main_, FirstRowToSearch(focused, main_.RowCount()), text, caseSensitive, titleOf), expected) << "\"" << text << "\" after row " << focused;
    EXPECT_EQ(std::tuple(FindRow(main_, 99, "Ann", false, titleOf), FindRow(main_, -7, "Delta", false, titleOf), FindRow(Playlist(), 0, "", false, titleOf)), std::tuple(0, 4, -1));
}

}  // namespace
}  // namespace verdin
