/*
 * A configurable DSP plug-in for the host's tests, written in C against the SDK headers
 * alone, to keep them honest about C linkage. The build chooses the set of modules:
 *
 *   TEST_DSP_NAME                 the header's description
 *   TEST_DSP_KIT                  the "Kit" modules (below)
 *   TEST_DSP_OTHER                the "Other" modules
 *   (neither)                     no modules: getModule(0) is NULL
 *   TEST_DSP_WITHOUT_ENTRY_POINT  exports no entry point
 *   TEST_DSP_NULL_HEADER          the entry point returns NULL
 *   TEST_DSP_ENDLESS              getModule never answers NULL for an index >= 0: it
 *                                 repeats the modules over and over
 *
 * What the modules do to a block, so that a test can read the order of calls from the
 * samples themselves ("append 1" then "append 2" turns 0 into 12):
 *   append d   every sample s of the block becomes s * 10 + d (16-bit), returns numsamples
 *   halve      returns numsamples / 2, samples untouched
 *   double     copies the block after itself, returns 2 * numsamples
 *   negative   returns -1
 *   overlong   returns 3 * numsamples without writing anything (more than allowed)
 *   gate       reports "gate", then appends 9
 *   format     reports its arguments, returns numsamples
 * Every module reports its Init, Quit and Config and any breach of the contract.
 */
#include "TestDspProtocol.h"

#include <verdin/dsp.h>
#include <verdin/window.h>

#include <stdatomic.h>
#include <stdio.h>
#include <string.h>

enum Kind { APPEND, HALVE, DOUBLE, NEGATIVE, OVERLONG, GATE, FORMAT };

typedef struct ModuleSpec {
    const char* description;
    enum Kind kind;
    int digit;
} ModuleSpec;

static const ModuleSpec specs[] = {
#if defined(TEST_DSP_KIT)
    {"append 1", APPEND, 1}, {"append 2", APPEND, 2}, {"append 3", APPEND, 3},
    {"halve", HALVE, 0},     {"double", DOUBLE, 0},   {"negative", NEGATIVE, 0},
    {"overlong", OVERLONG, 0}, {"gate", GATE, 9},     {"format", FORMAT, 0},
#elif defined(TEST_DSP_OTHER)
    {"append 4", APPEND, 4}, {"append 5", APPEND, 5},
#endif
    {NULL, APPEND, 0} /* end */
};
#define MODULE_COUNT ((int)(sizeof specs / sizeof specs[0]) - 1)
#define MODULE_SLOTS ((int)(sizeof specs / sizeof specs[0]))

static winampDSPModule modules[MODULE_SLOTS];
/* Per module: Init calls not yet undone by Quit, and calls of ModifySamples in progress.
 * Init and Quit come from the test's main thread, ModifySamples from its stream threads. */
static atomic_int initialised[MODULE_SLOTS];
static atomic_int inside[MODULE_SLOTS];

static int IndexOf(const winampDSPModule* module) { return (int)(module - modules); }

static void Report(winampDSPModule* module, const char* event) {
    char text[160];
    snprintf(text, sizeof text, "%s/%s %s", TEST_DSP_NAME, module->description, event);
    COPYDATASTRUCT data = {TEST_DSP_REPORT, (uint32_t)strlen(text) + 1, text};
    VerdinSendMessage(module->hwndParent, WM_COPYDATA, 0, (intptr_t)&data);
}

static void Config(winampDSPModule* module) { Report(module, "Config"); }

static int Init(winampDSPModule* module) {
    atomic_fetch_add(&initialised[IndexOf(module)], 1);
    Report(module, "Init");
    return 0;
}

static void Quit(winampDSPModule* module) {
    const int index = IndexOf(module);
    if (atomic_load(&inside[index]) > 0) Report(module, "violation: Quit while processing");
    if (atomic_fetch_sub(&initialised[index], 1) <= 0) Report(module, "violation: Quit without Init");
    Report(module, "Quit");
}

static void Append(short* samples, int count, int digit) {
    for (int i = 0; i < count; ++i) samples[i] = (short)(samples[i] * 10 + digit);
}

static int ModifySamples(winampDSPModule* module, short* samples, int numsamples, int bps, int nch, int srate) {
    const int index = IndexOf(module);
    atomic_fetch_add(&inside[index], 1);
    if (atomic_load(&initialised[index]) <= 0) Report(module, "violation: ModifySamples without Init");
    const int values = numsamples * nch; /* the append modules assume 16-bit blocks */
    const size_t bytes = (size_t)values * (size_t)(bps / 8);
    int result = numsamples;
    switch (specs[index].kind) {
    case APPEND: Append(samples, values, specs[index].digit); break;
    case HALVE: result = numsamples / 2; break;
    case DOUBLE:
        memcpy((char*)samples + bytes, samples, bytes);
        result = 2 * numsamples;
        break;
    case NEGATIVE: result = -1; break;
    case OVERLONG: result = 3 * numsamples; break;
    case GATE:
        Report(module, "gate");
        Append(samples, values, specs[index].digit);
        break;
    case FORMAT: {
        char event[80];
        snprintf(event, sizeof event, "format %d %d %d %d", bps, nch, srate, numsamples);
        Report(module, event);
        break;
    }
    }
    atomic_fetch_sub(&inside[index], 1);
    return result;
}

static winampDSPModule* GetModule(int which) {
#if defined(TEST_DSP_ENDLESS)
    if (which < 0 || MODULE_COUNT == 0) return NULL;
    which %= MODULE_COUNT;
#else
    if (which < 0 || which >= MODULE_COUNT) return NULL;
#endif
    winampDSPModule* module = &modules[which];
    if (!module->description) {
        module->description = (char*)specs[which].description;
        module->Config = Config;
        module->Init = Init;
        module->ModifySamples = ModifySamples;
        module->Quit = Quit;
    }
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
/* Something to export, as a library of another kind would. */
int TestDsp_NotADspPlugin(void) { return header.version; }
#endif
