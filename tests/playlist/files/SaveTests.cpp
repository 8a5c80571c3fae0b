// Saving playlists: the text of each format, names, flags, failures and round trips.
#include "PlaylistFileFixture.h"

#include "Files.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "playlist/files/PlaylistWriter.h"

#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace verdin::test {
namespace {

class Saving : public PlaylistFileTest {
protected:
    // A nested playlist named $/Lists/mix.vdp holding one item of each kind and place.
    Playlist& MakeMix() {
        auto mix = std::make_unique<Playlist>(PathOf("Lists/mix.vdp"));
        mix->AppendItem(std::make_unique<TrackItem>(PathOf("Lists/a.mp3")));
        mix->AppendItem(std::make_unique<RandomEntry>("GENRE = \"Rock\""));
        mix->AppendItem(std::make_unique<TrackItem>(PathOf("lists/Sub/b.ogg")));  // case differs
        mix->AppendItem(std::make_unique<TrackItem>("/elsewhere/c.flac"));
        mix->AppendItem(std::make_unique<TrackItem>("http://radio.example/live"));
        mix->AppendItem(std::make_unique<Playlist>(PathOf("Lists/sub/inner.m3u")));
        mix->AppendItem(std::make_unique<RandomEntry>("YEAR > 1990"));
        Playlist& added = *mix;
        main_.AppendItem(std::move(mix));
        MakeDirectory("Lists");
        return added;
    }

    // A fresh main playlist holding one nested playlist of that name with one track; the
    // main playlist has no unsaved changes.
    Playlist& Nested(const std::string& name) {
        main_.Clear();
        auto nested = std::make_unique<Playlist>(PathOf(name));
        nested->AppendItem(std::make_unique<TrackItem>("/m/a.mp3"));
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

// Each format's lines for a playlist holding one item of each kind and place, and for an
// empty one, which still has its header and count.
TEST_F(Saving, EachFormatWritesItsLines) {
    const struct {
        PlaylistFormat format;
        const char* name;
        std::string text;
        bool empty = false;
    } cases[] = {
        {PlaylistFormat::kM3u, "Lists/mix.m3u",
         "a.mp3\r\nSub/b.ogg\r\n/elsewhere/c.flac\r\nhttp://radio.example/live\r\nsub/inner.m3u\r\n"},
        {PlaylistFormat::kPls, "Lists/mix.pls",
         "[playlist]\r\nFile1=a.mp3\r\nFile2=Sub/b.ogg\r\nFile3=/elsewhere/c.flac\r\n"
         "File4=http://radio.example/live\r\nFile5=sub/inner.m3u\r\nNumberOfEntries=5\r\n"},
        {PlaylistFormat::kVdp, "Lists/mix.vdp",
         "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\nEntry1=a.mp3\r\n"
         "Entry2=;GENRE = \"Rock\"\r\nEntry3=Sub/b.ogg\r\nEntry4=/elsewhere/c.flac\r\n"
         "Entry5=http://radio.example/live\r\nEntry6=sub/inner.m3u\r\nEntry7=;YEAR > 1990\r\n"
         "NumberOfEntries=7\r\n"},
        {PlaylistFormat::kM3u, "Lists/e.m3u", "", true},
        {PlaylistFormat::kPls, "Lists/e.pls", "[playlist]\r\nNumberOfEntries=0\r\n", true},
        {PlaylistFormat::kVdp, "Lists/e.vdp", "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\nNumberOfEntries=0\r\n", true},
    };
    for (const auto& c : cases) {
        main_.Clear();
        Playlist& mix = MakeMix();
        if (c.empty) mix.Clear();
        ASSERT_TRUE(SavePlaylist(mix, PathOf(c.name), c.format)) << c.name;
        EXPECT_EQ(ReadFile(PathOf(c.name)), c.text) << c.name;
    }
}

// Saving under a name: the format's extension is appended when missing, the playlist takes
// the name, its own flag is cleared, and a new name marks the parent as changed.
TEST_F(Saving, TheNameTakesTheFormatsExtensionAndANewOneMarksTheParent) {
    MakeDirectory("l");
    const struct {
        const char *asked, *written;
        PlaylistFormat format;
        bool parentModified;
    } cases[] = {
        {"l/mix.vdp", "l/mix.vdp", PlaylistFormat::kVdp, false},  // its own name
        {"l/mix", "l/mix.vdp", PlaylistFormat::kVdp, false},      // the same once the extension is appended
        {"l/other.vdp", "l/other.vdp", PlaylistFormat::kVdp, true},
        {"l/MIX.vdp", "l/MIX.vdp", PlaylistFormat::kVdp, true},   // differing only in case is another name
        {"l/mix", "l/mix.pls", PlaylistFormat::kPls, true},
        {"l/mix.PLS", "l/mix.PLS", PlaylistFormat::kPls, true},
        {"l/mix.vdp", "l/mix.vdp.m3u", PlaylistFormat::kM3u, true},
        {"l/Mix.M3u", "l/Mix.M3u", PlaylistFormat::kM3u, true},
    };
    for (const auto& c : cases) {
        Playlist& mix = Nested("l/mix.vdp");
        ASSERT_TRUE(mix.Modified());
        ASSERT_TRUE(SavePlaylist(mix, PathOf(c.asked), c.format)) << c.asked;
        EXPECT_EQ(mix.FileName(), PathOf(c.written));
        EXPECT_FALSE(mix.Modified()) << c.asked;
        EXPECT_EQ(main_.Modified(), c.parentModified) << c.asked;
        EXPECT_FALSE(HasUnsavedPlaylists(main_));
    }
    EXPECT_EQ(FilesIn("l"), (std::vector<std::string>{"MIX.vdp", "Mix.M3u", "mix.PLS", "mix.pls", "mix.vdp", "mix.vdp.m3u",
                                                      "other.vdp"}));
    // The main playlist has no parent to mark.
    main_.SetModified(true);
    ASSERT_TRUE(SavePlaylist(main_, PathOf("l/default.vdp"), PlaylistFormat::kVdp));
    EXPECT_FALSE(main_.Modified());
    EXPECT_EQ(main_.FileName(), PathOf("l/default.vdp"));
}

TEST_F(Saving, AFileThatCannotBeCreatedChangesNothingOnDisk) {
    Write("plain.txt", "keep");
    Write("taken.m3u/inside.txt", "a directory stands where the file would go");
    const struct {
        const char* name;
        const char* why;
    } cases[] = {
        {"no such directory/mix.m3u", "the directory is missing"},
        {"plain.txt/mix.m3u", "a file stands where a directory should"},
        {"taken.m3u", "a directory has the name"},
    };
    for (const auto& c : cases) {
        Playlist& mix = Nested("old.m3u");
        const std::vector<std::string> before = FilesIn("");
        EXPECT_FALSE(SavePlaylist(mix, PathOf(c.name), PlaylistFormat::kM3u)) << c.why;
        EXPECT_EQ(FilesIn(""), before) << c.why;
        EXPECT_EQ(FilesIn("taken.m3u"), std::vector<std::string>{"inside.txt"}) << c.why;
        EXPECT_EQ(ReadFile(PathOf("plain.txt")), "keep");
        // The name change is made before the file is created, and stays.
        EXPECT_EQ(mix.FileName(), PathOf(c.name)) << c.why;
        EXPECT_FALSE(mix.Modified()) << c.why;
        EXPECT_TRUE(main_.Modified()) << c.why;
    }
    Playlist playlist;
    EXPECT_FALSE(SavePlaylist(playlist, PathOf("x"), static_cast<PlaylistFormat>(4)));
    EXPECT_FALSE(FileExists(PathOf("x")));
}

// Replacing a file by renaming would succeed where opening it for writing fails; a file
// its user may not write is refused all the same. Run as an unprivileged user (a child
// process when the tests run as root, who may write anything).
TEST_F(Saving, AFileTheUserMayNotWriteIsNotReplaced) {
    const std::string target = Write("open/mix.m3u", "keep");
    ASSERT_EQ(::chmod(dir_.str().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(PathOf("open").c_str(), 0777), 0);
    ASSERT_EQ(::chmod(target.c_str(), 0444), 0);
    const auto save = [&] {
        Playlist playlist;
        playlist.AppendItem(std::make_unique<TrackItem>("/m/a.mp3"));
        return SavePlaylist(playlist, target, PlaylistFormat::kM3u);
    };
    bool saved = true;
    if (::geteuid() == 0) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const uid_t nobody = 65534;
            if (::setgid(nobody) != 0 || ::setuid(nobody) != 0) ::_exit(2);
            ::_exit(save() ? 1 : 0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        ASSERT_NE(WEXITSTATUS(status), 2) << "could not become an unprivileged user";
        saved = WEXITSTATUS(status) == 1;
    } else {
        saved = save();
    }
    EXPECT_FALSE(saved);
    EXPECT_EQ(ReadFile(target), "keep");
    EXPECT_EQ(FilesIn("open"), std::vector<std::string>{"mix.m3u"});
}

TEST_F(Saving, ReplacingAFileLeavesNoTemporaryFilesAndKeepsLinks) {
    Write("real/mix.m3u", "old contents\r\n");
    MakeDirectory("links");
    ASSERT_EQ(::symlink(PathOf("real/mix.m3u").c_str(), PathOf("links/mix.m3u").c_str()), 0);
    Playlist playlist(PathOf("links/mix.m3u"));
    playlist.AppendItem(std::make_unique<TrackItem>(PathOf("links/a.mp3")));
    ASSERT_TRUE(SavePlaylist(playlist, PathOf("links/mix.m3u"), PlaylistFormat::kM3u));
    struct stat st;
    ASSERT_EQ(::lstat(PathOf("links/mix.m3u").c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));
    EXPECT_EQ(ReadFile(PathOf("real/mix.m3u")), "a.mp3\r\n");
    EXPECT_EQ(FilesIn("real"), std::vector<std::string>{"mix.m3u"});
    EXPECT_EQ(FilesIn("links"), std::vector<std::string>{"mix.m3u"});
}

TEST_F(Saving, NamesTheIniReaderWouldAlterAreQuoted) {
    Write("l/ padded .mp3");
    Write("l/\"quoted\"");
    Write("l/'half.mp3");
    Playlist list(PathOf("l/list.vdp"));
    for (const char* name : {"l/ padded .mp3", "l/\"quoted\"", "l/'half.mp3"})
        list.AppendItem(std::make_unique<TrackItem>(PathOf(name)));
    list.AppendItem(std::make_unique<RandomEntry>("ARTIST = \"x\" "));
    ASSERT_TRUE(SavePlaylist(list, PathOf("l/list.vdp"), PlaylistFormat::kVdp));
    EXPECT_EQ(ReadFile(PathOf("l/list.vdp")),
              "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\nEntry1=\" padded .mp3\"\r\n"
              "Entry2=\"\"quoted\"\"\r\nEntry3='half.mp3\r\nEntry4=\";ARTIST = \"x\" \"\r\nNumberOfEntries=4\r\n");
    ASSERT_TRUE(SavePlaylist(list, PathOf("l/list.pls"), PlaylistFormat::kPls));
    for (const char* name : {"l/list.vdp", "l/list.pls"}) ASSERT_TRUE(Load(PathOf(name)));
    EXPECT_EQ(Tree(), "$/l/list.vdp[ $/l/ padded .mp3 | $/l/\"quoted\" | $/l/'half.mp3 | ?ARTIST = \"x\"  ]"
                      " | $/l/list.pls[ $/l/ padded .mp3 | $/l/\"quoted\" | $/l/'half.mp3 ]");
}

TEST_F(Saving, RoundTripsKeepEveryEntryTheFormatCanHold) {
    Write("Lists/a.mp3");
    Write("Lists/Sub/b.ogg");
    Write("Lists/sub deeper/c d.flac");
    const std::string far = Write("far/e.wav");
    Write("Lists/inner.m3u", "a.mp3\n");
    Write("Lists/source.vdp", "[Entries]\nEntry1=a.mp3\nEntry2=;GENRE = \"Rock\"\nEntry3=Sub\\b.ogg\n"
                              "Entry4=sub deeper/c d.flac\nEntry5=" + far + "\nEntry6=http://h/s.mp3\n"
                              "Entry7=inner.m3u\nEntry8=;\nNumberOfEntries=8\n");
    ASSERT_TRUE(Load(PathOf("Lists/source.vdp")));
    const std::string loaded = Describe(NestedAt(0));
    ASSERT_EQ(loaded, "$/Lists/a.mp3 | ?GENRE = \"Rock\" | $/Lists/Sub/b.ogg | $/Lists/sub deeper/c d.flac"
                      " | $/far/e.wav | http://h/s.mp3 | $/Lists/inner.m3u[ $/Lists/a.mp3 ] | ?");
    const std::string withoutRandom = "$/Lists/a.mp3 | $/Lists/Sub/b.ogg | $/Lists/sub deeper/c d.flac"
                                      " | $/far/e.wav | http://h/s.mp3 | $/Lists/inner.m3u[ $/Lists/a.mp3 ]";
    const struct {
        const char* name;
        PlaylistFormat format;
        std::string expected;
    } cases[] = {
        {"Lists/copy.m3u", PlaylistFormat::kM3u, withoutRandom},
        {"Lists/copy.pls", PlaylistFormat::kPls, withoutRandom},
        {"Lists/copy.vdp", PlaylistFormat::kVdp, loaded},
        {"far/moved.vdp", PlaylistFormat::kVdp, loaded},  // every entry written whole
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(SavePlaylist(NestedAt(0), PathOf(c.name), c.format)) << c.name;
        Playlist again;
        ASSERT_TRUE(LoadItem(again, PathOf(c.name), Context()));
        ASSERT_EQ(again.ItemCount(), 1u);
        EXPECT_EQ(Describe(static_cast<const Playlist&>(*again.ItemAt(0))), c.expected) << c.name;
    }
    EXPECT_NE(ReadFile(PathOf("far/moved.vdp")).find("Entry1=" + PathOf("Lists/a.mp3") + "\r\n"), std::string::npos);
}

}  // namespace
}  // namespace verdin::test
