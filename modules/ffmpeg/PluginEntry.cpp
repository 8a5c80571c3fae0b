// The symbols FFmpeg_Verdin.so exports: the entry point, and the declaration that
// reading a file's information may run on several threads at once.
#include "FfmpegModule.h"

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    return verdin::ffmpeg::AcquireFfmpegModule();
}

extern "C" VERDIN_PLUGIN_EXPORT int32_t Verdin_InputModuleIsReentrant(void) { return 1; }
