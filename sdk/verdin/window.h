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
 * Threads: a message may be sent from any thread, like the window message it stands
 * for. Sent from the player's user-interface thread (the thread that calls Init,
 * Config, Render and a general-purpose plug-in's init, config and quit) it is answered
 * at once; sent from any other thread it is carried out on the user-interface thread
 * while the sender waits for the answer. While the user-interface thread is itself
 * inside a call into a plug-in, a message from another thread is not waited for: it
 * answers 0 at once. So a plug-in may wait for its own thread inside quit (or any
 * other call) without a deadlock, but that thread's messages then go unanswered. DSP
 * modules should not send messages from ModifySamples: a stream thread that waits for
 * the user-interface thread can run out of sound.
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

/*
 * The WM_USER queries: lParam is the query, wParam its argument. Texts come back as a
 * const char* (UTF-8) that stays valid until the next query of the same number.
 */
#define VERDIN_HOST_VERSION 0x0100      /* what VERDIN_IPC_GETVERSION answers */
#define VERDIN_IPC_GETVERSION 0         /* VERDIN_HOST_VERSION */
#define VERDIN_IPC_ISPLAYING 104        /* 1 playing, 3 paused, 0 stopped */
#define VERDIN_IPC_GETOUTPUTTIME 105    /* wParam 0: position in ms; 1: the track's length in
                                           seconds; 2: in milliseconds. -1 when nothing plays */
#define VERDIN_IPC_JUMPTOTIME 106       /* wParam: milliseconds. 0 done, -1 nothing plays */
#define VERDIN_IPC_SETPLAYLISTPOS 121   /* wParam: the row that becomes current (not played) */
#define VERDIN_IPC_SETVOLUME 122        /* wParam: 0..255; (uintptr_t)-666 only answers it */
#define VERDIN_IPC_GETLISTLENGTH 124    /* the rows of the playlist view */
#define VERDIN_IPC_GETLISTPOS 125       /* the current row from 0; -1 when there is none */
#define VERDIN_IPC_GETINFO 126          /* of the track playing, by wParam: 0 sample rate in
                                           Hz, 1 bit rate in kbit/s, 2 channels; 0 when none */
#define VERDIN_IPC_GETPLAYLISTFILE 211  /* wParam: row; its path or address, NULL past the end */
#define VERDIN_IPC_GETPLAYLISTTITLE 212 /* wParam: row; its title as the view shows it */
#define VERDIN_IPC_GET_SHUFFLE 250      /* 1 on, 0 off */
#define VERDIN_IPC_GET_REPEAT 251       /* 1 on, 0 off */
#define VERDIN_IPC_SET_SHUFFLE 252      /* wParam: 1 on, 0 off */
#define VERDIN_IPC_SET_REPEAT 253       /* wParam: 1 on, 0 off */
/* Any other query answers 0. */

/* WM_COPYDATA: dwData says what the data is. */
#define VERDIN_IPC_PLAYFILE 100 /* lpData: a path or address (cbData bytes, a NUL may end
                                   it) appended to the main playlist; answers 1 when added */

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
