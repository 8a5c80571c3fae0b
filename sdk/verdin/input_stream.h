/*
 * Verdin input plug-in interface: the optional stream extension.
 *
 * A module that plays live streams (internet radio) may export, beside
 * Verdin_GetInputModule, the function named by VERDIN_INPUT_STREAM_EXTENSION. It
 * returns a table of operations on the module's decoders, in the fixed slot order
 * below; the player calls it once when it loads the library. A library without it
 * plays as before. To play a URL, the player asks the modules that export it first
 * whether they take it (IsOurFile), before the others in their usual order.
 *
 * Threads: GetStreamTitle and GetLastError are called on the stream's own thread,
 * right after Decode; the texts they return are owned by the decoder and stay valid
 * until that thread's next call into the decoder. Interrupt may be called from any
 * thread while Decode runs: it must make a Decode that waits on the network return 0
 * within a moment, so that the player can stop the stream without waiting.
 */
#ifndef VERDIN_SDK_INPUT_STREAM_H
#define VERDIN_SDK_INPUT_STREAM_H

#include "input.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct InputStreamOps {
    /* slot 0: the stream's current title (UTF-8, NUL-terminated), e.g. the station's
     * "StreamTitle", or NULL or "" when it has none. */
    const char* (*GetStreamTitle)(InputDecoder* decoder);
    /* slot 1: why the last Decode that returned 0 ended the track, as a message for
     * the user (UTF-8); NULL or "" at a regular end. */
    const char* (*GetLastError)(InputDecoder* decoder);
    /* slot 2: asks a waiting Decode to give up at once; any thread. */
    void (*Interrupt)(InputDecoder* decoder);
} InputStreamOps;

#define VERDIN_INPUT_STREAM_EXTENSION "Verdin_GetInputStreamOps"
typedef const InputStreamOps* (*Verdin_GetInputStreamOpsFunc)(void);

VERDIN_STATIC_ASSERT(sizeof(InputStreamOps) == 3 * sizeof(void (*)(void)), "InputStreamOps has 3 slots");

#ifdef __cplusplus
}
#endif

#endif /* VERDIN_SDK_INPUT_STREAM_H */
