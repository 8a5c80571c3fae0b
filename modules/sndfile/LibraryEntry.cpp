// The decoding library's entry point, which WAV_Verdin.so calls when it first needs it.
#include "SndfileModule.h"

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    return verdin::sndfile::AcquireSndfileModule();
}
