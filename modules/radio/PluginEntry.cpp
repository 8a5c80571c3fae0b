// The symbols Radio_Verdin.so exports: the entry point, the stream extension, and the
// declaration that reading a track's information may run on several threads at once (it
// reads nothing but the address). The plug-in answers from the address alone and opens
// the decoding library (libverdin-radio-input.so, with FFmpeg) when a station first plays.
#include "RadioStation.h"

#include "kit/LazyInputModule.h"

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    using namespace verdin::radio;
    static const verdin::LazyInputModuleTable table{"Radio_Verdin.so",     kRadioDescription, kRadioFileTypes,
                                                    "../libverdin-radio-input.so", IsStationAddress, DescribeStation};
    return verdin::LazyInputModule(table);
}

extern "C" VERDIN_PLUGIN_EXPORT int32_t Verdin_InputModuleIsReentrant(void) { return 1; }

extern "C" VERDIN_PLUGIN_EXPORT const InputStreamOps* Verdin_GetInputStreamOps(void) {
    return verdin::LazyInputStreamOps();
}
