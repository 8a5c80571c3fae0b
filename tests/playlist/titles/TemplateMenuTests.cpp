// The options page's insert menus, held against what the expansions understand: every
// offered reference must expand to something other than itself.
#include "playlist/Playlist.h"
#include "playlist/TrackItem.h"
#include "playlist/titles/TemplateVariables.h"
#include "playlist/titles/TrackTitle.h"
#include "playlist/titles/WindowTitle.h"
#include "tags/FrameTable.h"

#include "TrackFixtures.h"

#include <gtest/gtest.h>

#include <set>

namespace verdin {
namespace {

std::vector<std::string> References(const std::vector<TemplateVariable>& variables) {
    std::vector<std::string> out;
    for (const auto& v : variables) out.emplace_back(v.reference);
    return out;
}

TEST(TemplateMenus, WindowAndStatusVariablesInLookupOrder) {
    const std::vector<std::string> window{"%sugtitle%", "%title%", "%num%",   "%path%",  "%body%",
                                          "%ext%",      "%dur%",   "%ppath%", "%pbody%", "%pext%",
                                          "%pdur%",     "%status%", "%%"};
    EXPECT_EQ(References(WindowTitleVariables()), window);
    std::vector<std::string> status = window;
    for (const char* time : {"%time%", "%timel%", "%ptime%", "%ptimel%"}) status.emplace_back(time);
    EXPECT_EQ(References(StatusStringVariables()), status);

    // Same words in different submenus: "File path" of the track and of its playlist.
    std::set<std::pair<std::string, std::string>> shown;
    for (const auto& v : StatusStringVariables())
        EXPECT_TRUE(shown.emplace(std::string(v.group), std::string(v.description)).second)
            << v.reference << " looks like another entry";
    const auto variables = StatusStringVariables();
    EXPECT_EQ(variables[0].description, "Title suggested by the input plug-in");
    EXPECT_EQ(variables[3].group, "Track");
    EXPECT_EQ(variables[7].group, "Playlist");
    EXPECT_EQ(variables[7].description, "File path");
    EXPECT_EQ(variables[11].description, "Player status");
}

TEST(TemplateMenus, EveryOfferedReferenceExpands) {
    Playlist main;
    main.AppendItem(std::make_unique<TrackItem>(
        test::MakeTrack({"/m/x.mp3", {{FrameId::Title, "T"}}, 1000, 1, "S"})));
    const TrackRecord& track = static_cast<const TrackItem*>(main.ItemAt(0))->Track();
    for (const auto& v : WindowTitleVariables()) {
        const TitleState state = MakeTitleState(main, 0, &track, 0, PlayerStatus::Playing,
                                                {"%TITLE%", v.reference, ""});
        EXPECT_NE(ExpandWindowTitle(state), v.reference) << v.reference;
    }
    for (const auto& v : StatusStringVariables()) {
        const TitleState state = MakeTitleState(main, 0, &track, 0, PlayerStatus::Playing,
                                                {"%TITLE%", "", v.reference});
        EXPECT_NE(ExpandStatusString(state), v.reference) << v.reference;
    }
    // Track title references: a frame present in the tag expands to its text, and every
    // offered name is one the expansion knows (an unknown one would come back as typed).
    const auto tagged = test::MakeTrack({"/m/y.mp3", {{FrameId::Title, "T"}}, 1000, 1, "S"});
    std::set<std::string> frames;
    for (const auto& v : TrackTitleVariables()) {
        EXPECT_NE(ExpandTrackTitle(*tagged, std::string(v.reference) + "|"), std::string(v.reference) + "|")
            << v.reference;
        if (v.group == "ID3 Frame") frames.emplace(v.reference);
    }
    EXPECT_EQ(frames.size(), kFrameCount - 1);  // every frame but the "no frame" placeholder
    EXPECT_EQ(frames.count("%LEADARTIST%"), 1u);
    EXPECT_EQ(References(TrackTitleVariables()).front(), "%sugtitle%");
}

}  // namespace
}  // namespace verdin
