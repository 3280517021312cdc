// compensation.h - predictions with the residual added: kernel and argument check.

#ifndef KELVARA_COMPENSATION_H
#define KELVARA_COMPENSATION_H

#include "prediction.h"

#include <algorithm>

namespace kelvara {

// ISO/IEC 13818-2 7.6.8: the sum of prediction and residual, limited to the range of a sample.
template <int W, int H, class Pred, class Residual, class Dst>
inline void addResidual(const Pred &pred, Residual residual, Dst dst) {
    for (int row = 0; row < H; ++row) {
        for (int col = 0; col < W; ++col) {
            dst.set(row, col, std::clamp(pred(row, col) + residual(row, col), 0, 255));
        }
    }
}

// From is Reference or Bidirectional.
template <int W, int H, int channels = 1, class From>
inline KelStatus compensate(const From &from, const Kel16s *pResidual, int residualStep, Kel8u *pDst,
                            int dstStep, int roundControl) {
    if (anyNull(from) || anyNull(pResidual) || anyNull(pDst)) return kelStsNullPtrErr;
    if (tooNarrow(from, W) || tooNarrow<Kel16s>(residualStep, W) || tooNarrow<Kel8u>(dstStep, W))
        return kelStsStepErr;
    if (!isMcType(from) || !isRoundControl(roundControl)) return kelStsRangeErr;
    const Prediction<W, H, channels> pred(from, roundControl);
    addResidual<W, H>(pred, Samples<Kel16s>(pResidual, residualStep), Target<Kel8u>(pDst, dstStep));
    return kelStsNoErr;
}

} // namespace kelvara

#endif
