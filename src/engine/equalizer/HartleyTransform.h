#pragma once
// The 512-point fast Hartley transform shared by the equalizer and the analyzer.
//
//   H[k] = sum over n of x[n] * cas(2 pi n k / 512),   cas(t) = cos(t) + sin(t)
//
// The transform is its own inverse up to a factor: applied twice it gives the input
// times 512. It runs in place on doubles, allocates nothing, and reads only tables that
// are built once per process (the first call builds them, thread-safely). It may be
// called from any number of threads at once on different arrays.
#include <span>

namespace verdin {

inline constexpr int kHartleySize = 512;

void FastHartleyTransform(std::span<double, kHartleySize> data);

// The same transform with a chosen lane width, 2 or 4; FastHartleyTransform uses the
// widest the processor runs. Both widths give bit-identical results. Returns false, with
// data untouched, for a width this processor (or build) does not offer. For tests and
// benchmarks.
bool FastHartleyTransformWithLanes(std::span<double, kHartleySize> data, int lanes);

}  // namespace verdin
