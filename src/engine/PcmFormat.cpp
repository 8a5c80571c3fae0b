#include "PcmFormat.h"

#include <verdin/input.h>

namespace verdin {

PcmFormat FormatOf(const TrackInfo& info) {
    return PcmFormat{static_cast<uint32_t>(info.sampleRate), static_cast<uint32_t>(info.channels),
                     static_cast<uint32_t>(info.bitsPerSample)};
}

}  // namespace verdin
