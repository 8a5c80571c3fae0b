// The SDK records lay out the same for C plug-ins as for the C++ player, and the message
// helper carries pointer-sized values unchanged.
#include "HeadersInC.h"

#include <verdin/dsp.h>
#include <verdin/gen.h>
#include <verdin/vis.h>
#include <verdin/window.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace {

std::vector<size_t> FromC(const size_t* (*layout)(size_t*)) {
    size_t count = 0;
    const size_t* values = layout(&count);
    return std::vector<size_t>(values, values + count);
}

TEST(SdkHeaders, RecordsLayOutTheSameInCAndCxx) {
    struct Case {
        const char* record;
        std::vector<size_t> inCxx;
        const size_t* (*inC)(size_t*);
    };
    const Case cases[] = {
        {"winampDSPModule",
         {sizeof(winampDSPModule), offsetof(winampDSPModule, description), offsetof(winampDSPModule, hwndParent),
          offsetof(winampDSPModule, hDllInstance), offsetof(winampDSPModule, Config), offsetof(winampDSPModule, Init),
          offsetof(winampDSPModule, ModifySamples), offsetof(winampDSPModule, Quit),
          offsetof(winampDSPModule, userData)},
         DspModuleLayoutInC},
        {"winampDSPHeader",
         {sizeof(winampDSPHeader), offsetof(winampDSPHeader, version), offsetof(winampDSPHeader, description),
          offsetof(winampDSPHeader, getModule)},
         DspHeaderLayoutInC},
        {"winampVisModule",
         {sizeof(winampVisModule), offsetof(winampVisModule, description), offsetof(winampVisModule, hwndParent),
          offsetof(winampVisModule, hDllInstance), offsetof(winampVisModule, sRate), offsetof(winampVisModule, nCh),
          offsetof(winampVisModule, latencyMs), offsetof(winampVisModule, delayMs),
          offsetof(winampVisModule, spectrumNch), offsetof(winampVisModule, waveformNch),
          offsetof(winampVisModule, spectrumData), offsetof(winampVisModule, waveformData),
          offsetof(winampVisModule, Config), offsetof(winampVisModule, Init), offsetof(winampVisModule, Render),
          offsetof(winampVisModule, Quit), offsetof(winampVisModule, userData)},
         VisModuleLayoutInC},
        {"winampVisHeader",
         {sizeof(winampVisHeader), offsetof(winampVisHeader, version), offsetof(winampVisHeader, description),
          offsetof(winampVisHeader, getModule)},
         VisHeaderLayoutInC},
        {"winampGeneralPurposePlugin",
         {sizeof(winampGeneralPurposePlugin), offsetof(winampGeneralPurposePlugin, version),
          offsetof(winampGeneralPurposePlugin, description), offsetof(winampGeneralPurposePlugin, init),
          offsetof(winampGeneralPurposePlugin, config), offsetof(winampGeneralPurposePlugin, quit),
          offsetof(winampGeneralPurposePlugin, hwndParent), offsetof(winampGeneralPurposePlugin, hDllInstance)},
         GeneralPluginLayoutInC},
        {"VerdinHostWindow",
         {sizeof(VerdinHostWindow), offsetof(VerdinHostWindow, sendMessage), offsetof(VerdinHostWindow, host)},
         HostWindowLayoutInC},
        {"COPYDATASTRUCT",
         {sizeof(COPYDATASTRUCT), offsetof(COPYDATASTRUCT, dwData), offsetof(COPYDATASTRUCT, cbData),
          offsetof(COPYDATASTRUCT, lpData)},
         CopyDataLayoutInC},
    };
    for (const Case& c : cases) EXPECT_EQ(FromC(c.inC), c.inCxx) << c.record;
}

struct Received {
    VerdinHostWindow* window = nullptr;
    uint32_t msg = 0;
    uintptr_t wParam = 0;
    intptr_t lParam = 0;
    int calls = 0;
};

intptr_t Record(VerdinHostWindow* window, uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    auto* received = static_cast<Received*>(window->host);
    *received = {window, msg, wParam, lParam, received->calls + 1};
    return lParam ^ static_cast<intptr_t>(wParam);
}

TEST(SdkHeaders, SendMessageCarriesPointerSizedValuesBothWays) {
    Received received;
    VerdinHostWindow window{Record, &received};
    const uintptr_t wide = static_cast<uintptr_t>(0x1234'5678'9ABC'DEF0ull);
    const intptr_t negative = -0x7654'3210'0000'0001ll;

    EXPECT_EQ(SendFromC(&window, WM_USER + 3, wide, negative), negative ^ static_cast<intptr_t>(wide));
    EXPECT_EQ(received.window, &window);
    EXPECT_EQ(received.msg, static_cast<uint32_t>(WM_USER + 3));
    EXPECT_EQ(received.wParam, wide);
    EXPECT_EQ(received.lParam, negative);
    EXPECT_EQ(received.calls, 1);

    // Without a window (a player without windows) the answer is 0 and nothing is called.
    EXPECT_EQ(SendFromC(nullptr, WM_COMMAND, 1, 2), 0);
    VerdinHostWindow empty{nullptr, &received};
    EXPECT_EQ(SendFromC(&empty, WM_COMMAND, 1, 2), 0);
    EXPECT_EQ(received.calls, 1);
}

}  // namespace
