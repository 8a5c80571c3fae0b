/*
 * Plug-ins that tell the dialog tests what the player asked of them: each call of
 * Configure, About, ShowFileInfo or Config appends one line ("input configure", "dsp
 * config second", ...) to the file named by VERDIN_PROBE_LOG. The build chooses the kind:
 *
 *   PROBE_INPUT     an input module for "*.probe" files with fixed track information
 *                   (59,990 ms, -192,000 b/s, 44,100 Hz, stereo, 16-bit)
 *   PROBE_DSP       DSP library "Probe DSP": module "first" silences what it is given,
 *                   "second" leaves it alone
 *   PROBE_VIS       visualization library "Probe Vis" with modules "bars" and "scope"
 *   PROBE_GENERAL   general-purpose plug-in "Probe General"
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static void Log(const char* what, const char* detail) {
    const char* path = getenv("VERDIN_PROBE_LOG");
    FILE* file = path ? fopen(path, "a") : NULL;
    if (!file) return;
    fprintf(file, "%s%s\n", what, detail);
    fclose(file);
}

#if defined(PROBE_INPUT)
#include <verdin/input.h>

static int IsProbe(const char* path) {
    const size_t length = strlen(path);
    return length >= 6 && strcmp(path + length - 6, ".probe") == 0;
}
static const char* GetDescription(InputModule* self) { (void)self; return "Probe input"; }
static int32_t GetFileInfo(InputModule* self, const char* path, uint32_t offset, TrackInfo* info) {
    (void)self, (void)offset;
    if (!IsProbe(path)) return 0;
    info->fileSize = 1234;
    info->seekable = 0;
    info->duration = 59990;
    info->bitrate = -192000;
    info->sampleRate = 44100;
    info->channels = 2;
    info->bitsPerSample = 16;
    return 1;
}
static void ShowFileInfo(InputModule* self, const char* path, uint32_t offset) {
    char line[1200];
    (void)self;
    snprintf(line, sizeof line, "%s %u", path, (unsigned)offset);
    Log("input fileinfo ", line);
}
static int32_t IsOurFile(InputModule* self, const char* path, uint32_t offset) { (void)self, (void)offset; return IsProbe(path); }
static const char* GetFileTypes(InputModule* self) { (void)self; return "Probe files\0*.probe\0"; }
static void Configure(InputModule* self) { (void)self; Log("input configure", ""); }
static void About(InputModule* self) { (void)self; Log("input about", ""); }

/* No decoder: the tests never play a probe file. */
static const InputModuleOps ops = {.GetDescription = GetDescription, .GetFileInfo = GetFileInfo,
                                   .ShowFileInfo = ShowFileInfo, .IsOurFile = IsOurFile, .GetFileTypes = GetFileTypes,
                                   .Configure = Configure, .About = About};
static InputModule module = {&ops};
VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* instance, void* mainWindow) {
    (void)instance, (void)mainWindow;
    return &module;
}

#elif defined(PROBE_DSP)
#include <verdin/dsp.h>

static void Config(winampDSPModule* self) { Log("dsp config ", self->description); }
static int ModifySamples(winampDSPModule* self, short* samples, int count, int bits, int channels, int rate) {
    (void)rate;
    if (strcmp(self->description, "first") == 0) memset(samples, 0, (size_t)(count * channels * (bits / 8)));
    return count;
}
static winampDSPModule modules[2] = {
    {"first", NULL, NULL, Config, NULL, ModifySamples, NULL, NULL},
    {"second", NULL, NULL, Config, NULL, ModifySamples, NULL, NULL},
};
static winampDSPModule* GetModule(int which) { return which >= 0 && which < 2 ? &modules[which] : NULL; }
static winampDSPHeader header = {DSP_HDRVER, "Probe DSP", GetModule};
VERDIN_PLUGIN_EXPORT winampDSPHeader* winampDSPGetHeader2(void) { return &header; }

#elif defined(PROBE_VIS)
#include <verdin/vis.h>

static void Config(winampVisModule* self) { Log("vis config ", self->description); }
static winampVisModule modules[2];
static winampVisModule* GetModule(int which) {
    if (which < 0 || which >= 2) return NULL;
    modules[which].description = which == 0 ? "bars" : "scope";
    modules[which].Config = Config;
    return &modules[which];
}
static winampVisHeader header = {VIS_HDRVER, "Probe Vis", GetModule};
VERDIN_PLUGIN_EXPORT winampVisHeader* winampVisGetHeader(void) { return &header; }

#elif defined(PROBE_GENERAL)
#include <verdin/gen.h>

static int Init(void) { Log("general init", ""); return 0; }
static void Config(void) { Log("general config", ""); }
static void Quit(void) { Log("general quit", ""); }
static winampGeneralPurposePlugin plugin = {GPPHDR_VER, "Probe General", Init, Config, Quit, NULL, NULL};
VERDIN_PLUGIN_EXPORT winampGeneralPurposePlugin* winampGetGeneralPurposePlugin(void) { return &plugin; }

#endif
