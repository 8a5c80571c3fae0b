/* How the loader's test plug-ins report to the test: it passes a TestModuleLog as the
 * main-window pointer, which each plug-in keeps from its entry point on and calls for every
 * event ("entry", "IsOurFile", "Release") with its name and the handle its entry received. */
#ifndef VERDIN_TEST_MODULE_LOG_H
#define VERDIN_TEST_MODULE_LOG_H
typedef struct TestModuleLog {
    void (*record)(struct TestModuleLog* log, const char* module, const char* event, void* instance);
} TestModuleLog;
#endif
