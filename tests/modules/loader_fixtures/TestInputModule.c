/*
 * A configurable input plug-in for the loader's tests, in C to keep the SDK header honest
 * about C linkage. TEST_MODULE_NAME is its description and the name it reports under;
 * IsOurFile takes the TEST_MODULE_EXTENSIONS (".a,.b", without regard to case), and
 * GetFileTypes lists "<name> files", "*.a;*.b". The flags make the broken variants:
 * TEST_MODULE_WITHOUT_ENTRY_POINT, TEST_MODULE_RETURNS_NULL (from the entry point),
 * TEST_MODULE_NULL_FILE_TYPES and TEST_MODULE_ODD_FILE_TYPES (an untidy list, see below).
 */
#include "TestModuleLog.h"

#include <verdin/input.h>

#include <stdio.h>
#include <string.h>
#include <strings.h>

#pragma GCC diagnostic ignored "-Wunused-parameter"

static TestModuleLog* logged;
static void* instanceHandle;

static void Record(const char* event) {
    if (logged && logged->record) logged->record(logged, TEST_MODULE_NAME, event, instanceHandle);
}

static const char* GetDescription(InputModule* self) { return TEST_MODULE_NAME; }
static InputDecoder* OpenDecoder(InputModule* self, const char* path, uint32_t offset) { return NULL; }
static int32_t GetFileInfo(InputModule* self, const char* path, uint32_t offset, TrackInfo* info) { return 0; }
static void ShowFileInfo(InputModule* self, const char* path, uint32_t offset) {}
static void Configure(InputModule* self) {}
static void About(InputModule* self) {}
static void Release(InputModule* self) { Record("Release"); }

static int32_t IsOurFile(InputModule* self, const char* path, uint32_t offset) {
    Record("IsOurFile");
    const char* dot = strrchr(path, '.');
    const size_t length = dot ? strlen(dot) : 0;
    for (const char* at = TEST_MODULE_EXTENSIONS; dot && *at;) {
        const size_t piece = strchr(at, ',') ? (size_t)(strchr(at, ',') - at) : strlen(at);
        if (piece == length && strncasecmp(at, dot, length) == 0) return 1;
        at += piece + (at[piece] == ',');
    }
    return 0;
}

static const char* GetFileTypes(InputModule* self) {
#if defined(TEST_MODULE_NULL_FILE_TYPES)
    return NULL;
#elif defined(TEST_MODULE_ODD_FILE_TYPES)
    /* Blanks around a pattern (its extension keeps its case), a pattern for every file,
     * one without a wildcard, an empty piece, the same extension in capitals, patterns of
     * no plain extension, and a description without its patterns. */
    return "Odd files\0 *.Odd ; *.* ;noext;;*.ODD;*.tar.gz;*.m?3;*.;a.mp3\0Dangling description\0";
#else
    static char types[256];  /* "<name> files" NUL "*" then the extensions, each "," as ";*", NUL NUL */
    int at = snprintf(types, sizeof types, "%s files", TEST_MODULE_NAME) + 1;
    types[at++] = '*';
    for (const char* e = TEST_MODULE_EXTENSIONS; *e; ++e) at += *e == ',' ? sprintf(types + at, ";*") : sprintf(types + at, "%c", *e);
    types[at + 1] = '\0';
    return types;
#endif
}

static const InputModuleOps ops = {GetDescription, OpenDecoder, GetFileInfo, ShowFileInfo, IsOurFile, GetFileTypes, Configure, About, Release};
static InputModule module = {&ops};

#if !defined(TEST_MODULE_WITHOUT_ENTRY_POINT)
InputModule* Verdin_GetInputModule(void* instance, void* mainWindow) {
    logged = (TestModuleLog*)mainWindow;
    instanceHandle = instance;
    Record("entry");
#if defined(TEST_MODULE_RETURNS_NULL)
    return (void)module, NULL;
#else
    return &module;
#endif
}
#else
int TestModule_NotAnInputPlugin(void) { return (int)sizeof module; } /* something to export */
#endif
