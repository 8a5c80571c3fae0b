// The one symbol WAV_Verdin.so exports.
#include "SndfileModule.h"

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    return verdin::sndfile::AcquireSndfileModule();
}
