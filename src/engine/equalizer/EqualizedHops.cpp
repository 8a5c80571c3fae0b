#include "engine/equalizer/EqualizedHops.h"

#include "engine/equalizer/EqualizedHopsWidths.h"

namespace verdin {
namespace {

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
bool HaveFourWide() {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2");
}
#else
bool HaveFourWide() { return false; }  // other processors keep to the two-wide form
#endif

}  // namespace

int HopLanes() {
    static const int lanes = HaveFourWide() ? 4 : 2;  // asked once: the processor does not change
    return lanes;
}

HopBatchFunction EqualizedHopsFor(int lanes, uint32_t bytesPerSample, uint32_t channels) {
    if (bytesPerSample < 1 || bytesPerSample > 4 || channels < 1 || channels > 2) return nullptr;
    if (lanes == 2) return TwoWideHopsFor(bytesPerSample, channels);
    if (lanes == 4 && HopLanes() == 4) return FourWideHopsFor(bytesPerSample, channels);
    return nullptr;
}

}  // namespace verdin
