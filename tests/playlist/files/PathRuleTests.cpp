// The rules under loading and saving: how entries name files and items are written back
// relative to the playlist, the saved name's extension, finding files as the disk spells
// them, whether an added track's information is read at once, and the directory scan.
#include "playlist/Playlist.h"
#include "playlist/TrackItem.h"
#include "playlist/files/DirectoryScan.h"
#include "playlist/files/EntryPath.h"
#include "playlist/files/FileLookup.h"
#include "playlist/files/PlaylistFormat.h"
#include "playlist/files/RetrievalRule.h"
#include "settings/Settings.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

namespace verdin {
namespace {

// An entry is absolute when it begins with "/" or holds "://", and is then taken as
// written; any other is taken from the playlist's directory, its backslashes read as "/".
TEST(EntryPath, RelativeEntriesAreTakenFromThePlaylistsDirectory) {
    const std::tuple<const char*, const char*, const char*> cases[] = {  // entry, directory, path
        {"/abs\\a.mp3", "/l/", "/abs\\a.mp3"},        {"http://h/a\\b.mp3", "/l/", "http://h/a\\b.mp3"},
        {"a://b", "/l/", "a://b"},                    {"#x http://h", "/l/", "#x http://h"},
        {"sub\\deeper\\a.mp3", "/l/", "/l/sub/deeper/a.mp3"}, {"..\\a.mp3", "/l/x/", "/l/x/../a.mp3"},
        {"\\m\\a.mp3", "/l/", "/l//m/a.mp3"},         {"C:\\Music\\a.mp3", "/l/", "/l/C:/Music/a.mp3"},
        {"x:/y", "/l/", "/l/x:/y"},                   {" /m/a.mp3", "/l/", "/l/ /m/a.mp3"},
        {"a.mp3", "", "a.mp3"},                       {"a\\b.mp3", "/odd\\dir/", "/odd\\dir/a/b.mp3"},  // only the entry
    };
    for (const auto& [entry, directory, path] : cases) EXPECT_EQ(EntryToPath(entry, directory), path) << entry;
    EXPECT_FALSE(IsAbsoluteEntry(""));
}

TEST(EntryPath, ItemsInsideThePlaylistsDirectoryAreWrittenRelative) {
    const std::tuple<const char*, const char*, const char*> cases[] = {  // name, directory, text
        {"/lists/SUB/a.mp3", "/Lists/", "SUB/a.mp3"},           // compared without regard to case
        {"/List/a.mp3", "/Lists/", "/List/a.mp3"},
        {"/Listsx/a.mp3", "/Lists/", "/Listsx/a.mp3"},
        {"http://h/Lists/a.mp3", "/Lists/", "http://h/Lists/a.mp3"},
        {"http://h/a.mp3", "http://h/", "a.mp3"},               // the same rule for any path text
        {"/Lists/a.mp3", "", "/Lists/a.mp3"},
        {"/Lists//a.mp3", "/Lists/", "/Lists//a.mp3"},           // "/a.mp3" would be another file
        {"/Lists/http://x", "/Lists/", "/Lists/http://x"},       // "http://x" would be an address
    };
    for (const auto& [name, directory, text] : cases) EXPECT_EQ(EntryText(TrackItem(name), directory), text) << name << " in " << directory;
    EXPECT_EQ(EntryText(Playlist("/elsewhere/inner.m3u"), "/Lists/"), "/elsewhere/inner.m3u");
}

TEST(PlaylistFormat, NamesGetTheFormatsExtensionUnlessTheyHaveIt) {
    const std::tuple<const char*, PlaylistFormat, const char*> cases[] = {  // name, format, saved name
        {"/l/mix", PlaylistFormat::kPls, "/l/mix.pls"},   {"/l/mix.PLS", PlaylistFormat::kPls, "/l/mix.PLS"},
        {"/l/mix.pls", PlaylistFormat::kM3u, "/l/mix.pls.m3u"}, {"/l/mix.Vdp", PlaylistFormat::kVdp, "/l/mix.Vdp"},
        {"/l/mix.m3u8", PlaylistFormat::kM3u, "/l/mix.m3u8.m3u"}, {"/l/mix.", PlaylistFormat::kM3u, "/l/mix..m3u"},
        {"/l.d/mix", PlaylistFormat::kVdp, "/l.d/mix.vdp"}, {"", PlaylistFormat::kM3u, ".m3u"},
    };
    for (const auto& [name, format, saved] : cases) EXPECT_EQ(NameWithFormatExtension(name, format), saved) << name;
    for (int number : {0, 4}) EXPECT_FALSE(IsPlaylistFormat(static_cast<PlaylistFormat>(number)));
}

TEST(FileLookup, FindsFilesAsTheDiskSpellsThemAndKeepsItsListings) {
    test::TempDir dir;
    const auto at = [&](const std::string& relative) { return dir.str() + "/" + relative; };
    const auto make = [&](const std::string& relative) {
        std::filesystem::create_directories(std::filesystem::path(at(relative)).parent_path());
        test::WriteFile(at(relative), "");
        return at(relative);
    };
    for (const char* name : {"Music/Rock/Track One.MP3", "plain.mp3", "twins/ab.mp3", "twins/AB.mp3"}) make(name);
    std::filesystem::create_directories(at("Folder.mp3"));
    const std::pair<std::string, std::optional<std::string>> cases[] = {  // asked, found
        {at("Music/Rock/Track One.MP3"), at("Music/Rock/Track One.MP3")},
        {at("music/./rock/track one.mp3"), at("Music/./Rock/Track One.MP3")},
        {at("Music/Rock/../rock/track one.mp3"), at("Music/Rock/../Rock/Track One.MP3")},
        {at("twins/aB.mp3"), at("twins/AB.mp3")},  // the first in listing order
        {at("twins/ab.mp3"), at("twins/ab.mp3")},  // an exact name is taken as it is
        {at("missing.mp3"), std::nullopt},
        {at("nothere/plain.mp3"), std::nullopt},
        {at("plain.mp3/x"), std::nullopt},
        {at("Music"), std::nullopt},               // a directory is no file
        {at("folder.MP3"), std::nullopt},
        {at("Music/"), std::nullopt},
        {"", std::nullopt},
        {at("plain.mp3") + std::string("\0junk", 5), std::nullopt},
        {at("."), std::nullopt},
    };
    FileLookup lookup;
    for (const auto& [asked, found] : cases) EXPECT_EQ(lookup.Find(asked), found) << asked;
    // Listings are kept, but a new file is still found by its exact name, which needs none.
    const std::string added = make("Music/Rock/Two.mp3");
    EXPECT_EQ(lookup.Find(added), added);
}

// The retrieval settings alone; a track on a CD-ROM is one on a file system the kernel
// numbers as one (no test directory is).
TEST(RetrievalRule, TheSkipSettingsAndTheFileSystemDecide) {
    const auto skipping = [](bool anyFile, bool url, bool cdrom) {
        Settings settings;
        settings.skipInfoForAnyFile = anyFile;
        settings.skipInfoForURL = url;
        settings.skipInfoForCDROM = cdrom;
        return settings;
    };
    const struct {
        bool anyFile, url, cdrom;  // the three skip settings
        bool isUrl, onCdrom;       // the track
        bool retrieve;
    } cases[] = {
        {false, false, false, false, true, true},  {true, false, false, true, false, false},
        {false, true, false, false, true, true},   {false, false, true, false, true, false},
        {false, false, true, false, false, true},  {false, false, true, true, false, true},
        {false, true, true, true, false, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(RetrievalWanted(skipping(c.anyFile, c.url, c.cdrom), c.isUrl, c.onCdrom), c.retrieve)
            << c.anyFile << c.url << c.cdrom << " / " << c.isUrl << c.onCdrom;
    const test::TempDir dir;
    for (const std::string& path : {dir.str() + "/", dir.str() + "/no such directory/", std::string()})
        EXPECT_FALSE(IsOnCdrom(path)) << path;
    EXPECT_TRUE(ShouldRetrieveOnAdd(TrackRecord("http://host/a.mp3"), skipping(false, false, true)));
}

// Within a directory, names in case-blind order and directories never listed as files.
TEST(DirectoryScan, FilesComeGroupedByExtensionAndSubdirectoriesBreadthFirst) {
    test::TempDir dir;
    namespace fs = std::filesystem;
    for (const char* sub : {"x.mp3", "x.mp3/deep", "y"}) fs::create_directories(dir.path() / sub);
    for (const char* file : {"b.mp3", "a.wav", "C.MP3", "d.mp3x", "x.mp3/1.mp3", "x.mp3/deep/2.wav", "y/3.wav"})
        test::WriteFile(dir.file(file), "");
    fs::create_directory_symlink(dir.path(), dir.path() / "y" / "loop");  // must not walk forever
    using V = std::vector<std::string>;
    EXPECT_EQ(ScanDirectory(dir.str(), false, ".mp3;.wav"),
              (V{dir.file("b.mp3"), dir.file("C.MP3"), dir.file("a.wav")}));
    EXPECT_EQ(ScanDirectory(dir.str() + "/", true, ".mp3;.wav"),
              (V{dir.file("b.mp3"), dir.file("C.MP3"), dir.file("a.wav"), dir.file("x.mp3/1.mp3"), dir.file("y/3.wav"),
                 dir.file("x.mp3/deep/2.wav")}));
    EXPECT_TRUE(ScanDirectory(dir.file("missing"), true, ".mp3").empty());
}

}  // namespace
}  // namespace verdin
