/*
 * General-purpose plug-ins for the host's tests: "Keeps" (TEST_GENERAL_KEEPS) starts a
 * thread in init that asks the host window for its version until quit, which waits for
 * it; "Refuses" answers init with 1. Each counts its calls and the answers it got.
 */
#include <verdin/gen.h>
#include <verdin/window.h>

#include <pthread.h>

static winampGeneralPurposePlugin plugin;
static int inits, configs, quits, answers, stop;
static pthread_t asker;

VERDIN_PLUGIN_EXPORT void TestGeneral_Calls(int* counts) {
    counts[0] = inits, counts[1] = configs, counts[2] = quits;
    counts[3] = __atomic_load_n(&answers, __ATOMIC_ACQUIRE);
}

#if defined(TEST_GENERAL_KEEPS)
static void* Ask(void* unused) {
    (void)unused;
    while (!__atomic_load_n(&stop, __ATOMIC_ACQUIRE))
        if (VerdinSendMessage(plugin.hwndParent, WM_USER, 0, VERDIN_IPC_GETVERSION) == VERDIN_HOST_VERSION)
            __atomic_add_fetch(&answers, 1, __ATOMIC_RELEASE);
    return NULL;
}
#endif

static int Init(void) {
    ++inits;
#if defined(TEST_GENERAL_KEEPS)
    pthread_create(&asker, NULL, Ask, NULL);
    return 0;
#else
    return 1;
#endif
}
static void Config(void) { ++configs; }
static void Quit(void) {
    ++quits;
    __atomic_store_n(&stop, 1, __ATOMIC_RELEASE);
    pthread_join(asker, NULL);
}

static winampGeneralPurposePlugin plugin = {GPPHDR_VER, TEST_GENERAL_NAME, Init, Config, Quit, NULL, NULL};
VERDIN_PLUGIN_EXPORT winampGeneralPurposePlugin* winampGetGeneralPurposePlugin(void) { return &plugin; }
