/*
 * Winamp-style DSP plug-in interface (header version 0x20), as Verdin hosts it.
 *
 * A DSP plug-in is a shared object (*.so) in one of the directories of the player's
 * DSP plug-in search path. It exports one C function, winampDSPGetHeader2, which
 * returns the library's header; the header's getModule hands out the library's
 * modules by index (0, 1, 2, ... until it returns NULL). A module is a sound
 * processor: the player passes every block of decoded samples through each module the
 * user made active, in the user's order.
 *
 * How the player uses a library:
 *   - To list it, the player loads it, calls winampDSPGetHeader2 and getModule(0),
 *     getModule(1), ... reading only the descriptions, and unloads it again. Nothing
 *     else is called and no field is written.
 *   - To use a module, the player loads the library again (it stays loaded while the
 *     module is in use), calls getModule(index), fills in hwndParent and hDllInstance,
 *     calls Init once, then ModifySamples for every block, and at the end Quit once
 *     before unloading the library.
 *   - To configure a module, the player may load the library, fill in hwndParent and
 *     hDllInstance and call Config without Init or Quit; the module may be in use at
 *     the same time through another load of the same library.
 *   - The same module may be active twice: it is then initialised twice and its
 *     ModifySamples is called twice per block.
 *
 * Threads: Init, Config and Quit run on the player's user-interface thread;
 * ModifySamples runs on a stream's own thread, never on two threads at once (the
 * player serialises it), but possibly while Config runs. ModifySamples must not block
 * for long: the sound card is waiting for its result.
 *
 * Fixed layouts: the records below are the published ones with window and instance
 * handles as pointers (void*) and int as a 32-bit integer. New fields never appear.
 */
#ifndef VERDIN_SDK_DSP_H
#define VERDIN_SDK_DSP_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The header version this interface describes. */
#define DSP_HDRVER 0x20

/* One sound processor. Fields marked "player" are filled in by the player before Init
 * and Config; the module fills in the rest (normally as a static record). */
typedef struct winampDSPModule {
    /* A NUL-terminated name for lists ("Stereo widener"); owned by the module. */
    char* description;
    /* player: the player's host window record (a VerdinHostWindow*, see
     * <verdin/window.h>), or NULL when the player runs without windows. */
    void* hwndParent;
    /* player: the handle of this loaded library (as returned by dlopen). */
    void* hDllInstance;
    /* Shows the module's settings, if it has any. May be NULL. */
    void (*Config)(struct winampDSPModule* this_mod);
    /* Prepares the module before the first block; 0 on success. May be NULL. The
     * player does not act on the result: a module that failed should pass samples
     * through. */
    int (*Init)(struct winampDSPModule* this_mod);
    /*
     * Processes one block in place and returns the number of frames now in it.
     *   samples     interleaved PCM, little-endian: signed 16-bit when bps is 16,
     *               unsigned 8-bit (silence 128) when bps is 8, in which case the
     *               pointer is really to bytes. The buffer has room for twice
     *               the frames the player decoded into it, so for twice
     *               numsamples unless a module before this one lengthened the block.
     *   numsamples  frames in the block (a frame is one sample of every channel);
     *               normally at least 1, exceptionally 0 when a module before this
     *               one removed every frame.
     *   bps         bits per sample: 8 or 16.
     *   nch         channels: 1 or 2.
     *   srate       frames per second.
     * The result may be smaller (the rest of the block is dropped) or larger, up to
     * twice numsamples (the module wrote the extra frames after the block). A result
     * beyond the buffer's room is cut to it; a negative one counts as 0. No
     * allocation, locking or waiting should happen here.
     */
    int (*ModifySamples)(struct winampDSPModule* this_mod, short* samples, int numsamples, int bps, int nch,
                         int srate);
    /* Undoes Init; called once per Init before the library is unloaded. May be NULL. */
    void (*Quit)(struct winampDSPModule* this_mod);
    /* Free for the module's own use; the player never touches it. */
    void* userData;
} winampDSPModule;

/* What winampDSPGetHeader2 returns: static data that outlives every call. */
typedef struct winampDSPHeader {
    int version;       /* DSP_HDRVER */
    char* description; /* a NUL-terminated name of the library, owned by it */
    /* The module with the given index (0 first), or NULL past the last one. Called
     * with consecutive indices; must return the same record for the same index. */
    winampDSPModule* (*getModule)(int which);
} winampDSPHeader;

#ifndef VERDIN_PLUGIN_EXPORT
#if defined(__GNUC__)
#define VERDIN_PLUGIN_EXPORT __attribute__((visibility("default")))
#else
#define VERDIN_PLUGIN_EXPORT
#endif
#endif

/* The entry point every DSP plug-in exports under this exact name. */
#define VERDIN_DSP_ENTRY_POINT "winampDSPGetHeader2"
typedef winampDSPHeader* (*winampDSPGetHeaderType)(void);
VERDIN_PLUGIN_EXPORT winampDSPHeader* winampDSPGetHeader2(void);

#ifdef __cplusplus
#define VERDIN_DSP_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define VERDIN_DSP_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

VERDIN_DSP_STATIC_ASSERT(sizeof(int) == 4, "int is 32-bit");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPModule, hwndParent) == 1 * sizeof(void*), "hwndParent");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPModule, hDllInstance) == 2 * sizeof(void*), "hDllInstance");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPModule, Config) == 3 * sizeof(void*), "Config");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPModule, Init) == 4 * sizeof(void*), "Init");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPModule, ModifySamples) == 5 * sizeof(void*), "ModifySamples");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPModule, Quit) == 6 * sizeof(void*), "Quit");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPModule, userData) == 7 * sizeof(void*), "userData");
VERDIN_DSP_STATIC_ASSERT(sizeof(winampDSPModule) == 8 * sizeof(void*), "eight pointer slots");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPHeader, version) == 0, "version first");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPHeader, description) == sizeof(void*), "description");
VERDIN_DSP_STATIC_ASSERT(offsetof(winampDSPHeader, getModule) == 2 * sizeof(void*), "getModule");
VERDIN_DSP_STATIC_ASSERT(sizeof(winampDSPHeader) == 3 * sizeof(void*), "three pointer slots");

#ifdef __cplusplus
}
#endif

#endif /* VERDIN_SDK_DSP_H */
