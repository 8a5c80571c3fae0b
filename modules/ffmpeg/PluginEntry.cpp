// The symbols FFmpeg_Verdin.so exports: the entry point, and the declaration that reading
// a file's information may run on several threads at once. The plug-in itself is small:
// it knows its file types, and opens the decoding library (libverdin-ffmpeg-input.so,
// with FFmpeg and everything FFmpeg links) the first time a file is read or played.
#include "FfmpegFileTypes.h"

#include "kit/LazyInputModule.h"

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    using namespace verdin::ffmpeg;
    static const verdin::LazyInputModuleTable table{
        "FFmpeg_Verdin.so", FfmpegDescription(), kFfmpegFileTypes, "../libverdin-ffmpeg-input.so", IsFfmpegFile, nullptr};
    return verdin::LazyInputModule(table);
}

extern "C" VERDIN_PLUGIN_EXPORT int32_t Verdin_InputModuleIsReentrant(void) { return 1; }
