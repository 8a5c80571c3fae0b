/*
 * A visualization plug-in for the host's tests: "Test Vis" with three modules. The test
 * loads the library itself as well, so that the static data below outlives the host's
 * loads, sets each module's delayMs, spectrumNch and waveformNch in its record, and reads
 * what happened from testVisState.
 */
#include "TestVisState.h"

#include <verdin/vis.h>
#include <verdin/window.h>

#define MODULES TEST_VIS_MODULES

VERDIN_PLUGIN_EXPORT TestVisState testVisState[MODULES];

static winampVisModule modules[MODULES];

static TestVisState* StateOf(winampVisModule* self) { return &testVisState[self - modules]; }

static int Init(winampVisModule* self) {
    StateOf(self)->inits++;
    return 0;
}
static int Render(winampVisModule* self) {
    TestVisState* state = StateOf(self);
    state->rendering = 1;
    state->renders++;
    if (state->sendInRender) VerdinSendMessage(self->hwndParent, WM_COMMAND, 0, 0);
    state->rendering = 0;
    return state->renderResult;
}
static void Quit(winampVisModule* self) {
    TestVisState* state = StateOf(self);
    state->quits++;
    if (state->rendering) state->quitsDuringRender++;
}

static winampVisModule* GetModule(int which) {
    if (which < 0 || which >= MODULES) return NULL;
    modules[which].description = "module";
    modules[which].Init = Init;
    modules[which].Render = Render;
    modules[which].Quit = Quit;
    return &modules[which];
}
static winampVisHeader header = {VIS_HDRVER, "Test Vis", GetModule};
VERDIN_PLUGIN_EXPORT winampVisHeader* winampVisGetHeader(void) { return &header; }
