// The window title and the status line, one line per case: template, player state,
// expected text. The states come from a small tree:
//
//   row 0  track A  "Ann - Alpha"   125.7 s
//   row 1  playlist /lists/mix.m3u
//   row 2    track B  "Bob - Beta"  3599.5 s
//   row 3    random entry
//   row 4  track D  (no tag, "Delta tone" from its module)  3600 s
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "playlist/titles/StatusLine.h"
#include "playlist/titles/StatusTimes.h"
#include "playlist/titles/TemplateExpansion.h"
#include "playlist/titles/WindowTitle.h"

#include "TrackFixtures.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

using test::MakeTrack;

constexpr TitleTemplates kDefaults{"%LEADARTIST% - %TITLE%", "%num% %title% <%status%>", "%num% %title% %time% (%dur%)"};

class Titles : public ::testing::Test {
protected:
    Titles() {
        main_.AppendItem(std::make_unique<TrackItem>(MakeTrack(
            {"/music/a/Alpha.mp3", {{FrameId::LeadArtist, "Ann"}, {FrameId::Title, "Alpha"}}, 125'700, 100})));
        auto mix = std::make_unique<Playlist>("/lists/mix.m3u");
        mix->AppendItem(std::make_unique<TrackItem>(MakeTrack(
            {"/music/b/Beta.mp3", {{FrameId::LeadArtist, "Bob"}, {FrameId::Title, "Beta"}}, 3'599'500, 100})));
        auto entry = std::make_unique<RandomEntry>("(YEAR < 1970)");
        entry_ = entry.get();
        mix->AppendItem(std::move(entry));
        main_.AppendItem(std::move(mix));
        main_.AppendItem(std::make_unique<TrackItem>(MakeTrack({"/music/d/Delta.wav", {}, 3'600'000, 100, "Delta tone"})));
    }

    const TrackRecord& TrackAtRow(int row) const {
        return static_cast<const TrackItem*>(main_.ItemAtRow(row).item)->Track();
    }
    // The row's track loaded in the player.
    TitleState Loaded(int row, uint32_t positionMs = 0, PlayerStatus status = PlayerStatus::Playing,
                      const TitleTemplates& templates = kDefaults) const {
        return MakeTitleState(main_, row, &TrackAtRow(row), positionMs, status, templates);
    }
    // Nothing loaded; row current.
    TitleState Idle(int row, const TitleTemplates& templates = kDefaults) const {
        return MakeTitleState(main_, row, nullptr, 0, PlayerStatus::Stopped, templates);
    }
    static TitleState WithWindow(TitleState state, const char* windowTitle) {
        state.templates.windowTitle = windowTitle;
        return state;
    }
    static TitleState WithStatus(TitleState state, const char* statusString) {
        state.templates.statusString = statusString;
        return state;
    }

    Playlist main_;
    RandomEntry* entry_ = nullptr;
};

TEST_F(Titles, WindowTitle) {
    const TrackRecord extra("/elsewhere/x.mp3");
    const struct {
        TitleState state;
        std::string expected;
    } cases[] = {
        {Loaded(2), "3. Bob - Beta <playing>"},
        {Loaded(0, 0, PlayerStatus::Paused), "1. Ann - Alpha <paused>"},
        {Loaded(4, 0, PlayerStatus::Stopped), "5. Delta tone <stopped>"},  // no tag: the module's title
        {WithWindow(Loaded(2), "%dur%|%pdur%"), "59:59|59:59"},
        {WithWindow(Loaded(4), "%dur%|%pdur%"), "1:00:00|2:02:05"},  // the main playlist: 7325 s
        {WithWindow(Loaded(2), "[%ppath%][%pbody%][%pext%]"), "[/lists/][mix][.m3u]"},
        {WithWindow(Loaded(0), "[%ppath%][%pbody%][%pext%]"), "[][][]"},  // the main playlist has no file
        {WithWindow(Loaded(0), "%path%|%body%|%ext%|%sugtitle%"), "/music/a/|Alpha|.mp3|"},
        {WithWindow(Loaded(4), "%sugtitle%"), "Delta tone"},
        {WithWindow(Loaded(2), "%TITLE% %Title% %foo%"), "%TITLE% %Title% %foo%"},
        {WithWindow(Loaded(2), "%time% %ptimel%"), "%time% %ptimel%"},  // status-line variables only
        {WithWindow(Loaded(2), "100%% %status%"), "100% playing"},
        {WithWindow(Loaded(2), "%title% - %dur"), "Bob - Beta - 59:59"},
        {WithWindow(Loaded(2), "%"), "%%"},
        // Nothing loaded: the current row's track stands in.
        {WithWindow(Idle(2), "%num% %title% <%status%>"), "3. Bob - Beta <stopped>"},
        // No current track: its variables are empty, the rest still expands.
        {WithWindow(Idle(-1), "[%num%][%title%][%dur%][%ppath%] %status%"), "[][][][] stopped"},
        {WithWindow(Idle(1), "[%num%][%body%][%pbody%]"), "[][][]"},  // a playlist's own row
        {WithWindow(Idle(3), "[%num%][%body%][%pbody%]"), "[][][mix]"},  // an entry not yet picked
        // A loaded track that is not the row's item still counts the row.
        {WithWindow(MakeTitleState(main_, 0, &extra, 0, PlayerStatus::Playing, kDefaults), "%num% %body%"), "1. x"},
    };
    for (const auto& c : cases) EXPECT_EQ(ExpandWindowTitle(c.state), c.expected) << c.state.templates.windowTitle;
}

TEST_F(Titles, APickedRandomEntryShowsItsTrack) {
    const auto picked = MakeTrack({"/music/c/Gamma.mp3", {{FrameId::LeadArtist, "Cy"}, {FrameId::Title, "Gamma"}}, 61'000, 1});
    entry_->SetPicked(picked.get());
    EXPECT_EQ(ExpandWindowTitle(WithWindow(Idle(3), "%num% %title% %dur% %pbody%")), "4. Cy - Gamma 1:01 mix");
}

TEST_F(Titles, EmptyPlaylist) {
    Playlist empty;
    const TitleTemplates any{"%TITLE%", "%num% %title% %status% %foo%", "%time% %foo%"};
    const TitleState idle = MakeTitleState(empty, -1, nullptr, 0, PlayerStatus::Stopped, any);
    EXPECT_EQ(ExpandWindowTitle(idle), "Empty playlist");
    EXPECT_EQ(ExpandStatusString(idle), "Empty playlist");
    // A track loaded from elsewhere still has its title shown.
    const auto loaded = MakeTrack({"/m/t.mp3", {{FrameId::Title, "T"}}, 1000, 1});
    const TitleState playing = MakeTitleState(empty, -1, loaded.get(), 0, PlayerStatus::Playing, any);
    EXPECT_EQ(ExpandWindowTitle(playing), " T playing %foo%");
}

TEST_F(Titles, StatusString) {
    const struct {
        TitleState state;
        std::string expected;
    } cases[] = {
        {Loaded(2, 83'900), "3. Bob - Beta 1:23 (59:59)"},
        {WithStatus(Loaded(2, 83'900), "%timel%|%ptime%|%ptimel%"), "58:36|3:28|1:58:37"},
        {WithStatus(Loaded(4, 3'599'999), "%time%|%timel%"), "59:59|0:01"},
        {WithStatus(Loaded(4, 3'600'000), "%time%|%timel%"), "1:00:00|0:00"},
        {WithStatus(Loaded(0, 200'000), "%timel%"), "0:00"},  // a position past the end
        // Nothing loaded: no time yet, the current entry's length left.
        {WithStatus(Idle(4), "%time%|%timel%|%ptime%|%ptimel%"), "0:00|1:00:00|1:02:04|1:00:01"},
        {WithStatus(Idle(-1), "%time%|%timel%|%ptime%|%ptimel%"), "0:00|0:00|0:00|2:02:05"},
        {WithStatus(Loaded(2), "100%% %foo% %TITLE%!"), "100%  !"},  // other names give nothing here
        {WithStatus(Loaded(2), "%% %%%% %"), "% %% %"},
        {WithStatus(Loaded(2, 61'000), "at %time"), "at 1:01"},
        {WithStatus(Loaded(2), "%status% %body%%ext%"), "playing Beta.mp3"},
    };
    for (const auto& c : cases) EXPECT_EQ(ExpandStatusString(c.state), c.expected) << c.state.templates.statusString;
}

TEST_F(Titles, PercentSignsInTheTrackSurviveTheTimePass) {
    Playlist main;
    main.AppendItem(std::make_unique<TrackItem>(
        MakeTrack({"/m/100% pure.mp3", {{FrameId::LeadArtist, "DJ %time%"}, {FrameId::Title, "100% Pure"}}, 5000, 1})));
    const TrackRecord& track = static_cast<const TrackItem*>(main.ItemAt(0))->Track();
    const TitleTemplates templates{"%LEADARTIST% - %TITLE%", "", "%title% [%body%] %time%"};
    const TitleState state = MakeTitleState(main, 0, &track, 2500, PlayerStatus::Playing, templates);
    EXPECT_EQ(ExpandStatusTemplate(state), "DJ %%time%% - 100%% Pure [100%% pure] %time%");
    EXPECT_EQ(ExpandStatusString(state), "DJ %time% - 100% Pure [100% pure] 0:02");
}

TEST_F(Titles, StatusResultsStopAtTheBufferSize) {
    std::string times;
    std::string expected;
    for (int i = 0; i < 64; ++i) {
        times += "%time%";      // 6 characters in the template,
        expected += "10:00:00";  // 8 in the line
    }
    const TitleState state = WithStatus(Loaded(2, 36'000'000), times.c_str());
    EXPECT_EQ(ExpandStatusTemplate(state), times);
    EXPECT_EQ(ExpandStatusString(state), expected.substr(0, kTemplateResultLimit));

    // The first pass is cut as well: a reference it cuts short is what the times see.
    const std::string cut = std::string(505, '.') + "%ptimel%";
    EXPECT_EQ(ExpandStatusString(WithStatus(Loaded(2), cut.c_str())), std::string(505, '.') + "2:05");
}

TEST_F(Titles, TimesTruncateEveryTermFirst) {
    // 125.7 s before the current row counts 125; a position of 0.9 s counts 0.
    EXPECT_EQ(WholeSecondsBeforeRow(main_, 2), 125);
    EXPECT_EQ(WholeSecondsBeforeRow(main_, 4), 125 + 3599);
    EXPECT_EQ(WholeSecondsBeforeRow(main_, 0), 0);
    EXPECT_EQ(WholeSecondsBeforeRow(main_, -1), 0);
    EXPECT_EQ(WholeSecondsBeforeRow(main_, 99), 125 + 3599 + 3600);
    const StatusTimes times = ComputeStatusTimes(Loaded(2, 900));
    EXPECT_EQ(times.time, 0);
    EXPECT_EQ(times.timeLeft, 3599);
    EXPECT_EQ(times.playlistTime, 125);
    EXPECT_EQ(times.playlistTimeLeft, 7325 - 125);
}

TEST_F(Titles, StatusLineStates) {
    const TitleState playing = Loaded(2, 83'900);
    const std::string statusTemplate = ExpandStatusTemplate(playing);
    const PositionDrag still;
    const PositionDrag drag{true, 3600};
    const struct {
        int32_t state;
        PositionDrag drag;
        TitleState title;
        std::string expected;
    } cases[] = {
        {1, still, playing, "Retrieving information, please wait..."},
        {2, drag, playing, "Loading track..."},
        {3, still, playing, "Loading next track for continuous play..."},
        {4, still, playing, "Creating sample space... This may (and probably will) take some time."},
        {0, still, playing, "3. Bob - Beta 1:23 (59:59)"},
        {0, {true, 75}, playing, "Move to 1:15 (59:59)"},
        {0, drag, playing, "Move to 1:00:00 (59:59)"},
        {0, drag, Loaded(4), "Move to 1:00:00 (1:00:00)"},
        {0, drag, Idle(2), "3. Bob - Beta 0:00 (59:59)"},  // no track loaded: no dragging form
        {9, still, playing, "3. Bob - Beta 1:23 (59:59)"},  // not a state: shown as normal
    };
    for (const auto& c : cases) {
        const std::string tmpl = ExpandStatusTemplate(c.title);
        EXPECT_EQ(ComposeStatusText(c.state, c.drag, tmpl, c.title), c.expected) << c.state;
    }
    EXPECT_EQ(MoveToStatusText(59, 3'600'999), "Move to 0:59 (1:00:00)");
    EXPECT_FALSE(TransientStatusText(0).has_value());
    EXPECT_FALSE(statusTemplate.empty());
}

}  // namespace
}  // namespace verdin
