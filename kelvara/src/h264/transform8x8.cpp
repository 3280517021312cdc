// transform8x8.cpp - the exported 8x8 luma transforms of H.264.

#include "transform8x8.h"
#include "../common/checks.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

// source, destination
template <class T>
static KelStatus forwardTransform(const Kel16s *pSrc, T *pDst) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    const Transformed8x8<forwardColumns> coeffs{Block8x8<Kel16s>(pSrc)};
    Block8x8<T> block;
    for (int i = 0; i < 64; ++i) {
        const int low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
        block.at[i] = static_cast<T>(std::clamp(coeffs(i / 8, i % 8), low, high));
    }
    block.storeTo(pDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliTransformFwdLuma8x8_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst) {
    return forwardTransform(pSrc, pDst);
}

KelStatus keliTransformFwdLuma8x8_H264_16s32s_C1(const Kel16s *pSrc, Kel32s *pDst) {
    return forwardTransform(pSrc, pDst);
}

KelStatus keliTransformInvAddPredLuma8x8_H264_32s16u_C1R(const Kel16u *pPred, int predStep,
                                                         const Kel32s *pCoeffs, Kel16u *pDst, int dstStep,
                                                         int bitDepth) {
    if (anyNull(pPred, pCoeffs, pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel16u>(predStep, 8) || tooNarrow<Kel16u>(dstStep, 8)) return kelStsStepErr;
    if (bitDepth < 1 || bitDepth > 16) return kelStsRangeErr;
    const Residual8x8 residual{Block8x8<Kel32s>(pCoeffs)};
    const Samples<Kel16u> pred(pPred, predStep);
    const Target<Kel16u> dst(pDst, dstStep);
    const int white = (1 << bitDepth) - 1;
    for (int row = 0; row < 8; ++row) {
        for (int col = 0; col < 8; ++col) {
            dst.set(row, col, std::clamp(pred(row, col) + residual(row, col), 0, white));
        }
    }
    return kelStsNoErr;
}
