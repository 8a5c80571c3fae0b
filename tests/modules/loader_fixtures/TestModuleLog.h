/*
 * How the loader's test plug-ins report to the test that loads them.
 *
 * The test passes a TestModuleLog as the main-window pointer; each plug-in keeps it from
 * its entry point on and calls record for every event ("entry", "IsOurFile", "Release")
 * with its name and the library handle its entry point received. The log lives in the
 * test program, so it outlasts the libraries.
 */
#ifndef VERDIN_TEST_MODULE_LOG_H
#define VERDIN_TEST_MODULE_LOG_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct TestModuleLog {
    void (*record)(struct TestModuleLog* log, const char* module, const char* event, void* instance);
} TestModuleLog;

#ifdef __cplusplus
}
#endif

#endif
