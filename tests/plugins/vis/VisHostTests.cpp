// The visualization host over a real test plug-in: start-up, switching on and off, and
// the render tick driven by hand (each "tick" is one 10 ms timer tick). Each case runs a
// script against module 1 of the test library and checks the module's Init, Render and
// Quit counts, the on/off setting, and which bytes of its data blocks the host wrote.
#include "plugins/vis/VisHost.h"

#include "TestVisState.h"

#include <verdin/window.h>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
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

// A message from a module (the one Render sends) switches the modules off, as the
// player's toggle command would.
intptr_t SwitchOff(VerdinHostWindow* window, uint32_t, uintptr_t, intptr_t) {
    static_cast<VisHost*>(window->host)->SwitchOff();
    return 0;
}

TEST(VisHost, RunsEachScript) {
    // The test's own load keeps the plug-in's static data alive between the host's.
    const std::string path = std::string(VERDIN_VIS_TEST_MODULES) + "/vis_test_plugin.so";
    void* library = dlopen(path.c_str(), RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    winampVisModule* module = reinterpret_cast<winampVisGetHeaderType>(dlsym(library, VERDIN_VIS_ENTRY_POINT))()->getModule(kModule);
    TestVisState* state = &static_cast<TestVisState*>(dlsym(library, "testVisState"))[kModule];
    const VisFrame frame{22050, 1, [] {}, Spectrum, Waveform};
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        *state = {c.renderResult, c.sendInRender, 0, 0, 0, 0, 0};
        module->delayMs = c.delayMs;
        module->spectrumNch = c.spectrumNch;
        module->waveformNch = c.waveformNch;
        module->sRate = module->nCh = 0;
        std::memset(module->spectrumData, kUntouched, sizeof module->spectrumData);
        std::memset(module->waveformData, kUntouched, sizeof module->waveformData);
        int32_t enabled = 0;
        VisHost host(enabled);
        VerdinHostWindow window{&SwitchOff, &host};
        host.Load(&window, std::string(VERDIN_VIS_TEST_MODULES) + ";", path + "," + std::to_string(kModule) + ";");
        std::istringstream script(c.script);
        for (std::string step; script >> step;) {
            if (step == "set") enabled = 1;
            if (step == "start") host.StartUp();
            if (step == "on") host.SwitchOn();
            if (step == "off") host.SwitchOff();
            if (step == "tick") host.RenderTick(frame);
        }
        EXPECT_EQ((std::array{state->inits, state->renders, state->quits}), (std::array{c.inits, c.renders, c.quits}));
        EXPECT_EQ(state->quitsDuringRender, 0);
        EXPECT_EQ(enabled, c.onAfter ? 1 : 0);
        EXPECT_EQ(Written(module->spectrumData, [](int ch, int i) { return Spectrum(ch, i) & 0xFF; }), c.spectrumBytes);
        EXPECT_EQ(Written(module->waveformData, [](int ch, int i) { return static_cast<uint8_t>(Waveform(ch, i) >> 24); }),
                  c.waveformBytes);
        // The format is written only for a Render.
        EXPECT_EQ((std::array{module->sRate, module->nCh}), (c.renders ? std::array{22050, 1} : std::array{0, 0}));
        // Switched off at the end, nothing of the plug-in is left to the host.
        host.SwitchOff();
        EXPECT_EQ(state->quits, state->inits);
    }
    dlclose(library);
}

}  // namespace
}  // namespace verdin::test
