/*
 * A configurable input plug-in for the loader's tests, written in C to keep the SDK
 * header honest about C linkage. The build gives each copy a name and the extensions it
 * takes; the flags below make the broken variants.
 *
 *   TEST_MODULE_NAME              its description and the name it reports under
 *   TEST_MODULE_EXTENSIONS        ".a,.b": IsOurFile takes these (without regard to case)
 *                                 and GetFileTypes lists "*.a;*.b"
 *   TEST_MODULE_WITHOUT_ENTRY_POINT   exports no entry point
 *   TEST_MODULE_RETURNS_NULL      the entry point returns NULL
 *   TEST_MODULE_NULL_FILE_TYPES   GetFileTypes returns NULL
 *   TEST_MODULE_ODD_FILE_TYPES    GetFileTypes returns an untidy list (see below)
 */
#include "TestModuleLog.h"

#include <verdin/input.h>

#include <stdio.h>
#include <string.h>
#include <strings.h>

static TestModuleLog* logged;
static void* instanceHandle;

static void Record(const char* event) {
    if (logged && logged->record) logged->record(logged, TEST_MODULE_NAME, event, instanceHandle);
}

static const char* GetDescription(InputModule* self) {
    (void)self;
    return TEST_MODULE_NAME;
}

static InputDecoder* OpenDecoder(InputModule* self, const char* path, uint32_t dataOffset) {
    (void)self, (void)path, (void)dataOffset;
    return NULL;
}

static int32_t GetFileInfo(InputModule* self, const char* path, uint32_t dataOffset, TrackInfo* info) {
    (void)self, (void)path, (void)dataOffset, (void)info;
    return 0;
}

static void ShowFileInfo(InputModule* self, const char* path, uint32_t dataOffset) {
    (void)self, (void)path, (void)dataOffset;
}

static int32_t IsOurFile(InputModule* self, const char* path, uint32_t dataOffset) {
    (void)self, (void)dataOffset;
    Record("IsOurFile");
    const char* dot = strrchr(path, '.');
    if (!dot) return 0;
    const char* list = TEST_MODULE_EXTENSIONS;
    const size_t length = strlen(dot);
    for (const char* at = list; *at;) {
        const char* comma = strchr(at, ',');
        const size_t pieceLength = comma ? (size_t)(comma - at) : strlen(at);
        if (pieceLength == length && strncasecmp(at, dot, length) == 0) return 1;
        at += pieceLength + (comma ? 1 : 0);
    }
    return 0;
}

#if defined(TEST_MODULE_ODD_FILE_TYPES)
/* Blanks around patterns, a pattern for every file, one without a wildcard, an empty
 * piece, the same extension in capitals, and a description whose pattern list is missing. */
static const char oddFileTypes[] = "Odd files\0 *.odd ; *.* ;noext;;*.ODD\0Dangling description\0";
#elif !defined(TEST_MODULE_NULL_FILE_TYPES)
static char fileTypes[256];
#endif

static const char* GetFileTypes(InputModule* self) {
    (void)self;
#if defined(TEST_MODULE_NULL_FILE_TYPES)
    return NULL;
#elif defined(TEST_MODULE_ODD_FILE_TYPES)
    return oddFileTypes;
#else
    if (!fileTypes[0]) {
        /* "<name> files" NUL "*.a;*.b" NUL NUL */
        int at = snprintf(fileTypes, sizeof fileTypes, "%s files", TEST_MODULE_NAME) + 1;
        for (const char* e = TEST_MODULE_EXTENSIONS; *e; ++e) {
            if (*e == '.') {
                if (fileTypes[at - 1] != '\0') fileTypes[at++] = ';';
                fileTypes[at++] = '*';
            }
            if (*e != ',') fileTypes[at++] = *e;
        }
        fileTypes[at++] = '\0';
        fileTypes[at] = '\0';
    }
    return fileTypes;
#endif
}

static void Configure(InputModule* self) {
    (void)self;
}

static void About(InputModule* self) {
    (void)self;
}

static void Release(InputModule* self) {
    (void)self;
    Record("Release");
}

static const InputModuleOps ops = {GetDescription, OpenDecoder, GetFileInfo, ShowFileInfo, IsOurFile,
                                   GetFileTypes,   Configure,   About,       Release};
static InputModule module = {&ops};

#if !defined(TEST_MODULE_WITHOUT_ENTRY_POINT)
InputModule* Verdin_GetInputModule(void* instance, void* mainWindow) {
    logged = (TestModuleLog*)mainWindow;
    instanceHandle = instance;
    Record("entry");
#if defined(TEST_MODULE_RETURNS_NULL)
    const int returnsNull = 1;
#else
    const int returnsNull = 0;
#endif
    return returnsNull ? NULL : &module;
}
#else
/* Something to export, as a library of another kind would. */
int TestModule_NotAnInputPlugin(void) {
    return (int)sizeof module;
}
#endif
