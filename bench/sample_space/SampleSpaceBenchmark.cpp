// How fast a sample space is built and picked from.
//
// Building: 2,000 tagged MP3 files (one short lame encode, copied, each copy given its own
// ID3v2.3 tag), scanned and retrieved through the bundled input plug-ins, with one
// retrieval thread against as many as the hardware runs, in the same run.
//
// Picking: one random pick over 10,000 tracks with a compound expression, against the
// same candidate walk with the text read anew for every track.
//
// Run: bench_sample_space [--benchmark_min_time=0.5]
#include "engine/input/InputModuleList.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackRecord.h"
#include "playlist/random/CompiledExpression.h"
#include "playlist/random/SampleSpace.h"

#include <benchmark/benchmark.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/textidentificationframe.h>

#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace verdin;

constexpr int kFiles = 2000;
constexpr int kPickTracks = 10000;
constexpr const char* kPickExpression =
    "((CONTENTTYPE ~ \"Blues\") | (CONTENTTYPE ~ \"Jazz\")) && (YEAR < 1970) && (DURATION > 100)";

void AddText(TagLib::ID3v2::Tag& tag, const char* id, const std::string& text) {
    auto* frame = new TagLib::ID3v2::TextIdentificationFrame(id, TagLib::String::Latin1);
    frame->setText(TagLib::String(text, TagLib::String::UTF8));
    tag.addFrame(frame);
}

struct Library {
    std::filesystem::path dir;
    InputModuleList modules;
};

Library& TheLibrary() {
    static Library* lib = [] {
        auto* l = new Library;
        char pattern[] = "/tmp/verdin-bench-sample-space-XXXXXX";
        if (!::mkdtemp(pattern)) std::abort();
        l->dir = pattern;
        const std::filesystem::path source = l->dir / "source.mp3";
        const std::string command = "sox -q -n -r 44100 -c 2 -b 16 " + (l->dir / "source.wav").string() +
                                    " synth 0.5 sine 440 && lame --quiet " + (l->dir / "source.wav").string() +
                                    " " + source.string();
        if (std::system(command.c_str()) != 0) {
            std::fprintf(stderr, "sox or lame failed\n");
            std::exit(1);
        }
        const char* genres[] = {"Blues", "Jazz", "Rock", "Acid Jazz", "Classical"};
        for (int i = 0; i < kFiles; ++i) {
            // 20 directories of 100 files, so the scan recurses as a real library would.
            const std::filesystem::path dir = l->dir / "library" / ("artist" + std::to_string(i / 100));
            std::filesystem::create_directories(dir);
            const std::string path = (dir / ("track" + std::to_string(i) + ".mp3")).string();
            std::filesystem::copy_file(source, path);
            TagLib::MPEG::File file(path.c_str(), false);
            TagLib::ID3v2::Tag& tag = *file.ID3v2Tag(true);
            AddText(tag, "TIT2", "Track title number " + std::to_string(i));
            AddText(tag, "TPE1", "Some Artist " + std::to_string(i / 100));
            AddText(tag, "TALB", "An Album Name " + std::to_string(i % 23));
            AddText(tag, "TYER", std::to_string(1940 + i % 60));
            AddText(tag, "TRCK", std::to_string(i % 12 + 1) + "/12");
            AddText(tag, "TCON", genres[i % 5]);
            if (!file.save(TagLib::MPEG::File::ID3v2, TagLib::File::StripOthers, TagLib::ID3v2::v3)) std::abort();
        }
        std::filesystem::remove(l->dir / "source.wav");
        std::filesystem::remove(source);
        if (l->modules.LoadInputModules(VERDIN_BENCH_PLUGIN_DIR, nullptr) == 0) {
            std::fprintf(stderr, "no input plug-ins in %s\n", VERDIN_BENCH_PLUGIN_DIR);
            std::exit(1);
        }
        return l;
    }();
    return *lib;
}

// range(0): retrieval threads, 0 for as many as the hardware runs.
void BM_CreateSampleSpace(benchmark::State& state) {
    Library& lib = TheLibrary();
    SampleSpaceOptions options;
    options.threads = static_cast<unsigned>(state.range(0));
    const std::string extensions = lib.modules.SupportedExtensions();
    for (auto _ : state) {
        SampleSpace space;
        space.CreateSampleSpace((lib.dir / "library").string(), true, extensions, lib.modules, options);
        if (space.Size() != kFiles || !space.TrackAt(kFiles - 1).Exists() || space.TrackAt(0).Tag().empty())
            state.SkipWithError("the library was not read");
    }
    state.SetItemsProcessed(state.iterations() * kFiles);
}

// 10,000 tracks in memory, with the tags and lengths a library has.
std::vector<std::unique_ptr<TrackRecord>> PickTracks() {
    const char* genres[] = {"Blues", "Jazz", "Rock", "Acid Jazz", "Classical", "(0)", "Pop"};
    std::vector<std::unique_ptr<TrackRecord>> tracks;
    for (int i = 0; i < kPickTracks; ++i) {
        auto track = std::make_unique<TrackRecord>("/music/artist" + std::to_string(i / 100) + "/track" +
                                                   std::to_string(i) + ".mp3");
        TrackTag& tag = track->MutableTag();
        tag.AddText(FrameId::Title, "Track title number " + std::to_string(i));
        tag.AddText(FrameId::LeadArtist, "Some Artist " + std::to_string(i / 100));
        tag.AddText(FrameId::Album, "An Album Name " + std::to_string(i % 23));
        tag.AddText(FrameId::Year, std::to_string(1940 + i % 60));
        tag.AddText(FrameId::TrackNum, std::to_string(i % 12 + 1) + "/12");
        tag.AddText(FrameId::ContentType, genres[i % 7]);
        TrackInfo info = track->Info();
        info.duration = static_cast<uint32_t>(60'000 + (i * 7919) % 400'000);
        info.fileSize = info.duration * 16;
        track->SetInfo(info);
        tracks.push_back(std::move(track));
    }
    return tracks;
}

void BM_RandomPick(benchmark::State& state) {
    SampleSpace space;
    space.ReplaceTracks(PickTracks());
    RandomEntry entry(kPickExpression);
    size_t nullPicks = 0;
    for (auto _ : state) {
        entry.Reset();
        nullPicks += space.Resolve(entry, 0)->IsNullTrack();
    }
    if (nullPicks) state.SkipWithError("the expression matched nothing");
    state.SetItemsProcessed(state.iterations());
}

// The peer: the same walk, with the text re-read for every track.
void BM_RandomPickReReading(benchmark::State& state) {
    const auto tracks = PickTracks();
    size_t matches = 0;
    for (auto _ : state) {
        std::vector<const TrackRecord*> candidates;
        for (const auto& track : tracks)
            if (CompiledExpression(kPickExpression).Matches(*track)) candidates.push_back(track.get());
        matches = candidates.size();
        benchmark::DoNotOptimize(candidates.data());
    }
    if (matches == 0) state.SkipWithError("the expression matched nothing");
    state.counters["matches"] = static_cast<double>(matches);
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(BM_CreateSampleSpace)->Arg(1)->Arg(0)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RandomPick)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RandomPickReReading)->Unit(benchmark::kMillisecond);

// Prints the usual table, then files per second and the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const auto rate = run.counters.find("items_per_second");
            if (rate != run.counters.end()) rates_[run.benchmark_name()] = rate->second;
            realMs_[run.benchmark_name()] = run.GetAdjustedRealTime();
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        const double one = Value(rates_, "BM_CreateSampleSpace/1/process_time/real_time");
        const double all = Value(rates_, "BM_CreateSampleSpace/0/process_time/real_time");
        if (one > 0 && all > 0)
            std::printf("sample space of %d tagged MP3s: %.0f files/s with %u threads, %.0f files/s with one: %.2fx\n",
                        kFiles, all, std::max(1u, std::thread::hardware_concurrency()), one, all / one);
        const double pick = Value(realMs_, "BM_RandomPick");
        const double reReading = Value(realMs_, "BM_RandomPickReReading");
        if (pick > 0 && reReading > 0)
            std::printf("one pick over %d tracks: %.2f ms compiled, %.2f ms re-reading the text: %.1fx\n", kPickTracks,
                        pick, reReading, reReading / pick);
    }

private:
    static double Value(const std::map<std::string, double>& values, const std::string& name) {
        const auto it = values.find(name);
        return it == values.end() ? 0 : it->second;
    }
    std::map<std::string, double> rates_;
    std::map<std::string, double> realMs_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    TheLibrary();  // made before timing starts
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::filesystem::remove_all(TheLibrary().dir);
    benchmark::Shutdown();
    return 0;
}
