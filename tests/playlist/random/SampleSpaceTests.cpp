// The sample space: which files it is built from, building it through the bundled input
// plug-ins from files encoded here, and picking tracks for random entries.
#include "engine/input/InputModuleList.h"
#include "playlist/ProcessRandom.h"
#include "playlist/random/SampleSpace.h"
#include "playlist/random/SampleSpaceScan.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"
#include "PlaylistFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <filesystem>
#include <set>
#include <thread>

namespace verdin {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

// 16-bit stereo at 44.1 kHz.
void WriteToneWav(const std::string& path, int milliseconds) {
    test::WriteWav(path, 2, 44100, 16, test::Bytes16(test::Sine16(44100 * milliseconds / 1000, 2, 44100, {440.0, 660.0})));
}
// An MP3 made by lame from a tone, with lame's options ("--tt", "Title"); throws when lame fails.
void EncodeMp3(const std::string& path, int milliseconds, std::vector<std::string> lameOptions) {
    WriteToneWav(path + ".wav", milliseconds);
    lameOptions.insert(lameOptions.begin(), {"lame", "--quiet", "--noreplaygain"});
    lameOptions.insert(lameOptions.end(), {path + ".wav", path});
    const test::CommandResult result = test::RunCommand(lameOptions);
    fs::remove(path + ".wav");
    if (result.exitCode != 0) throw std::runtime_error("lame failed for " + path + ": " + result.output);
}

class SampleSpaceFiles_ : public ::testing::Test {
protected:
    std::string Make(const std::string& relative) {  // its directories made
        fs::create_directories((dir_.path() / relative).parent_path());
        return dir_.file(relative);
    }
    void Touch(const std::string& relative) { test::WriteFile(Make(relative), "x"); }
    // Paths relative to the test directory.
    Strings Relative(const Strings& paths) const {
        Strings out;
        for (const std::string& p : paths) out.push_back(fs::path(p).lexically_normal().lexically_relative(dir_.path()).string());
        return out;
    }
    Strings Scan(const std::string& searchPath, bool recurse, std::string_view extensions = ".mp3") const {
        return Relative(SampleSpaceFiles(SampleSpaceDirectories(searchPath, recurse), extensions));
    }
    test::TempDir dir_;
};

TEST_F(SampleSpaceFiles_, ComeFromThePiecesBreadthFirstOnceEachByExtension) {
    for (const char* name : {"a/1.mp3", "b/2.mp3", "root/top.mp3", "root/B/b.mp3", "root/a/a.mp3", "root/a/deep/deep.mp3",
                             "root/a/deep/deeper/deepest.mp3", "root/c/c.mp3"})
        Touch(name);
    const std::string a = dir_.file("a"), b = dir_.file("b");
    const std::pair<std::string, Strings> paths[] = {
        {"", {}}, {";;;", {}}, {a + ";;" + b, {"a/1.mp3", "b/2.mp3"}}, {";" + b + ";" + a + ";", {"b/2.mp3", "a/1.mp3"}},
        {a + ";" + a + "/", {"a/1.mp3"}},              // the same directory twice
        {a + ";" + b + "/../a", {"a/1.mp3"}},          // another spelling of it
        {a + "/../b;" + b, {"b/2.mp3"}},               // the first spelling is kept
        {dir_.file("missing") + ";" + a, {"a/1.mp3"}},  // left out silently
        {" " + a, {}},                                 // pieces are used as written
    };
    for (const auto& [path, expected] : paths) EXPECT_EQ(Scan(path, false), expected) << path;
    EXPECT_EQ(SampleSpaceFiles(SampleSpaceDirectories(b + "/../a", false), ".mp3"), Strings{b + "/../a/1.mp3"});
    EXPECT_EQ(Scan(dir_.file("root"), true), (Strings{"root/top.mp3", "root/a/a.mp3", "root/B/b.mp3", "root/c/c.mp3",
                                                      "root/a/deep/deep.mp3", "root/a/deep/deeper/deepest.mp3"}));
    EXPECT_EQ(Scan(dir_.file("root"), false), Strings{"root/top.mp3"});

    // Links count once: an alias given in the path comes before root's subdirectories, so
    // root/a, reached later under its own name, is the repeat that goes; a loop back up ends.
    fs::create_directory_symlink(dir_.file("root"), dir_.file("root/a/up"));
    fs::create_directory_symlink(dir_.file("root/B"), dir_.file("root/a/to-B"));
    fs::create_directory_symlink(dir_.file("root/a"), dir_.file("alias"));
    EXPECT_EQ(Relative(SampleSpaceDirectories(dir_.file("root") + ";" + dir_.file("alias"), true)),
              (Strings{"root", "alias", "root/B", "root/c", "alias/deep", "alias/deep/deeper"}));

    for (const char* name : {"d/b.wav", "d/a.mp3", "d/C.WAV", "d/d.Mp3", "d/e.txt", "d/f.mp3x", "d/g.flac", "d/sub.mp3/inner.wav", "e/z.wav", "e/y.mp3"})
        Touch(name);
    const std::string de = dir_.file("d") + ";" + dir_.file("e");
    const std::pair<std::string, Strings> extensions[] = {
        {".mp3;.wav", {"d/a.mp3", "d/d.Mp3", "d/b.wav", "d/C.WAV", "e/y.mp3", "e/z.wav"}},
        {".wav;.mp3", {"d/b.wav", "d/C.WAV", "d/a.mp3", "d/d.Mp3", "e/z.wav", "e/y.mp3"}},
        {".flac;;.txt", {"d/g.flac", "d/e.txt"}}, {"", {}},
    };
    for (const auto& [list, expected] : extensions) EXPECT_EQ(Scan(de, false, list), expected) << list;
}

class SampleSpaceBuild : public SampleSpaceFiles_ {
protected:
    static const InputModuleList& Modules() {
        static const InputModuleList* modules = [] {
            auto* list = new InputModuleList;
            list->LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr);
            return list;
        }();
        return *modules;
    }
    bool Build(const std::string& searchPath, bool recurse, const SampleSpaceOptions& options = {}) {
        return space_.CreateSampleSpace(searchPath, recurse, Modules().SupportedExtensions(), Modules(), options);
    }
    Strings Names() const {
        Strings names;
        for (size_t i = 0; i < space_.Size(); ++i) names.push_back(space_.TrackAt(i).FullName());
        return Relative(names);
    }
    SampleSpace space_;
};

TEST_F(SampleSpaceBuild, TracksComeInScanOrderWithTheirInformation) {
    EncodeMp3(Make("music/b.mp3"), 1500, {"--tt", "Blue in Green", "--ta", "Miles Davis", "--ty", "1959", "--tg", "Jazz"});
    WriteToneWav(Make("music/a.wav"), 250);
    EncodeMp3(Make("music/sub/c.mp3"), 300, {"--ta", "Muddy Waters", "--ty", "1954", "--tg", "Blues"});
    test::WriteFile(Make("music/broken.mp3"), "this is no audio at all");
    test::WriteFile(Make("music/notes.txt"), "not a track");
    for (const std::string& nothing : {std::string(), dir_.file("missing")}) {
        std::vector<std::pair<size_t, size_t>> reports;
        EXPECT_FALSE(Build(nothing, true, {false, 0, [&](size_t done, size_t total) { reports.emplace_back(done, total); }}));
        EXPECT_FALSE(space_.Valid());
        EXPECT_EQ(reports, (std::vector<std::pair<size_t, size_t>>{{0, 0}}));
    }
    ASSERT_TRUE(Build(dir_.file("music"), true));
    EXPECT_TRUE(space_.Valid());
    // The MPEG module lists its extensions first; a file no module reads stays, not existing.
    ASSERT_EQ(Names(), (Strings{"music/b.mp3", "music/broken.mp3", "music/a.wav", "music/sub/c.mp3"}));
    for (size_t i = 0; i < 4; ++i) EXPECT_TRUE(space_.TrackAt(i).InfoRetrieved()) << i;
    const TrackRecord& miles = space_.TrackAt(0);
    EXPECT_TRUE(miles.Exists());
    EXPECT_EQ(miles.Tag().Find(FrameId::LeadArtist)->text, "Miles Davis");
    EXPECT_NEAR(miles.Duration(), 1500, 60);
    EXPECT_EQ(miles.FileSize(), fs::file_size(dir_.file("music/b.mp3")));
    EXPECT_FALSE(space_.TrackAt(1).Exists());
    EXPECT_EQ(space_.TrackAt(2).Duration(), 250u);
    RandomEntry blues("(CONTENTTYPE ~ \"blues\") && (YEAR < 1960)");  // picks read what was retrieved
    EXPECT_EQ(space_.Resolve(blues, 5)->Body(), "c");
    EXPECT_EQ(space_.PickHistory().size(), 1u);

    SampleSpaceOptions ignore;
    ignore.ignoreTags = true;
    ASSERT_TRUE(Build(dir_.file("music/sub") + ";" + dir_.file("music"), false, ignore));
    EXPECT_EQ(Names(), (Strings{"music/sub/c.mp3", "music/b.mp3", "music/broken.mp3", "music/a.wav"}));  // replaced
    EXPECT_TRUE(space_.PickHistory().empty());
    EXPECT_TRUE(space_.TrackAt(0).Tag().empty() && space_.TrackAt(0).Exists());

    Playlist main;  // starting needs a space only with random entries in the tree, and only until it is built
    main.AppendItem(std::make_unique<TrackItem>("/music/a.mp3"));
    SampleSpace none;
    EXPECT_FALSE(NeedsSampleSpace(main, none));
    main.AppendItem(test::BuildTree("P[ ?x ]")->TakeItem(0));
    EXPECT_TRUE(NeedsSampleSpace(main, none));
    EXPECT_FALSE(NeedsSampleSpace(main, space_));
}

// The same files through one thread and through several: the same records in the same
// order, whatever order the threads finished in; progress reaches the caller on its thread.
TEST_F(SampleSpaceBuild, ConcurrentRetrievalMatchesOneThread) {
    for (int i = 0; i < 24; ++i) {
        const std::string n = std::to_string(i), name = "c/d" + std::to_string(i % 4) + "/t" + n;
        if (i % 3 == 0) EncodeMp3(Make(name + ".mp3"), 300, {"--tt", "Title " + n, "--ty", n});
        else WriteToneWav(Make(name + ".wav"), 50 + 10 * i);
    }
    test::WriteFile(Make("c/d1/bad.wav"), "RIFF but not really");
    const auto records = [&] {
        std::vector<std::tuple<std::string, uint32_t, uint32_t, bool, TrackTag>> out;
        for (size_t i = 0; i < space_.Size(); ++i) {
            const TrackRecord& t = space_.TrackAt(i);
            out.emplace_back(t.FullName(), t.Duration(), t.FileSize(), t.Exists(), t.Tag());
        }
        return out;
    };
    const auto caller = std::this_thread::get_id();
    std::vector<std::tuple<std::string, uint32_t, uint32_t, bool, TrackTag>> single;
    for (unsigned threads : {1u, 3u, 0u}) {
        std::vector<std::pair<size_t, size_t>> reports;
        bool otherThread = false;
        ASSERT_TRUE(Build(dir_.file("c"), true, {false, threads, [&](size_t done, size_t total) {
                                                     reports.emplace_back(done, total);
                                                     otherThread = otherThread || std::this_thread::get_id() != caller;
                                                 }}));
        if (threads == 1) single = records();
        ASSERT_EQ(single.size(), 25u);
        EXPECT_TRUE(records() == single) << threads << " threads";
        EXPECT_FALSE(otherThread);
        ASSERT_GE(reports.size(), 2u);
        using Report = std::pair<size_t, size_t>;
        EXPECT_EQ(reports.front(), Report(0, 25));
        EXPECT_EQ(reports.back(), Report(25, 25));
        for (size_t i = 1; i < reports.size(); ++i) EXPECT_GT(reports[i].first, reports[i - 1].first) << "reports only go up";
        EXPECT_TRUE(threads != 1 || reports.size() == 26u);  // one per file
    }
}

TEST_F(SampleSpaceBuild, TheBuildSeedsTheGeneratorFromTheClock) {
    WriteToneWav(Make("s/x.wav"), 40);
    SeedProcessRandom(1);
    const unsigned before = TimeSeed();  // 0..59,999 from the local time
    ASSERT_TRUE(Build(dir_.file("s"), false));
    const unsigned after = TimeSeed();
    const uint32_t drawn = NextProcessRandom();
    bool seeded = false;
    for (unsigned seed = before; seed != (after + 1) % 60000; seed = (seed + 1) % 60000) {
        std::srand(seed);
        seeded = seeded || uint32_t(std::rand()) == drawn;
    }
    EXPECT_TRUE(seeded);
}

// Picks against the documented rule, over long runs of random expressions and history
// limits: the candidates are the matching tracks in order that are not in the history; the
// (rand() % their number)-th is taken and appended to the history, whose oldest entry goes
// when it then holds more than the limit; no candidate gives the null track and empties it.
TEST(Picks, FollowTheDocumentedRule) {
    std::vector<std::unique_ptr<TrackRecord>> tracks;
    for (std::string name : {"a1", "b1", "a2", "a3", "b2"})
        tracks.push_back(test::MakeTrack({"/music/" + name + ".mp3", {{FrameId::LeadArtist, name[0] == 'a' ? "Alpha" : "Beta"}}, 1000, 10}));
    Strings names, history;
    for (const auto& t : tracks) names.push_back(t->Body());
    SampleSpace space;
    space.ReplaceTracks(std::move(tracks));
    const std::pair<std::string, std::string> expressions[] = {{"(LEADARTIST = Alpha)", "a"}, {"(LEADARTIST = Beta)", "b"}, {"", ""}, {"(LEADARTIST = Gamma)", "-"}};
    for (unsigned seed : {1u, 2u, 77u, 4096u}) {
        std::mt19937 choose(seed);
        for (int pick = 0; pick < 200; ++pick) {
            const auto& [expression, prefix] = expressions[choose() % 4];
            const int limit = int(choose() % 6);
            Strings candidates;
            for (const std::string& name : names)
                if (name.starts_with(prefix) && std::find(history.begin(), history.end(), name) == history.end()) candidates.push_back(name);
            SeedProcessRandom(seed + pick);
            RandomEntry entry(expression);
            const TrackRecord* picked = space.Resolve(entry, limit);
            std::srand(seed + pick);
            if (candidates.empty()) {
                history.clear();
                ASSERT_TRUE(picked->IsNullTrack()) << pick;
            } else {
                const std::string drawn = candidates[size_t(std::rand()) % candidates.size()];
                ASSERT_EQ(picked->Body(), drawn) << pick;
                history.push_back(drawn);
                if (int(history.size()) > limit) history.erase(history.begin());  // one at a time
            }
            Strings actual;
            for (const TrackRecord* t : space.PickHistory()) actual.push_back(t->Body());
            ASSERT_EQ(actual, history) << "seed " << seed << ", pick " << pick << ": " << expression << " with " << limit;
            EXPECT_TRUE(entry.Picked());
        }
    }
    // A picked entry keeps its track, drawing nothing, until its expression changes or it is reset.
    RandomEntry entry("(LEADARTIST = Alpha)");
    const TrackRecord* picked = space.Resolve(entry, 0);
    SeedProcessRandom(99);
    const unsigned next = NextProcessRandom();
    SeedProcessRandom(99);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(space.Resolve(entry, 0), picked);
    EXPECT_EQ(NextProcessRandom(), next);
    entry.SetExpression("(LEADARTIST = Beta)");
    EXPECT_FALSE(entry.Picked());
    EXPECT_EQ(space.Resolve(entry, 0)->Tag().Find(FrameId::LeadArtist)->text, "Beta");
    entry.Reset();
    EXPECT_FALSE(entry.Picked());
    space.Resolve(entry, 5);
    space.ReplaceTracks({});  // empties the history; nothing to pick
    EXPECT_TRUE(space.PickHistory().empty());
    EXPECT_FALSE(space.Valid());
    entry.Reset();
    EXPECT_TRUE(space.Resolve(entry, 5)->IsNullTrack());
}

}  // namespace
}  // namespace verdin
