// The decoding library's entry point, which FFmpeg_Verdin.so calls when it first needs it.
#include "FfmpegModule.h"

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    return verdin::ffmpeg::AcquireFfmpegModule();
}
