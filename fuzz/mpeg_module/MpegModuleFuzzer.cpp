// Arbitrary bytes through the MPEG module's file path (see InputModuleRun.h).
#include "../InputModuleRun.h"
#include "MpegModule.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static InputModule* const module = verdin::mpeg::AcquireMpegModule();
    verdin::fuzz::RunInputModule(module, data, size, false);
    return 0;
}
