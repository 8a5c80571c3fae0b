// The DSP host: the libraries on a search path (real test plug-ins copied into private
// directories), modules activated from them, the "dspPlugins" text, the active list it
// makes (which modules get an instance, when Init and Quit are called), what the host does
// to a block, and all of it between threads. The options page under a playing stream is
// the dialog tests' (theDspListAndTheEqualizerAreHeardOnAPlayingStream).
#include "plugins/dsp/DspConfigure.h"
#include "plugins/dsp/DspHost.h"

#include "Files.h"
#include "TempDir.h"

#include <verdin/window.h>

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <thread>
#include <tuple>

namespace verdin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

// Copies the test plug-in "<module>.so" (kit, other, empty, noentry, nullheader, endless)
// to directory/name: a library of its own for the loader, with its own static data.
std::string PlaceTestModule(const std::string& module, const std::string& directory, const std::string& name) {
    const std::filesystem::path target = std::filesystem::path(directory) / name;
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::copy_file(std::filesystem::path(VERDIN_DSP_TEST_MODULES) / (module + ".so"), target);
    return target.string();
}

// The handle of the library at path if the process has it loaded, else null; asking
// neither loads it nor keeps a reference.
void* LoadedHandle(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle) dlclose(handle);
    else dlerror();
    return handle;
}

// The parent window the test plug-ins report every call to: WM_COPYDATA, dwData
// TEST_DSP_REPORT, the text "<library>/<module> <event>" ("Kit/append 1 Init"); kept in
// arrival order from any thread. While the gate is armed, the first "gate" report holds
// its thread (and the stream inside the host with it) until the test disarms it; another
// thread passing meanwhile goes on, so a host letting two streams in fails, not hangs.
class TestWindow {
public:
    VerdinHostWindow* record() { return &record_; }
    std::vector<std::string> Events(std::string_view containing = {}) const {
        std::lock_guard lock(mutex_);
        std::vector<std::string> out = events_;
        std::erase_if(out, [&](const std::string& event) { return event.find(containing) == std::string::npos; });
        return out;
    }
    void ClearEvents() {
        std::lock_guard lock(mutex_);
        events_.clear();
    }

    std::atomic<bool> gateArmed{false};  // written by the test
    std::atomic<bool> held{false};       // written by the thread held at the gate

private:
    static intptr_t Receive(VerdinHostWindow* window, uint32_t msg, uintptr_t, intptr_t lParam) {
        auto* self = static_cast<TestWindow*>(window->host);
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        const bool report = msg == WM_COPYDATA && data && data->dwData == TEST_DSP_REPORT && data->lpData && data->cbData;
        std::string event = report ? std::string(static_cast<const char*>(data->lpData), data->cbData - 1)
                                   : "unexpected message " + std::to_string(msg);
        const bool gate = event.ends_with(" gate");
        {
            std::lock_guard lock(self->mutex_);
            self->events_.push_back(std::move(event));
        }
        if (gate && self->gateArmed.load() && !self->held.exchange(true)) {
            while (self->gateArmed.load()) std::this_thread::yield();
            self->held.store(false);
        }
        return 1;
    }

    VerdinHostWindow record_{&TestWindow::Receive, this};
    mutable std::mutex mutex_;
    std::vector<std::string> events_;
};

// The modules' indices in their libraries (see TestDspPlugin.c).
enum KitModule { kAppend1, kAppend2, kAppend3, kHalve, kDouble, kNegative, kOverlong, kGate };
enum OtherModule { kAppend4, kAppend5 };

// The DSP host over copies of "kit" and "other" in a private directory, listed with the
// test's window as their parent.
class DspHostTest : public ::testing::Test {
protected:
    DspModuleRef Kit(int index) const { return {kit, index}; }
    DspModuleRef Other(int index) const { return {other, index}; }
    void Activate(const std::vector<DspModuleRef>& refs) { host.SetActiveList(libraries, refs); }
    // A stereo 16-bit block of frames through the host, in a buffer with room for twice as
    // many, as streams hand it over; returns the frame count that comes out.
    uint32_t Process(std::vector<int16_t>& block, uint32_t frames) {
        block.resize(std::max<size_t>(block.size(), 4 * size_t{frames}));
        return DspHost::Process(host.HookContext(), reinterpret_cast<uint8_t*>(block.data()), frames, 16, 2, 44100);
    }

    TempDir dir;
    TestWindow window;
    std::string kit = PlaceTestModule("kit", dir.str(), "kit.so"), other = PlaceTestModule("other", dir.str(), "other.so");
    DspLibraryList libraries{window.record(), dir.str() + ";"};
    DspHost host;
};

// The value every one of the first n samples has, or -1 when they differ.
int UniformValue(const std::vector<int16_t>& samples, size_t n) {
    for (size_t i = 1; i < n; ++i)
        if (samples[i] != samples[0]) return -1;
    return samples[0];
}

// "a" and "b" on the search path, "c" (which also holds a plug-in) left off it. Files that
// fail to load, lack the entry point or give no header are left out; a directory
// listed twice is searched twice, a library whose modules never end is cut off. Nothing
// stays loaded, no module is called, and a library is found by its path byte for byte.
TEST_F(DspHostTest, ListsDspLibrariesDirectoryByDirectoryAndLeavesThemUnloaded) {
    const std::string a = dir.file("a"), b = dir.file("b"), c = dir.file("c");
    const std::string alpha = PlaceTestModule("other", a, "alpha.so"), beta = PlaceTestModule("kit", a, "beta.so"),
                      gamma = PlaceTestModule("empty", a, "gamma.so"), inB = PlaceTestModule("kit", b, "kit.so"),
                      endless = PlaceTestModule("endless", b, "z.so");
    PlaceTestModule("nullheader", a, "c.so");
    PlaceTestModule("noentry", a, "d.so");
    PlaceTestModule("other", c, "unlisted.so");
    WriteFile(a + "/broken.so", "not a shared object");
    DspLibraryList list(window.record(), a + ";;" + b + ";" + b + "/kit.so;" + b + ";" + dir.file("missing"));
    std::vector<std::string> paths;
    for (const DspLibrary& library : list.libraries()) paths.push_back(library.path);
    EXPECT_THAT(paths, ElementsAre(alpha, beta, gamma, inB, endless, inB, endless));
    EXPECT_EQ(list.LibraryAt(0)->description, "Other");
    EXPECT_THAT(list.LibraryAt(0)->moduleDescriptions, ElementsAre("append 4", "append 5"));
    EXPECT_THAT(list.LibraryAt(2)->moduleDescriptions, IsEmpty());  // getModule(0) NULL: no modules
    EXPECT_EQ(list.LibraryAt(4)->moduleDescriptions.size(), static_cast<size_t>(DspLibraryList::kMaxModulesPerLibrary));
    for (const std::string& path : paths) EXPECT_EQ(LoadedHandle(path), nullptr) << path;
    EXPECT_THAT(window.Events(), IsEmpty());
    EXPECT_EQ(list.LibraryByPath(beta)->description, "Kit");
    EXPECT_EQ(list.LibraryByPath(a + "/Beta.so"), nullptr);
    EXPECT_EQ(list.ActivateByPath(c + "/unlisted.so", 0), nullptr);
    for (const auto& [library, module] : {std::pair{7, 0}, {2, 0}, {1, 8}, {1, -1}})  // none; no modules; eight
        EXPECT_EQ(list.Activate(library, module), nullptr) << library << "," << module;
}

// An instance loads its library and fills in the module's record before any call; Quit
// only follows Init. Configure uses a temporary instance without Init or Quit.
TEST_F(DspHostTest, ActivationLoadsTheLibraryForTheInstanceAndQuitOnlyFollowsInit) {
    DspLibraryList& list = libraries;
    auto byIndex = list.Activate(0, 2);
    ASSERT_NE(byIndex, nullptr);
    EXPECT_STREQ(byIndex->module()->description, "append 3");
    ASSERT_NE(LoadedHandle(kit), nullptr);
    EXPECT_EQ(byIndex->module()->hDllInstance, LoadedHandle(kit));
    auto byPath = list.ActivateByPath(other, 1);
    ASSERT_NE(byPath, nullptr);
    byPath->Initialise();
    byIndex.reset();
    byPath.reset();
    EXPECT_THAT(window.Events(), ElementsAre("Other/append 5 Init", "Other/append 5 Quit"));
    EXPECT_EQ(LoadedHandle(kit), nullptr);
    EXPECT_EQ(LoadedHandle(other), nullptr);
    window.ClearEvents();
    EXPECT_TRUE(ConfigureDspModule(list, 1, 1));
    EXPECT_TRUE(ConfigureDspModuleByPath(list, kit, kGate));
    EXPECT_FALSE(ConfigureDspModuleByPath(list, kit, 9));
    EXPECT_THAT(window.Events(), ElementsAre("Other/append 5 Config", "Kit/gate Config"));
    // A library gone since enumeration gives none; the list itself is not refreshed.
    std::filesystem::remove(other);
    EXPECT_EQ(list.ActivateByPath(other, 0), nullptr);
    EXPECT_NE(list.LibraryByPath(other), nullptr);
}

// The module description of each entry's instance, "-" for an entry without one.
std::vector<std::string> Modules(const DspHost& host) {
    std::vector<std::string> out;
    for (const ActiveDspEntry& entry : host.ActiveList())
        out.push_back(entry.instance ? entry.instance->module()->description : "-");
    return out;
}

// Start-up activates and initialises each entry in list order (the same module twice
// twice) and keeps the entries without an instance, so the setting is written back as it
// was read. Apply keeps the instances of modules that stay and initialises new modules
// before it quits those that leave, so no block reaches a module that is not initialised;
// a new search path drops the modules it no longer finds. Clearing quits each in order.
TEST_F(DspHostTest, TheActiveListInitialisesBeforeItQuitsAndQuitsEachModuleOnce) {
    const std::string text =
        kit + ",1;" + kit + ",99;" + dir.file("gone.so") + ",0;" + kit + ",-1;" + kit + "/,0;" + other + ",0;" + other;
    Activate(ParseDspPlugins(text + ";"));
    EXPECT_THAT(Modules(host), ElementsAre("append 2", "-", "-", "-", "-", "append 4", "append 4"));
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 2 Init", "Other/append 4 Init", "Other/append 4 Init"));
    EXPECT_EQ(host.DspPluginsText(), text + ",0;");
    const DspModuleInstance* kept = host.ActiveList()[0].instance.get();
    window.ClearEvents();
    Activate({Kit(kAppend3), Kit(kAppend2), Kit(kAppend1)});
    EXPECT_THAT(Modules(host), ElementsAre("append 3", "append 2", "append 1"));
    EXPECT_EQ(host.ActiveList()[1].instance.get(), kept);
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 3 Init", "Kit/append 1 Init", "Other/append 4 Quit", "Other/append 4 Quit"));
    DspLibraryList elsewhere(window.record(), dir.file("nothing-here") + ";");
    window.ClearEvents();
    host.SetActiveList(elsewhere, std::vector<DspModuleRef>{Kit(kAppend1)});
    EXPECT_THAT(Modules(host), ElementsAre("-"));
    EXPECT_THAT(window.Events(), UnorderedElementsAre("Kit/append 1 Quit", "Kit/append 2 Quit", "Kit/append 3 Quit"));
    window.ClearEvents();
    Activate({Kit(kAppend1), Other(kAppend5)});
    host.ClearActiveList();
    EXPECT_THAT(host.ActiveList(), IsEmpty());
    EXPECT_THAT(window.Events(), ElementsAre("Kit/append 1 Init", "Other/append 5 Init", "Kit/append 1 Quit", "Other/append 5 Quit"));
}

// Each active module in list order, each result the frame count for the next module and
// for output, within the room of twice the block.
TEST_F(DspHostTest, ModulesRunInListOrderAndEachResultCarriesOn) {
    constexpr uint32_t kFrames = 64;
    // What is active, the frame count that comes out, the value of every sample of the first
    // frames (how many: 0 for all of those that come out).
    const std::tuple<const char*, std::vector<DspModuleRef>, uint32_t, int16_t, uint32_t> cases[] = {
        {"list order", {Kit(kAppend3), Other(kAppend4), Kit(kAppend1)}, kFrames, 341, 0},
        {"entry without instance skipped", {Kit(kAppend1), Kit(99), {dir.file("none.so"), 0}, Kit(kAppend2)}, kFrames, 12, 0},
        {"shortened for later modules", {Kit(kAppend1), Kit(kHalve), Kit(kAppend2)}, kFrames / 2, 12, 0},
        {"lengthened up to twice", {Kit(kAppend1), Kit(kDouble), Kit(kAppend2)}, 2 * kFrames, 12, 0},
        {"negative is nothing", {Kit(kAppend1), Kit(kNegative), Kit(kAppend2)}, 0, 0, 0},
        {"more than the room is cut", {Kit(kAppend1), Kit(kOverlong)}, 2 * kFrames, 1, kFrames},
    };
    for (const auto& [name, refs, expectedFrames, value, valueFrames] : cases) {
        SCOPED_TRACE(name);
        Activate(refs);
        std::vector<int16_t> block;
        const uint32_t frames = Process(block, kFrames);
        EXPECT_EQ(frames, expectedFrames);
        const uint32_t checked = valueFrames ? valueFrames : frames;
        if (checked) {
            EXPECT_EQ(UniformValue(block, 2 * checked), value) << "first sample " << block[0];
        }
    }
    Activate({Kit(kGate)});  // an empty block reaches no module
    std::vector<int16_t> block;
    EXPECT_EQ(Process(block, 0), 0u);
    EXPECT_THAT(window.Events("gate gate"), IsEmpty());
    EXPECT_THAT(window.Events("violation"), IsEmpty());
}

// The host between threads: the busy mark lets a second stream's block pass while another
// stream is inside, and the active list changes while a stream runs blocks through it.
constexpr uint32_t kBlock = 32;

TEST_F(DspHostTest, ABlockArrivingWhileAnotherStreamIsInsidePassesUnchanged) {
    Activate({Kit(kGate)});
    window.gateArmed = true;
    std::vector<int16_t> first, second;
    uint32_t firstFrames = 0;
    std::thread stream([&] { firstFrames = Process(first, kBlock); });
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!window.held && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
    EXPECT_TRUE(window.held) << "no stream reached the gate";
    // The first stream is inside the gate module: the host is busy.
    EXPECT_EQ(Process(second, kBlock), kBlock);
    EXPECT_EQ(UniformValue(second, 4 * kBlock), 0);
    window.gateArmed = false;
    stream.join();
    EXPECT_EQ(firstFrames, kBlock);
    EXPECT_EQ(UniformValue(first, 2 * kBlock), 9);
}

// A stream thread runs blocks through the host without pause while the test's thread
// swaps the active list again and again. Every block must be processed whole by one of
// the lists (never by parts of two, never skipped), and no module may be called before
// its Init or after its Quit, nor quit while a stream is inside it (the test plug-ins
// report such breaches).
TEST_F(DspHostTest, SwappingTheActiveListUnderARunningStream) {
    const std::vector<DspModuleRef> lists[] = {
        {Kit(kAppend1)}, {Other(kAppend4), Kit(kAppend1)}, {Other(kAppend5)}, {}, {Other(kAppend4), Other(kAppend4)}};
    const int expectedValues[] = {1, 41, 5, 0, 44};
    Activate(lists[0]);
    std::atomic<bool> stop{false};    // written by the test thread, read by the stream
    std::atomic<uint64_t> blocks{0};  // written by the stream, read by the test thread
    std::atomic<int> badBlocks{0};    // written by the stream, read after join
    std::thread stream([&] {
        std::vector<int16_t> block;
        while (!stop.load(std::memory_order_acquire)) {
            block.assign(4 * kBlock, 0);
            const uint32_t frames = Process(block, kBlock);
            if (frames != kBlock || std::ranges::count(expectedValues, UniformValue(block, 2 * kBlock)) == 0)
                badBlocks.fetch_add(1, std::memory_order_relaxed);
            blocks.fetch_add(1, std::memory_order_release);
        }
    });
    constexpr int kSwaps = 300;
    for (int swap = 1; swap <= kSwaps; ++swap) {
        // Let the stream finish at least one block under the current list first, so the
        // swaps really meet a running stream.
        const uint64_t seen = blocks.load(std::memory_order_acquire);
        while (blocks.load(std::memory_order_acquire) == seen) std::this_thread::yield();
        Activate(lists[swap % 5]);
    }
    stop.store(true, std::memory_order_release);
    stream.join();
    EXPECT_EQ(badBlocks.load(), 0);
    EXPECT_THAT(window.Events("violation"), IsEmpty());
    // Every Init has had its Quit, except for the list still active.
    host.ClearActiveList();
    for (const std::string module : {"Kit/append 1", "Other/append 4", "Other/append 5"}) {
        const size_t inits = window.Events(module + " Init").size();
        EXPECT_EQ(inits, window.Events(module + " Quit").size()) << module;
        EXPECT_GT(inits, 0u) << module;
    }
}

}  // namespace
}  // namespace verdin::test
