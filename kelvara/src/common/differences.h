// differences.h - differences between a block and its prediction: kernels and argument checks.

#ifndef KELVARA_DIFFERENCES_H
#define KELVARA_DIFFERENCES_H

#include "prediction.h"

#include <functional>

namespace kelvara {

// ---- kernels -------------------------------------------------------------------

template <int W, int H, class Cur, class Pred, class Dst>
inline void differences(Cur cur, const Pred &pred, Dst dst) {
    for (int row = 0; row < H; ++row) {
        for (int col = 0; col < W; ++col) dst.set(row, col, cur(row, col) - pred(row, col));
    }
}

template <int W, int H, class Cur, class Pred>
inline int sumOfSquares(Cur cur, const Pred &pred) {
    int sum = 0;
    for (int row = 0; row < H; ++row) {
        for (int col = 0; col < W; ++col) {
            const int difference = cur(row, col) - pred(row, col);
            sum += difference * difference;
        }
    }
    return sum;
}

// ---- argument checks; From is Reference or Bidirectional --------------------------

// current, step, reference, destination, step, rounding
template <int W, int H, class From>
inline KelStatus getDiff(const Kel8u *pCur, int curStep, const From &from, Kel16s *pDst, int dstStep,
                         int roundControl) {
    if (anyNull(pCur) || anyNull(from) || anyNull(pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(curStep, W) || tooNarrow(from, W) || tooNarrow<Kel16s>(dstStep, W))
        return kelStsStepErr;
    if (!isMcType(from) || !isRoundControl(roundControl)) return kelStsRangeErr;
    differences<W, H>(Samples<Kel8u>(pCur, curStep), Prediction<W, H>(from, roundControl),
                      Target<Kel16s>(pDst, dstStep));
    return kelStsNoErr;
}

// The same, and the prediction is stored too.
template <int W, int H>
inline KelStatus getDiff(const Kel8u *pCur, int curStep, const Reference &ref, Kel16s *pDst, int dstStep,
                         Kel16s *pPred, int predStep, int roundControl) {
    if (anyNull(pCur) || anyNull(ref) || anyNull(pDst, pPred)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(curStep, W) || tooNarrow(ref, W)) return kelStsStepErr;
    if (tooNarrow<Kel16s>(dstStep, W) || tooNarrow<Kel16s>(predStep, W)) return kelStsStepErr;
    if (!isMcType(ref) || !isRoundControl(roundControl)) return kelStsRangeErr;
    const Prediction<W, H> pred(ref, roundControl);
    differences<W, H>(Samples<Kel8u>(pCur, curStep), pred, Target<Kel16s>(pDst, dstStep));
    const Target<Kel16s> kept(pPred, predStep);
    for (int row = 0; row < H; ++row) {
        for (int col = 0; col < W; ++col) kept.set(row, col, pred(row, col));
    }
    return kelStsNoErr;
}

// Rows of 8 interleaved pairs; the differences of each channel go to a block of their own.
template <int H, class From>
inline KelStatus getDiffPlanes(const Kel8u *pCur, int curStep, const From &from, Kel16s *pDstU, int dstStepU,
                               Kel16s *pDstV, int dstStepV, int roundControl) {
    if (anyNull(pCur) || anyNull(from) || anyNull(pDstU, pDstV)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(curStep, 16) || tooNarrow(from, 16)) return kelStsStepErr;
    if (tooNarrow<Kel16s>(dstStepU, 8) || tooNarrow<Kel16s>(dstStepV, 8)) return kelStsStepErr;
    if (!isMcType(from) || !isRoundControl(roundControl)) return kelStsRangeErr;
    const Samples<Kel8u> cur(pCur, curStep);
    const Prediction<16, H, 2> pred(from, roundControl);
    const Target<Kel16s> planes[] = {{pDstU, dstStepU}, {pDstV, dstStepV}};
    for (int channel = 0; channel < 2; ++channel)
        differences<8, H>(Interleaved(cur, channel), Interleaved(std::cref(pred), channel), planes[channel]);
    return kelStsNoErr;
}

// current, step, reference, result
template <int W, int H, class From>
inline KelStatus squaredDiff(const Kel8u *pCur, int curStep, const From &from, Kel32s *pSum) {
    if (anyNull(pCur) || anyNull(from) || anyNull(pSum)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(curStep, W) || tooNarrow(from, W)) return kelStsStepErr;
    if (!isMcType(from)) return kelStsRangeErr;
    store<Kel32s>(pSum, sumOfSquares<W, H>(Samples<Kel8u>(pCur, curStep), Prediction<W, H>(from, 0)));
    return kelStsNoErr;
}

} // namespace kelvara

#endif
