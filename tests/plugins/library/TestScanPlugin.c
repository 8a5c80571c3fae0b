/*
 * Visualization plug-ins for the library scan's tests, one kind per build:
 *   TEST_SCAN_VIS      "Scan Vis": "bars" (no Config), "scope"
 *   TEST_SCAN_ENDLESS  "Endless": getModule never says NULL
 * A Config sends WM_USER to hwndParent with the module's hDllInstance as lParam, so the
 * test sees that both were filled in before the call.
 */
#include <verdin/vis.h>
#include <verdin/window.h>

static void Config(winampVisModule* self) {
    VerdinSendMessage(self->hwndParent, WM_USER, 0, (intptr_t)self->hDllInstance);
}
static winampVisModule modules[2] = {{.description = "bars"}, {.description = "scope", .Config = Config}};
static winampVisModule* GetModule(int which) {
#if defined(TEST_SCAN_ENDLESS)
    return which >= 0 ? &modules[0] : NULL;
#else
    return which >= 0 && which < 2 ? &modules[which] : NULL;
#endif
}
#if defined(TEST_SCAN_ENDLESS)
static winampVisHeader header = {VIS_HDRVER, "Endless", GetModule};
#else
static winampVisHeader header = {VIS_HDRVER, "Scan Vis", GetModule};
#endif
VERDIN_PLUGIN_EXPORT winampVisHeader* winampVisGetHeader(void) { return &header; }
