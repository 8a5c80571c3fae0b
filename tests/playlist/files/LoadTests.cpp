// Loading M3U, PLS and ".vdp" files into the tree. How M3U lines split is the reader's
// (ReaderTests); here, what the loader makes of the entries.
#include "PlaylistFileFixture.h"

#include "PcmFixtures.h"
#include "playlist/TrackItem.h"

#include <functional>
#include <sys/stat.h>

namespace verdin::test {
namespace {

class Loading : public PlaylistFileTest {
protected:
    void WriteAll(std::initializer_list<const char*> names) {
        for (const char* name : names) Write(name);
    }
    void LoadAll(std::initializer_list<const char*> lists) {
        for (const char* list : lists) EXPECT_TRUE(Load(PathOf(list))) << list;
    }
};

TEST_F(Loading, M3uEntriesAreTakenRelativeToTheirPlaylistAndNeverBecomeAddresses) {
    WriteAll({"a.mp3", "sub/b.ogg", "sub/deeper/c.flac", "#hash.mp3", "http:/host/a.mp3"});
    const std::string elsewhere = Write("other/d.wav");
    Write("lists/l.m3u", "#EXTM3U\n#EXTINF:123,Artist - Title\n../a.mp3\n../sub/b.ogg\r\n..\\sub\\deeper\\c.flac\n" +
                             elsewhere + "\nhttp://radio.example/live\n#EXTINF:-1,http://radio.example/in-a-comment\n"
                                         "../missing.mp3\n../#hash.mp3\n");
    Write("l.m3u", "http:\\\\host\\a.mp3\nhttp:\\\\missing\n\\a.mp3\n.//a.mp3\n");
    LoadAll({"lists/l.m3u", "l.m3u"});
    EXPECT_TRUE(Load(PathOf("l.m3u").replace(dir_.str().size(), 1, "///")));  // repeated slashes are one
    EXPECT_EQ(Tree(), "$/lists/l.m3u[ $/lists/../a.mp3 | $/lists/../sub/b.ogg | $/lists/../sub/deeper/c.flac"
                      " | $/other/d.wav | http://radio.example/live | $/lists/../#hash.mp3 ]"
                      " | $/l.m3u[ $/http:/host/a.mp3 | $/a.mp3 | $/./a.mp3 ] | $/l.m3u[ $/http:/host/a.mp3 | $/a.mp3 | $/./a.mp3 ]");
    EXPECT_FALSE(static_cast<const TrackItem&>(*NestedAt(1).ItemAt(0)).Track().IsUrl());
}

TEST_F(Loading, M3u8SkipsAByteOrderMarkAndLongLinesNameFilesPieceByPiece) {
    const std::string p256 = "p/" + std::string(250, 'p') + ".mp3";  // a name may hold 255
    Write(p256);
    WriteAll({"a.mp3", "b.mp3", "x"});
    const std::string text = "\xEF\xBB\xBF" "a.mp3\nb.mp3\n";
    Write("l.m3u8", text);
    Write("l.m3u", text);  // the mark belongs to the first entry, which names nothing
    Write("long.m3u", p256 + "x\r\na.mp3\n");
    LoadAll({"l.m3u8", "l.m3u", "long.m3u"});
    EXPECT_EQ(Tree(), "$/l.m3u8[ $/a.mp3 | $/b.mp3 ] | $/l.m3u[ $/b.mp3 ] | $/long.m3u[ $/" + p256 + " | $/x | $/a.mp3 ]");
}

TEST_F(Loading, PlsAndVdpReadTheNumberedEntriesOfTheirFirstSectionUpToTheCount) {
    WriteAll({"a.mp3", "b.mp3", "c.mp3", "sub/d.mp3", ";x"});
    Write("inner.m3u", "a.mp3\n");
    Write("gap.pls", "[playlist]\r\nFile1=a.mp3\r\nFile3=c.mp3\r\nNumberOfEntries=3\r\n");
    Write("short.pls", "[playlist]\nNumberOfEntries=2\nFile3=c.mp3\nFile2=b.mp3\nFile1=a.mp3\n");
    Write("none.pls", "[playlist]\nFile1=a.mp3\n");  // no count: nothing
    Write("case.pls", "[PlayList]\nfile1=sub\\d.mp3\nFILE2=http://h/s.mp3\nnumberofentries=2\n");
    Write("other.pls", "[other]\nFile1=a.mp3\nNumberOfEntries=1\n[playlist]\nFile1=b.mp3\n"
                       "NumberOfEntries=1\n[playlist]\nFile1=c.mp3\n");
    Write("semicolon.pls", "[playlist]\nFile1=;x\nNumberOfEntries=1\n");  // a file, not a random entry
    Write("l.vdp", "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\nEntry1=a.mp3\r\nEntry2=;GENRE = \"Rock\"\r\n"
                   "Entry3=inner.m3u\r\nEntry4=;\r\nEntry5=missing.mp3\r\nEntry6=http://h/x.ogg\r\nNumberOfEntries=6\r\n");
    Write("bare.vdp", "[entries]\nentry1=;YEAR > 1990\nnumberofentries=1\n");  // the header is never checked
    LoadAll({"gap.pls", "short.pls", "none.pls", "case.pls", "other.pls", "semicolon.pls", "l.vdp", "bare.vdp"});
    EXPECT_EQ(Tree(), "$/gap.pls[ $/a.mp3 | $/c.mp3 ] | $/short.pls[ $/a.mp3 | $/b.mp3 ] | $/none.pls[ ]"
                      " | $/case.pls[ $/sub/d.mp3 | http://h/s.mp3 ] | $/other.pls[ $/b.mp3 ] | $/semicolon.pls[ $/;x ]"
                      " | $/l.vdp[ $/a.mp3 | ?GENRE = \"Rock\" | $/inner.m3u[ $/a.mp3 ] | ? | http://h/x.ogg ]"
                      " | $/bare.vdp[ ?YEAR > 1990 ]");
}

TEST_F(Loading, IniValuesAreCutAt256Characters) {
    const std::string p256 = "p/" + std::string(250, 'p') + ".mp3";
    Write(p256);
    Write(p256.substr(0, 255));
    Write("l.pls", "[playlist]\nFile1=" + p256 + "\nFile2=" + p256 + "TAIL\nNumberOfEntries=2\n");
    Write("r.vdp", "[entries]\nEntry1=;" + std::string(300, 'e') + "\nNumberOfEntries=1\n");
    LoadAll({"l.pls", "r.vdp"});
    EXPECT_EQ(Tree(), "$/l.pls[ $/" + p256 + " | $/" + p256 + " ] | $/r.vdp[ ?" + std::string(255, 'e') + " ]");
}

TEST_F(Loading, WhatLoadItemReturnsAndTheSpellingOnDiskWins) {
    WriteAll({"Music/Track.MP3", "notes.txt"});
    Write("l.m3u", "music\\TRACK.mp3\n");
    MakeDirectory("folder.m3u");
    Write("list.m3u", "pipe.m3u\n");
    ASSERT_EQ(::mkfifo(PathOf("pipe.m3u").c_str(), 0644), 0);  // opening it to read would wait forever
    LoadAll({"L.M3U", "music/track.mp3", "notes.txt", "list.m3u"});  // any other extension is a track
    EXPECT_TRUE(Load("http://127.0.0.1:9/nothing/answers.mp3"));      // a URL needs no answer
    for (const std::string& path : {PathOf("missing.mp3"), PathOf("folder.m3u"), PathOf(""), std::string()})
        EXPECT_FALSE(Load(path)) << path;
    EXPECT_EQ(Tree(), "$/l.m3u[ $/Music/Track.MP3 ] | $/Music/Track.MP3 | $/notes.txt | $/list.m3u[ $/pipe.m3u[ ] ]"
                      " | http://127.0.0.1:9/nothing/answers.mp3");
    const auto& url = static_cast<const TrackItem&>(*main_.ItemAt(4)).Track();
    EXPECT_EQ(url.Path() + "|" + url.Body() + "|" + url.Extension(), "http://127.0.0.1:9/nothing/|answers|.mp3");
    EXPECT_FALSE(url.InfoRetrieved());  // skipInfoForAnyFile
}

TEST_F(Loading, LoadedPlaylistsHaveNoUnsavedChanges) {
    Write("a.mp3");
    Write("inner.pls", "[playlist]\nFile1=a.mp3\nNumberOfEntries=1\n");
    Write("outer.vdp", "[Entries]\nEntry1=inner.pls\nEntry2=a.mp3\nNumberOfEntries=2\n");
    main_.SetModified(false);
    EXPECT_TRUE(Load(PathOf("outer.vdp")));
    EXPECT_TRUE(main_.Modified());  // it gained an item
    Playlist& outer = NestedAt(0);
    auto& inner = static_cast<Playlist&>(*outer.ItemAt(0));
    EXPECT_FALSE(outer.Modified() || inner.Modified() || HasUnsavedPlaylists(main_));
    EXPECT_EQ(outer.Parent(), &main_);
    EXPECT_EQ(inner.Parent(), &outer);
}

TEST_F(Loading, APlaylistThatIncludesItselfIsReadOncePerChain) {
    Write("a.mp3");
    MakeDirectory("sub");
    // However the inner mention is spelled, it is the same file.
    Write("self.m3u", "a.mp3\nself.m3u\n");
    Write("dot.m3u", "./dot.m3u\na.mp3\n");
    Write("case.m3u", "sub/../CASE.m3u\n");
    Write("ping.m3u", "pong.vdp\n");
    Write("pong.vdp", "[entries]\nentry1=ping.m3u\nentry2=a.mp3\nnumberofentries=2\n");
    // Not a loop: the same file twice side by side is read twice.
    Write("twice.pls", "[playlist]\nFile1=ping.m3u\nFile2=ping.m3u\nNumberOfEntries=2\n");
    LoadAll({"self.m3u", "dot.m3u", "case.m3u", "ping.m3u", "twice.pls"});
    EXPECT_EQ(Tree(), "$/self.m3u[ $/a.mp3 ] | $/dot.m3u[ $/a.mp3 ] | $/case.m3u[ ] | $/ping.m3u[ $/pong.vdp[ $/a.mp3 ] ]"
                      " | $/twice.pls[ $/ping.m3u[ $/pong.vdp[ $/a.mp3 ] ] | $/ping.m3u[ $/pong.vdp[ $/a.mp3 ] ] ]");
}

// Files that each name the next one twice would take 2^25 reads; files that each name
// the next once nest deeper than allowed.
TEST_F(Loading, ReadsStopAtTheBudgetAndNestingAtItsDepth) {
    for (int i = 0; i < 25; ++i) {
        const std::string next = "d" + std::to_string(i + 1) + ".m3u\n";
        Write("d" + std::to_string(i) + ".m3u", next + next);
    }
    for (int i = 0; i < kMaxPlaylistNesting + 6; ++i) Write("l" + std::to_string(i) + ".m3u", "l" + std::to_string(i + 1) + ".m3u\n");
    LoadAll({"d0.m3u", "l0.m3u"});
    int playlists = 0;
    std::function<int(const Playlist&)> count = [&](const Playlist& p) {
        int depth = 0;
        for (size_t i = 0; i < p.ItemCount(); ++i)
            if (p.ItemAt(i)->Kind() == ItemKind::kPlaylist) {
                ++playlists;
                depth = std::max(depth, 1 + count(static_cast<const Playlist&>(*p.ItemAt(i))));
            }
        return depth;
    };
    EXPECT_EQ(count(NestedAt(1)) + 1, kMaxPlaylistNesting);
    playlists = 0;
    count(NestedAt(0));
    EXPECT_EQ(playlists + 1, kMaxPlaylistReads);
}

TEST_F(Loading, EntriesOfDefaultVdpGoIntoThePlaylistItself) {
    Write("a.mp3");
    Write("inner.m3u", "a.mp3\n");
    Write("default.vdp", "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\nEntry1=a.mp3\r\n"
                         "Entry2=inner.m3u\r\nEntry3=;ARTIST = \"x\"\r\nNumberOfEntries=3\r\n");
    EXPECT_TRUE(LoadPlaylistEntries(main_, PathOf("default.vdp"), Context()));
    EXPECT_EQ(Tree(), "$/a.mp3 | $/inner.m3u[ $/a.mp3 ] | ?ARTIST = \"x\"");
    EXPECT_FALSE(main_.Modified() || HasUnsavedPlaylists(main_));
    EXPECT_EQ(main_.FileName(), "");  // the main playlist keeps having no file of its own
    Playlist other;
    EXPECT_FALSE(LoadPlaylistEntries(other, PathOf("missing.vdp"), Context()));
    EXPECT_FALSE(LoadPlaylistEntries(other, PathOf("a.mp3"), Context()));
    EXPECT_EQ(other.ItemCount(), 0u);
}

TEST_F(Loading, TracksFromPlaylistsAreRetrievedByTheRule) {
    ASSERT_GE(modules_.LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr), 2u);
    WriteWav(PathOf("tone.wav"), 1, 8000, 16, Bytes16(Sine16(4000, 1, 8000, {440.0})));
    Write("l.m3u", "tone.wav\nhttp://127.0.0.1:9/x.mp3\n");
    const struct {
        bool anyFile, url, localRetrieved, urlRetrieved;
    } cases[] = {{false, false, true, true}, {false, true, true, false}, {true, false, false, false}};
    for (const auto& c : cases) {
        settings_.skipInfoForAnyFile = c.anyFile;
        settings_.skipInfoForURL = c.url;
        Playlist main;
        ASSERT_TRUE(LoadItem(main, PathOf("l.m3u"), Context()));
        const auto& list = static_cast<const Playlist&>(*main.ItemAt(0));
        ASSERT_EQ(list.ItemCount(), 2u);
        const TrackRecord& local = static_cast<const TrackItem&>(*list.ItemAt(0)).Track();
        EXPECT_EQ(local.InfoRetrieved(), c.localRetrieved);
        EXPECT_EQ(local.Duration(), c.localRetrieved ? 500u : 0u);
        EXPECT_EQ(static_cast<const TrackItem&>(*list.ItemAt(1)).Track().InfoRetrieved(), c.urlRetrieved);
        EXPECT_EQ(list.Duration(), c.localRetrieved ? 500u : 0u);
    }
}

}  // namespace
}  // namespace verdin::test
