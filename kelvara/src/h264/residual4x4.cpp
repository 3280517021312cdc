// residual4x4.cpp - the exported reconstruction of 4x4 blocks of H.264: levels to residuals and samples.

#include "quantise.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

// What is told of how the levels of a block are to be scaled; T is their type.
template <class T>
struct BlockOrder {
    int qp;
    bool hasAC;
    const T *pDC; // scaled already; null: DC is a level of the block
    const Kel16s *pScaleLevels;
};

// Only levels that are there are read; levelAt tells where.
template <class T, class LevelAt>
static Words4x4 scaledCoeffs(LevelAt levelAt, const BlockOrder<T> &order) {
    Words4x4 levels{};
    const int first = order.pDC ? 1 : 0, end = order.hasAC ? 16 : 1;
    for (int i = first; i < end; ++i) levels.at[i] = static_cast<Kel32u>(levelAt(i));
    if (!order.pDC) return dequantised4x4(levels, order.qp, order.pScaleLevels);
    const T dc = load<T>(reinterpret_cast<const unsigned char *>(order.pDC));
    return dequantised4x4(levels, order.qp, order.pScaleLevels, dc);
}

template <class T>
static Residual4x4 residualOf(const T *pLevels, const BlockOrder<T> &order) {
    const Samples<T> levels(pLevels, 0);
    return Residual4x4(scaledCoeffs<T>([&](int i) { return levels(0, i); }, order));
}

// prediction, levels, destination; Sample is the type of samples and tells, with T, their range.
template <class Sample, class T>
static KelStatus reconstruct(const Sample *pPred, int predStep, const T *pLevels, Sample *pDst, int dstStep,
                             const BlockOrder<T> &order, int bitDepth) {
    if (anyNull(pPred, pLevels, pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Sample>(predStep, 4) || tooNarrow<Sample>(dstStep, 4)) return kelStsStepErr;
    if (!isQP<T>(order.qp) || bitDepth < 8 || bitDepth > 14) return kelStsRangeErr;
    const Residual4x4 residual = residualOf(pLevels, order);
    const Samples<Sample> pred(pPred, predStep);
    const Target<Sample> dst(pDst, dstStep);
    const int white = (1 << bitDepth) - 1;
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 4; ++col) {
            const Kel64s sum = Kel64s{pred(row, col)} + residual(row, col);
            dst.set(row, col, static_cast<int>(std::clamp<Kel64s>(sum, 0, white)));
        }
    }
    return kelStsNoErr;
}

static KelStatus dequantiseInPlace(Kel16s *pSrcDst, int step, const BlockOrder<Kel16s> &order) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel16s>(step, 4)) return kelStsStepErr;
    if (!isQP<Kel16s>(order.qp)) return kelStsRangeErr;
    const Samples<Kel16s> levels(pSrcDst, step);
    const auto levelAt = [&](int i) { return levels(i / 4, i % 4); };
    const Residual4x4 residual(scaledCoeffs<Kel16s>(levelAt, order));
    const Target<Kel16s> dst(pSrcDst, step);
    for (int i = 0; i < 16; ++i) dst.set(i / 4, i % 4, std::clamp(residual(i / 4, i % 4), -32768, 32767));
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliTransformQuantInvAddPred4x4_H264_16s_C1IR(const Kel8u *pPred, int predStep,
                                                        const Kel16s *pCoeffs, const Kel16s *pDC, Kel8u *pDst,
                                                        int dstStep, int QP, int AC,
                                                        const Kel16s *pScaleLevels) {
    const BlockOrder<Kel16s> order{QP, AC != 0, pDC, pScaleLevels};
    return reconstruct(pPred, predStep, pCoeffs, pDst, dstStep, order, 8);
}

KelStatus keliTransformQuantInvAddPred4x4_H264_32s_C1IR(const Kel16u *pPred, int predStep,
                                                        const Kel32s *pCoeffs, const Kel32s *pDC,
                                                        Kel16u *pDst, int dstStep, int QP, int AC,
                                                        int bitDepth, const Kel16s *pScaleLevels) {
    const BlockOrder<Kel32s> order{QP, AC != 0, pDC, pScaleLevels};
    return reconstruct(pPred, predStep, pCoeffs, pDst, dstStep, order, bitDepth);
}

KelStatus keliDequantTransformResidualAndAdd_H264_16s_C1I(const Kel8u *pPred, const Kel16s *pCoeffs,
                                                          const Kel16s *pDC, Kel8u *pDst, int predStep,
                                                          int dstStep, int QP, int AC) {
    const BlockOrder<Kel16s> order{QP, AC != 0, pDC, nullptr};
    return reconstruct(pPred, predStep, pCoeffs, pDst, dstStep, order, 8);
}

KelStatus keliDequantTransformResidual_H264_16s_C1I(Kel16s *pSrcDst, int srcDstStep, const Kel16s *pDC,
                                                    int AC, int QP) {
    return dequantiseInPlace(pSrcDst, srcDstStep, {QP, AC != 0, pDC, nullptr});
}
