// quantise8x8.cpp - the exported quantisers of 8x8 luma blocks of H.264, and their transforms of 8-bit
// samples.

#include "quantise.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

template <class T>
static bool isQp6(int qp6) {
    return qp6 >= 0 && qp6 <= maxQP<T>() / 6;
}

// coefficients, levels
template <class T>
static KelStatus quantise(const T *pSrc, T *pDst, int qp6, bool intra, const Kel16s *pScan,
                          const Kel16s *pScaleLevels, int *pNumLevels, int *pLastCoeff) {
    if (anyNull(pSrc, pDst, pScan, pScaleLevels, pNumLevels, pLastCoeff)) return kelStsNullPtrErr;
    const Words<64> scan(pScan);
    if (!isQp6<T>(qp6) || !isScan(scan)) return kelStsRangeErr;
    const auto levels = quantised<T>(Words<64>(pSrc), Words<64>(pScaleLevels), 16 + qp6, intra);
    levels.storeTo(pDst);
    store(pNumLevels, levels.count());
    store(pLastCoeff, levels.last(scan));
    return kelStsNoErr;
}

template <class T>
static KelStatus dequantise(T *pSrcDst, int qp6, const Kel16s *pScaleLevels) {
    if (anyNull(pSrcDst, pScaleLevels)) return kelStsNullPtrErr;
    if (!isQp6<T>(qp6)) return kelStsRangeErr;
    scaledWords8x8(Words<64>(pSrcDst), 6 * qp6, pScaleLevels).storeTo(pSrcDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

// ---- transforms ------------------------------------------------------------------------

KelStatus keliTransformLuma8x8Fwd_H264_16s_C1I(Kel16s *pSrcDst) {
    return keliTransformFwdLuma8x8_H264_16s_C1(pSrcDst, pSrcDst);
}

KelStatus keliTransformLuma8x8InvAddPred_H264_16s8u_C1R(const Kel8u *pPred, int predStep,
                                                        const Kel16s *pCoeffs, Kel8u *pDst, int dstStep) {
    if (anyNull(pPred, pCoeffs, pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(predStep, 8) || tooNarrow<Kel8u>(dstStep, 8)) return kelStsStepErr;
    const Residual8x8 residual{Block8x8<Kel16s>(pCoeffs)};
    const Samples<Kel8u> pred(pPred, predStep);
    const Target<Kel8u> dst(pDst, dstStep);
    for (int row = 0; row < 8; ++row) {
        for (int col = 0; col < 8; ++col) {
            dst.set(row, col, std::clamp(pred(row, col) + residual(row, col), 0, 255));
        }
    }
    return kelStsNoErr;
}

// ---- quantisers ------------------------------------------------------------------------

KelStatus keliQuantLuma8x8_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int Qp6, int intra,
                                       const Kel16s *pScan, const Kel16s *pScaleLevels, int *pNumLevels,
                                       int *pLastCoeff) {
    return quantise(pSrc, pDst, Qp6, intra != 0, pScan, pScaleLevels, pNumLevels, pLastCoeff);
}

KelStatus keliQuantLuma8x8_H264_32s_C1(const Kel32s *pSrc, Kel32s *pDst, int Qp6, int intra,
                                       const Kel16s *pScan, const Kel16s *pScaleLevels, int *pNumLevels,
                                       int *pLastCoeff) {
    return quantise(pSrc, pDst, Qp6, intra != 0, pScan, pScaleLevels, pNumLevels, pLastCoeff);
}

KelStatus keliQuantLuma8x8Inv_H264_16s_C1I(Kel16s *pSrcDst, int Qp6, const Kel16s *pScaleLevels) {
    return dequantise(pSrcDst, Qp6, pScaleLevels);
}

KelStatus keliQuantInvLuma8x8_H264_32s_C1I(Kel32s *pSrcDst, int Qp6, const Kel16s *pScaleLevels) {
    return dequantise(pSrcDst, Qp6, pScaleLevels);
}
