// The file dialogs' filters.
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

TEST(QtFilter, DisplayTextThenBlankSeparatedPatterns) {
    EXPECT_EQ(QtFilter({"Playlist files (*.M3U;*.PLS;*.VDP)", "*.M3U;*.PLS;*.VDP"}),
              "Playlist files (*.M3U;*.PLS;*.VDP) (*.M3U *.PLS *.VDP)");
    EXPECT_EQ(QtFilter({"All supported files", "*.mp3;;*.wav"}), "All supported files (*.mp3 *.wav)");
    EXPECT_EQ(QtFilter({"All files (*.*)", "*.*"}), "All files (*.*) (*)");
}

}  // namespace
}  // namespace verdin
