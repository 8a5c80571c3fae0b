// Saving playlists: the text of each format, names and flags, failures, links and the
// names the INI reader would alter. Saving the main playlist from the window is
// tests/shell's (MainWindowTests), at teardown tests/system's.
#include "PlaylistFileFixture.h"

#include "playlist/TrackItem.h"
#include "playlist/files/PlaylistWriter.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace verdin::test {
namespace {

class Saving : public PlaylistFileTest {
protected:
    // A fresh main playlist without unsaved changes holding one nested playlist $/<name>
    // with the given items: "?expr" a random entry, a name ending ".m3u" a playlist.
    Playlist& Nested(const std::string& name, std::initializer_list<std::string> items = {}) {
        main_.Clear();
        auto nested = std::make_unique<Playlist>(PathOf(name));
        for (const std::string& item : items) {
            if (item.starts_with("?")) nested->AppendItem(std::make_unique<RandomEntry>(item.substr(1)));
            else if (item.ends_with(".m3u")) nested->AppendItem(std::make_unique<Playlist>(item));
            else nested->AppendItem(std::make_unique<TrackItem>(item));
        }
        Playlist& added = *nested;
        main_.AppendItem(std::move(nested));
        main_.SetModified(false);
        return added;
    }
    std::vector<std::string> FilesIn(const std::string& relative) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(dir_.path() / relative))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

// One item of each kind and place under each format's name: the extension is appended
// when missing, the playlist takes the name and its own flag is cleared, and a new name
// (even one differing only in case) marks the parent. Random entries have no form outside
// ".vdp", and an empty playlist still has its header and count.
TEST_F(Saving, EachFormatWritesItsLinesUnderItsName) {
    const std::string m3u = "a.mp3\r\nSub/b.ogg\r\n/elsewhere/c.flac\r\nhttp://radio.example/live\r\nsub/inner.m3u\r\n";
    const std::string vdp = "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\n";
    const std::string mix = vdp + "Entry1=a.mp3\r\nEntry2=;GENRE = \"Rock\"\r\nEntry3=Sub/b.ogg\r\nEntry4=/elsewhere/c.flac\r\n"
                                  "Entry5=http://radio.example/live\r\nEntry6=sub/inner.m3u\r\nEntry7=;YEAR > 1990\r\nNumberOfEntries=7\r\n";
    const struct {
        PlaylistFormat format;
        const char *asked, *written;
        bool parentModified;
        std::string text;
        bool empty = false;
    } cases[] = {
        {PlaylistFormat::kM3u, "Lists/mix", "Lists/mix.m3u", true, m3u},
        {PlaylistFormat::kPls, "Lists/mix.PLS", "Lists/mix.PLS", true,
         "[playlist]\r\nFile1=a.mp3\r\nFile2=Sub/b.ogg\r\nFile3=/elsewhere/c.flac\r\nFile4=http://radio.example/live\r\n"
         "File5=sub/inner.m3u\r\nNumberOfEntries=5\r\n"},
        {PlaylistFormat::kVdp, "Lists/mix", "Lists/mix.vdp", false, mix},
        {PlaylistFormat::kVdp, "Lists/MIX.vdp", "Lists/MIX.vdp", true, mix},
        {PlaylistFormat::kVdp, "Lists/mix.vdp", "Lists/mix.vdp", false, vdp + "NumberOfEntries=0\r\n", true},
    };
    std::filesystem::create_directories(PathOf("Lists"));
    for (const auto& c : cases) {
        Playlist& list = Nested("Lists/mix.vdp", {PathOf("Lists/a.mp3"), "?GENRE = \"Rock\"", PathOf("lists/Sub/b.ogg"),
                                                 "/elsewhere/c.flac", "http://radio.example/live",
                                                 PathOf("Lists/sub/inner.m3u"), "?YEAR > 1990"});
        if (c.empty) list.Clear();
        list.SetModified(true);
        ASSERT_TRUE(SavePlaylist(list, PathOf(c.asked), c.format)) << c.asked;
        EXPECT_EQ(ReadFile(PathOf(c.written)), c.text) << c.asked;
        EXPECT_EQ(list.FileName(), PathOf(c.written));
        EXPECT_FALSE(list.Modified()) << c.asked;
        EXPECT_EQ(main_.Modified(), c.parentModified) << c.asked;
    }
    main_.SetModified(true);  // the main playlist has no parent to mark
    ASSERT_TRUE(SavePlaylist(main_, PathOf("Lists/default.vdp"), PlaylistFormat::kVdp));
    EXPECT_FALSE(main_.Modified());
}

// Nothing changes on disk when the file cannot be made, nor when its user may not write
// it (run as an unprivileged user: a child process when the tests run as root, who may
// write anything), though replacing it by a rename would succeed; the new name stays.
TEST_F(Saving, AFileThatCannotBeWrittenChangesNothingOnDisk) {
    Write("plain.txt", "keep");
    Write("taken.m3u/inside.txt");
    const std::string locked = Write("open/mix.m3u", "keep");
    ASSERT_EQ(::chmod(dir_.str().c_str(), 0755) | ::chmod(PathOf("open").c_str(), 0777) | ::chmod(locked.c_str(), 0444), 0);
    for (const char* name : {"no such directory/mix.m3u", "plain.txt/mix.m3u", "taken.m3u"}) {
        Playlist& mix = Nested("old.m3u", {"/m/a.mp3"});
        const std::vector<std::string> before = FilesIn("");
        EXPECT_FALSE(SavePlaylist(mix, PathOf(name), PlaylistFormat::kM3u)) << name;
        EXPECT_EQ(FilesIn(""), before) << name;
        EXPECT_EQ(FilesIn("taken.m3u"), std::vector<std::string>{"inside.txt"});
        EXPECT_EQ(mix.FileName(), PathOf(name));  // the name changes before the file is made
        EXPECT_TRUE(main_.Modified() && !mix.Modified()) << name;
    }
    Playlist& mix = Nested("x.m3u", {"/m/a.mp3"});
    bool saved = true;
    if (::geteuid() == 0) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const uid_t nobody = 65534;
            if (::setgid(nobody) != 0 || ::setuid(nobody) != 0) ::_exit(2);
            ::_exit(SavePlaylist(mix, locked, PlaylistFormat::kM3u) ? 1 : 0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 2) << "could not become an unprivileged user";
        saved = WEXITSTATUS(status) == 1;
    } else {
        saved = SavePlaylist(mix, locked, PlaylistFormat::kM3u);
    }
    EXPECT_FALSE(saved);
    EXPECT_EQ(ReadFile(locked), "keep");
    EXPECT_EQ(FilesIn("open"), std::vector<std::string>{"mix.m3u"});
}

TEST_F(Saving, ReplacingAFileLeavesNoTemporaryFilesAndKeepsLinks) {
    Write("real/mix.m3u", "old contents\r\n");
    std::filesystem::create_directories(PathOf("links"));
    ASSERT_EQ(::symlink(PathOf("real/mix.m3u").c_str(), PathOf("links/mix.m3u").c_str()), 0);
    Playlist& mix = Nested("links/mix.m3u", {PathOf("links/a.mp3")});
    ASSERT_TRUE(SavePlaylist(mix, PathOf("links/mix.m3u"), PlaylistFormat::kM3u));
    EXPECT_TRUE(std::filesystem::is_symlink(PathOf("links/mix.m3u")));
    EXPECT_EQ(ReadFile(PathOf("real/mix.m3u")), "a.mp3\r\n");
    EXPECT_EQ(FilesIn("real"), std::vector<std::string>{"mix.m3u"});
    EXPECT_EQ(FilesIn("links"), std::vector<std::string>{"mix.m3u"});
}

// Blanks around a name and quotes around it would be taken off by the reader: such names
// are quoted, and come back whole.
TEST_F(Saving, NamesTheIniReaderWouldAlterAreQuotedAndComeBackWhole) {
    for (const char* name : {"l/ padded .mp3", "l/\"quoted\"", "l/'half.mp3"}) Write(name);
    Playlist& list = Nested("l/list.vdp", {PathOf("l/ padded .mp3"), PathOf("l/\"quoted\""), PathOf("l/'half.mp3"),
                                           "?ARTIST = \"x\" "});
    ASSERT_TRUE(SavePlaylist(list, PathOf("l/list.vdp"), PlaylistFormat::kVdp));
    EXPECT_EQ(ReadFile(PathOf("l/list.vdp")),
              "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\nEntry1=\" padded .mp3\"\r\n"
              "Entry2=\"\"quoted\"\"\r\nEntry3='half.mp3\r\nEntry4=\";ARTIST = \"x\" \"\r\nNumberOfEntries=4\r\n");
    ASSERT_TRUE(SavePlaylist(list, PathOf("l/list.pls"), PlaylistFormat::kPls));
    for (const char* name : {"l/list.vdp", "l/list.pls"}) ASSERT_TRUE(Load(PathOf(name)));
    EXPECT_EQ(Describe(NestedAt(1)), "$/l/ padded .mp3 | $/l/\"quoted\" | $/l/'half.mp3 | ?ARTIST = \"x\" ");
    EXPECT_EQ(Describe(NestedAt(2)), "$/l/ padded .mp3 | $/l/\"quoted\" | $/l/'half.mp3");
}

}  // namespace
}  // namespace verdin::test
