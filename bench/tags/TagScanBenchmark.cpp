// How fast the tag layer reads the tags of a music library, against two peers measured in
// the same run: TagLib's own generic way (FileRef without audio properties) and the floor
// of opening a file, reading its first 4 KiB and closing it.
//
// The library: a few hundred MP3 files, each with an ID3v2.3 tag of eight frames, made
// in a private directory from one lame encode. Run: bench_tags [--benchmark_min_time=0.5]
#include "tags/FrameValues.h"
#include "tags/TagReader.h"

#include <benchmark/benchmark.h>
#include <taglib/commentsframe.h>
#include <taglib/fileref.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/textidentificationframe.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fcntl.h>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kFiles = 300;

struct Library {
    std::filesystem::path dir;
    std::vector<std::string> files;
};

void AddText(TagLib::ID3v2::Tag& tag, const char* id, const std::string& text) {
    auto* frame = new TagLib::ID3v2::TextIdentificationFrame(id, TagLib::String::Latin1);
    frame->setText(TagLib::String(text, TagLib::String::UTF8));
    tag.addFrame(frame);
}

Library MakeLibrary() {
    Library lib;
    char pattern[] = "/tmp/verdin-bench-tags-XXXXXX";
    if (!::mkdtemp(pattern)) std::abort();
    lib.dir = pattern;
    const std::string source = (lib.dir / "source.mp3").string();
    const std::string command = "sox -q -n -r 44100 -c 2 -b 16 " + (lib.dir / "source.wav").string() +
                                " synth 1 sine 440 && lame --quiet " + (lib.dir / "source.wav").string() + " " + source;
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "sox or lame failed\n");
        std::exit(1);
    }
    for (int i = 0; i < kFiles; ++i) {
        const std::string path = (lib.dir / ("track" + std::to_string(i) + ".mp3")).string();
        std::filesystem::copy_file(source, path);
        TagLib::MPEG::File file(path.c_str(), false);
        TagLib::ID3v2::Tag& tag = *file.ID3v2Tag(true);
        const std::string n = std::to_string(i);
        AddText(tag, "TIT2", "Track title number " + n);
        AddText(tag, "TPE1", "Some Artist " + std::to_string(i % 17));
        AddText(tag, "TPE2", "Some Band");
        AddText(tag, "TALB", "An Album Name " + std::to_string(i % 23));
        AddText(tag, "TDRC", std::to_string(1960 + i % 60));
        AddText(tag, "TRCK", std::to_string(i % 12 + 1) + "/12");
        AddText(tag, "TCON", std::to_string(i % 126));
        auto* comment = new TagLib::ID3v2::CommentsFrame(TagLib::String::Latin1);
        comment->setLanguage("eng");
        comment->setText("A comment of moderate length for track " + n);
        tag.addFrame(comment);
        if (!file.save(TagLib::MPEG::File::ID3v2, TagLib::File::StripOthers, TagLib::ID3v2::v3)) std::abort();
        lib.files.push_back(path);
    }
    return lib;
}

Library& TheLibrary() {
    static Library lib = MakeLibrary();
    return lib;
}

// Each thread walks the library from its own starting point.
const std::string& NextFile(benchmark::State& state, std::size_t& cursor) {
    const auto& files = TheLibrary().files;
    const std::string& path = files[(cursor + static_cast<std::size_t>(state.thread_index()) * 97) % files.size()];
    ++cursor;
    return path;
}

void BM_TagLayer(benchmark::State& state) {
    std::size_t cursor = 0;
    verdin::TrackTag tag;
    std::string title;
    for (auto _ : state) {
        const verdin::TagReadResult r = verdin::ReadTrackTag(NextFile(state, cursor), {}, tag);
        verdin::FrameStringValue(tag, verdin::FrameId::Title, title);
        if (!r.opened || title.empty()) state.SkipWithError("tag not read");
        benchmark::DoNotOptimize(r.audioStart);
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_TaglibFileRef(benchmark::State& state) {
    std::size_t cursor = 0;
    for (auto _ : state) {
        TagLib::FileRef file(NextFile(state, cursor).c_str(), false);
        const TagLib::String title = file.tag() ? file.tag()->title() : TagLib::String();
        if (title.isEmpty()) state.SkipWithError("tag not read");
        benchmark::DoNotOptimize(title.size());
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_OpenReadClose(benchmark::State& state) {
    std::size_t cursor = 0;
    char head[4096];
    for (auto _ : state) {
        const int fd = ::open(NextFile(state, cursor).c_str(), O_RDONLY | O_CLOEXEC);
        benchmark::DoNotOptimize(::pread(fd, head, sizeof head, 0));
        ::close(fd);
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(BM_TagLayer)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(BM_TaglibFileRef)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(BM_OpenReadClose)->Threads(1)->Threads(2)->UseRealTime();

// Prints the usual table, then files per second and the ratios against the peers.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const auto rate = run.counters.find("items_per_second");
            if (rate != run.counters.end()) rates_[run.benchmark_name()] = rate->second;
            cpuNanoseconds_[run.benchmark_name()] = run.GetAdjustedCPUTime();
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        for (const char* threads : {"threads:1", "threads:2"}) {
            const double ours = Rate("BM_TagLayer", threads);
            const double taglib = Rate("BM_TaglibFileRef", threads);
            const double floor = Rate("BM_OpenReadClose", threads);
            if (ours <= 0 || taglib <= 0 || floor <= 0) continue;
            std::printf("%s: tag layer %.0f files/s; %.2fx TagLib FileRef (%.0f files/s); %.2f of open+read+close (%.0f files/s)\n",
                        threads, ours, ours / taglib, taglib, ours / floor, floor);
        }
        // Wall-clock rates suffer when other work shares the cores; CPU time per file does not.
        const auto cpu = cpuNanoseconds_.find("BM_TagLayer/real_time/threads:1");
        if (cpu != cpuNanoseconds_.end() && cpu->second > 0)
            std::printf("tag layer CPU time: %.1f us per file, %.0f files per CPU second\n", cpu->second / 1000,
                        1e9 / cpu->second);
    }

private:
    double Rate(const std::string& name, const std::string& threads) const {
        const auto it = rates_.find(name + "/real_time/" + threads);
        return it == rates_.end() ? 0 : it->second;
    }
    std::map<std::string, double> rates_;
    std::map<std::string, double> cpuNanoseconds_;
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
