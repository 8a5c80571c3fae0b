// Building a sample space from files the test encodes, through the bundled input
// plug-ins, and picking from it.
#include "engine/input/InputModuleList.h"
#include "playlist/Playlist.h"
#include "playlist/ProcessRandom.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "playlist/random/SampleSpace.h"
#include "playlist/random/SampleSpaceTexts.h"

#include "Files.h"
#include "Process.h"
#include "TempDir.h"
#include "TrackFixtures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

namespace verdin {
namespace {

namespace fs = std::filesystem;

class SampleSpaceBuild : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        modules_ = new InputModuleList;
        ASSERT_GE(modules_->LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr), 2u);
    }
    static void TearDownTestSuite() {
        delete modules_;
        modules_ = nullptr;
    }
    void SetUp() override {
        if (!test::HaveCommand("lame")) GTEST_SKIP() << "lame is not installed";
    }

    std::string Make(const std::string& relative) {
        const fs::path path = dir_.path() / relative;
        fs::create_directories(path.parent_path());
        return path.string();
    }
    std::string Mp3(const std::string& relative, const std::vector<std::string>& tags, double seconds = 0.3) {
        const std::string path = Make(relative);
        test::EncodeMp3(path, seconds, tags);
        return path;
    }
    std::string Wav(const std::string& relative, int milliseconds) {
        const std::string path = Make(relative);
        test::WriteToneWav(path, milliseconds);
        return path;
    }
    bool Build(const std::string& searchPath, bool recurse, const SampleSpaceOptions& options = {}) {
        return space_.CreateSampleSpace(searchPath, recurse, modules_->SupportedExtensions(), *modules_, options);
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> out;
        for (size_t i = 0; i < space_.Size(); ++i)
            out.push_back(fs::path(space_.TrackAt(i).FullName()).lexically_relative(dir_.path()).string());
        return out;
    }

    static InputModuleList* modules_;
    test::TempDir dir_;
    SampleSpace space_;
};

InputModuleList* SampleSpaceBuild::modules_ = nullptr;

TEST_F(SampleSpaceBuild, NothingFoundLeavesTheSpaceInvalid) {
    EXPECT_FALSE(space_.Valid());  // before any build
    for (const std::string& searchPath : {std::string(), std::string(";;"), dir_.file("missing")}) {
        EXPECT_FALSE(Build(searchPath, true)) << searchPath;
        EXPECT_FALSE(space_.Valid());
        EXPECT_EQ(space_.Size(), 0u);
    }
    EXPECT_EQ(kNoSampleSpaceTracksWarning,
              "No tracks where found from the current sample space path.\n"
              "Please check your settings from the Options->Playlist.");
}

TEST_F(SampleSpaceBuild, TracksComeInScanOrderWithTheirInformation) {
    Mp3("music/b.mp3", {"--tt", "Blue in Green", "--ta", "Miles Davis", "--ty", "1959", "--tg", "Jazz"}, 1.5);
    Wav("music/a.wav", 250);
    Mp3("music/sub/c.mp3", {"--tt", "Hoochie Coochie Man", "--ta", "Muddy Waters", "--ty", "1954", "--tg", "Blues"});
    test::WriteFile(Make("music/broken.mp3"), "this is no audio at all");
    test::WriteFile(Make("music/notes.txt"), "not a track");

    ASSERT_TRUE(Build(dir_.file("music"), true));
    EXPECT_TRUE(space_.Valid());
    // MPEG files first (the MPEG module lists its extensions first), then sound files,
    // then the subdirectory. A file no module reads stays, with `exists` cleared.
    const std::vector<std::string> expected{"music/b.mp3", "music/broken.mp3", "music/a.wav", "music/sub/c.mp3"};
    ASSERT_EQ(Names(), expected);
    for (size_t i = 0; i < space_.Size(); ++i) EXPECT_TRUE(space_.TrackAt(i).InfoRetrieved()) << expected[i];

    const TrackRecord& miles = space_.TrackAt(0);
    EXPECT_TRUE(miles.Exists());
    EXPECT_EQ(miles.Tag().Find(FrameId::LeadArtist)->text, "Miles Davis");
    EXPECT_NEAR(miles.Duration(), 1500, 60);
    EXPECT_EQ(miles.FileSize(), fs::file_size(dir_.file("music/b.mp3")));
    EXPECT_FALSE(space_.TrackAt(1).Exists());
    EXPECT_EQ(space_.TrackAt(2).Duration(), 250u);

    // Picks read what was retrieved.
    RandomEntry blues("(CONTENTTYPE ~ \"blues\") && (YEAR < 1960)");
    EXPECT_EQ(space_.Resolve(blues, 0)->Body(), "c");
    RandomEntry longOnes("(DURATION = 0) && (FILESIZE > 100)");  // a.wav (0.25 s) and c.mp3 (0.3 s)
    for (int i = 0; i < 6; ++i) {
        longOnes.Reset();
        const std::string body = space_.Resolve(longOnes, 0)->Body();
        EXPECT_TRUE(body == "a" || body == "c") << body;
    }
}

TEST_F(SampleSpaceBuild, IgnoringTagsLeavesTagsEmpty) {
    Mp3("m/t.mp3", {"--ta", "Someone"});
    SampleSpaceOptions options;
    options.ignoreTags = true;
    ASSERT_TRUE(Build(dir_.file("m"), false, options));
    EXPECT_TRUE(space_.TrackAt(0).Tag().empty());
    EXPECT_TRUE(space_.TrackAt(0).Exists());
}

TEST_F(SampleSpaceBuild, ARebuildReplacesTracksAndEmptiesTheHistory) {
    Wav("one/x.wav", 100);
    Wav("two/y.wav", 100);
    Wav("two/z.wav", 100);
    ASSERT_TRUE(Build(dir_.file("one"), false));
    RandomEntry entry("");
    EXPECT_EQ(space_.Resolve(entry, 5)->Body(), "x");
    EXPECT_EQ(space_.PickHistory().size(), 1u);

    ASSERT_TRUE(Build(dir_.file("two") + ";" + dir_.file("one"), false));
    EXPECT_TRUE(space_.PickHistory().empty());
    EXPECT_EQ(Names(), (std::vector<std::string>{"two/y.wav", "two/z.wav", "one/x.wav"}));
}

TEST_F(SampleSpaceBuild, AStartNeedsASpaceOnlyWithRandomEntries) {
    Playlist main;
    main.AppendItem(std::make_unique<TrackItem>("/music/a.mp3"));
    EXPECT_FALSE(NeedsSampleSpace(main, space_));
    auto nested = std::make_unique<Playlist>("/lists/mix.vdp");
    nested->AppendItem(std::make_unique<RandomEntry>(""));
    main.AppendItem(std::move(nested));
    EXPECT_TRUE(NeedsSampleSpace(main, space_));
    Wav("w/x.wav", 100);
    ASSERT_TRUE(Build(dir_.file("w"), false));
    EXPECT_FALSE(NeedsSampleSpace(main, space_));
}

// The same files through one thread and through several: the same records, in the same
// order, whatever order the threads finished in.
TEST_F(SampleSpaceBuild, ConcurrentRetrievalMatchesOneThread) {
    for (int i = 0; i < 24; ++i) {
        const std::string n = std::to_string(i);
        if (i % 3 == 0) Mp3("c/d" + std::to_string(i % 4) + "/t" + n + ".mp3", {"--tt", "Title " + n, "--ty", n});
        else Wav("c/d" + std::to_string(i % 4) + "/t" + n + ".wav", 50 + 10 * i);
    }
    test::WriteFile(Make("c/d1/bad.wav"), "RIFF but not really");

    SampleSpaceOptions one;
    one.threads = 1;
    ASSERT_TRUE(Build(dir_.file("c"), true, one));
    struct Seen {
        std::string name;
        uint32_t duration;
        uint32_t size;
        bool exists;
        TrackTag tag;
    };
    std::vector<Seen> single;
    for (size_t i = 0; i < space_.Size(); ++i) {
        const TrackRecord& t = space_.TrackAt(i);
        single.push_back({t.FullName(), t.Duration(), t.FileSize(), t.Exists(), t.Tag()});
    }
    ASSERT_EQ(single.size(), 25u);

    for (unsigned threads : {2u, 4u, 0u}) {
        SampleSpaceOptions many;
        many.threads = threads;
        ASSERT_TRUE(Build(dir_.file("c"), true, many));
        ASSERT_EQ(space_.Size(), single.size());
        for (size_t i = 0; i < single.size(); ++i) {
            const TrackRecord& t = space_.TrackAt(i);
            EXPECT_EQ(t.FullName(), single[i].name) << threads << " threads, track " << i;
            EXPECT_EQ(t.Duration(), single[i].duration) << t.FullName();
            EXPECT_EQ(t.FileSize(), single[i].size) << t.FullName();
            EXPECT_EQ(t.Exists(), single[i].exists) << t.FullName();
            EXPECT_TRUE(t.Tag() == single[i].tag) << t.FullName();
        }
    }
}

TEST_F(SampleSpaceBuild, ProgressCountsUpToTheTotalOnTheCallingThread) {
    for (int i = 0; i < 12; ++i) Wav("p/t" + std::to_string(i) + ".wav", 40);
    for (unsigned threads : {1u, 3u}) {
        std::vector<std::pair<size_t, size_t>> reports;
        const auto caller = std::this_thread::get_id();
        bool otherThread = false;
        SampleSpaceOptions options;
        options.threads = threads;
        options.progress = [&](size_t done, size_t total) {
            reports.emplace_back(done, total);
            otherThread = otherThread || std::this_thread::get_id() != caller;
        };
        ASSERT_TRUE(Build(dir_.file("p"), false, options));
        ASSERT_GE(reports.size(), 2u);
        EXPECT_EQ(reports.front(), (std::pair<size_t, size_t>{0, 12}));
        EXPECT_EQ(reports.back(), (std::pair<size_t, size_t>{12, 12}));
        for (size_t i = 1; i < reports.size(); ++i) {
            EXPECT_GT(reports[i].first, reports[i - 1].first) << "reports only go up";
            EXPECT_EQ(reports[i].second, 12u);
        }
        EXPECT_FALSE(otherThread);
        if (threads == 1) {
            EXPECT_EQ(reports.size(), 13u);  // one report per file
        }
    }
}

TEST_F(SampleSpaceBuild, AnEmptyBuildReportsOnlyTheStart) {
    std::vector<std::pair<size_t, size_t>> reports;
    SampleSpaceOptions options;
    options.progress = [&](size_t done, size_t total) { reports.emplace_back(done, total); };
    EXPECT_FALSE(Build(dir_.file("nothing-here"), true, options));
    EXPECT_EQ(reports, (std::vector<std::pair<size_t, size_t>>{{0, 0}}));
}

TEST_F(SampleSpaceBuild, TheBuildSeedsTheGeneratorFromTheClock) {
    Wav("s/x.wav", 40);
    SeedProcessRandom(1);
    // The seed is 0..59,999 from the local time: reseeding with the same value as the
    // build used gives the same next value.
    const unsigned before = TimeSeed();
    ASSERT_TRUE(Build(dir_.file("s"), false));
    const unsigned after = TimeSeed();
    const uint32_t drawn = NextProcessRandom();
    bool matchesASeedInTheWindow = false;
    for (unsigned seed = before; seed != (after + 1) % 60000; seed = (seed + 1) % 60000) {
        std::srand(seed);
        if (static_cast<uint32_t>(std::rand()) == drawn) matchesASeedInTheWindow = true;
    }
    EXPECT_TRUE(matchesASeedInTheWindow);
}

}  // namespace
}  // namespace verdin
