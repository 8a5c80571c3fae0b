/*
 * Verdin input plug-in interface.
 *
 * An input plug-in is a shared object (*.so) in one of the directories of the
 * player's input plug-in search path. It exports one C function,
 * Verdin_GetInputModule, which the player calls exactly once per library per
 * run. The function returns an InputModule: an object whose first member
 * points to a table of operations in the fixed slot order below. Every
 * operation receives the object it belongs to as its first argument.
 *
 * The module decides whether it can decode a file or URL, fills the
 * TrackInfo record that the playlist shows, and opens one InputDecoder per
 * playing track. The player itself decodes no format.
 *
 * Threads: GetDescription, GetFileTypes, Configure, About, ShowFileInfo and
 * GetFileInfo are called on the player's user-interface thread (GetFileInfo
 * of a module that declares itself re-entrant, see below, also from the
 * player's information-retrieval threads, several files at once). OpenDecoder runs where a
 * stream is set up; Decode and Seek run on that stream's own thread;
 * SetEqualizerEnabled and SetEqualizerValues run on the user-interface thread
 * while the stream thread may be inside Decode: a module must tolerate that,
 * the player takes no lock around it. IsOurFile may be called from any of
 * these threads and must answer the same way every time for the same path
 * and data offset.
 *
 * Everything here is plain C with fixed layouts; integers are little-endian
 * 32-bit unless stated otherwise.
 */
#ifndef VERDIN_SDK_INPUT_H
#define VERDIN_SDK_INPUT_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Track information, filled by InputModule.GetFileInfo. 544 bytes; offsets,
 * widths and order are binding. Before a module answers, the player holds:
 * fileSize 0, seekable 0, duration 0, bitrate 1, sampleRate 1, channels 1,
 * bitsPerSample 8 (so an unknown track has 1 byte per frame).
 */
typedef struct TrackInfo {
    char suggestedTitle[256];  /*   0: NUL-terminated title, shown as "%sugtitle%" */
    uint32_t fileSize;         /* 256: file size in bytes */
    int32_t seekable;          /* 260: nonzero when InputDecoder.Seek may be used */
    int32_t decoderEqualizes;  /* 264: nonzero when the decoder applies the equalizer
                                        itself; the player then skips its own */
    uint32_t duration;         /* 268: length in milliseconds */
    int32_t bitrate;           /* 272: bits per second; negative: variable rate,
                                        the magnitude is the average */
    int32_t sampleRate;        /* 276: frames per second */
    int32_t channels;          /* 280: 1 or 2 */
    int32_t bitsPerSample;     /* 284: 8 or 16 */
    uint8_t reserved[256];     /* 288: not read or written by the player */
} TrackInfo;

/* Equalizer values handed to InputDecoder.SetEqualizerValues: the gain of each
 * of the 16 bands in dB, 50 Hz first, pre-amplification and loudness already
 * folded in. Owned by the caller, valid during the call only. */
typedef struct EqualizerValues {
    int32_t gain[16];
} EqualizerValues;

typedef struct InputDecoder InputDecoder;
typedef struct InputModule InputModule;

/*
 * A decoder: one per playing stream, owned by the stream and destroyed
 * through Destroy.
 *
 * PCM from Decode is interleaved and little-endian: signed for 16-bit,
 * unsigned for 8-bit samples, with the rate, channels and bits that the
 * module reported in the track's TrackInfo. A block holds any whole number
 * of frames.
 */
typedef struct InputDecoderOps {
    /* slot 0: sets *block to PCM owned by the decoder, valid until the next
     * call; returns its size in bytes. 0 ends the track (end or error). */
    uint32_t (*Decode)(InputDecoder* self, const void** block);
    /* slot 1: seeks to a position in milliseconds from the start of the
     * track; returns the position actually reached, in milliseconds. */
    uint32_t (*Seek)(InputDecoder* self, uint32_t milliseconds);
    /* slot 2: the equalizer switch (nonzero = on). Sent whenever it changes
     * and once when a stream is set up, before the values. */
    void (*SetEqualizerEnabled)(InputDecoder* self, int32_t enabled);
    /* slot 3: the equalizer values, sent after the switch. */
    void (*SetEqualizerValues)(InputDecoder* self, const EqualizerValues* values);
    /* slot 4: the decoder frees itself. */
    void (*Destroy)(InputDecoder* self);
} InputDecoderOps;

struct InputDecoder {
    const InputDecoderOps* ops;
};

/*
 * The module. Paths are NUL-terminated file paths or URLs (a URL contains
 * "://"). The data offset is the number of bytes of tag data in front of the
 * audio, as the player's tag reader measured it (always 0 for a URL); the
 * module uses it to skip the tag.
 */
typedef struct InputModuleOps {
    /* slot 0: a text naming the module, owned by the module. */
    const char* (*GetDescription)(InputModule* self);
    /* slot 1: a new decoder for the file, or NULL. */
    InputDecoder* (*OpenDecoder)(InputModule* self, const char* path, uint32_t dataOffset);
    /* slot 2: fills *info; nonzero when the file was understood. */
    int32_t (*GetFileInfo)(InputModule* self, const char* path, uint32_t dataOffset,
                           TrackInfo* info);
    /* slot 3: shows the module's own information about the file. */
    void (*ShowFileInfo)(InputModule* self, const char* path, uint32_t dataOffset);
    /* slot 4: nonzero when this module takes the file. */
    int32_t (*IsOurFile)(InputModule* self, const char* path, uint32_t dataOffset);
    /* slot 5: the file types, as pairs of NUL-terminated texts ended by an
     * empty text: a description ("MPEG audio") and a ";"-separated pattern
     * list ("*.mp3;*.mp2"). Owned by the module. */
    const char* (*GetFileTypes)(InputModule* self);
    /* slot 6: the module's configuration dialog. */
    void (*Configure)(InputModule* self);
    /* slot 7: the module's about box. */
    void (*About)(InputModule* self);
    /* slot 8: called once when the player unloads the module, just before
     * the library is closed. */
    void (*Release)(InputModule* self);
} InputModuleOps;

struct InputModule {
    const InputModuleOps* ops;
};

/*
 * The entry point every input plug-in exports under this exact name:
 *   instance    the library's own handle (as returned by dlopen);
 *   mainWindow  the player's host window record, or NULL when the player
 *               runs without windows.
 * Called exactly once per library per run.
 */
#if defined(__GNUC__)
#define VERDIN_PLUGIN_EXPORT __attribute__((visibility("default")))
#else
#define VERDIN_PLUGIN_EXPORT
#endif

#define VERDIN_INPUT_ENTRY_POINT "Verdin_GetInputModule"
typedef InputModule* (*Verdin_GetInputModuleFunc)(void* instance, void* mainWindow);
VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* instance, void* mainWindow);

/*
 * Optional. A library that also exports this function, returning nonzero,
 * declares GetFileInfo re-entrant: the player then reads track information
 * on several threads at once. Without it every call stays on the
 * user-interface thread.
 */
#define VERDIN_INPUT_REENTRANT "Verdin_InputModuleIsReentrant"
typedef int32_t (*Verdin_InputModuleIsReentrantFunc)(void);

#ifdef __cplusplus
#define VERDIN_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define VERDIN_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

VERDIN_STATIC_ASSERT(sizeof(TrackInfo) == 544, "TrackInfo is 544 bytes");
VERDIN_STATIC_ASSERT(offsetof(TrackInfo, fileSize) == 256, "fileSize at 256");
VERDIN_STATIC_ASSERT(offsetof(TrackInfo, seekable) == 260, "seekable at 260");
VERDIN_STATIC_ASSERT(offsetof(TrackInfo, decoderEqualizes) == 264, "decoderEqualizes at 264");
VERDIN_STATIC_ASSERT(offsetof(TrackInfo, duration) == 268, "duration at 268");
VERDIN_STATIC_ASSERT(offsetof(TrackInfo, bitrate) == 272, "bitrate at 272");
VERDIN_STATIC_ASSERT(offsetof(TrackInfo, sampleRate) == 276, "sampleRate at 276");
VERDIN_STATIC_ASSERT(offsetof(TrackInfo, channels) == 280, "channels at 280");
VERDIN_STATIC_ASSERT(offsetof(TrackInfo, bitsPerSample) == 284, "bitsPerSample at 284");
VERDIN_STATIC_ASSERT(offsetof(TrackInfo, reserved) == 288, "reserved at 288");
VERDIN_STATIC_ASSERT(sizeof(EqualizerValues) == 64, "16 gains of 32 bits");
VERDIN_STATIC_ASSERT(offsetof(InputModuleOps, Release) == 8 * sizeof(void (*)(void)),
                     "InputModule has 9 slots");
VERDIN_STATIC_ASSERT(offsetof(InputDecoderOps, Destroy) == 4 * sizeof(void (*)(void)),
                     "InputDecoder has 5 slots");

#ifdef __cplusplus
}
#endif

#endif /* VERDIN_SDK_INPUT_H */
