// The sample space: which files it is built from, building it through the bundled input
// plug-ins from files encoded here, and picking tracks for random entries.
#include "playlist/ProcessRandom.h"
#include "playlist/random/SampleSpace.h"
#include "playlist/random/SampleSpaceScan.h"
#include "playlist/random/ParallelRetrieval.h"
#include "engine/input/InputModuleList.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "PlaylistFixtures.h"
#include "Process.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

namespace verdin {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

class SampleSpaceFiles_ : public ::testing::Test {
protected:
    std::string Make(const std::string& relative) {  // its directories made
        fs::create_directories((dir_.path() / relative).parent_path());
        return dir_.file(relative);
    }
    // A tone: a WAV, or an MP3 that lame makes of one with its options ("--tt", "Title").
    void Tone(const std::string& relative, int milliseconds, Strings lame = {}) {
        const bool mp3 = relative.ends_with(".mp3");
        const std::string wav = mp3 ? dir_.file("tone.wav") : Make(relative);
        test::WriteWav(wav, 2, 44100, 16, test::Bytes16(test::Sine16(44100 * milliseconds / 1000, 2, 44100, {440.0, 660.0})));
        lame.insert(lame.begin(), {"lame", "--quiet", "--noreplaygain"}), lame.insert(lame.end(), {wav, Make(relative)});
        if (mp3 && (test::RunCommand(lame).exitCode != 0 || !fs::remove(wav))) throw std::runtime_error("lame failed for " + relative);
    }
    Strings Relative(const Strings& paths) const {  // to the test directory
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
    for (const char* name : {"a/1.mp3", "b/2.mp3", "root/top.mp3", "root/B/b.mp3", "root/a/a.mp3", "root/a/deep/deep.mp3", "root/a/deep/deeper/deepest.mp3", "root/c/c.mp3",
                             "d/b.wav", "d/a.mp3", "d/C.WAV", "d/d.Mp3", "d/e.txt", "d/f.mp3x", "d/g.flac", "d/sub.mp3/inner.wav", "e/z.wav", "e/y.mp3"})
        test::WriteFile(Make(name), "x");
    const std::string a = dir_.file("a"), b = dir_.file("b"), de = dir_.file("d") + ";" + dir_.file("e");
    const std::tuple<std::string, bool, std::string, Strings> scans[] = {  // search path, recursing, extensions: files
        {"", false, ".mp3", {}}, {";;;", false, ".mp3", {}}, {a + ";;" + b, false, ".mp3", {"a/1.mp3", "b/2.mp3"}}, {";" + b + ";" + a + ";", false, ".mp3", {"b/2.mp3", "a/1.mp3"}},
        {a + ";" + a + "/", false, ".mp3", {"a/1.mp3"}}, {a + ";" + b + "/../a", false, ".mp3", {"a/1.mp3"}},  // the same directory twice, another spelling of it
        {" " + a, false, ".mp3", {}},  // pieces are used as written
        {dir_.file("root"), true, ".mp3", {"root/top.mp3", "root/a/a.mp3", "root/B/b.mp3", "root/c/c.mp3", "root/a/deep/deep.mp3", "root/a/deep/deeper/deepest.mp3"}},
        {de, false, ".mp3;.wav", {"d/a.mp3", "d/d.Mp3", "d/b.wav", "d/C.WAV", "e/y.mp3", "e/z.wav"}}, {de, false, ".flac;;.txt", {"d/g.flac", "d/e.txt"}}, {de, false, "", {}},
    };
    for (const auto& [path, recurse, extensions, expected] : scans) EXPECT_EQ(Scan(path, recurse, extensions), expected) << path << " " << extensions;
    EXPECT_EQ(SampleSpaceFiles(SampleSpaceDirectories(b + "/../a", false), ".mp3"), Strings{b + "/../a/1.mp3"});
    // Links count once: an alias given in the path comes before root's subdirectories, so
    // root/a, reached later under its own name, is the repeat that goes; a loop back up ends.
    fs::create_directory_symlink(dir_.file("root"), dir_.file("root/a/up"));
    fs::create_directory_symlink(dir_.file("root/B"), dir_.file("root/a/to-B"));
    fs::create_directory_symlink(dir_.file("root/a"), dir_.file("alias"));
    EXPECT_EQ(Relative(SampleSpaceDirectories(dir_.file("root") + ";" + dir_.file("alias"), true)), (Strings{"root", "alias", "root/B", "root/c", "alias/deep", "alias/deep/deeper"}));
}

// Built with several threads: every record retrieved and in scan order, whatever order the
// threads finished in, with progress reaching the caller on its thread; picks reading what
// was retrieved.
TEST_F(SampleSpaceFiles_, TheBuildRetrievesEveryTrackInScanOrder) {
    Tone("music/b.mp3", 1500, {"--tt", "Blue in Green", "--ta", "Miles Davis", "--ty", "1959", "--tg", "Jazz"});
    Tone("music/a.wav", 250);
    Tone("music/sub/c.mp3", 300, {"--ta", "Muddy Waters", "--ty", "1954", "--tg", "Blues"});
    for (int i = 0; i < 16; ++i) Tone("music/d" + std::to_string(i % 4) + "/t" + std::to_string(i) + (i % 3 ? ".wav" : ".mp3"), 50 + 10 * i, {"--ty", std::to_string(i)});
    test::WriteFile(Make("music/broken.mp3"), "this is no audio at all");
    test::WriteFile(Make("music/notes.txt"), "not a track");
    SampleSpace space;
    const auto build = [&](const std::string& path, bool recurse, const SampleSpaceOptions& options) {
        return space.CreateSampleSpace(path, recurse, test::BundledModules().SupportedExtensions(), test::BundledModules(), options);
    };
    const auto caller = std::this_thread::get_id();
    using Reports = std::vector<std::pair<size_t, size_t>>;
    Reports reports;  // nothing found: not valid, and one report of no files
    EXPECT_FALSE(build("", true, {}) || build(dir_.file("missing"), true, {false, 0, [&](size_t done, size_t total) { reports.emplace_back(done, total); }}) || space.Valid());
    EXPECT_EQ(reports, (Reports{{0, 0}}));
    reports.clear();
    bool otherThread = false;
    ASSERT_TRUE(build(dir_.file("music"), true, {false, 3, [&](size_t done, size_t total) {
                          reports.emplace_back(done, total), otherThread = otherThread || std::this_thread::get_id() != caller;
                      }}));
    Strings names;
    for (size_t i = 0; i < space.Size(); ++i) names.push_back(space.TrackAt(i).FullName());
    EXPECT_EQ(names, SampleSpaceFiles(SampleSpaceDirectories(dir_.file("music"), true), test::BundledModules().SupportedExtensions()));
    EXPECT_TRUE(space.Valid() && !otherThread && space.Size() == 20);
    for (size_t i = 0; i < space.Size(); ++i) EXPECT_TRUE(space.TrackAt(i).InfoRetrieved()) << names[i];
    ASSERT_GE(reports.size(), 2u);  // from 0 to all, only up
    EXPECT_TRUE(reports.front() == Reports::value_type(0, 20) && reports.back() == Reports::value_type(20, 20));
    for (size_t i = 1; i < reports.size(); ++i) EXPECT_GT(reports[i].first, reports[i - 1].first);
    // The MPEG module lists its extensions first; a file no module reads stays, not existing.
    EXPECT_EQ(Relative({names[0], names[1], names[2], names[3]}), (Strings{"music/b.mp3", "music/broken.mp3", "music/a.wav", "music/d0/t0.mp3"}));
    const TrackRecord& miles = space.TrackAt(0);
    EXPECT_TRUE(miles.Exists() && miles.Tag().Find(FrameId::LeadArtist)->text == "Miles Davis" && miles.FileSize() == fs::file_size(dir_.file("music/b.mp3")));
    EXPECT_TRUE(std::abs(int(miles.Duration()) - 1500) < 60 && !space.TrackAt(1).Exists() && space.TrackAt(2).Duration() == 250) << miles.Duration();
    RandomEntry blues("(CONTENTTYPE ~ \"blues\") && (YEAR < 1960)");  // picks read what was retrieved
    EXPECT_TRUE(space.Resolve(blues, 5)->Body() == "c" && space.PickHistory().size() == 1);

    ASSERT_TRUE(build(dir_.file("music/sub") + ";" + dir_.file("music"), false, {true}));  // replaced, tags ignored
    EXPECT_EQ(Relative({space.TrackAt(0).FullName(), space.TrackAt(1).FullName()}), (Strings{"music/sub/c.mp3", "music/b.mp3"}));
    EXPECT_TRUE(space.Size() == 4 && space.PickHistory().empty() && space.TrackAt(0).Tag().empty() && space.TrackAt(0).Exists());
    SampleSpace none;  // starting needs a space only with random entries in the tree, and only until it is built
    EXPECT_TRUE(!NeedsSampleSpace(*test::BuildTree("a P[ b ]"), none) && NeedsSampleSpace(*test::BuildTree("a P[ ?x ]"), none) && !NeedsSampleSpace(*test::BuildTree("a P[ ?x ]"), space));
}

TEST(Retrieval, AModuleThatIsNotReentrantIsOnlyAskedOnTheCallingThread) {
    InputModuleList odd;
    ASSERT_EQ(odd.LoadInputModules(VERDIN_ODD_FORMAT_MODULES, nullptr), 1u);
    test::TempDir dir;
    std::vector<std::unique_ptr<TrackRecord>> tracks;
    for (int i = 0; i < 64; ++i) {
        test::WriteFile(dir.file(std::to_string(i) + ".odd"), {2, 16});
        tracks.push_back(std::make_unique<TrackRecord>(dir.file(std::to_string(i) + ".odd")));
    }
    std::vector<size_t> reports;  // only up, to all of them
    RetrieveAllInformation(tracks, odd, true, 4, [&](size_t done, size_t) { reports.push_back(done); });
    EXPECT_TRUE(std::ranges::adjacent_find(reports, std::greater_equal<>()) == reports.end() && reports.back() == tracks.size());
    EXPECT_TRUE(std::ranges::all_of(tracks, [](const auto& t) { return t->InfoRetrieved() && t->Exists() && t->Channels() == 2; }));
    void* library = dlopen(VERDIN_ODD_FORMAT_MODULES "/odd_format_module.so", RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(reinterpret_cast<int (*)()>(dlsym(library, "OddFormatModule_CallsOffMainThread"))(), 0);
    dlclose(library);
}

// Picks against the documented rule, over long runs of random expressions and history
// limits: the candidates are the matching tracks in order that are not in the history; the
// (rand() % their number)-th is taken and appended to the history, whose oldest entry goes
// when it then holds more than the limit; no candidate gives the null track and empties it.
TEST(Picks, FollowTheDocumentedRule) {
    const Strings names{"a1", "b1", "a2", "a3", "b2"};
    Strings history;
    std::vector<std::unique_ptr<TrackRecord>> tracks;
    for (const std::string& name : names) tracks.push_back(test::MakeTrack({"/music/" + name + ".mp3", {{FrameId::LeadArtist, name[0] == 'a' ? "Alpha" : "Beta"}}, 1000, 10}));
    SampleSpace space;
    space.ReplaceTracks(std::move(tracks));
    const std::pair<std::string, std::string> expressions[] = {{"(LEADARTIST = Alpha)", "a"}, {"(LEADARTIST = Beta)", "b"}, {"", ""}, {"(LEADARTIST = Gamma)", "-"}};
    for (unsigned seed : {1u, 2u, 77u, 4096u}) {
        std::mt19937 choose(seed);
        for (int pick = 0; pick < 200; ++pick) {
            const auto& [expression, prefix] = expressions[choose() % 4];
            const int limit = int(choose() % 6);
            Strings candidates, actual;
            for (const std::string& name : names)
                if (name.starts_with(prefix) && std::find(history.begin(), history.end(), name) == history.end()) candidates.push_back(name);
            SeedProcessRandom(seed + pick);
            RandomEntry entry(expression);
            const TrackRecord* picked = space.Resolve(entry, limit);
            std::srand(seed + pick);
            ASSERT_EQ(picked->IsNullTrack() ? "(null)" : picked->Body(), candidates.empty() ? "(null)" : candidates[size_t(std::rand()) % candidates.size()]) << pick;
            if (candidates.empty()) history.clear();
            else if (history.push_back(picked->Body()); int(history.size()) > limit) history.erase(history.begin());  // one at a time
            for (const TrackRecord* t : space.PickHistory()) actual.push_back(t->Body());
            ASSERT_EQ(actual, history) << "seed " << seed << ", pick " << pick << ": " << expression << " with " << limit;
            EXPECT_TRUE(entry.Picked());
        }
    }
    // A track whose tag changed since the last pick is read again.
    RandomEntry beta("(LEADARTIST = Beta)"), gamma("(LEADARTIST = Gamma)");
    TrackRecord* renamed = space.Resolve(beta, 0);
    renamed->MutableTag().SetText(FrameId::LeadArtist, "Gamma");
    EXPECT_EQ(space.Resolve(gamma, 0), renamed);
    // A picked entry keeps its track, drawing nothing.
    RandomEntry entry("(LEADARTIST = Alpha)");
    const TrackRecord* picked = space.Resolve(entry, 5);
    SeedProcessRandom(99);
    const unsigned next = NextProcessRandom();
    SeedProcessRandom(99);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(space.Resolve(entry, 0), picked);
    EXPECT_EQ(NextProcessRandom(), next);
    ASSERT_FALSE(space.PickHistory().empty());
    space.ReplaceTracks({});  // empties the history; nothing to pick
    entry.Reset();
    EXPECT_TRUE(space.PickHistory().empty() && !space.Valid() && space.Resolve(entry, 5)->IsNullTrack());
}

}  // namespace
}  // namespace verdin
