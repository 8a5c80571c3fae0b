// The visualization host over a real test plug-in: start-up, switching on and off, and
// the render tick driven by hand (each "tick" is one 10 ms timer tick). Each case runs a
// script against module 1 of the test library and checks the module's Init, Render and
// Quit counts, the on/off setting, and which bytes of its data blocks the host wrote.
#include "plugins/vis/VisHost.h"

#include "TestVisState.h"

#include <verdin/window.h>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>

namespace verdin::test {
namespace {

constexpr int kModule = 1;
constexpr unsigned char kUntouched = 0xAA;  // never a value the frame below produces

// Spectrum low bytes 1..99 (with higher bits the host must drop), waveform bytes -50..50.
int32_t Spectrum(int channel, int index) { return 0x1200 | (1 + (index + channel) % 99); }
int32_t Waveform(int channel, int index) { return static_cast<int32_t>(static_cast<uint32_t>(index % 101 - 50 + channel) << 24) | 0xABCDEF; }

// How many bytes of a block hold what the host is to write there.
template <typename Source>
size_t Written(const unsigned char (&block)[2][576], Source expected) {
    size_t count = 0;
    for (int channel = 0; channel < 2; ++channel)
        for (int index = 0; index < 576; ++index)
            count += block[channel][index] == expected(channel, index) ? 1 : 0;
    return count;
}

struct Case {
    const char* name;
    int delayMs, spectrumNch, waveformNch, renderResult, sendInRender;
    const char* script;  // "set" (the setting as stored), "start", "on", "off", "tick"
    int inits, renders, quits;
    size_t spectrumBytes, waveformBytes;
    bool onAfter;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

const Case kCases[] = {
    {"delay 25: nothing on the first two ticks", 25, 2, 2, 0, 0, "on tick tick", 1, 0, 0, 0, 0, true},
    {"delay 25: first on the third tick, then every tick", 25, 2, 2, 0, 0, "on tick tick tick tick tick off", 1, 3, 1,
     1150, 1152, false},
    {"the elapsed time restarts at switch-on", 25, 0, 0, 0, 0, "on tick tick tick off on tick tick", 2, 1, 1, 0, 0, true},
    {"spectrum 0, waveform 2", 0, 0, 2, 0, 0, "on tick", 1, 1, 0, 0, 1152, true},
    {"spectrum 1, waveform 0: channel 0 without its last value", 0, 1, 0, 0, 0, "on tick", 1, 1, 0, 575, 0, true},
    {"spectrum 2, waveform 1", 0, 2, 1, 0, 0, "on tick", 1, 1, 0, 1150, 576, true},
    {"a failing Render quits its module at once", 0, 0, 0, 1, 0, "on tick tick tick", 1, 1, 1, 0, 0, true},
    {"a failed module runs again after the next switch-on", 0, 0, 0, 1, 0, "on tick off tick on tick", 2, 2, 2, 0, 0,
     true},
    {"switching off quits once, switching on twice inits once", 0, 0, 0, 0, 0, "on on tick off off", 1, 1, 1, 0, 0,
     false},
    {"with the setting clear the tick calls no module", 0, 0, 0, 0, 0, "tick start tick on off tick", 1, 0, 1, 0, 0,
     false},
    {"start-up with the setting stored on switches on", 0, 0, 0, 0, 0, "set start tick", 1, 1, 0, 0, 0, true},
    {"a switch-off sent from Render waits for its end", 0, 0, 0, 0, 1, "on tick tick", 1, 1, 1, 0, 0, false},
};

class VisHostTest : public ::testing::TestWithParam<Case> {
protected:
    void SetUp() override {
        // The test's own load keeps the plug-in's static data alive between the host's.
        library_ = dlopen(path_.c_str(), RTLD_NOW);
        ASSERT_NE(library_, nullptr) << dlerror();
        auto header = reinterpret_cast<winampVisGetHeaderType>(dlsym(library_, VERDIN_VIS_ENTRY_POINT))();
        module_ = header->getModule(kModule);
        state_ = &static_cast<TestVisState*>(dlsym(library_, "testVisState"))[kModule];
    }
    void TearDown() override {
        if (library_) dlclose(library_);
    }

    // A message from a module (the one Render sends) switches the modules off, as the
    // player's toggle command would.
    static intptr_t Send(VerdinHostWindow* window, uint32_t, uintptr_t, intptr_t) {
        static_cast<VisHost*>(window->host)->SwitchOff();
        return 0;
    }

    std::string path_ = std::string(VERDIN_VIS_TEST_MODULES) + "/vis_test_plugin.so";
    void* library_ = nullptr;
    winampVisModule* module_ = nullptr;
    TestVisState* state_ = nullptr;
};

TEST_P(VisHostTest, RunsTheScript) {
    const Case& c = GetParam();
    *state_ = {c.renderResult, c.sendInRender, 0, 0, 0, 0, 0};
    module_->delayMs = c.delayMs;
    module_->spectrumNch = c.spectrumNch;
    module_->waveformNch = c.waveformNch;
    std::memset(module_->spectrumData, kUntouched, sizeof module_->spectrumData);
    std::memset(module_->waveformData, kUntouched, sizeof module_->waveformData);

    int32_t enabled = 0;
    VisHost host(enabled);
    VerdinHostWindow window{&Send, &host};
    host.Load(&window, std::string(VERDIN_VIS_TEST_MODULES) + ";", path_ + "," + std::to_string(kModule) + ";");
    const VisFrame frame{22050, 1, [] {}, Spectrum, Waveform};
    std::istringstream script(c.script);
    for (std::string step; script >> step;) {
        if (step == "set") enabled = 1;
        if (step == "start") host.StartUp();
        if (step == "on") host.SwitchOn();
        if (step == "off") host.SwitchOff();
        if (step == "tick") host.RenderTick(frame);
    }

    EXPECT_EQ(state_->inits, c.inits);
    EXPECT_EQ(state_->renders, c.renders);
    EXPECT_EQ(state_->quits, c.quits);
    EXPECT_EQ(state_->quitsDuringRender, 0);
    EXPECT_EQ(enabled, c.onAfter ? 1 : 0);
    EXPECT_EQ(Written(module_->spectrumData, [](int ch, int i) { return Spectrum(ch, i) & 0xFF; }), c.spectrumBytes);
    EXPECT_EQ(Written(module_->waveformData, [](int ch, int i) { return static_cast<uint8_t>(Waveform(ch, i) >> 24); }),
              c.waveformBytes);
    if (c.renders > 0) {
        EXPECT_EQ(module_->sRate, 22050);
        EXPECT_EQ(module_->nCh, 1);
    }
    // Switched off at the end, nothing of the plug-in is left to the host.
    host.SwitchOff();
    EXPECT_EQ(state_->quits, state_->inits);
}

INSTANTIATE_TEST_SUITE_P(Script, VisHostTest, ::testing::ValuesIn(kCases),
                         [](const auto& param) { return "case" + std::to_string(param.index); });

}  // namespace
}  // namespace verdin::test
