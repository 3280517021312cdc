// satd.h - sums of absolute transformed differences: kernels and argument checks.

#ifndef KELVARA_SATD_H
#define KELVARA_SATD_H

#include "sad.h"

namespace kelvara {

// One-dimensional Hadamard transform of N values that lie `stride` apart, in place; N is a power of 2. The
// order of the outputs is that of the butterflies, which a sum of magnitudes does not see.
template <int N>
inline void hadamard(int *x, int stride) {
    for (int half = 1; half < N; half *= 2) {
        for (int i = 0; i < N; ++i) {
            if (i & half) continue;
            const int a = x[i * stride], b = x[(i + half) * stride];
            x[i * stride] = a + b;
            x[(i + half) * stride] = a - b;
        }
    }
}

// Sum of the magnitudes of the N x N Hadamard transform of the differences.
template <int N, class Src, class Ref>
inline int hadamardSum(Src src, Ref ref) {
    int d[N * N];
    for (int row = 0; row < N; ++row) {
        for (int col = 0; col < N; ++col) d[row * N + col] = src(row, col) - ref(row, col);
    }
    for (int i = 0; i < N; ++i) hadamard<N>(d + i * N, 1);
    for (int i = 0; i < N; ++i) hadamard<N>(d + i, N);
    int sum = 0;
    for (int i = 0; i < N * N; ++i) sum += std::abs(d[i]);
    return sum;
}

// ---- measures --------------------------------------------------------------------

// Halves of the 4x4 sums, which are even: a flat difference weighs half of its SAD.
template <int W, int H>
struct Satd {
    static constexpr int width = W;

    template <class Src, class Ref, class R>
    static void run(Src src, Ref ref, R *pSAT) {
        int sum = 0;
        for (int row = 0; row < H; row += 4) {
            for (int col = 0; col < W; col += 4) {
                sum += hadamardSum<4>(src.from(row, col), ref.from(row, col)) / 2;
            }
        }
        store<R>(pSAT, sum);
    }
};

// A quarter of the 8x8 sum, rounded to the nearest: the same weight for a flat difference.
struct Sat8x8 {
    static constexpr int width = 8;

    template <class Src, class Ref, class R>
    static void run(Src src, Ref ref, R *pSAT) {
        store<R>(pSAT, (hadamardSum<8>(src, ref) + 2) / 4);
    }
};

// ---- argument check: source, step, reference, step, result --------------------------

template <class Measure, class T, class R>
inline KelStatus compareBlocks(const T *pSrc, int srcStep, const T *pRef, int refStep, R *pDst) {
    return compareBlocks<Measure>(pSrc, srcStep, pRef, refStep, pDst, McFF);
}

} // namespace kelvara

#endif
