/*
 * Winamp-style general-purpose plug-in interface (version 0x10), as Verdin hosts it.
 *
 * A general-purpose plug-in is a shared object (*.so) in one of the directories of
 * the player's general-purpose plug-in search path. It exports one C function,
 * winampGetGeneralPurposePlugin, which returns the plug-in's record. Such a plug-in
 * adds functions of its own to the player and drives the player by sending messages
 * to hwndParent (see <verdin/window.h>).
 *
 * How the player uses it: at start-up every library found is loaded; the player calls
 * the entry point, fills in hwndParent (the main window) and hDllInstance, and calls
 * init. A plug-in that answers 0 stays loaded until the player exits; any other answer
 * unloads it again at once. config may be called whenever the user asks for it; quit
 * once when the player's main window goes away. The library itself may stay loaded
 * until the process ends, so quit must undo everything init started (threads, timers).
 *
 * Threads: init, config and quit run on the player's user-interface thread.
 *
 * Fixed layout: the published record with window and instance handles as pointers
 * (void*) and int as a 32-bit integer.
 */
#ifndef VERDIN_SDK_GEN_H
#define VERDIN_SDK_GEN_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The record version this interface describes. */
#define GPPHDR_VER 0x10

/* The plug-in record, normally a static object of the library. */
typedef struct winampGeneralPurposePlugin {
    int version;       /* GPPHDR_VER */
    char* description; /* a NUL-terminated name for lists, owned by the plug-in */
    /* Starts the plug-in: 0 to stay loaded, anything else to be unloaded again. */
    int (*init)(void);
    /* Shows the plug-in's settings. */
    void (*config)(void);
    /* Stops the plug-in; called once, only after an init that answered 0. */
    void (*quit)(void);
    /* player, before init: the main window's host window record (VerdinHostWindow*). */
    void* hwndParent;
    /* player, before init: the handle of this loaded library (as returned by dlopen). */
    void* hDllInstance;
} winampGeneralPurposePlugin;

#ifndef VERDIN_PLUGIN_EXPORT
#if defined(__GNUC__)
#define VERDIN_PLUGIN_EXPORT __attribute__((visibility("default")))
#else
#define VERDIN_PLUGIN_EXPORT
#endif
#endif

/* The entry point every general-purpose plug-in exports under this exact name. */
#define VERDIN_GENERAL_ENTRY_POINT "winampGetGeneralPurposePlugin"
typedef winampGeneralPurposePlugin* (*winampGeneralPurposePluginGetter)(void);
VERDIN_PLUGIN_EXPORT winampGeneralPurposePlugin* winampGetGeneralPurposePlugin(void);

#ifdef __cplusplus
#define VERDIN_GEN_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define VERDIN_GEN_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

VERDIN_GEN_STATIC_ASSERT(sizeof(int) == 4, "int is 32-bit");
VERDIN_GEN_STATIC_ASSERT(offsetof(winampGeneralPurposePlugin, version) == 0, "version first");
VERDIN_GEN_STATIC_ASSERT(offsetof(winampGeneralPurposePlugin, description) == 1 * sizeof(void*), "description");
VERDIN_GEN_STATIC_ASSERT(offsetof(winampGeneralPurposePlugin, init) == 2 * sizeof(void*), "init");
VERDIN_GEN_STATIC_ASSERT(offsetof(winampGeneralPurposePlugin, config) == 3 * sizeof(void*), "config");
VERDIN_GEN_STATIC_ASSERT(offsetof(winampGeneralPurposePlugin, quit) == 4 * sizeof(void*), "quit");
VERDIN_GEN_STATIC_ASSERT(offsetof(winampGeneralPurposePlugin, hwndParent) == 5 * sizeof(void*), "hwndParent");
VERDIN_GEN_STATIC_ASSERT(offsetof(winampGeneralPurposePlugin, hDllInstance) == 6 * sizeof(void*), "hDllInstance");
VERDIN_GEN_STATIC_ASSERT(sizeof(winampGeneralPurposePlugin) == 7 * sizeof(void*), "seven pointer slots");

#ifdef __cplusplus
}
#endif

#endif /* VERDIN_SDK_GEN_H */
