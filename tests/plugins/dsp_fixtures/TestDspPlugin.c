/*
 * A DSP plug-in for the host's tests, in C against the SDK headers alone. The build
 * chooses TEST_DSP_NAME, the modules (TEST_DSP_KIT, TEST_DSP_OTHER, else none) and the
 * faults (TEST_DSP_WITHOUT_ENTRY_POINT, TEST_DSP_NULL_HEADER, TEST_DSP_ENDLESS: getModule
 * repeats the modules for ever). On a 16-bit block, "append d" makes s into s * 10 + d (so
 * the samples tell the order of calls), "halve", "double", "negative" and "overlong" return
 * frames / 2, 2 x frames (copying the block after itself), -1 and 3 x frames; "gate" reports
 * "gate" and appends 9.
 * Every report goes to hwndParent as WM_COPYDATA, dwData TEST_DSP_REPORT, "<library>/
 * <module> <event>": also Init, Quit, Config, and "violation: <what>" when the host breaks
 * the contract (ModifySamples or Quit without Init, Quit while ModifySamples runs).
 */
#include <verdin/dsp.h>
#include <verdin/window.h>

#include <stdatomic.h>
#include <stdio.h>
#include <string.h>

enum Kind { APPEND, HALVE, DOUBLE, NEGATIVE, OVERLONG, GATE };
typedef struct ModuleRecipe {
    const char* description;
    enum Kind kind;
    int digit;
} ModuleRecipe;

static const ModuleRecipe recipes[] = {
#if defined(TEST_DSP_KIT)
    {"append 1", APPEND, 1}, {"append 2", APPEND, 2},     {"append 3", APPEND, 3}, {"halve", HALVE, 0},
    {"double", DOUBLE, 0},   {"negative", NEGATIVE, 0},   {"overlong", OVERLONG, 0}, {"gate", GATE, 9},
#elif defined(TEST_DSP_OTHER)
    {"append 4", APPEND, 4}, {"append 5", APPEND, 5},
#endif
    {NULL, APPEND, 0} /* end */
};
#define MODULE_COUNT ((int)(sizeof recipes / sizeof recipes[0]) - 1)

static winampDSPModule modules[MODULE_COUNT + 1];
/* Per module: Init calls not undone by Quit, and ModifySamples calls in progress. */
static atomic_int initialised[MODULE_COUNT + 1], inside[MODULE_COUNT + 1];

static void Report(winampDSPModule* module, const char* event) {
    char text[160];
    snprintf(text, sizeof text, "%s/%s %s", TEST_DSP_NAME, module->description, event);
    COPYDATASTRUCT data = {TEST_DSP_REPORT, (uint32_t)strlen(text) + 1, text};
    VerdinSendMessage(module->hwndParent, WM_COPYDATA, 0, (intptr_t)&data);
}

static void Config(winampDSPModule* module) { Report(module, "Config"); }

static int Init(winampDSPModule* module) {
    atomic_fetch_add(&initialised[module - modules], 1);
    Report(module, "Init");
    return 0;
}

static void Quit(winampDSPModule* module) {
    if (atomic_load(&inside[module - modules]) > 0) Report(module, "violation: Quit while processing");
    if (atomic_fetch_sub(&initialised[module - modules], 1) <= 0) Report(module, "violation: Quit without Init");
    Report(module, "Quit");
}

static int ModifySamples(winampDSPModule* module, short* samples, int numsamples, int bps, int nch, int srate) {
    const ModuleRecipe* recipe = &recipes[module - modules];
    atomic_fetch_add(&inside[module - modules], 1);
    if (atomic_load(&initialised[module - modules]) <= 0) Report(module, "violation: ModifySamples without Init");
    const int values = numsamples * nch;
    int result = numsamples;
    (void)srate;
    switch (recipe->kind) {
    case GATE: Report(module, "gate"); /* fall through */
    case APPEND:
        for (int i = 0; i < values; ++i) samples[i] = (short)(samples[i] * 10 + recipe->digit);
        break;
    case HALVE: result = numsamples / 2; break;
    case DOUBLE:
        memcpy((char*)samples + (size_t)values * (size_t)(bps / 8), samples, (size_t)values * (size_t)(bps / 8));
        result = 2 * numsamples;
        break;
    case NEGATIVE: result = -1; break;
    case OVERLONG: result = 3 * numsamples; break;
    }
    atomic_fetch_sub(&inside[module - modules], 1);
    return result;
}

static winampDSPModule* GetModule(int which) {
#if defined(TEST_DSP_ENDLESS)
    if (which >= 0 && MODULE_COUNT > 0) which %= MODULE_COUNT;
#endif
    if (which < 0 || which >= MODULE_COUNT) return NULL;
    winampDSPModule* module = &modules[which];
    if (!module->description) *module = (winampDSPModule){(char*)recipes[which].description, NULL, NULL, Config, Init,
                                                          ModifySamples, Quit, NULL};
    return module;
}

static char description[] = TEST_DSP_NAME;
static winampDSPHeader header = {DSP_HDRVER, description, GetModule};

#if !defined(TEST_DSP_WITHOUT_ENTRY_POINT)
winampDSPHeader* winampDSPGetHeader2(void) {
#if defined(TEST_DSP_NULL_HEADER)
    return header.version ? NULL : &header;
#else
    return &header;
#endif
}
#else
int TestDsp_NotADspPlugin(void) { return header.version; } /* a library of another kind */
#endif
