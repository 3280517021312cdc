// dctransform.cpp - the exported transforms and quantisers of DC coefficients of H.264.

#include "quantise.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

// QP'c,dc of 4:2:2 is 3 more than QP'c.
template <class T, int N>
static bool isDCQP(int qp) {
    return N == 8 ? qp >= 0 && qp <= maxQP<T>() + 3 : isQP<T>(qp);
}

// ---- forward ---------------------------------------------------------------------------

// What is told of how DC coefficients are to be quantised.
struct DCOrder {
    int qp;
    bool intra, needTransform;
};

// Halved where 16 bits would not hold them: a sum of 16 coefficients of 8-bit samples.
static Words<16> forwardDC(const Words<16> &dc) {
    Words<16> x = transformedDC(dc);
    for (Kel32u &value : x.at) value = halved(value + 1, 1);
    return x;
}
static Words<8> forwardDC(const Words<8> &dc) {
    return transformedDC(dc);
}
static Words<4> forwardDC(const Words<4> &dc) {
    return transformedDC(dc);
}

// The quantiser's twofold step has the rest of the transform's norm in it.
template <class T, int N>
static Levels<T, N> dcLevels(T *pSrcDst, T *pTransformed, const DCOrder &order, const Kel16s *pScaleLevels) {
    if (order.needTransform) forwardDC(Words<N>(pSrcDst)).storeTo(pTransformed);
    Words<N> factors;
    std::fill_n(factors.at, N, forwardScale(order.qp, pScaleLevels).at[0]);
    return quantised<T>(Words<N>(pTransformed), factors, 16 + order.qp / 6, order.intra);
}

template <class T>
static KelStatus quantiseLumaDC(T *pSrcDst, T *pTransformed, const DCOrder &order, int *pNumCoeffs,
                                const Kel16s *pScan, int *pLastCoeff, const Kel16s *pScaleLevels) {
    if (anyNull(pSrcDst, pTransformed, pNumCoeffs, pScan, pLastCoeff)) return kelStsNullPtrErr;
    const Words<16> scan(pScan);
    if (!isQP<T>(order.qp) || !isScan(scan)) return kelStsRangeErr;
    const auto levels = dcLevels<T, 16>(pSrcDst, pTransformed, order, pScaleLevels);
    levels.storeTo(pSrcDst);
    store(pNumCoeffs, levels.count());
    store(pLastCoeff, levels.last(scan));
    return kelStsNoErr;
}

// N is 4 or 8.
template <int N, class T>
static KelStatus quantiseChromaDC(T *pSrcDst, T *pTransformed, const DCOrder &order, int *pNumCoeffs,
                                  const Kel16s *pScaleLevels) {
    if (anyNull(pSrcDst, pTransformed, pNumCoeffs)) return kelStsNullPtrErr;
    if (!isDCQP<T, N>(order.qp)) return kelStsRangeErr;
    const auto levels = dcLevels<T, N>(pSrcDst, pTransformed, order, pScaleLevels);
    levels.storeTo(pSrcDst);
    store(pNumCoeffs, levels.count());
    return kelStsNoErr;
}

// ---- inverse ---------------------------------------------------------------------------

// N is 16, 4 or 8.
template <int N, class T>
static KelStatus dequantiseDC(T *pSrcDst, int qp, const Kel16s *pScaleLevels) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    if (!isDCQP<T, N>(qp)) return kelStsRangeErr;
    dequantisedDC(Words<N>(pSrcDst), qp, dcLevelScale(qp, pScaleLevels)).storeTo(pSrcDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

// ---- forward, luma ---------------------------------------------------------------------

KelStatus keliTransformQuantFwdLumaDC4x4_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP,
                                                      int *pNumCoeffs, int needTransform, const Kel16s *pScan,
                                                      int *pLastCoeff, const Kel16s *pScaleLevels) {
    return quantiseLumaDC(pSrcDst, pTransformed, {QP, true, needTransform != 0}, pNumCoeffs, pScan,
                          pLastCoeff, pScaleLevels);
}

KelStatus keliTransformQuantFwdLumaDC4x4_H264_32s_C1I(Kel32s *pSrcDst, Kel32s *pTransformed, int QP,
                                                      int *pNumCoeffs, int needTransform, const Kel16s *pScan,
                                                      int *pLastCoeff, const Kel16s *pScaleLevels) {
    return quantiseLumaDC(pSrcDst, pTransformed, {QP, true, needTransform != 0}, pNumCoeffs, pScan,
                          pLastCoeff, pScaleLevels);
}

KelStatus keliTransformQuantLumaDC_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP,
                                                int *pNumCoeffs, int needTransform, const Kel16s *pScan,
                                                int *pLastCoeff) {
    return quantiseLumaDC(pSrcDst, pTransformed, {QP, true, needTransform != 0}, pNumCoeffs, pScan,
                          pLastCoeff, nullptr);
}

// ---- forward, chroma -------------------------------------------------------------------

KelStatus keliTransformQuantFwdChromaDC2x2_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP,
                                                        int *pNumCoeffs, int intra, int needTransform,
                                                        const Kel16s *pScaleLevels) {
    return quantiseChromaDC<4>(pSrcDst, pTransformed, {QP, intra != 0, needTransform != 0}, pNumCoeffs,
                               pScaleLevels);
}

KelStatus keliTransformQuantFwdChromaDC2x2_H264_32s_C1I(Kel32s *pSrcDst, Kel32s *pTransformed, int QP,
                                                        int *pNumCoeffs, int intra, int needTransform,
                                                        const Kel16s *pScaleLevels) {
    return quantiseChromaDC<4>(pSrcDst, pTransformed, {QP, intra != 0, needTransform != 0}, pNumCoeffs,
                               pScaleLevels);
}

KelStatus keliTransformQuantFwdChromaDC2x4_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP,
                                                        int *pNumCoeffs, int intra, int needTransform,
                                                        const Kel16s *pScaleLevels) {
    return quantiseChromaDC<8>(pSrcDst, pTransformed, {QP, intra != 0, needTransform != 0}, pNumCoeffs,
                               pScaleLevels);
}

KelStatus keliTransformQuantFwdChromaDC2x4_H264_32s_C1I(Kel32s *pSrcDst, Kel32s *pTransformed, int QP,
                                                        int *pNumCoeffs, int intra, int needTransform,
                                                        const Kel16s *pScaleLevels) {
    return quantiseChromaDC<8>(pSrcDst, pTransformed, {QP, intra != 0, needTransform != 0}, pNumCoeffs,
                               pScaleLevels);
}

KelStatus keliTransformQuantChromaDC_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP,
                                                  int *pNumCoeffs, int intra, int needTransform) {
    return quantiseChromaDC<4>(pSrcDst, pTransformed, {QP, intra != 0, needTransform != 0}, pNumCoeffs,
                               nullptr);
}

// ---- inverse ---------------------------------------------------------------------------

KelStatus keliTransformQuantInvLumaDC4x4_H264_16s_C1I(Kel16s *pSrcDst, int QP, const Kel16s *pScaleLevels) {
    return dequantiseDC<16>(pSrcDst, QP, pScaleLevels);
}

KelStatus keliTransformQuantInvLumaDC4x4_H264_32s_C1I(Kel32s *pSrcDst, int QP, const Kel16s *pScaleLevels) {
    return dequantiseDC<16>(pSrcDst, QP, pScaleLevels);
}

KelStatus keliTransformQuantInvChromaDC2x2_H264_16s_C1I(Kel16s *pSrcDst, int QP, const Kel16s *pScaleLevels) {
    return dequantiseDC<4>(pSrcDst, QP, pScaleLevels);
}

KelStatus keliTransformQuantInvChromaDC2x2_H264_32s_C1I(Kel32s *pSrcDst, int QP, const Kel16s *pScaleLevels) {
    return dequantiseDC<4>(pSrcDst, QP, pScaleLevels);
}

KelStatus keliTransformQuantInvChromaDC2x4_H264_16s_C1I(Kel16s *pSrcDst, int QP, const Kel16s *pScaleLevels) {
    return dequantiseDC<8>(pSrcDst, QP, pScaleLevels);
}

KelStatus keliTransformQuantInvChromaDC2x4_H264_32s_C1I(Kel32s *pSrcDst, int QP, const Kel16s *pScaleLevels) {
    return dequantiseDC<8>(pSrcDst, QP, pScaleLevels);
}

KelStatus keliTransformDequantLumaDC_H264_16s_C1I(Kel16s *pSrcDst, int QP) {
    return dequantiseDC<16>(pSrcDst, QP, nullptr);
}

KelStatus keliTransformDequantChromaDC_H264_16s_C1I(Kel16s *pSrcDst, int QP) {
    return dequantiseDC<4>(pSrcDst, QP, nullptr);
}
