/*
 * Verdin host window record: how a Winamp-style plug-in talks to the player.
 *
 * Winamp-style plug-ins receive a parent window handle (hwndParent) and reach the
 * player by sending messages to it. On Linux there are no such windows: the handle a
 * plug-in receives is a pointer to a VerdinHostWindow, and "sending a message" is a
 * call of its sendMessage function with the usual four values (message number,
 * wParam, lParam; the result as the answer). The player answers the queries that its
 * main window documents (WM_USER queries, WM_COMMAND identifiers, WM_COPYDATA);
 * anything it does not know answers 0.
 *
 * Threads: send messages from the thread that called the plug-in's Init, Config,
 * Render or its general-purpose init/config/quit (the player's user-interface
 * thread), unless the player documents a message as safe elsewhere. DSP modules run
 * ModifySamples on a stream thread and should not send messages from there.
 *
 * A plug-in must treat the record as opaque apart from calling sendMessage: it never
 * writes to it, never frees it, and never keeps it beyond its Quit (or quit).
 */
#ifndef VERDIN_SDK_WINDOW_H
#define VERDIN_SDK_WINDOW_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Message numbers, as on the platform the interface was designed for (guarded, so
 * that code shared with that platform may have defined them already). */
#ifndef WM_COPYDATA
#define WM_COPYDATA 0x004A /* lParam points to a COPYDATASTRUCT, valid during the call */
#endif
#ifndef WM_COMMAND
#define WM_COMMAND 0x0111 /* the low 16 bits of wParam are a command identifier */
#endif
#ifndef WM_USER
#define WM_USER 1024 /* the player's queries: wParam the argument, lParam the query */
#endif

typedef struct VerdinHostWindow VerdinHostWindow;

/*
 * Sends msg to the window and returns the window's answer. wParam and lParam are
 * pointer-sized so that either may carry a pointer; the result is pointer-sized too.
 */
typedef intptr_t (*VerdinSendMessageFunc)(VerdinHostWindow* window, uint32_t msg, uintptr_t wParam,
                                          intptr_t lParam);

struct VerdinHostWindow {
    VerdinSendMessageFunc sendMessage; /* set by the player, never NULL */
    void* host;                        /* the player's own context: not for plug-ins */
};

/*
 * A block of bytes handed to the player with WM_COPYDATA. The player reads it during
 * the call only; the sender owns the bytes.
 */
typedef struct COPYDATASTRUCT {
    uintptr_t dwData; /* what the data is: a number the receiver defines */
    uint32_t cbData;  /* size of the data in bytes */
    void* lpData;     /* the data; may be NULL when cbData is 0 */
} COPYDATASTRUCT;

/*
 * Convenience for plug-in code: sends a message through a window handle as received
 * in hwndParent. A NULL handle (the player runs without windows, or a host that passes
 * none) answers 0.
 */
static inline intptr_t VerdinSendMessage(void* window, uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    VerdinHostWindow* host = (VerdinHostWindow*)window;
    return host && host->sendMessage ? host->sendMessage(host, msg, wParam, lParam) : 0;
}

#ifdef __cplusplus
#define VERDIN_WINDOW_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define VERDIN_WINDOW_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

VERDIN_WINDOW_STATIC_ASSERT(sizeof(intptr_t) == sizeof(void*), "pointer-sized message arguments");
VERDIN_WINDOW_STATIC_ASSERT(offsetof(VerdinHostWindow, sendMessage) == 0, "sendMessage first");
VERDIN_WINDOW_STATIC_ASSERT(offsetof(VerdinHostWindow, host) == sizeof(void*), "host second");
VERDIN_WINDOW_STATIC_ASSERT(sizeof(VerdinHostWindow) == 2 * sizeof(void*), "two pointers");
VERDIN_WINDOW_STATIC_ASSERT(offsetof(COPYDATASTRUCT, dwData) == 0, "dwData first");
VERDIN_WINDOW_STATIC_ASSERT(offsetof(COPYDATASTRUCT, cbData) == sizeof(void*), "cbData after dwData");
VERDIN_WINDOW_STATIC_ASSERT(sizeof(((COPYDATASTRUCT*)0)->cbData) == 4, "cbData is 32-bit");
VERDIN_WINDOW_STATIC_ASSERT(offsetof(COPYDATASTRUCT, lpData) == 2 * sizeof(void*), "lpData last");
VERDIN_WINDOW_STATIC_ASSERT(sizeof(COPYDATASTRUCT) == 3 * sizeof(void*), "three pointer slots");

#ifdef __cplusplus
}
#endif

#endif /* VERDIN_SDK_WINDOW_H */
