// The file dialogs' filters, and the scroll codes of the control bars.
#include "shell/ui/controls/ScrollCodes.h"
#include "shell/ui/files/OpenFilters.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(OpenFileFilters, ListInTheirOrder) {
    const std::vector<FileTypeFilter> modules = {{"MPEG audio", "*.mp3;*.mp2"}, {"Wave files", "*.wav"}};
    const std::vector<DialogFilter> expected = {
        {"All supported files", "*.mp3;*.mp2;*.wav;*.M3U;*.PLS;*.VDP"},
        {"Playlist files (*.M3U;*.PLS;*.VDP)", "*.M3U;*.PLS;*.VDP"},
        {"MPEG audio (*.mp3;*.mp2)", "*.mp3;*.mp2"},
        {"Wave files (*.wav)", "*.wav"},
        {"All files (*.*)", "*.*"},
    };
    EXPECT_EQ(OpenFileFilters(modules), expected);
}

TEST(OpenFileFilters, WithoutModulesOnlyPlaylistsAndAll) {
    const std::vector<DialogFilter> filters = OpenFileFilters({});
    ASSERT_EQ(filters.size(), 3u);
    EXPECT_EQ(filters[0].patterns, "*.M3U;*.PLS;*.VDP");
}

TEST(SavePlaylistFilters, FormatNumberOrder) {
    const std::vector<DialogFilter> expected = {
        {"M3U Playlist", "*.m3u"}, {"PLS Playlist", "*.pls"}, {"VDP Playlist", "*.vdp"}};
    EXPECT_EQ(SavePlaylistFilters(), expected);
}

TEST(QtFilter, DisplayTextThenBlankSeparatedPatterns) {
    EXPECT_EQ(QtFilter({"Playlist files (*.M3U;*.PLS;*.VDP)", "*.M3U;*.PLS;*.VDP"}),
              "Playlist files (*.M3U;*.PLS;*.VDP) (*.M3U *.PLS *.VDP)");
    EXPECT_EQ(QtFilter({"All supported files", "*.mp3;;*.wav"}), "All supported files (*.mp3 *.wav)");
    EXPECT_EQ(QtFilter({"All files (*.*)", "*.*"}), "All files (*.*) (*)");
}

TEST(ScrollCodeOf, OnlyPagesAndAHeldThumbCount) {
    struct Case {
        QAbstractSlider::SliderAction action;
        bool held;
        ScrollCode code;
    };
    const Case cases[] = {
        {QAbstractSlider::SliderPageStepSub, false, ScrollCode::kPageUp},
        {QAbstractSlider::SliderPageStepAdd, false, ScrollCode::kPageDown},
        {QAbstractSlider::SliderMove, true, ScrollCode::kThumbTrack},
        {QAbstractSlider::SliderMove, false, ScrollCode::kOther},  // the wheel
        {QAbstractSlider::SliderSingleStepAdd, false, ScrollCode::kOther},
        {QAbstractSlider::SliderSingleStepSub, false, ScrollCode::kOther},
        {QAbstractSlider::SliderToMinimum, false, ScrollCode::kOther},
        {QAbstractSlider::SliderToMaximum, false, ScrollCode::kOther},
    };
    for (const Case& c : cases) EXPECT_EQ(ScrollCodeOf(c.action, c.held), c.code) << c.action;
}

}  // namespace
}  // namespace verdin
