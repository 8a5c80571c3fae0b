/*
 * Winamp-style visualization plug-in interface (header version 0x101), as Verdin
 * hosts it.
 *
 * A visualization plug-in is a shared object (*.so) in one of the directories of the
 * player's visualization plug-in search path. It exports one C function,
 * winampVisGetHeader, which returns the library's header; the header's getModule
 * hands out the library's modules by index (0, 1, 2, ... until it returns NULL).
 *
 * How the player uses a module: listing works as for DSP plug-ins (load, read the
 * descriptions, unload). When visualization is switched on, the player loads the
 * library again, calls getModule(index), fills in hwndParent and hDllInstance and
 * calls Init. While a track plays it calls Render about every 10 ms, once delayMs
 * milliseconds have passed since the switch, after filling in sRate, nCh and the
 * sample fields that spectrumNch and waveformNch ask for. Switching off (or a Render
 * that returns nonzero) calls Quit and unloads the library.
 *
 * Threads: Config, Init, Render and Quit all run on the player's user-interface
 * thread. Messages to hwndParent (see <verdin/window.h>) are answered by the
 * player's main window.
 *
 * Fixed layouts: the records below are the published ones with window and instance
 * handles as pointers (void*) and int as a 32-bit integer.
 */
#ifndef VERDIN_SDK_VIS_H
#define VERDIN_SDK_VIS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The header version this interface describes. */
#define VIS_HDRVER 0x101

/* One visualization. Fields marked "player" are written by the player; the module
 * fills in the rest (normally as a static record). */
typedef struct winampVisModule {
    /* A NUL-terminated name for lists; owned by the module. */
    char* description;
    /* player: the window record the module talks to (a VerdinHostWindow*). */
    void* hwndParent;
    /* player: the handle of this loaded library (as returned by dlopen). */
    void* hDllInstance;
    /* player, before each Render: the playing track's frames per second. */
    int sRate;
    /* player, before each Render: the playing track's channel count. */
    int nCh;
    /* How long after Render the picture appears, in milliseconds (the module's own
     * estimate, for a host that delays its data to match). */
    int latencyMs;
    /* The first Render comes once this many milliseconds have passed since the
     * module was switched on. */
    int delayMs;
    /* How many channels of spectrum data the module wants: 0, 1 or 2. */
    int spectrumNch;
    /* How many channels of waveform data the module wants: 0, 1 or 2. */
    int waveformNch;
    /* player: 576 spectrum values per channel, low frequencies first, 0..255. */
    unsigned char spectrumData[2][576];
    /* player: 576 waveform values per channel, signed bytes stored unsigned. */
    unsigned char waveformData[2][576];
    /* Shows the module's settings, if it has any. May be NULL. */
    void (*Config)(struct winampVisModule* this_mod);
    /* Creates the module's window and so on; 0 on success. */
    int (*Init)(struct winampVisModule* this_mod);
    /* Draws one frame from the data fields; 0 to go on, nonzero to be switched off. */
    int (*Render)(struct winampVisModule* this_mod);
    /* Undoes Init; called once before the library is unloaded. */
    void (*Quit)(struct winampVisModule* this_mod);
    /* Free for the module's own use; the player never touches it. */
    void* userData;
} winampVisModule;

/* What winampVisGetHeader returns: static data that outlives every call. */
typedef struct winampVisHeader {
    int version;       /* VIS_HDRVER */
    char* description; /* a NUL-terminated name of the library, owned by it */
    /* The module with the given index (0 first), or NULL past the last one. */
    winampVisModule* (*getModule)(int which);
} winampVisHeader;

#ifndef VERDIN_PLUGIN_EXPORT
#if defined(__GNUC__)
#define VERDIN_PLUGIN_EXPORT __attribute__((visibility("default")))
#else
#define VERDIN_PLUGIN_EXPORT
#endif
#endif

/* The entry point every visualization plug-in exports under this exact name. */
#define VERDIN_VIS_ENTRY_POINT "winampVisGetHeader"
typedef winampVisHeader* (*winampVisGetHeaderType)(void);
VERDIN_PLUGIN_EXPORT winampVisHeader* winampVisGetHeader(void);

#ifdef __cplusplus
#define VERDIN_VIS_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define VERDIN_VIS_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

/* P is the size of a pointer; the six ints and two data blocks follow three pointers. */
#define VERDIN_VIS_P sizeof(void*)
VERDIN_VIS_STATIC_ASSERT(sizeof(int) == 4, "int is 32-bit");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, hwndParent) == VERDIN_VIS_P, "hwndParent");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, hDllInstance) == 2 * VERDIN_VIS_P, "hDllInstance");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, sRate) == 3 * VERDIN_VIS_P, "sRate");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, nCh) == 3 * VERDIN_VIS_P + 4, "nCh");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, latencyMs) == 3 * VERDIN_VIS_P + 8, "latencyMs");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, delayMs) == 3 * VERDIN_VIS_P + 12, "delayMs");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, spectrumNch) == 3 * VERDIN_VIS_P + 16, "spectrumNch");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, waveformNch) == 3 * VERDIN_VIS_P + 20, "waveformNch");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, spectrumData) == 3 * VERDIN_VIS_P + 24, "spectrumData");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, waveformData) == 3 * VERDIN_VIS_P + 24 + 1152, "waveformData");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, Config) == 3 * VERDIN_VIS_P + 24 + 2304, "Config");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, Init) == 4 * VERDIN_VIS_P + 24 + 2304, "Init");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, Render) == 5 * VERDIN_VIS_P + 24 + 2304, "Render");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, Quit) == 6 * VERDIN_VIS_P + 24 + 2304, "Quit");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisModule, userData) == 7 * VERDIN_VIS_P + 24 + 2304, "userData");
VERDIN_VIS_STATIC_ASSERT(sizeof(winampVisModule) == 8 * VERDIN_VIS_P + 24 + 2304, "module size");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisHeader, description) == VERDIN_VIS_P, "description");
VERDIN_VIS_STATIC_ASSERT(offsetof(winampVisHeader, getModule) == 2 * VERDIN_VIS_P, "getModule");
VERDIN_VIS_STATIC_ASSERT(sizeof(winampVisHeader) == 3 * VERDIN_VIS_P, "three pointer slots");
#undef VERDIN_VIS_P

#ifdef __cplusplus
}
#endif

#endif /* VERDIN_SDK_VIS_H */
