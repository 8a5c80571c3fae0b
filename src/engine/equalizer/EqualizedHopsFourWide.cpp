// Compiled with AVX2 on x86-64 (see CMakeLists.txt); called only where the processor has it.
// Everything this file uses from headers is always inlined or has internal linkage, so no
// out-of-line copy built for AVX2 can stand in for one the rest of the program calls:
// FourWideHopsFor is the only symbol it defines.
#include "engine/equalizer/EqualizedHopsWidths.h"
#include "engine/equalizer/HopKernel.h"

#include <array>

namespace verdin {
namespace {

template <int Bytes, int Channels>
void Run(const HopBatch& batch) {
    hop_kernel::RunBatch<4, Bytes, Channels>(batch);
}

// Indexed by bytes per sample - 1, then channels - 1.
constexpr std::array<std::array<HopBatchFunction, 2>, 4> kFunctions = {{
    {Run<1, 1>, Run<1, 2>},
    {Run<2, 1>, Run<2, 2>},
    {Run<3, 1>, Run<3, 2>},
    {Run<4, 1>, Run<4, 2>},
}};

}  // namespace

HopBatchFunction FourWideHopsFor(uint32_t bytesPerSample, uint32_t channels) {
    return kFunctions[bytesPerSample - 1][channels - 1];
}

}  // namespace verdin
