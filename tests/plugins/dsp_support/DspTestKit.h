#pragma once
// What the DSP host's tests share: copies of the test plug-ins (dsp_fixtures, built into
// tests/modules/dsp_host/) placed where a test wants them, whether the process has a
// library loaded, the window record the plug-ins report to, and the host over copies of
// "kit" and "other".
#include "plugins/dsp/DspHost.h"

#include "TempDir.h"

#include <verdin/window.h>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <optional>
#include <thread>

namespace verdin::test {

// Copies the test plug-in "<module>.so" (kit, other, empty, noentry, nullheader, endless)
// to directory/name: a library of its own for the loader, with its own static data.
inline std::string PlaceTestModule(const std::string& module, const std::string& directory, const std::string& name) {
    const std::filesystem::path target = std::filesystem::path(directory) / name;
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::copy_file(std::filesystem::path(VERDIN_DSP_TEST_MODULES) / (module + ".so"), target,
                               std::filesystem::copy_options::overwrite_existing);
    return target.string();
}

// The handle of the library at path if the process has it loaded, else null; asking
// neither loads it nor keeps a reference.
inline void* LoadedHandle(const std::string& path) {
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
    std::vector<std::string> Events() const {
        std::lock_guard lock(mutex_);
        return events_;
    }
    std::vector<std::string> EventsContaining(std::string_view text) const {
        std::vector<std::string> out = Events();
        std::erase_if(out, [&](const std::string& event) { return event.find(text) == std::string::npos; });
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
enum KitModule { kAppend1, kAppend2, kAppend3, kHalve, kDouble, kNegative, kOverlong, kGate, kFormat };
enum OtherModule { kAppend4, kAppend5 };

// The DSP host over copies of "kit" and "other" in a private directory, with the test's
// window as their parent.
class DspHostTest : public ::testing::Test {
protected:
    void SetUp() override { libraries.emplace(window.record(), dir.str() + ";"); }
    DspModuleRef Kit(int index) const { return {kit, index}; }
    DspModuleRef Other(int index) const { return {other, index}; }
    void Activate(const std::vector<DspModuleRef>& refs) { host.SetActiveList(*libraries, refs); }
    // A stereo 16-bit block of frames through the host, in a buffer with room for twice as
    // many, as streams hand it over; returns the frame count that comes out.
    uint32_t Process(std::vector<int16_t>& block, uint32_t frames, uint32_t bits = 16, uint32_t channels = 2,
                     uint32_t rate = 44100) {
        block.resize(std::max<size_t>(block.size(), 4 * size_t{frames}));
        return DspHost::Process(host.HookContext(), reinterpret_cast<uint8_t*>(block.data()), frames, bits, channels, rate);
    }

    TempDir dir;
    TestWindow window;
    std::string kit = PlaceTestModule("kit", dir.str(), "kit.so"), other = PlaceTestModule("other", dir.str(), "other.so");
    std::optional<DspLibraryList> libraries;
    DspHost host;
};

// The value every one of the first n samples has, or -1 when they differ.
inline int UniformValue(const std::vector<int16_t>& samples, size_t n) {
    for (size_t i = 1; i < n; ++i)
        if (samples[i] != samples[0]) return -1;
    return samples[0];
}

}  // namespace verdin::test
