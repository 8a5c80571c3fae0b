/* Every SDK header compiled as C11 (their static layout checks run here too). */
#include "HeadersInC.h"

#include <verdin/dsp.h>
#include <verdin/gen.h>
#include <verdin/input.h>
#include <verdin/vis.h>
#include <verdin/window.h>

#define COUNT(array) (sizeof array / sizeof array[0])

const size_t* DspModuleLayoutInC(size_t* count) {
    static const size_t layout[] = {sizeof(winampDSPModule),
                                    offsetof(winampDSPModule, description),
                                    offsetof(winampDSPModule, hwndParent),
                                    offsetof(winampDSPModule, hDllInstance),
                                    offsetof(winampDSPModule, Config),
                                    offsetof(winampDSPModule, Init),
                                    offsetof(winampDSPModule, ModifySamples),
                                    offsetof(winampDSPModule, Quit),
                                    offsetof(winampDSPModule, userData)};
    *count = COUNT(layout);
    return layout;
}

const size_t* DspHeaderLayoutInC(size_t* count) {
    static const size_t layout[] = {sizeof(winampDSPHeader), offsetof(winampDSPHeader, version),
                                    offsetof(winampDSPHeader, description), offsetof(winampDSPHeader, getModule)};
    *count = COUNT(layout);
    return layout;
}

const size_t* VisModuleLayoutInC(size_t* count) {
    static const size_t layout[] = {sizeof(winampVisModule),
                                    offsetof(winampVisModule, description),
                                    offsetof(winampVisModule, hwndParent),
                                    offsetof(winampVisModule, hDllInstance),
                                    offsetof(winampVisModule, sRate),
                                    offsetof(winampVisModule, nCh),
                                    offsetof(winampVisModule, latencyMs),
                                    offsetof(winampVisModule, delayMs),
                                    offsetof(winampVisModule, spectrumNch),
                                    offsetof(winampVisModule, waveformNch),
                                    offsetof(winampVisModule, spectrumData),
                                    offsetof(winampVisModule, waveformData),
                                    offsetof(winampVisModule, Config),
                                    offsetof(winampVisModule, Init),
                                    offsetof(winampVisModule, Render),
                                    offsetof(winampVisModule, Quit),
                                    offsetof(winampVisModule, userData)};
    *count = COUNT(layout);
    return layout;
}

const size_t* VisHeaderLayoutInC(size_t* count) {
    static const size_t layout[] = {sizeof(winampVisHeader), offsetof(winampVisHeader, version),
                                    offsetof(winampVisHeader, description), offsetof(winampVisHeader, getModule)};
    *count = COUNT(layout);
    return layout;
}

const size_t* GeneralPluginLayoutInC(size_t* count) {
    static const size_t layout[] = {sizeof(winampGeneralPurposePlugin),
                                    offsetof(winampGeneralPurposePlugin, version),
                                    offsetof(winampGeneralPurposePlugin, description),
                                    offsetof(winampGeneralPurposePlugin, init),
                                    offsetof(winampGeneralPurposePlugin, config),
                                    offsetof(winampGeneralPurposePlugin, quit),
                                    offsetof(winampGeneralPurposePlugin, hwndParent),
                                    offsetof(winampGeneralPurposePlugin, hDllInstance)};
    *count = COUNT(layout);
    return layout;
}

const size_t* HostWindowLayoutInC(size_t* count) {
    static const size_t layout[] = {sizeof(VerdinHostWindow), offsetof(VerdinHostWindow, sendMessage),
                                    offsetof(VerdinHostWindow, host)};
    *count = COUNT(layout);
    return layout;
}

const size_t* CopyDataLayoutInC(size_t* count) {
    static const size_t layout[] = {sizeof(COPYDATASTRUCT), offsetof(COPYDATASTRUCT, dwData),
                                    offsetof(COPYDATASTRUCT, cbData), offsetof(COPYDATASTRUCT, lpData)};
    *count = COUNT(layout);
    return layout;
}

intptr_t SendFromC(void* window, uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    return VerdinSendMessage(window, msg, wParam, lParam);
}
