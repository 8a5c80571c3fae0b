#pragma once
// A run of consecutive hops that the equalizer works on in one go, and the overlap it
// keeps between runs.
//
// Hop n takes the 512 frames from frame 256n on, and gives back 256 frames: the second
// half of the previous hop's result faded into the first half of its own. Two paths do
// that (EqualizedHops.h with the transforms, FlatHops.h for a table of 0 dB gains, where
// a block's result is its input times 512); both keep the overlap in the same place, so
// either may follow the other.
#include "engine/equalizer/SpectrumWeights.h"

#include <cstdint>

namespace verdin {

inline constexpr int kMaxHopLanes = 4;

struct HopBatch {
    const uint8_t* in;  // the first hop's first frame; 512 + 256 x (hops - 1) frames follow
    uint8_t* out;       // where the first hop's 256 frames go; the others follow
    uint32_t hops;      // EqualizedHops: at most lanes / channels; FlatHops: any number
    bool firstBlock;    // no hop has run yet: the first block stands in for its predecessor
    int lanes;          // the width the equalizer runs (HopLanes()); fixes the overlap layout
    const SpectrumWeights* weights;
    double* block;  // scratch: 512 x lanes doubles
    // The overlap: the second half of the last hop's result, 256 x lanes doubles. The
    // value of frame k, channel c sits at OverlapIndex(k, c); other entries are unused.
    double* overlap;
};

constexpr int OverlapIndex(int lanes, uint32_t channels, int frame, uint32_t channel) {
    return frame * lanes + lanes - static_cast<int>(channels) + static_cast<int>(channel);
}

}  // namespace verdin
