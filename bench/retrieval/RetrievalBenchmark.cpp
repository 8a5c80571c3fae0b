// Information retrieval of a library of tagged MP3 files, as the sample space does it
// (ParallelRetrieval.h: the tag layer, then the input module's GetFileInfo, for every
// track), on two threads against one thread in the same run; and its two halves apart,
// the tag layer alone and GetFileInfo alone, with the floor of opening a file, reading
// its first 4 KiB and closing it, to show where the time goes.
//
// The library: 2,000 one-second MP3 files from one lame encode, each given its own ID3v2.3
// tag of seven text frames, in a private directory. Files are read from the page cache
// (the first pass warms it).
//
// Wall-clock rates suffer when other work shares the cores; the processor time per file
// does not, so both are reported.
//   bench_retrieval [--benchmark_min_time=0.5]
#include "engine/input/InputModuleList.h"
#include "playlist/TrackRecord.h"
#include "playlist/random/ParallelRetrieval.h"
#include "tags/TagReader.h"

#include <benchmark/benchmark.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/textidentificationframe.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fcntl.h>
#include <map>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace verdin;

constexpr int kFiles = 2000;
constexpr double kTarget = 25000;  // files per second on two cores

void AddText(TagLib::ID3v2::Tag& tag, const char* id, const std::string& text) {
    auto* frame = new TagLib::ID3v2::TextIdentificationFrame(id, TagLib::String::Latin1);
    frame->setText(TagLib::String(text, TagLib::String::UTF8));
    tag.addFrame(frame);
}

struct Library {
    std::filesystem::path dir;
    std::vector<std::string> files;
    std::vector<uint32_t> audioStarts;  // measured once, for GetFileInfo alone
    InputModuleList modules;
};

Library& TheLibrary() {
    static Library* lib = [] {
        auto* l = new Library;
        char pattern[] = "/tmp/verdin-bench-retrieval-XXXXXX";
        if (!::mkdtemp(pattern)) std::abort();
        l->dir = pattern;
        const std::filesystem::path wav = l->dir / "source.wav", source = l->dir / "source.mp3";
        const std::string command = "sox -q -n -r 44100 -c 2 -b 16 " + wav.string() + " synth 1 sine 440 && lame --quiet " +
                                    wav.string() + " " + source.string();
        if (std::system(command.c_str()) != 0) {
            std::fprintf(stderr, "sox or lame failed\n");
            std::exit(1);
        }
        const char* genres[] = {"Blues", "Jazz", "Rock", "Acid Jazz", "Classical"};
        for (int i = 0; i < kFiles; ++i) {
            const std::filesystem::path dir = l->dir / ("artist" + std::to_string(i / 100));
            std::filesystem::create_directories(dir);
            const std::string path = (dir / ("track" + std::to_string(i) + ".mp3")).string();
            std::filesystem::copy_file(source, path);
            TagLib::MPEG::File file(path.c_str(), false);
            TagLib::ID3v2::Tag& tag = *file.ID3v2Tag(true);
            AddText(tag, "TIT2", "Track title number " + std::to_string(i));
            AddText(tag, "TPE1", "Some Artist " + std::to_string(i / 100));
            AddText(tag, "TPE2", "Some Band");
            AddText(tag, "TALB", "An Album Name " + std::to_string(i % 23));
            AddText(tag, "TYER", std::to_string(1940 + i % 60));
            AddText(tag, "TRCK", std::to_string(i % 12 + 1) + "/12");
            AddText(tag, "TCON", genres[i % 5]);
            if (!file.save(TagLib::MPEG::File::ID3v2, TagLib::File::StripOthers, TagLib::ID3v2::v3)) std::abort();
            l->files.push_back(path);
        }
        std::filesystem::remove(wav);
        std::filesystem::remove(source);
        if (l->modules.LoadInputModules(VERDIN_BENCH_PLUGIN_DIR, nullptr) == 0) {
            std::fprintf(stderr, "no input plug-ins in %s\n", VERDIN_BENCH_PLUGIN_DIR);
            std::exit(1);
        }
        TrackTag tag;
        for (const std::string& path : l->files) l->audioStarts.push_back(ReadTrackTag(path, {}, tag).audioStart);
        return l;
    }();
    return *lib;
}

std::vector<std::unique_ptr<TrackRecord>> FreshRecords() {
    std::vector<std::unique_ptr<TrackRecord>> tracks;
    tracks.reserve(kFiles);
    for (const std::string& path : TheLibrary().files) tracks.push_back(std::make_unique<TrackRecord>(path));
    return tracks;
}

// Times a thread of this process gave up the processor to wait (for a lock, for the disk,
// for another thread); being preempted by other work on the machine does not count.
long VoluntaryWaits() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_nvcsw;
}

// range(0): retrieval threads.
void BM_Retrieval(benchmark::State& state) {
    const Library& lib = TheLibrary();
    long waits = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::unique_ptr<TrackRecord>> tracks = FreshRecords();
        const long waitsBefore = VoluntaryWaits();
        state.ResumeTiming();
        RetrieveAllInformation(tracks, lib.modules, false, static_cast<unsigned>(state.range(0)), {});
        state.PauseTiming();
        waits += VoluntaryWaits() - waitsBefore;
        const TrackRecord& last = *tracks.back();
        if (!last.Exists() || last.Duration() == 0 || last.Tag().empty() || last.AudioStart() == 0)
            state.SkipWithError("the library was not read");
        tracks.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kFiles);
    state.counters["waits_per_1000_files"] = 1000.0 * double(waits) / double(state.iterations() * kFiles);
}

void BM_TagLayerAlone(benchmark::State& state) {
    const Library& lib = TheLibrary();
    TrackTag tag;
    for (auto _ : state) {
        for (const std::string& path : lib.files) {
            const TagReadResult r = ReadTrackTag(path, {}, tag);
            if (!r.opened || tag.empty()) state.SkipWithError("tag not read");
        }
    }
    state.SetItemsProcessed(state.iterations() * kFiles);
}

void BM_FileInfoAlone(benchmark::State& state) {
    const Library& lib = TheLibrary();
    InputModule* module = lib.modules.FindModuleFor(lib.files[0], lib.audioStarts[0]);
    if (!module) {
        state.SkipWithError("no module takes the files");
        return;
    }
    for (auto _ : state) {
        for (size_t i = 0; i < lib.files.size(); ++i) {
            TrackInfo info{};
            if (module->ops->GetFileInfo(module, lib.files[i].c_str(), lib.audioStarts[i], &info) == 0 || info.duration == 0)
                state.SkipWithError("no information");
        }
    }
    state.SetItemsProcessed(state.iterations() * kFiles);
}

void BM_OpenReadClose(benchmark::State& state) {
    const Library& lib = TheLibrary();
    char head[4096];
    for (auto _ : state) {
        for (const std::string& path : lib.files) {
            const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
            benchmark::DoNotOptimize(::pread(fd, head, sizeof head, 0));
            ::close(fd);
        }
    }
    state.SetItemsProcessed(state.iterations() * kFiles);
}

BENCHMARK(BM_Retrieval)->Arg(2)->Arg(1)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TagLayerAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FileInfoAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenReadClose)->Unit(benchmark::kMillisecond);

// Prints the usual table, then files per second, processor time per file and the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
            const auto rate = run.counters.find("items_per_second");
            if (rate != run.counters.end()) rates_[run.benchmark_name()] = rate->second;
            // Processor time per file in microseconds (the run's unit is milliseconds).
            cpuPerFile_[run.benchmark_name()] = run.GetAdjustedCPUTime() * 1000 / kFiles;
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        const double two = Value(rates_, "BM_Retrieval/2/process_time/real_time");
        const double one = Value(rates_, "BM_Retrieval/1/process_time/real_time");
        if (two > 0 && one > 0)
            std::printf("retrieval of %d tagged MP3s: %.0f files/s on 2 threads, %.0f files/s on one: %.2fx (target: %.0f files/s on 2 cores)\n",
                        kFiles, two, one, two / one, kTarget);
        const double whole = Value(cpuPerFile_, "BM_Retrieval/1/process_time/real_time");
        const double tags = Value(cpuPerFile_, "BM_TagLayerAlone");
        const double info = Value(cpuPerFile_, "BM_FileInfoAlone");
        const double floor = Value(cpuPerFile_, "BM_OpenReadClose");
        if (whole > 0)
            std::printf("processor time per file: %.1f us whole retrieval (%.0f files per processor second, %.0f on two), "
                        "%.1f us tag layer, %.1f us GetFileInfo, %.1f us open+read+close\n",
                        whole, 1e6 / whole, 2e6 / whole, tags, info, floor);
    }

private:
    static double Value(const std::map<std::string, double>& values, const std::string& name) {
        const auto it = values.find(name);
        return it == values.end() ? 0 : it->second;
    }
    std::map<std::string, double> rates_;
    std::map<std::string, double> cpuPerFile_;
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
