// How entries name files, and how items are written back relative to the playlist.
#include "playlist/Playlist.h"
#include "playlist/TrackItem.h"
#include "playlist/files/EntryPath.h"
#include "playlist/files/PlaylistFormat.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(EntryPath, AbsoluteEntriesBeginWithASlashOrHoldAnAddress) {
    const struct {
        const char* entry;
        bool absolute;
    } cases[] = {
        {"/m/a.mp3", true},     {"http://h/a.mp3", true}, {"a://b", true},
        {"#x http://h", true},  {"a.mp3", false},         {"sub/a.mp3", false},
        {"C:\\m\\a.mp3", false}, {"\\m\\a.mp3", false},   {"x:/y", false},
        {"", false},            {" /m/a.mp3", false},
    };
    for (const auto& c : cases) EXPECT_EQ(IsAbsoluteEntry(c.entry), c.absolute) << c.entry;
}

TEST(EntryPath, RelativeEntriesAreTakenFromThePlaylistsDirectory) {
    const struct {
        const char* entry;
        const char* directory;
        const char* path;
    } cases[] = {
        {"a.mp3", "/l/", "/l/a.mp3"},
        {"sub\\deeper\\a.mp3", "/l/", "/l/sub/deeper/a.mp3"},    // backslashes read as "/"
        {"..\\a.mp3", "/l/x/", "/l/x/../a.mp3"},
        {"/abs\\a.mp3", "/l/", "/abs\\a.mp3"},                   // absolute: as written
        {"http://h/a\\b.mp3", "/l/", "http://h/a\\b.mp3"},
        {"a.mp3", "", "a.mp3"},
        {"a\\b.mp3", "/odd\\dir/", "/odd\\dir/a/b.mp3"},         // only the entry is converted
        {"C:\\Music\\a.mp3", "/l/", "/l/C:/Music/a.mp3"},
    };
    for (const auto& c : cases) EXPECT_EQ(EntryToPath(c.entry, c.directory), c.path) << c.entry;
}

TEST(EntryPath, ItemsInsideThePlaylistsDirectoryAreWrittenRelative) {
    const struct {
        const char* name;
        const char* directory;
        const char* text;
    } cases[] = {
        {"/Lists/sub/a.mp3", "/Lists/", "sub/a.mp3"},
        {"/lists/SUB/a.mp3", "/Lists/", "SUB/a.mp3"},           // compared without regard to case
        {"/Other/a.mp3", "/Lists/", "/Other/a.mp3"},
        {"/List/a.mp3", "/Lists/", "/List/a.mp3"},
        {"/Listsx/a.mp3", "/Lists/", "/Listsx/a.mp3"},
        {"/a.mp3", "/Lists/", "/a.mp3"},
        {"http://h/Lists/a.mp3", "/Lists/", "http://h/Lists/a.mp3"},
        {"http://h/a.mp3", "http://h/", "a.mp3"},               // the same rule for any path text
        {"/Lists/a.mp3", "", "/Lists/a.mp3"},
        {"/Lists//a.mp3", "/Lists/", "/Lists//a.mp3"},           // "/a.mp3" would be another file
        {"/Lists/http://x", "/Lists/", "/Lists/http://x"},       // "http://x" would be an address
    };
    for (const auto& c : cases) {
        EXPECT_EQ(EntryText(TrackItem(c.name), c.directory), c.text) << c.name << " in " << c.directory;
    }
    EXPECT_EQ(EntryText(Playlist("/Lists/sub/inner.vdp"), "/Lists/"), "sub/inner.vdp");
    EXPECT_EQ(EntryText(Playlist("/elsewhere/inner.m3u"), "/Lists/"), "/elsewhere/inner.m3u");
}

TEST(PlaylistFormat, NamesGetTheFormatsExtensionUnlessTheyHaveIt) {
    const struct {
        const char* name;
        PlaylistFormat format;
        const char* saved;
    } cases[] = {
        {"/l/mix", PlaylistFormat::kPls, "/l/mix.pls"},
        {"/l/mix.PLS", PlaylistFormat::kPls, "/l/mix.PLS"},
        {"/l/mix.pls", PlaylistFormat::kM3u, "/l/mix.pls.m3u"},
        {"/l/mix.Vdp", PlaylistFormat::kVdp, "/l/mix.Vdp"},
        {"/l/mix.m3u8", PlaylistFormat::kM3u, "/l/mix.m3u8.m3u"},
        {"/l/mix.", PlaylistFormat::kM3u, "/l/mix..m3u"},
        {"/l.d/mix", PlaylistFormat::kVdp, "/l.d/mix.vdp"},
        {"", PlaylistFormat::kM3u, ".m3u"},
    };
    for (const auto& c : cases) EXPECT_EQ(NameWithFormatExtension(c.name, c.format), c.saved) << c.name;
    for (int number : {0, 4}) EXPECT_FALSE(IsPlaylistFormat(static_cast<PlaylistFormat>(number)));
}

}  // namespace
}  // namespace verdin
