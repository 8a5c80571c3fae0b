#pragma once
// The 512-point Hartley transform by its defining sum, for checking the fast forms:
//   H[k] = sum over n of x[n] * cas(2 pi n k / 512),   cas(t) = cos(t) + sin(t)
// O(n^2), evaluated in long double, sharing no tables with the code under test.
#include <array>
#include <cmath>
#include <numbers>

namespace verdin::test {

inline constexpr int kDirectSize = 512;
using DirectBlock = std::array<double, kDirectSize>;

// cas(2 pi m / 512) for m = 0..511.
inline const std::array<long double, kDirectSize>& CasTable() {
    static const std::array<long double, kDirectSize> table = [] {
        std::array<long double, kDirectSize> t{};
        for (int m = 0; m < kDirectSize; ++m) {
            const long double angle = 2 * std::numbers::pi_v<long double> * m / kDirectSize;
            t[m] = std::cos(angle) + std::sin(angle);
        }
        return t;
    }();
    return table;
}

inline DirectBlock DirectHartley(const DirectBlock& x) {
    const auto& cas = CasTable();
    DirectBlock h{};
    for (int k = 0; k < kDirectSize; ++k) {
        long double sum = 0;
        for (int n = 0; n < kDirectSize; ++n) sum += x[n] * cas[(n * k) % kDirectSize];
        h[k] = static_cast<double>(sum);
    }
    return h;
}

}  // namespace verdin::test
