// Loading M3U, PLS and ".vdp" files into the tree: what the loader makes of the entries.
// How lines and keys are read is the readers' (ReaderTests), how entries name files
// PathRuleTests'; the main playlist loaded from "default.vdp" at start-up is also run
// whole in tests/system.
#include "PlaylistFileFixture.h"

#include "playlist/TrackItem.h"

#include <functional>
#include <sys/stat.h>

namespace verdin::test {
namespace {

class Loading : public PlaylistFileTest {
protected:
    void LoadAll(std::initializer_list<const char*> lists) {
        for (const char* list : lists) EXPECT_TRUE(Load(PathOf(list))) << list;
    }
};

// Entries are taken relative to their playlist; an M3U comment line holding an address
// is skipped, any other line is an entry; repeated slashes are one, so a backslashed
// "http:" never becomes an address; ".m3u8" skips a byte-order mark, which in ".m3u"
// belongs to the first entry and names nothing. PLS and ".vdp" files read the numbered
// keys of their first section up to the count (none without one), each value cut at 256
// characters; ";" begins a random entry in ".vdp" files only, whose header is never
// checked. Entries that name nothing are skipped.
TEST_F(Loading, EachFormatsEntries) {
    const std::string p256 = "p/" + std::string(250, 'p') + ".mp3";  // a name may hold 255
    for (const char* name : {"a.mp3", "sub/b.ogg", "#hash.mp3", "http:/host/a.mp3", ";x", p256.c_str()}) Write(name);
    Write(p256.substr(0, 255));
    Write("lists/l.m3u", "#EXTM3U\n#EXTINF:123,Artist - Title\n../a.mp3\n../sub/b.ogg\r\n"
                         "#EXTINF:-1,http://radio.example/in-a-comment\n../#hash.mp3\n");
    Write("l.m3u", "http:\\\\host\\a.mp3\n\\a.mp3\n");
    Write("l.m3u8", "\xEF\xBB\xBF" "a.mp3\nsub/b.ogg\n");
    Write("bom.m3u", "\xEF\xBB\xBF" "a.mp3\nsub/b.ogg\n");
    Write("none.pls", "[playlist]\nFile1=a.mp3\n");
    Write("l.pls", "[playlist]\nFile1=;x\nFile2=" + p256 + "TAIL\nNumberOfEntries=2\n");
    Write("l.vdp", "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\nEntry1=a.mp3\r\nEntry2=;GENRE = \"Rock\"\r\n"
                   "Entry3=;\r\nEntry4=missing.mp3\r\nEntry5=http://h/x.ogg\r\nNumberOfEntries=5\r\n");
    Write("bare.vdp", "[entries]\nentry1=;" + std::string(300, 'e') + "\nnumberofentries=1\n");
    LoadAll({"lists/l.m3u", "l.m3u", "l.m3u8", "bom.m3u", "none.pls", "l.pls", "l.vdp", "bare.vdp"});
    EXPECT_EQ(Tree(), "$/lists/l.m3u[ $/lists/../a.mp3 | $/lists/../sub/b.ogg | $/lists/../#hash.mp3 ]"
                      " | $/l.m3u[ $/http:/host/a.mp3 | $/a.mp3 ] | $/l.m3u8[ $/a.mp3 | $/sub/b.ogg ] | $/bom.m3u[ $/sub/b.ogg ]"
                      " | $/none.pls[ ] | $/l.pls[ $/;x | $/" + p256 + " ] | $/l.vdp[ $/a.mp3 | ?GENRE = \"Rock\" | ? | http://h/x.ogg ]"
                      " | $/bare.vdp[ ?" + std::string(255, 'e') + " ]");
    EXPECT_FALSE(static_cast<const TrackItem&>(*NestedAt(1).ItemAt(0)).Track().IsUrl());
}

TEST_F(Loading, WhatLoadItemReturnsAndTheSpellingOnDiskWins) {
    for (const char* name : {"Music/Track.MP3", "notes.txt"}) Write(name);
    Write("l.m3u", "music\\TRACK.mp3\n");
    std::filesystem::create_directories(PathOf("folder.m3u"));
    Write("list.m3u", "pipe.m3u\n");
    ASSERT_EQ(::mkfifo(PathOf("pipe.m3u").c_str(), 0644), 0);  // opening it to read would wait forever
    LoadAll({"L.M3U", "music/track.mp3", "notes.txt", "list.m3u"});  // any other extension is a track
    EXPECT_TRUE(Load("http://127.0.0.1:9/nothing/answers.mp3"));      // a URL needs no answer
    for (const std::string& path : {PathOf("missing.mp3"), PathOf("folder.m3u"), PathOf(""), std::string()})
        EXPECT_FALSE(Load(path)) << path;
    EXPECT_EQ(Tree(), "$/l.m3u[ $/Music/Track.MP3 ] | $/Music/Track.MP3 | $/notes.txt | $/list.m3u[ $/pipe.m3u[ ] ]"
                      " | http://127.0.0.1:9/nothing/answers.mp3");
}

// Playlists just loaded have no unsaved changes, nested or not; the entries of
// "default.vdp" go into the main playlist itself, which keeps having no file of its own.
TEST_F(Loading, LoadedPlaylistsHaveNoUnsavedChanges) {
    Write("a.mp3");
    Write("inner.pls", "[playlist]\nFile1=a.mp3\nNumberOfEntries=1\n");
    Write("outer.vdp", "[Entries]\nEntry1=inner.pls\nEntry2=;ARTIST = \"x\"\nNumberOfEntries=2\n");
    EXPECT_TRUE(Load(PathOf("outer.vdp")));
    EXPECT_TRUE(main_.Modified());  // it gained an item
    Playlist& outer = NestedAt(0);
    auto& inner = static_cast<Playlist&>(*outer.ItemAt(0));
    EXPECT_FALSE(outer.Modified() || inner.Modified());
    EXPECT_EQ(inner.Parent(), &outer);
    Playlist main;
    main.SetModified(true);
    EXPECT_TRUE(LoadPlaylistEntries(main, PathOf("outer.vdp"), Context()));
    EXPECT_EQ(Describe(main), "$/inner.pls[ $/a.mp3 ] | ?ARTIST = \"x\"");
    EXPECT_FALSE(main.Modified() || HasUnsavedPlaylists(main));
    EXPECT_EQ(main.FileName(), "");
}

// However the inner mention of a playlist being read is spelled, it adds nothing; the
// same file twice side by side is no loop and is read twice.
TEST_F(Loading, APlaylistThatIncludesItselfIsReadOncePerChain) {
    Write("a.mp3");
    Write("self.m3u", "a.mp3\nself.m3u\n");
    Write("case.m3u", "sub/../CASE.m3u\n");
    std::filesystem::create_directories(PathOf("sub"));
    Write("ping.m3u", "pong.vdp\n");
    Write("pong.vdp", "[entries]\nentry1=ping.m3u\nentry2=a.mp3\nnumberofentries=2\n");
    Write("twice.pls", "[playlist]\nFile1=ping.m3u\nFile2=ping.m3u\nNumberOfEntries=2\n");
    LoadAll({"self.m3u", "case.m3u", "ping.m3u", "twice.pls"});
    EXPECT_EQ(Tree(), "$/self.m3u[ $/a.mp3 ] | $/case.m3u[ ] | $/ping.m3u[ $/pong.vdp[ $/a.mp3 ] ]"
                      " | $/twice.pls[ $/ping.m3u[ $/pong.vdp[ $/a.mp3 ] ] | $/ping.m3u[ $/pong.vdp[ $/a.mp3 ] ] ]");
}

// Files that each name the next one twice would take 2^25 reads; files that each name
// the next once nest deeper than allowed; a file naming another 1,001 times, which names
// a track 1,000 times, holds more entries than allowed.
TEST_F(Loading, ReadsStopAtTheBudgetAndNestingAtItsDepth) {
    for (int i = 0; i < 25; ++i) {
        const std::string next = "d" + std::to_string(i + 1) + ".m3u\n";
        Write("d" + std::to_string(i) + ".m3u", next + next);
    }
    for (int i = 0; i < kMaxPlaylistNesting + 6; ++i) Write("l" + std::to_string(i) + ".m3u", "l" + std::to_string(i + 1) + ".m3u\n");
    std::string wide, thousand;
    for (int i = 0; i < 1000; ++i) wide += "thousand.m3u\n", thousand += "a.mp3\n";
    Write("wide.m3u", wide + "thousand.m3u\n");
    Write("thousand.m3u", thousand);
    Write("a.mp3");
    LoadAll({"d0.m3u", "l0.m3u", "wide.m3u"});
    std::function<int(const Playlist&)> playlists = [&](const Playlist& p) {
        int n = 1;
        for (size_t i = 0; i < p.ItemCount(); ++i)
            if (p.ItemAt(i)->Kind() == ItemKind::kPlaylist) n += playlists(static_cast<const Playlist&>(*p.ItemAt(i)));
        return n;
    };
    EXPECT_EQ(playlists(NestedAt(0)), kMaxPlaylistReads);
    EXPECT_EQ(playlists(NestedAt(1)), kMaxPlaylistNesting);  // a chain: its length is its depth
    EXPECT_EQ(NestedAt(2).RowCount(), kMaxPlaylistEntries);  // a row for each entry taken
}

}  // namespace
}  // namespace verdin::test
