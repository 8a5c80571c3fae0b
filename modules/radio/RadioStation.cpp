#include "RadioStation.h"

#include "kit/ModuleFileFacts.h"

#include <string_view>

namespace verdin::radio {
namespace {

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
    if (text.size() < prefix.size()) return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if ((text[i] | 0x20) != prefix[i]) return false;
    return true;
}

}  // namespace

int32_t IsStationAddress(const char* path) {
    return path && (StartsWithNoCase(path, "http://") || StartsWithNoCase(path, "https://"));
}

int32_t DescribeStation(const char* url, TrackInfo* info) {
    if (!IsStationAddress(url) || !info) return 0;
    const std::string_view address(url);
    SetSuggestedTitle(*info, address.substr(address.find("://") + 3));
    info->fileSize = 0;
    info->seekable = 0;
    info->decoderEqualizes = 0;
    info->duration = 0;
    info->sampleRate = kStationRate;
    info->channels = kStationChannels;
    info->bitsPerSample = 16;
    return 1;
}

}  // namespace verdin::radio
