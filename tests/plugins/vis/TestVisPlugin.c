/*
 * A visualization plug-in for the host's tests: "Test Vis" with three modules. The tests
 * load the library themselves as well, so that its static data outlives the host's loads,
 * set each module's delayMs, spectrumNch and waveformNch in its record, and read what
 * happened from testVisState.
 */
#include "TestVisState.h"

/* Every SDK header, so that the build against the installed copy compiles them all as C. */
#include <verdin/dsp.h>
#include <verdin/gen.h>
#include <verdin/input.h>
#include <verdin/vis.h>
#include <verdin/window.h>

VERDIN_PLUGIN_EXPORT TestVisState testVisState[TEST_VIS_MODULES];
static winampVisModule modules[TEST_VIS_MODULES];

static int Init(winampVisModule* self) { return testVisState[self - modules].inits++, 0; }
static int Render(winampVisModule* self) {
    TestVisState* state = &testVisState[self - modules];
    state->rendering = 1;
    state->renders++;
    if (state->sendInRender) VerdinSendMessage(self->hwndParent, WM_COMMAND, 0, 0);
    state->rendering = 0;
    return state->renderResult;
}
static void Quit(winampVisModule* self) {
    TestVisState* state = &testVisState[self - modules];
    state->quits++;
    state->quitsDuringRender += state->rendering;
}

static winampVisModule* GetModule(int which) {
    if (which < 0 || which >= TEST_VIS_MODULES) return NULL;
    modules[which].description = "module";
    modules[which].Init = Init, modules[which].Render = Render, modules[which].Quit = Quit;
    return &modules[which];
}
static winampVisHeader header = {VIS_HDRVER, "Test Vis", GetModule};
VERDIN_PLUGIN_EXPORT winampVisHeader* winampVisGetHeader(void) { return &header; }
