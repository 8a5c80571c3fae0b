#pragma once
// The sizes of a stream's ring buffer and the levels the buffer rules work with.
#include "engine/PcmFormat.h"

#include <cstdint>

namespace verdin {

struct RingLayout {
    uint32_t bytes = 0;          // ring size: a multiple of 8 and of the frame size
    uint32_t frames = 0;         // ringFrames = bytes / bytes per frame
    uint32_t prefillFrames = 0;  // max(10240, prefill% x ringFrames / 100)
};

// The options page keeps the buffer between 100 and 2000 kilobytes of 1024 bytes; the
// engine keeps it there too, so a ring always holds more than the 10240-frame pre-fill
// minimum (a smaller ring could never leave its refill state).
inline constexpr int32_t kMinBufferBytes = 100 * 1024;
inline constexpr int32_t kMaxBufferBytes = 2000 * 1024;

// bufferSize in bytes and bufferPrefill in percent, both clamped to the options page's
// limits (100..2000 KB, 0..100 %), for a track of the given format.
RingLayout ComputeRingLayout(int32_t bufferSize, int32_t bufferPrefill, const PcmFormat& format);

}  // namespace verdin
