// transform4x4.cpp - the exported 4x4 transforms of H.264 without quantisation.

#include "transform4x4.h"
#include "../common/checks.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

// source, destination
template <class T>
static KelStatus forwardTransform(const T *pSrc, T *pDst) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    forward4x4(Words4x4(pSrc)).storeTo(pDst);
    return kelStsNoErr;
}

// source, destination
template <class T>
static KelStatus inverseTransform(const T *pSrc, T *pDst) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    Residual4x4(Words4x4(pSrc)).words().storeTo(pDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliTransformResidual4x4Fwd_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst) {
    return forwardTransform(pSrc, pDst);
}

KelStatus keliTransformResidual4x4Fwd_H264_32s_C1(const Kel32s *pSrc, Kel32s *pDst) {
    return forwardTransform(pSrc, pDst);
}

KelStatus keliTransformResidual4x4Inv_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst) {
    return inverseTransform(pSrc, pDst);
}

KelStatus keliTransformResidual4x4Inv_H264_32s_C1(const Kel32s *pSrc, Kel32s *pDst) {
    return inverseTransform(pSrc, pDst);
}

KelStatus keliTransformPrediction_H264_8u16s_C1(const Kel8u *pSrc, int srcStep, Kel16s *pDst) {
    if (anyNull(pSrc) || anyNull(pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcStep, 4)) return kelStsStepErr;
    const Samples<Kel8u> samples(pSrc, srcStep);
    Words4x4 block;
    for (int i = 0; i < 16; ++i) block.at[i] = static_cast<Kel32u>(samples(i / 4, i % 4));
    forward4x4(block).storeTo(pDst);
    return kelStsNoErr;
}
