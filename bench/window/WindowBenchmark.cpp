// bench_window: the main window with 10,000 files (offscreen).
//
//   Add/10000     drops 10,000 WAV files on the window. Reported: how long the drop blocks
//                 the event loop, the longest gap between two 1 ms timer ticks while the
//                 information is read on worker threads, and the time until every track
//                 has it; the peer is the same add with the information read on the spot
//                 (as the player without windows does), which blocks for all of it.
//   Open/10000    the same through "Open": the list replaced and the first track playing.
//   Scroll/10000  paints the playlist view page by page from top to bottom; the peer is
//                 the same view over a QStandardItemModel holding the same texts.
//   List/50000    drops one M3U of 50,000 entries (the files five times over); reported
//                 as Add/10000, the longest stall being what matters: loading a list may
//                 hold the window for no more than about 100 ms at a time.
//   Chain/15      the same for a chain of 15 nested M3Us, each naming the next twice
//                 (32,768 tracks in 32,767 lists).
//   Change/100000 one row appended to a list of 100,000 shown in the view, told to the view
//                 by the model's row comparison; the peer fills a QStandardItemModel
//                 afresh after the same change (clear it, one line per row of the tree:
//                 the plain way to show a changed tree).
#include "engine/output/AlsaDeviceList.h"
#include "playlist/Playlist.h"
#include "playlist/TrackItem.h"
#include "settings/store/SettingsStore.h"
#include "shell/ui/MainWindow.h"
#include "shell/ui/WindowHost.h"
#include "shell/ui/files/AddCommands.h"
#include "shell/ui/playlist/InformationRetrieval.h"
#include "shell/ui/playlist/PlaylistModel.h"
#include "shell/ui/playlist/PlaylistView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QSettings>
#include <QStandardItemModel>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

namespace {

using namespace verdin;
constexpr int kFiles = 10000;

// A private home with the settings the runs need, and the files.
struct Home {
    std::filesystem::path dir;
    std::vector<std::string> files;

    Home() {
        char pattern[] = "/tmp/verdin-bench-window-XXXXXX";
        dir = ::mkdtemp(pattern);
        std::filesystem::create_directories(dir / "config/Brimfell");
        std::filesystem::create_directories(dir / "data/Brimfell/Verdin");
        std::filesystem::create_directories(dir / "music");
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString((dir / "config").string()));
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString((dir / "data").string()));
        WriteFiles();
    }
    ~Home() {
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }

    // Quarter-second 8 kHz mono tones: small files, real headers and data to read.
    void WriteFiles() {
        constexpr uint32_t kFrames = 2000;
        std::vector<char> wav(44 + kFrames * 2);
        auto put32 = [&](size_t at, uint32_t v) { for (int i = 0; i < 4; ++i) wav[at + i] = char(v >> (8 * i)); };
        auto put16 = [&](size_t at, uint16_t v) { wav[at] = char(v); wav[at + 1] = char(v >> 8); };
        std::copy_n("RIFF", 4, wav.begin());
        put32(4, static_cast<uint32_t>(wav.size() - 8));
        std::copy_n("WAVEfmt ", 8, wav.begin() + 8);
        put32(16, 16);
        put16(20, 1);
        put16(22, 1);
        put32(24, 8000);
        put32(28, 16000);
        put16(32, 2);
        put16(34, 16);
        std::copy_n("data", 4, wav.begin() + 36);
        put32(40, kFrames * 2);
        for (uint32_t i = 0; i < kFrames; ++i) put16(44 + 2 * i, static_cast<uint16_t>((i * 97) % 4000));
        for (int i = 0; i < kFiles; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "tone%05d.wav", i);
            const std::string path = (dir / "music" / name).string();
            std::ofstream(path, std::ios::binary).write(wav.data(), static_cast<std::streamsize>(wav.size()));
            files.push_back(path);
        }
    }

    void Seed() const {
        SettingsEnvironment environment{(dir / "bin").string(), (dir / "data/Brimfell/Verdin").string(), dir.string(),
                                        (dir / "music").string()};
        Settings settings;
        SetDefaults(settings, environment);
        settings.inputPluginsSearchPath = std::string(VERDIN_BENCH_PLUGIN_DIR) + ";";
        settings.outputType = 0;
        const auto devices = ListAlsaDevices();
        for (size_t i = 0; i < devices.size(); ++i)
            if (devices[i].name == "null") settings.waveOutDevice = static_cast<int32_t>(i) - 1;
        auto store = OpenUserSettingsStore();
        QSettingsStorage storage(*store);
        SaveSettings(settings, storage, environment);
        std::filesystem::remove(dir / "data/Brimfell/Verdin/default.vdp");
    }
};

Home& TheHome() {
    static Home home;
    return home;
}

// The longest gap between ticks of a 1 ms timer: how long the event loop was not served.
class StallMeter {
public:
    StallMeter() {
        timer_.setInterval(1);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            longest_ = std::max(longest_, clock_.restart());
        });
        clock_.start();
        timer_.start();
    }
    double LongestMs() const { return static_cast<double>(longest_); }

private:
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 longest_ = 0;
};

std::unique_ptr<WindowApplication> StartWindow() {
    TheHome().Seed();
    RunOptions options;
    options.headless = false;
    auto app = std::make_unique<WindowApplication>(options);
    app->StartWithWindows();
    return app;
}

bool AllRetrieved(const Playlist& main) {
    for (int row = 0; row < main.RowCount(); ++row)
        if (!static_cast<const TrackItem*>(main.ItemAtRow(row).item)->Track().InfoRetrieved()) return false;
    return true;
}

void Report(benchmark::State& state, double blockedMs, double stallMs, double totalMs, double peerMs) {
    state.counters["blocked_ms"] = blockedMs;
    state.counters["longest_stall_ms"] = stallMs;
    state.counters["all_read_ms"] = totalMs;
    state.counters["peer_blocked_ms"] = peerMs;
    state.counters["stall_vs_peer"] = stallMs / peerMs;
}

// The peer: the same files added with their information read on the spot.
double SynchronousAddMs() {
    auto app = StartWindow();
    Player& player = app->GetPlayer();
    player.SetDeferredRetrieval(false);
    QElapsedTimer clock;
    clock.start();
    player.AddPaths(TheHome().files, -1);
    const double ms = static_cast<double>(clock.elapsed());
    if (!AllRetrieved(player.List())) std::fprintf(stderr, "peer: not every track was read\n");
    return ms;
}

void AddTenThousand(benchmark::State& state, bool open) {
    for (auto _ : state) {
        const double peerMs = SynchronousAddMs();
        auto app = StartWindow();
        MainWindow& window = *app->Window();
        QList<QUrl> urls;
        for (const std::string& file : TheHome().files) urls.push_back(QUrl::fromLocalFile(QString::fromStdString(file)));
        QElapsedTimer clock;
        clock.start();
        StallMeter meter;
        if (open) window.Adding().Open(TheHome().files);
        else window.DropUrls(urls);
        const double blockedMs = static_cast<double>(clock.elapsed());
        while (window.Adding().Busy() || window.Retrieval().Busy())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        const double totalMs = static_cast<double>(clock.elapsed());
        state.SetIterationTime(totalMs / 1000);
        if (!AllRetrieved(app->GetPlayer().List()) || app->GetPlayer().List().RowCount() != kFiles)
            state.SkipWithError("not every track was added and read");
        Report(state, blockedMs, std::max(meter.LongestMs(), blockedMs), totalMs, peerMs);
    }
}

void BM_Add(benchmark::State& state) { AddTenThousand(state, false); }
void BM_Open(benchmark::State& state) { AddTenThousand(state, true); }

// Milliseconds per page to paint the view from top to bottom.
double PaintPagesMs(PlaylistView& view) {
    view.resize(800, 600);
    view.show();
    QCoreApplication::processEvents();
    QScrollBar* bar = view.verticalScrollBar();
    int pages = 0;
    QElapsedTimer clock;
    clock.start();
    for (int value = 0; value <= bar->maximum(); value += std::max(bar->pageStep(), 1)) {
        bar->setValue(value);
        view.viewport()->repaint();
        ++pages;
    }
    return static_cast<double>(clock.nsecsElapsed()) / 1e6 / pages;
}

void BM_Scroll(benchmark::State& state) {
    for (auto _ : state) {
        auto app = StartWindow();
        Player& player = app->GetPlayer();
        player.SetDeferredRetrieval(false);
        player.AddPaths(TheHome().files, -1);
        PlaylistModel model(player);
        PlaylistView ours;
        ours.setModel(&model);
        QStandardItemModel standard(player.List().RowCount(), kPlaylistColumns);
        for (int row = 0; row < player.List().RowCount(); ++row) {
            const RowCells cells = player.CellsOfRow(row);
            for (int column = 0; column < kPlaylistColumns; ++column)
                standard.setItem(row, column, new QStandardItem(QString::fromStdString(cells[static_cast<size_t>(column)])));
        }
        PlaylistView peer;
        peer.setModel(&standard);
        const double peerMs = PaintPagesMs(peer);
        const double oursMs = PaintPagesMs(ours);
        state.SetIterationTime(oursMs / 1000);
        state.counters["ms_per_page"] = oursMs;
        state.counters["peer_ms_per_page"] = peerMs;
        state.counters["vs_peer"] = oursMs / peerMs;
    }
}

// One change told both ways, with a view on screen, averaged over rounds.
void BM_Change(benchmark::State& state) {
    for (auto _ : state) {
        auto app = StartWindow();
        Player& player = app->GetPlayer();
        const Playlist& main = player.List();
        // 100,000 rows: the files ten times over, added without reading them.
        for (int i = 0; i < 10; ++i) player.AddPaths(TheHome().files, -1);
        PlaylistModel model(player);
        PlaylistView ours;
        ours.setModel(&model);
        QStandardItemModel standard;
        PlaylistView refilled;
        refilled.setModel(&standard);
        for (PlaylistView* view : {&ours, &refilled}) {
            view->resize(800, 600);
            view->show();
        }
        auto refill = [&] {
            standard.clear();
            const int rows = main.RowCount();
            for (int row = 0; row < rows; ++row) {
                const RowCells cells = player.CellsOfRow(row);
                QList<QStandardItem*> line;
                for (const std::string& cell : cells) line.push_back(new QStandardItem(QString::fromStdString(cell)));
                standard.appendRow(line);
            }
        };
        refill();
        QCoreApplication::processEvents();
        constexpr int kRounds = 5;
        QElapsedTimer clock;
        double oursMs = 0, peerMs = 0;
        for (int round = 0; round < kRounds; ++round) {
            player.AddPaths({TheHome().files[static_cast<size_t>(round)]}, -1);
            clock.start();
            model.Resync();
            ours.viewport()->repaint();
            oursMs += static_cast<double>(clock.nsecsElapsed()) / 1e6;
            clock.start();
            refill();
            refilled.viewport()->repaint();
            peerMs += static_cast<double>(clock.nsecsElapsed()) / 1e6;
        }
        state.SetIterationTime(oursMs / kRounds / 1000);
        state.counters["ms_per_change"] = oursMs / kRounds;
        state.counters["refill_ms_per_change"] = peerMs / kRounds;
        state.counters["vs_refill"] = oursMs / peerMs;
    }
}

// Drops one playlist file and waits until every row is in and read.
void DropList(benchmark::State& state, const std::string& list, int rows) {
    for (auto _ : state) {
        auto app = StartWindow();
        MainWindow& window = *app->Window();
        QElapsedTimer clock;
        clock.start();
        StallMeter meter;
        window.DropUrls({QUrl::fromLocalFile(QString::fromStdString(list))});
        const double blockedMs = static_cast<double>(clock.elapsed());
        while (window.Adding().Busy() || window.Retrieval().Busy() )
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        const double totalMs = static_cast<double>(clock.elapsed());
        state.SetIterationTime(totalMs / 1000);
        if (app->GetPlayer().List().RowCount() != rows) state.SkipWithError("not every row was added");
        state.counters["blocked_ms"] = blockedMs;
        state.counters["longest_stall_ms"] = std::max(meter.LongestMs(), blockedMs);
        state.counters["all_read_ms"] = totalMs;
    }
}

void BM_List(benchmark::State& state) {
    const std::filesystem::path list = TheHome().dir / "music/big.m3u";
    std::ofstream out(list);
    for (int copy = 0; copy < 5; ++copy)
        for (const std::string& file : TheHome().files) out << file << '\n';
    out.close();
    DropList(state, list.string(), 5 * kFiles + 1);  // the list's own row, and its entries
}

void BM_Chain(benchmark::State& state) {
    constexpr int kDepth = 15;
    const std::filesystem::path music = TheHome().dir / "music";
    for (int level = 0; level < kDepth; ++level) {
        std::ofstream out(music / ("chain" + std::to_string(level) + ".m3u"));
        const std::string next = level + 1 < kDepth ? "chain" + std::to_string(level + 1) + ".m3u" : TheHome().files[0];
        out << next << '\n' << next << '\n';
    }
    DropList(state, (music / "chain0.m3u").string(), (2 << kDepth) - 1);  // lists and tracks
}

BENCHMARK(BM_Add)->Name("Add/10000")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Open)->Name("Open/10000")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_List)->Name("List/50000")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Chain)->Name("Chain/15")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Scroll)->Name("Scroll/10000")->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Change)->Name("Change/100000")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
