// The internet radio input module: the entry point and the stream extension of the
// decoding library (libverdin-radio-input.so), which Radio_Verdin.so opens when a station
// first plays.
#include "RadioDecoder.h"
#include "RadioStation.h"

#include <cstdio>

namespace verdin::radio {

namespace {

const InputModuleOps kOps = {
    [](InputModule*) { return kRadioDescription; },
    [](InputModule*, const char* path, uint32_t) { return IsStationAddress(path) ? OpenRadioDecoder(path) : nullptr; },
    [](InputModule*, const char* path, uint32_t, TrackInfo* info) { return DescribeStation(path, info); },
    // This module has no windows.
    [](InputModule*, const char*, uint32_t) {},
    [](InputModule*, const char* path, uint32_t) -> int32_t { return IsStationAddress(path); },
    [](InputModule*) { return static_cast<const char*>(kRadioFileTypes); },
    [](InputModule*) {},
    [](InputModule*) { std::fprintf(stderr, "%s\n", kRadioDescription); },
    [](InputModule*) {},
};

InputModule module{&kOps};

}  // namespace

}  // namespace verdin::radio

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    return &verdin::radio::module;
}

extern "C" VERDIN_PLUGIN_EXPORT const InputStreamOps* Verdin_GetInputStreamOps(void) {
    return verdin::radio::RadioStreamOps();
}
