#pragma once
// The 512-point fast Hartley transform on W blocks at once (W = 2 or 4), for the
// equalizer, which always has several blocks to transform: both channels of a hop, and
// consecutive hops. The blocks are interleaved, entry n of block l at data[n * W + l], so
// every step is one vector operation over all W blocks and no lane ever looks at another:
// each block gets the same arithmetic whatever its lane and whatever W is.
//
// The two directions leave out the bit-reversal pass that the one-block transform does:
//  - ToBitReversed takes the blocks in natural order and leaves bin k at position
//    reverse(k) (the butterfly stages of FromBitReversed, transposed, in reverse order:
//    the transform's matrix is symmetric, so this is the same transform);
//  - FromBitReversed takes bin k at position reverse(k) and leaves natural order.
// Whatever is done to the spectrum in between only has to know where each bin sits.
// FromBitReversed(ToBitReversed(x)) is x times 512, like the transform applied twice.
//
// These are always-inline templates: the caller instantiates them inside a function
// compiled for the vector width it runs (see EqualizedHops.cpp).
#include "engine/equalizer/HartleyFactors.h"

#include <cstdint>
#include <cstring>
#include <numbers>

namespace verdin::lanes {

inline constexpr int kPoints = 512;

template <int W>
struct LaneVector;
template <>
struct LaneVector<2> {
    typedef double Type __attribute__((vector_size(16)));
    typedef int32_t Integers __attribute__((vector_size(8)));
};
template <>
struct LaneVector<4> {
    typedef double Type __attribute__((vector_size(32)));
    typedef int32_t Integers __attribute__((vector_size(16)));
};

// By reference: vectors wider than the default target's registers must not be passed by
// value through functions compiled without them.
template <class V>
[[gnu::always_inline]] inline void Load(V& v, const double* p) {
    std::memcpy(&v, p, sizeof v);
}
template <class V>
[[gnu::always_inline]] inline void Store(double* p, const V& v) {
    std::memcpy(p, &v, sizeof v);
}
template <class V>
[[gnu::always_inline]] inline void Splat(V& v, double value) {
    if constexpr (sizeof(V) == 4 * sizeof(double)) v = V{value, value, value, value};
    else v = V{value, value};
}

// Stages of length 2, 4 and 8 on one group of eight positions. Transposed, the pass reads
// and writes its positions in 3-bit reversed order (it is the 8-point transform with its
// input in that order, and the transpose swaps the orders of input and output).
template <int W, bool Transposed>
[[gnu::always_inline]] inline void EightPoint(double* x) {
    using V = typename LaneVector<W>::Type;
    constexpr int kAt[8] = {0, Transposed ? 4 : 1, 2, Transposed ? 6 : 3, Transposed ? 1 : 4, 5, Transposed ? 3 : 6, 7};
    V g0, g1, g2, g3, g4, g5, g6, g7;
    Load(g0, x + kAt[0] * W);
    Load(g1, x + kAt[1] * W);
    Load(g2, x + kAt[2] * W);
    Load(g3, x + kAt[3] * W);
    Load(g4, x + kAt[4] * W);
    Load(g5, x + kAt[5] * W);
    Load(g6, x + kAt[6] * W);
    Load(g7, x + kAt[7] * W);
    const V a0 = g0 + g1, a1 = g0 - g1, a2 = g2 + g3, a3 = g2 - g3;
    const V b0 = g4 + g5, b1 = g4 - g5, b2 = g6 + g7, b3 = g6 - g7;
    const V e0 = a0 + a2, e1 = a1 + a3, e2 = a0 - a2, e3 = a1 - a3;
    const V o0 = b0 + b2, o1 = b1 + b3, o2 = b0 - b2, o3 = b1 - b3;
    V halfSqrt2;
    Splat(halfSqrt2, std::numbers::sqrt2 * 0.5);
    const V t1 = (o1 + o3) * halfSqrt2;
    const V t3 = (o1 - o3) * halfSqrt2;
    Store(x + kAt[0] * W, e0 + o0);
    Store(x + kAt[4] * W, e0 - o0);
    Store(x + kAt[2] * W, e2 + o2);
    Store(x + kAt[6] * W, e2 - o2);
    Store(x + kAt[1] * W, e1 + t1);
    Store(x + kAt[5] * W, e1 - t1);
    Store(x + kAt[3] * W, e3 + t3);
    Store(x + kAt[7] * W, e3 - t3);
}

template <class V>
[[gnu::always_inline]] inline void SumDifference(V& a, V& b) {
    const V first = a;
    a = first + b;
    b = first - b;
}

// One decimation-in-time butterfly of a stage of half length M: bins k and M-k of the
// even half (ek, ej) and of the odd half (ok, oj), with c = cos(pi k / M), s = sin(pi k / M):
//   H[k]     = E[k] + c O[k] + s O[M-k]      H[M-k]     = E[M-k] + s O[k] - c O[M-k]
//   H[k + M] = E[k] - c O[k] - s O[M-k]      H[2M-k]    = E[M-k] - s O[k] + c O[M-k]
template <class V>
[[gnu::always_inline]] inline void TimeButterfly(V& ek, V& ej, V& ok, V& oj, const V& c, const V& s) {
    const V tk = c * ok + s * oj;
    const V tj = s * ok - c * oj;
    ok = ek - tk;
    ek = ek + tk;
    oj = ej - tj;
    ej = ej + tj;
}

// Its transpose: sums and differences first, then the differences turned.
template <class V>
[[gnu::always_inline]] inline void FrequencyButterfly(V& ek, V& ej, V& ok, V& oj, const V& c, const V& s) {
    const V dk = ek - ok, dj = ej - oj;
    ek = ek + ok;
    ej = ej + oj;
    ok = c * dk + s * dj;
    oj = s * dk - c * dj;
}

// Two stages at once, of half lengths M and 2M, on blocks of 4M positions: each pass over
// the data does the work of two. Positions k, M-k, M+k, 2M-k, 2M+k, 3M-k, 3M+k and 4M-k
// are closed under both stages: the M stage pairs them within each half, the 2M stage
// pairs k with 2M-k (bin k) and M-k with M+k (bin M-k). Positions 0, M, 2M, 3M and the
// ones at M/2 steps pair with themselves in one of the stages and are done apart.
// Transposed, the stages run the other way round with their transposed butterflies.
template <int W, bool Transposed>
[[gnu::always_inline]] inline void StagePair(double* x, int half, const HartleyFactors& factors) {
    using V = typename LaneVector<W>::Type;
    const int m = half;
    const double* cosineM = factors.CosinesOf(m);
    const double* sineM = factors.SinesOf(m);
    const double* cosine2M = factors.CosinesOf(2 * m);
    const double* sine2M = factors.SinesOf(2 * m);
    auto butterfly = [](V& ek, V& ej, V& ok, V& oj, const V& c, const V& s) {
        if constexpr (Transposed) FrequencyButterfly(ek, ej, ok, oj, c, s);
        else TimeButterfly(ek, ej, ok, oj, c, s);
    };
    {
        V c, s;
        Splat(c, cosine2M[m / 2 - 1]);
        Splat(s, sine2M[m / 2 - 1]);
        for (int base = 0; base < kPoints; base += 4 * m) {
            double* b = x + base * W;
            V a0, a1, a2, a3;  // positions 0, M, 2M, 3M: sums and differences in both stages
            Load(a0, b);
            Load(a1, b + m * W);
            Load(a2, b + 2 * m * W);
            Load(a3, b + 3 * m * W);
            if constexpr (!Transposed) SumDifference(a0, a1), SumDifference(a2, a3);
            SumDifference(a0, a2);
            SumDifference(a1, a3);
            if constexpr (Transposed) SumDifference(a0, a1), SumDifference(a2, a3);
            Store(b, a0);
            Store(b + m * W, a1);
            Store(b + 2 * m * W, a2);
            Store(b + 3 * m * W, a3);
            V h0, h1, h2, h3;  // positions M/2, 3M/2, 5M/2, 7M/2: alone in the M stage, bin M/2 in the 2M stage
            double* q = b + m / 2 * W;
            Load(h0, q);
            Load(h1, q + m * W);
            Load(h2, q + 2 * m * W);
            Load(h3, q + 3 * m * W);
            if constexpr (!Transposed) SumDifference(h0, h1), SumDifference(h2, h3);
            butterfly(h0, h1, h2, h3, c, s);
            if constexpr (Transposed) SumDifference(h0, h1), SumDifference(h2, h3);
            Store(q, h0);
            Store(q + m * W, h1);
            Store(q + 2 * m * W, h2);
            Store(q + 3 * m * W, h3);
        }
    }
    for (int k = 1; k < m / 2; ++k) {
        V cm, sm, ck, sk, cj, sj;
        Splat(cm, cosineM[k - 1]);
        Splat(sm, sineM[k - 1]);
        Splat(ck, cosine2M[k - 1]);
        Splat(sk, sine2M[k - 1]);
        Splat(cj, cosine2M[m - k - 1]);
        Splat(sj, sine2M[m - k - 1]);
        for (int base = 0; base < kPoints; base += 4 * m) {
            double* b = x + base * W;
            V v0, v1, v2, v3, v4, v5, v6, v7;
            Load(v0, b + k * W);
            Load(v1, b + (m - k) * W);
            Load(v2, b + (m + k) * W);
            Load(v3, b + (2 * m - k) * W);
            Load(v4, b + (2 * m + k) * W);
            Load(v5, b + (3 * m - k) * W);
            Load(v6, b + (3 * m + k) * W);
            Load(v7, b + (4 * m - k) * W);
            if constexpr (!Transposed) {
                butterfly(v0, v1, v2, v3, cm, sm);
                butterfly(v4, v5, v6, v7, cm, sm);
            }
            butterfly(v0, v3, v4, v7, ck, sk);
            butterfly(v1, v2, v5, v6, cj, sj);
            if constexpr (Transposed) {
                butterfly(v0, v1, v2, v3, cm, sm);
                butterfly(v4, v5, v6, v7, cm, sm);
            }
            Store(b + k * W, v0);
            Store(b + (m - k) * W, v1);
            Store(b + (m + k) * W, v2);
            Store(b + (2 * m - k) * W, v3);
            Store(b + (2 * m + k) * W, v4);
            Store(b + (3 * m - k) * W, v5);
            Store(b + (3 * m + k) * W, v6);
            Store(b + (4 * m - k) * W, v7);
        }
    }
}

// Stages of half length 8 and 16, 32 and 64, 128 and 256 after the 8-point pass.
template <int W>
[[gnu::always_inline]] inline void ToBitReversed(double* x, const HartleyFactors& factors) {
    for (int half = kPoints / 4; half >= 8; half /= 4) StagePair<W, true>(x, half, factors);
    for (int group = 0; group < kPoints; group += 8) EightPoint<W, true>(x + group * W);
}

template <int W>
[[gnu::always_inline]] inline void FromBitReversed(double* x, const HartleyFactors& factors) {
    for (int group = 0; group < kPoints; group += 8) EightPoint<W, false>(x + group * W);
    for (int half = 8; half < kPoints; half *= 4) StagePair<W, false>(x, half, factors);
}

}  // namespace verdin::lanes
