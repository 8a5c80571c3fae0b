#pragma once
// The cosine and sine factors of the 512-point fast Hartley transform's butterfly stages,
// built once per process and shared by every form of the transform.
//
// A stage of half length M (8, 16, ..., 256) combines bins k and M-k with the factors
// cos(pi k / M) and sin(pi k / M) for k = 1..M/2. The factors of k = M/2 are stored as
// exactly 0 and 1, so that a bin paired with itself gets the same value from both of its
// writes.
#include <array>

namespace verdin {

inline constexpr int kHartleyFactorCount = 252;  // 4 + 8 + ... + 128: M/2 factors per stage

struct HartleyFactors {
    alignas(64) std::array<double, kHartleyFactorCount> cosine{};
    alignas(64) std::array<double, kHartleyFactorCount> sine{};

    // The factors of the stage with half length `half`: k = 1..half/2 at index k - 1.
    const double* CosinesOf(int half) const { return cosine.data() + half / 2 - 4; }
    const double* SinesOf(int half) const { return sine.data() + half / 2 - 4; }
};

// Built on first use, thread-safely.
const HartleyFactors& SharedHartleyFactors();

}  // namespace verdin
