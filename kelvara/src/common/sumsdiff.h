// sumsdiff.h - differences of two blocks and their sums over 4x4 blocks: kernel and argument check.

#ifndef KELVARA_SUMSDIFF_H
#define KELVARA_SUMSDIFF_H

#include "checks.h"
#include "samples.h"

#include <algorithm>

namespace kelvara {

// The difference of wide samples can leave 16 bits.
inline Kel16s clampTo16s(int value) {
    return static_cast<Kel16s>(std::clamp(value, -32768, 32767));
}

template <class Src, class Pred>
inline int sumOfDiff4x4(Src src, Pred pred, Kel16s *pDiff) {
    int sum = 0;
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 4; ++col) {
            const int difference = src(row, col) - pred(row, col);
            if (pDiff) store<Kel16s>(pDiff + 4 * row + col, clampTo16s(difference));
            sum += difference;
        }
    }
    return sum;
}

template <int Size, class Src, class Pred, class S>
inline void sumsOfDiff(Src src, Pred pred, S *pSums, Kel16s *pDiff) {
    for (int row = 0; row < Size; row += 4) {
        for (int col = 0; col < Size; col += 4) {
            store<S>(pSums++, static_cast<S>(sumOfDiff4x4(src.from(row, col), pred.from(row, col), pDiff)));
            if (pDiff) pDiff += 16;
        }
    }
}

// source, step, prediction, step (both in samples), sums, differences or null
template <int Size, class T, class S>
inline KelStatus sumsDiff(const T *pSrc, int srcStep, const T *pPred, int predStep, S *pSums, Kel16s *pDiff) {
    if (anyNull(pSrc, pPred, pSums)) return kelStsNullPtrErr;
    if (srcStep < Size || predStep < Size) return kelStsStepErr;
    constexpr std::ptrdiff_t bytes = sizeof(T);
    sumsOfDiff<Size>(Samples<T>(pSrc, srcStep * bytes), Samples<T>(pPred, predStep * bytes), pSums, pDiff);
    return kelStsNoErr;
}

} // namespace kelvara

#endif
