// What dropped names stand for: desktop links read, other links kept.
#include "shell/ui/files/DesktopLink.h"
#include "shell/ui/files/DroppedNames.h"

#include "Files.h"
#include "TempDir.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(DesktopLinkUrl, ReadsTheUrlOfALink) {
    struct Case {
        const char* text;
        std::optional<std::string> url;
    };
    const Case cases[] = {
        {"[Desktop Entry]\nType=Link\nURL=file:///music/a.mp3\n", "file:///music/a.mp3"},
        {"[Desktop Entry]\r\nName=x\r\nURL = file:///m/b.wav \r\nType = Link\r\n", "file:///m/b.wav"},
        {"[Desktop Entry]\nType=Link\nURL[de]=file:///de.mp3\nURL=file:///en.mp3\n", "file:///en.mp3"},
        {"[Desktop Entry]\nType=Link\nURL=file:///with\\sblank.mp3\n", "file:///with blank.mp3"},
        {"# comment\n[Desktop Entry]\nType=Link\nURL=http://radio.example/a\n", "http://radio.example/a"},
        {"[Desktop Entry]\nType=Application\nURL=file:///a.mp3\n", std::nullopt},
        {"[Desktop Entry]\nType=Link\n", std::nullopt},
        {"[Other Group]\nType=Link\nURL=file:///a.mp3\n", std::nullopt},
        {"[Desktop Entry]\nType=Link\n[Other]\nURL=file:///a.mp3\n", std::nullopt},
        {"", std::nullopt},
        {"Type=Link\nURL=file:///a.mp3", std::nullopt},
        {"[Desktop Entry]\nType=Link\nURL=file:///end\\", "file:///end\\"},
    };
    for (const Case& c : cases) EXPECT_EQ(DesktopLinkUrl(c.text), c.url) << c.text;
}

// (A link to a folder and a desktop link to a file are dropped on the main window in its tests.)
TEST(ResolveDroppedName, KeepsADanglingLinkAndReadsDesktopLinks) {
    test::TempDir dir;
    std::filesystem::create_symlink(dir.file("nowhere"), dir.file("dangling"));
    test::WriteFile(dir.file("radio.DESKTOP"), "[Desktop Entry]\nType=Link\nURL=http://radio.example/live\n");
    test::WriteFile(dir.file("app.desktop"), "[Desktop Entry]\nType=Application\nExec=true\n");

    EXPECT_EQ(ResolveDroppedName(dir.file("dangling")), dir.file("dangling"));
    EXPECT_EQ(ResolveDroppedName(dir.file("radio.DESKTOP")), "http://radio.example/live");
    EXPECT_EQ(ResolveDroppedName(dir.file("app.desktop")), dir.file("app.desktop"));
}

}  // namespace
}  // namespace verdin
