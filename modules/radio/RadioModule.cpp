// The internet radio input module and the symbols Radio_Verdin.so exports: the entry
// point, the stream extension, and the declaration that reading a track's information
// may run on several threads at once (it reads nothing but the address).
#include "RadioDecoder.h"

#include "StreamConnection.h"
#include "kit/ModuleFileFacts.h"

#include <cstdio>
#include <string_view>

namespace verdin::radio {

namespace {

constexpr const char* kDescription = "Verdin internet radio " VERDIN_MODULE_VERSION " (FFmpeg)";
// No file patterns: this module takes addresses, never files.
constexpr char kFileTypes[] = "\0";

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
    if (text.size() < prefix.size()) return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if ((text[i] | 0x20) != prefix[i]) return false;
    return true;
}

bool IsStationAddress(const char* path) {
    return path && (StartsWithNoCase(path, "http://") || StartsWithNoCase(path, "https://"));
}

// The address without its scheme stands for the title until the station names a song;
// nothing here touches the network.
int32_t DescribeStation(const char* url, TrackInfo* info) {
    if (!IsStationAddress(url) || !info) return 0;
    const std::string_view address(url);
    SetSuggestedTitle(*info, address.substr(address.find("://") + 3));
    info->fileSize = 0;
    info->seekable = 0;
    info->decoderEqualizes = 0;
    info->duration = 0;
    info->sampleRate = StreamConnection::kRate;
    info->channels = StreamConnection::kChannels;
    info->bitsPerSample = 16;
    return 1;
}

const InputModuleOps kOps = {
    [](InputModule*) { return kDescription; },
    [](InputModule*, const char* path, uint32_t) { return IsStationAddress(path) ? OpenRadioDecoder(path) : nullptr; },
    [](InputModule*, const char* path, uint32_t, TrackInfo* info) { return DescribeStation(path, info); },
    // This module has no windows.
    [](InputModule*, const char*, uint32_t) {},
    [](InputModule*, const char* path, uint32_t) -> int32_t { return IsStationAddress(path); },
    [](InputModule*) { return static_cast<const char*>(kFileTypes); },
    [](InputModule*) {},
    [](InputModule*) { std::fprintf(stderr, "%s\n", kDescription); },
    [](InputModule*) {},
};

InputModule module{&kOps};

}  // namespace

}  // namespace verdin::radio

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    return &verdin::radio::module;
}

extern "C" VERDIN_PLUGIN_EXPORT int32_t Verdin_InputModuleIsReentrant(void) { return 1; }

extern "C" VERDIN_PLUGIN_EXPORT const InputStreamOps* Verdin_GetInputStreamOps(void) {
    return verdin::radio::RadioStreamOps();
}
