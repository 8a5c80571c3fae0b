#include "engine/equalizer/HartleyTransform.h"

#include "engine/equalizer/HartleyFactors.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <numbers>

// Radix-2 decimation in time. After the bit-reversal permutation, a block of length L
// holds the transforms E (first half) and O (second half, offset M = L/2) of its even
// and odd samples; with t = 2 pi k / L they combine as
//
//   H[k]     = E[k] + cos(t) O[k] + sin(t) O[M-k]
//   H[k + M] = E[k] - cos(t) O[k] - sin(t) O[M-k]
//
// so bins k and M-k are computed together from the same four inputs, in place. The
// first three stages (L = 2, 4, 8) are one 8-point pass whose only factor is sqrt(2)/2;
// the later stages take two or four neighbouring k at a time (their mirrored partners M-k
// are neighbours too, read and written in reverse order).

namespace verdin {
namespace {

constexpr int kSize = kHartleySize;
constexpr int kBits = 9;
static_assert(1 << kBits == kSize);

// Lane groups: W neighbouring doubles worked on together. The four-wide form runs where
// the processor has AVX2 (chosen once at run time); the two-wide form fits the SSE2
// registers every x86-64 processor has, and plain registers elsewhere. Both do the same
// multiplications and additions in the same order per lane (AVX2 alone brings no fused
// multiply-add), so they give bit-identical results.
template <int W>
struct LaneGroup;
template <>
struct LaneGroup<2> {
    typedef double Type __attribute__((vector_size(16)));
};
template <>
struct LaneGroup<4> {
    typedef double Type __attribute__((vector_size(32)));
};

// Helpers take vectors by reference: passing 32-byte vectors by value would tie their
// calling convention to the target, and they are always inlined anyway.
template <class V>
[[gnu::always_inline]] inline void Load(V& v, const double* p) {
    std::memcpy(&v, p, sizeof v);
}
template <class V>
[[gnu::always_inline]] inline void Store(double* p, const V& v) {
    std::memcpy(p, &v, sizeof v);
}
template <class V>
[[gnu::always_inline]] inline void Reverse(V& v) {
    if constexpr (sizeof(V) == 4 * sizeof(double))
        v = __builtin_shufflevector(v, v, 3, 2, 1, 0);
    else
        v = __builtin_shufflevector(v, v, 1, 0);
}

constexpr int kSwapCount = (kSize - (1 << ((kBits + 1) / 2))) / 2;  // non-palindromic indices / 2

bool HaveFourWide();

struct Tables {
    const bool fourWide = HaveFourWide();  // asked once: the processor does not change
    std::array<std::array<uint16_t, 2>, kSwapCount> swaps{};  // (i, reverse(i)) with i < reverse(i)
    const HartleyFactors& factors = SharedHartleyFactors();

    Tables() {
        int count = 0;
        for (int i = 0; i < kSize; ++i) {
            int reversed = 0;
            for (int bit = 0; bit < kBits; ++bit) reversed |= ((i >> bit) & 1) << (kBits - 1 - bit);
            if (i < reversed) swaps[count++] = {static_cast<uint16_t>(i), static_cast<uint16_t>(reversed)};
        }
    }
};

const Tables& SharedTables() {
    static const Tables tables;
    return tables;
}

void BitReverse(double* x, const Tables& tables) {
    for (const auto& [i, j] : tables.swaps) {
        const double t = x[i];
        x[i] = x[j];
        x[j] = t;
    }
}

// Stages L = 2, 4 and 8 on each group of eight bit-reversed samples.
void EightPointPass(double* x) {
    constexpr double kHalfSqrt2 = std::numbers::sqrt2 * 0.5;
    for (int base = 0; base < kSize; base += 8) {
        double* g = x + base;
        // L = 2 and L = 4 on each half: no factors other than 1.
        const double a0 = g[0] + g[1], a1 = g[0] - g[1], a2 = g[2] + g[3], a3 = g[2] - g[3];
        const double b0 = g[4] + g[5], b1 = g[4] - g[5], b2 = g[6] + g[7], b3 = g[6] - g[7];
        const double e0 = a0 + a2, e1 = a1 + a3, e2 = a0 - a2, e3 = a1 - a3;
        const double o0 = b0 + b2, o1 = b1 + b3, o2 = b0 - b2, o3 = b1 - b3;
        // L = 8: t = pi/4 for k = 1 and 3, where cos and sin are both sqrt(2)/2.
        const double t1 = (o1 + o3) * kHalfSqrt2;
        const double t3 = (o1 - o3) * kHalfSqrt2;
        g[0] = e0 + o0;
        g[4] = e0 - o0;
        g[2] = e2 + o2;
        g[6] = e2 - o2;
        g[1] = e1 + t1;
        g[5] = e1 - t1;
        g[3] = e3 + t3;
        g[7] = e3 - t3;
    }
}

// One stage of half length M >= 8: k = 0 alone, then k = 1..M/2 in groups of W together
// with their partners M-k. The last group reaches k = M/2, which is its own partner; both
// of its writes store the same value because its factors are exactly 0 and 1.
template <int W>
[[gnu::always_inline]] inline void ButterflyStage(double* x, int half, const Tables& tables) {
    using V = typename LaneGroup<W>::Type;
    const double* c = tables.factors.CosinesOf(half);  // k = 1..M/2 at index k - 1
    const double* s = tables.factors.SinesOf(half);
    for (int base = 0; base < kSize; base += 2 * half) {
        double* e = x + base;
        double* o = e + half;
        const double e0 = e[0], o0 = o[0];
        e[0] = e0 + o0;
        o[0] = e0 - o0;
        for (int k = 1; k <= half / 2; k += W) {
            const int j = half - k - (W - 1);  // lowest of the partners M-k-W+1 .. M-k
            V ek, ok, ej, oj, ck, sk;
            Load(ek, e + k);
            Load(ok, o + k);
            Load(ej, e + j);
            Load(oj, o + j);
            Reverse(ej);
            Reverse(oj);
            Load(ck, c + k - 1);
            Load(sk, s + k - 1);
            const V tk = ck * ok + sk * oj;
            V tj = sk * ok - ck * oj;
            Store(e + k, ek + tk);
            Store(o + k, ek - tk);
            V sum = ej + tj, difference = ej - tj;
            Reverse(sum);
            Reverse(difference);
            Store(e + j, sum);
            Store(o + j, difference);
        }
    }
}

template <int W>
[[gnu::always_inline]] inline void TransformWith(double* x, const Tables& tables) {
    BitReverse(x, tables);
    EightPointPass(x);
    for (int half = 8; half < kSize; half *= 2) ButterflyStage<W>(x, half, tables);
}

void TransformTwoWide(double* x, const Tables& tables) { TransformWith<2>(x, tables); }

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
__attribute__((target("avx2"))) void TransformFourWide(double* x, const Tables& tables) {
    TransformWith<4>(x, tables);
}
bool HaveFourWide() {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2");
}
#else
void TransformFourWide(double* x, const Tables& tables) { TransformWith<4>(x, tables); }
bool HaveFourWide() { return false; }  // other processors keep to the two-wide form
#endif

}  // namespace

void FastHartleyTransform(std::span<double, kHartleySize> data) {
    const Tables& tables = SharedTables();
    if (tables.fourWide)
        TransformFourWide(data.data(), tables);
    else
        TransformTwoWide(data.data(), tables);
}

bool FastHartleyTransformWithLanes(std::span<double, kHartleySize> data, int lanes) {
    const Tables& tables = SharedTables();
    if (lanes == 2) {
        TransformTwoWide(data.data(), tables);
        return true;
    }
    if (lanes == 4 && tables.fourWide) {
        TransformFourWide(data.data(), tables);
        return true;
    }
    return false;
}

}  // namespace verdin
