// How fast a 100,000-entry playlist loads and saves with information retrieval skipped,
// against peers measured in the same run: the least any loader must do (read the file,
// split its lines, stat every file it names) and the least any saver must do (write the
// same bytes atomically).
#include "engine/input/InputModuleList.h"
#include "playlist/Playlist.h"
#include "playlist/files/PlaylistLoader.h"
#include "playlist/files/PlaylistWriter.h"
#include "settings/IniProfile.h"
#include "settings/Settings.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace verdin {
namespace {

constexpr int kEntries = 100000;

// 100,000 empty tracks in 100 directories, and playlists naming each of them once.
struct Library {
    std::string dir;    // with a final "/"
    std::string vdp;    // relative entries
    std::string m3u;
    std::string vdpText;
};

const Library& TheLibrary() {
    static const Library library = [] {
        Library made;
        std::string pattern = std::filesystem::temp_directory_path().string() + "/verdin-playlist-bench-XXXXXX";
        if (!mkdtemp(pattern.data())) std::abort();
        made.dir = pattern + "/";
        std::string vdp = "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\n";
        std::string m3u;
        for (int i = 0; i < kEntries; ++i) {
            const std::string folder = "Artist " + std::to_string(i % 100) + "/";
            if (i < 100) std::filesystem::create_directory(made.dir + folder);
            const std::string entry = folder + std::to_string(i) + " - Some Track Title.mp3";
            std::ofstream(made.dir + entry);
            vdp += "Entry" + std::to_string(i + 1) + "=" + entry + "\r\n";
            m3u += entry + "\r\n";
        }
        vdp += "NumberOfEntries=" + std::to_string(kEntries) + "\r\n";
        made.vdp = made.dir + "big.vdp";
        made.m3u = made.dir + "big.m3u";
        std::ofstream(made.vdp, std::ios::binary) << vdp;
        std::ofstream(made.m3u, std::ios::binary) << m3u;
        made.vdpText = vdp;
        return made;
    }();
    return library;
}

const LoadContext& Context() {
    static Settings settings = [] {
        Settings s;
        s.skipInfoForAnyFile = 1;
        return s;
    }();
    static InputModuleList modules;
    static const LoadContext context{settings, modules};
    return context;
}

void Load(benchmark::State& state, const std::string& file) {
    for (auto _ : state) {
        Playlist main;
        LoadItem(main, file, Context());
        const auto* nested = static_cast<const Playlist*>(main.ItemAt(0));
        if (!nested || nested->ItemCount() != static_cast<size_t>(kEntries)) {
            state.SkipWithError("the playlist did not load whole");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * kEntries);
}

void BM_LoadVdp(benchmark::State& state) { Load(state, TheLibrary().vdp); }
void BM_LoadM3u(benchmark::State& state) { Load(state, TheLibrary().m3u); }

// Reads the .vdp, takes each entry's value and stats the file it names.
void BM_ReadAndStatPeer(benchmark::State& state) {
    const Library& library = TheLibrary();
    for (auto _ : state) {
        std::ifstream in(library.vdp, std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        int found = 0;
        std::string path;
        for (size_t start = 0; start < text.size();) {
            size_t end = text.find('\n', start);
            if (end == std::string::npos) end = text.size();
            const std::string_view line(text.data() + start, end - start);
            start = end + 1;
            const size_t eq = line.find('=');
            if (line.substr(0, 5) != "Entry" || eq == std::string_view::npos) continue;
            path.assign(library.dir).append(line.substr(eq + 1, line.size() - eq - 2));
            struct stat st;
            found += ::stat(path.c_str(), &st) == 0;
        }
        if (found != kEntries) {
            state.SkipWithError("the peer did not find every file");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * kEntries);
}

void BM_SaveVdp(benchmark::State& state) {
    Playlist main;
    LoadItem(main, TheLibrary().vdp, Context());
    auto& nested = static_cast<Playlist&>(*main.ItemAt(0));
    const std::string out = TheLibrary().dir + "saved.vdp";
    for (auto _ : state) {
        if (!SavePlaylist(nested, out, PlaylistFormat::kVdp)) {
            state.SkipWithError("the save failed");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * kEntries);
}

// Writes the same bytes the save writes, the same way.
void BM_WritePeer(benchmark::State& state) {
    const std::string out = TheLibrary().dir + "written.vdp";
    for (auto _ : state) {
        if (!WriteFileAtomically(out, TheLibrary().vdpText)) {
            state.SkipWithError("the write failed");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * kEntries);
}

BENCHMARK(BM_LoadVdp)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LoadM3u)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ReadAndStatPeer)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SaveVdp)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_WritePeer)->Unit(benchmark::kMillisecond)->UseRealTime();

// Prints the usual table, then entries per second and the ratios against the peers.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const auto rate = run.counters.find("items_per_second");
            if (rate != run.counters.end()) rates_[run.benchmark_name()] = rate->second;
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        const double loadVdp = Rate("BM_LoadVdp"), loadM3u = Rate("BM_LoadM3u"), readStat = Rate("BM_ReadAndStatPeer");
        const double save = Rate("BM_SaveVdp"), write = Rate("BM_WritePeer");
        if (loadVdp > 0 && loadM3u > 0 && readStat > 0)
            std::printf("load: .vdp %.0f entries/s, M3U %.0f entries/s; %.2f and %.2f of read+stat (%.0f entries/s)\n",
                        loadVdp, loadM3u, loadVdp / readStat, loadM3u / readStat, readStat);
        if (save > 0 && write > 0)
            std::printf("save: .vdp %.0f entries/s; %.2f of writing the same bytes (%.0f entries/s)\n", save,
                        save / write, write);
    }

private:
    double Rate(const std::string& name) const {
        const auto it = rates_.find(name + "/real_time");
        return it == rates_.end() ? 0 : it->second;
    }
    std::map<std::string, double> rates_;
};

}  // namespace
}  // namespace verdin

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    verdin::TheLibrary();  // made before timing starts
    verdin::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::filesystem::remove_all(verdin::TheLibrary().dir);
    benchmark::Shutdown();
    return 0;
}
