#include "engine/equalizer/EqualizedHopsWidths.h"
#include "engine/equalizer/HopKernel.h"

#include <array>

namespace verdin {
namespace {

template <int Bytes, int Channels>
void Run(const HopBatch& batch) {
    hop_kernel::RunBatch<2, Bytes, Channels>(batch);
}

// Indexed by bytes per sample - 1, then channels - 1.
constexpr std::array<std::array<HopBatchFunction, 2>, 4> kFunctions = {{
    {Run<1, 1>, Run<1, 2>},
    {Run<2, 1>, Run<2, 2>},
    {Run<3, 1>, Run<3, 2>},
    {Run<4, 1>, Run<4, 2>},
}};

}  // namespace

HopBatchFunction TwoWideHopsFor(uint32_t bytesPerSample, uint32_t channels) {
    return kFunctions[bytesPerSample - 1][channels - 1];
}

}  // namespace verdin
