// sad.h - sums of absolute differences: kernels and argument checks.

#ifndef KELVARA_SAD_H
#define KELVARA_SAD_H

#include "checks.h"
#include "halfsample.h"

#include <cstdlib>

namespace kelvara {

template <int W, int H, class Src, class Ref>
inline int sumOfAbs(Src src, Ref ref) {
    int sum = 0;
    for (int row = 0; row < H; ++row) {
        for (int col = 0; col < W; ++col) sum += std::abs(src(row, col) - ref(row, col));
    }
    return sum;
}

// ---- measures: what is stored of a pair of blocks ------------------------------

template <int W, int H>
struct Sad {
    static constexpr int width = W;

    template <class Src, class Ref, class R>
    static void run(Src src, Ref ref, R *pSAD) {
        store<R>(pSAD, static_cast<R>(sumOfAbs<W, H>(src, ref)));
    }
};

// One sum for each B x B block of a 16x16 block.
template <int B>
struct BlockSads {
    static constexpr int width = 16;

    template <class Src, class Ref, class R>
    static void run(Src src, Ref ref, R *pSAD) {
        for (int row = 0; row < 16; row += B) {
            for (int col = 0; col < 16; col += B) {
                store<R>(pSAD++, static_cast<R>(sumOfAbs<B, B>(src.from(row, col), ref.from(row, col))));
            }
        }
    }
};

// ---- argument checks -----------------------------------------------------------

// source, step, reference, step, results, mcType
template <class Measure, class T, class R>
inline KelStatus compareBlocks(const T *pSrc, int srcStep, const T *pRef, int refStep, R *pDst, int mcType) {
    if (anyNull(pSrc, pRef, pDst)) return kelStsNullPtrErr;
    if (tooNarrow<T>(srcStep, Measure::width) || tooNarrow<T>(refStep, Measure::width)) return kelStsStepErr;
    if (!isMcType(mcType)) return kelStsRangeErr;
    const Samples<T> src(pSrc, srcStep);
    atPosition(mcType, Samples<T>(pRef, refStep), [&](auto ref) { Measure::run(src, ref, pDst); });
    return kelStsNoErr;
}

// source, step, reference, step, results, number of results
template <int W, class T, class R>
inline KelStatus compareAlongRow(const T *pSrc, int srcStep, const T *pRef, int refStep, R *pSAD, int num) {
    if (anyNull(pSrc, pRef, pSAD)) return kelStsNullPtrErr;
    if (num < 1) return kelStsSizeErr;
    if (tooNarrow<T>(srcStep, W) || tooNarrow<T>(refStep, W - 1LL + num)) return kelStsStepErr;
    const Samples<T> src(pSrc, srcStep), ref(pRef, refStep);
    for (int i = 0; i < num; ++i) Sad<W, W>::run(src, ref.from(0, i), pSAD + i);
    return kelStsNoErr;
}

// The same and the index of the first smallest result.
template <int W, class T, class R>
inline KelStatus compareAlongRow(const T *pSrc, int srcStep, const T *pRef, int refStep, R *pSAD, int num,
                                 Kel32s *pMinIndex) {
    if (anyNull(pMinIndex)) return kelStsNullPtrErr;
    const KelStatus status = compareAlongRow<W>(pSrc, srcStep, pRef, refStep, pSAD, num);
    if (status != kelStsNoErr) return status;
    const Samples<R> sums(pSAD, 0);
    int best = 0;
    for (int i = 1; i < num; ++i) {
        if (sums(0, i) < sums(0, best)) best = i;
    }
    store<Kel32s>(pMinIndex, best);
    return kelStsNoErr;
}

} // namespace kelvara

#endif
