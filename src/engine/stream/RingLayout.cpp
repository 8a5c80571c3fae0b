#include "RingLayout.h"

#include <algorithm>

namespace verdin {

RingLayout ComputeRingLayout(int32_t bufferSize, int32_t bufferPrefill, const PcmFormat& format) {
    RingLayout ring;
    const uint32_t requested = static_cast<uint32_t>(std::clamp(bufferSize, kMinBufferBytes, kMaxBufferBytes));
    const uint32_t frameBytes = format.BytesPerFrame() ? format.BytesPerFrame() : 1;
    // Every frame the stream plays (1, 2 or 4 bytes) divides 8; the second rounding keeps
    // the ring whole frames for any other size too, so no frame ever straddles its end.
    ring.bytes = requested & ~7u;
    ring.bytes -= ring.bytes % frameBytes;
    ring.frames = ring.bytes / frameBytes;
    const uint64_t prefill = static_cast<uint64_t>(std::clamp(bufferPrefill, 0, 100)) * ring.frames / 100;
    ring.prefillFrames = std::max<uint32_t>(10240, static_cast<uint32_t>(prefill));
    return ring;
}

}  // namespace verdin
