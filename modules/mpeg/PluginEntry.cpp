// The one symbol MPEG_Verdin.so exports.
#include "MpegModule.h"

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    return verdin::mpeg::AcquireMpegModule();
}
