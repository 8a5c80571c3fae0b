/*
 * An input plug-in that reports whatever format its ".odd" file names: the file's first
 * byte is the channel count, the second the bits per sample. Its decoder gives a second
 * of zeros in that format, so a stream that accepted the format would fill its ring.
 * It does not declare itself re-entrant, and counts the calls that reach it on any thread
 * but the process's main one.
 */
#include <verdin/input.h>

#include <stdio.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

#pragma GCC diagnostic ignored "-Wunused-parameter"

static unsigned char zeros[4608];
static uint32_t left;

static uint32_t Decode(InputDecoder* self, const void** block) {
    const uint32_t bytes = left < sizeof zeros ? left : (uint32_t)sizeof zeros;
    left -= bytes;
    *block = zeros;
    return bytes;
}
static uint32_t Seek(InputDecoder* self, uint32_t milliseconds) { return 0; }
static void Destroy(InputDecoder* self) {}
static const InputDecoderOps decoderOps = {Decode, Seek, NULL, NULL, Destroy};
static InputDecoder decoder = {&decoderOps};

static int callsOffMainThread;
VERDIN_PLUGIN_EXPORT int OddFormatModule_CallsOffMainThread(void) { return __atomic_load_n(&callsOffMainThread, __ATOMIC_SEQ_CST); }

static int32_t GetFileInfo(InputModule* self, const char* path, uint32_t offset, TrackInfo* info) {
    if (syscall(SYS_gettid) != getpid()) __atomic_fetch_add(&callsOffMainThread, 1, __ATOMIC_SEQ_CST);
    unsigned char format[2] = {0, 0};
    FILE* file = fopen(path, "rb");
    if (!file) return 0;
    const size_t got = fread(format, 1, 2, file);
    fclose(file);
    info->sampleRate = 44100, info->duration = 1000, info->channels = format[0], info->bitsPerSample = format[1];
    return got == 2;
}
static InputDecoder* OpenDecoder(InputModule* self, const char* path, uint32_t offset) {
    TrackInfo info;
    if (!GetFileInfo(self, path, offset, &info)) return NULL;
    left = (uint32_t)(44100 * info.channels * (info.bitsPerSample / 8));
    return &decoder;
}
static int32_t IsOurFile(InputModule* self, const char* path, uint32_t offset) {
    const char* dot = strrchr(path, '.');
    return dot && strcmp(dot, ".odd") == 0;
}
static const char* GetDescription(InputModule* self) { return "Odd formats"; }
static const char* GetFileTypes(InputModule* self) { return "Odd files\0*.odd\0"; }
static void Nothing(InputModule* self) {}
static void ShowFileInfo(InputModule* self, const char* path, uint32_t offset) {}

static const InputModuleOps ops = {GetDescription, OpenDecoder, GetFileInfo, ShowFileInfo, IsOurFile,
                                   GetFileTypes,   Nothing,     Nothing,     Nothing};
static InputModule module = {&ops};

InputModule* Verdin_GetInputModule(void* instance, void* mainWindow) { return &module; }
