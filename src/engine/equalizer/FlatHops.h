#pragma once
// Hops with every gain at 0 dB. Transformed twice and unweighted, a block is its input
// times 512, so a hop's result needs no transform: the first hop of a run fades from the
// kept overlap into the input frames exactly as the transforms would, and every later hop
// gives its input frames back as they are.
//
// After such a run the overlap the transforms would have left is the next frames times
// 512. The equalizer writes it only when something needs it (OverlapFromInput); until
// then a further flat run can skip the fade, which would give the frames back unchanged.
#include "engine/equalizer/HopBatch.h"

#include <cstdint>

namespace verdin {

// batch.weights and batch.block are not used; batch.hops may be any number.
// overlapIsInput: the overlap stands for the frames at batch.in times 512 (see above).
void RunFlatHops(const HopBatch& batch, bool overlapIsInput, uint32_t bytesPerSample, uint32_t channels);

// Sets the overlap of `lanes` lanes to 256 frames from `frames`, times 512.
void OverlapFromInput(const uint8_t* frames, int lanes, double* overlap, uint32_t bytesPerSample, uint32_t channels);

}  // namespace verdin
