#pragma once
// Writing into a stream's ring buffer: plain copies, and the crossfade that mixes the
// start of a new track over the end of the previous one already in the ring.
#include "engine/PcmFormat.h"

#include <cstdint>

namespace verdin {

// Copies bytes into the ring at position, wrapping at its end; returns the position after
// the last byte (modulo the ring size).
uint32_t CopyIntoRing(uint8_t* ring, uint32_t ringBytes, uint32_t position, const uint8_t* data, uint32_t bytes);

// The fade of a new track over the old one: `length` frames in all, `remaining` still to
// mix (length at the first frame, counting down).
struct Crossfade {
    uint32_t length = 0;
    uint32_t remaining = 0;
};

// Mixes up to fade.remaining frames of block over the ring at position: for each sample,
// with old sample o and new sample n (8-bit brought from unsigned to signed first),
// (n x length + (o - n) x remaining) / length in 64-bit arithmetic, truncated toward zero;
// remaining is counted down after each frame. So the first frame is the old sound and the
// last almost wholly the new. Returns the number of frames mixed; the caller copies the
// rest of the block plainly.
uint32_t MixIntoRing(uint8_t* ring, uint32_t ringBytes, uint32_t position, const uint8_t* block,
                     uint32_t frames, const PcmFormat& format, Crossfade& fade);

}  // namespace verdin
