// The player writes file filters as "description|patterns|..."; the choosers show them
// the way Qt writes them.
#include "shell/ui/dialogs/common/FileChooser.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(FileFilter, PlayerFiltersBecomeQtFilters) {
    const struct {
        const char* player;
        const char* qt;
    } cases[] = {
        {"Equalizer preset|*.eq|All files|*.*|", "Equalizer preset (*.eq);;All files (*)"},
        {"Bitmaps|*.bmp;*.png;*.jpg|", "Bitmaps (*.bmp *.png *.jpg)"},
        {"Playlists|*.m3u|", "Playlists (*.m3u)"},
        {"No trailing bar|*.x", "No trailing bar (*.x)"},
        {"|*.eq|Named|*.n|", "Named (*.n)"},  // a piece without a description is left out
        {"Lonely description|", ""},
        {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(QtFileFilter(QString::fromLatin1(c.player)).toStdString(), c.qt) << c.player;
}

}  // namespace
}  // namespace verdin
