// quantise4x4.cpp - the exported quantisers of 4x4 blocks of H.264.

#include "quantise.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

// What all quantisers of 4x4 blocks are told beside their data.
struct Order {
    int qp;
    int intra;
    const Kel16s *pScan;
};

// The levels of coefficients and what is counted of them.
template <class T>
static void storeLevels(const Words4x4 &coeffs, const Words4x4 &factors, const Order &order, T *pDst,
                        int *pNumCoeffs, int *pLastCoeff) {
    const auto levels = quantised<T>(coeffs, factors, 15 + order.qp / 6, order.intra != 0);
    const int last = levels.last(Words4x4(order.pScan));
    levels.storeTo(pDst);
    store(pNumCoeffs, levels.count());
    store(pLastCoeff, last);
}

// T tells the range of QP.
template <class T>
static bool inRange(const Order &order) {
    return isQP<T>(order.qp) && isScan(Words4x4(order.pScan));
}

// residual, levels: core transform and quantisation
template <class T>
static KelStatus transformAndQuantise(const Kel16s *pSrc, T *pDst, int *pNumCoeffs, const Order &order,
                                      int *pLastCoeff, const Kel16s *pScaleLevels) {
    if (anyNull(pSrc, pDst, pNumCoeffs, order.pScan, pLastCoeff)) return kelStsNullPtrErr;
    if (!inRange<T>(order)) return kelStsRangeErr;
    storeLevels(forward4x4(Words4x4(pSrc)), forwardScale(order.qp, pScaleLevels), order, pDst, pNumCoeffs,
                pLastCoeff);
    return kelStsNoErr;
}

// coefficients, levels
template <class T>
static KelStatus quantise(const T *pSrc, T *pDst, int *pNumCoeffs, int *pLastCoeff,
                          const Kel16s *pScaleLevels, const Order &order) {
    if (anyNull(pSrc, pDst, pNumCoeffs, pLastCoeff, order.pScan)) return kelStsNullPtrErr;
    if (!inRange<T>(order)) return kelStsRangeErr;
    storeLevels(Words4x4(pSrc), forwardScale(order.qp, pScaleLevels), order, pDst, pNumCoeffs, pLastCoeff);
    return kelStsNoErr;
}

// coefficients, levels: by factors that must be there
static KelStatus quantiseBy(const Kel16s *pSrc, Kel16s *pDst, int *pNumCoeffs, int *pLastCoeff,
                            const Kel32s *pFactors, const Order &order) {
    if (anyNull(pSrc, pDst, pNumCoeffs, pLastCoeff, pFactors, order.pScan)) return kelStsNullPtrErr;
    if (!inRange<Kel16s>(order)) return kelStsRangeErr;
    storeLevels(Words4x4(pSrc), Words4x4(pFactors), order, pDst, pNumCoeffs, pLastCoeff);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

// ---- residuals -------------------------------------------------------------------------

KelStatus keliTransformQuantFwd4x4_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int QP, int *pNumCoeffs,
                                               int intra, const Kel16s *pScan, int *pLastCoeff,
                                               const Kel16s *pScaleLevels) {
    return transformAndQuantise(pSrc, pDst, pNumCoeffs, {QP, intra, pScan}, pLastCoeff, pScaleLevels);
}

KelStatus keliTransformQuantFwd4x4_H264_16s32s_C1(const Kel16s *pSrc, Kel32s *pDst, int QP, int *pNumCoeffs,
                                                  int intra, const Kel16s *pScan, int *pLastCoeff,
                                                  const Kel16s *pScaleLevels) {
    return transformAndQuantise(pSrc, pDst, pNumCoeffs, {QP, intra, pScan}, pLastCoeff, pScaleLevels);
}

KelStatus keliTransformQuantResidual_H264_16s_C1I(Kel16s *pSrcDst, int QP, int *pNumCoeffs, int intra,
                                                  const Kel16s *pScan, int *pLastCoeff) {
    return transformAndQuantise(pSrcDst, pSrcDst, pNumCoeffs, {QP, intra, pScan}, pLastCoeff, nullptr);
}

// ---- coefficients ----------------------------------------------------------------------

KelStatus keliQuantizeResidual4x4Fwd_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int *pNumCoeffs,
                                                 int *pLastCoeff, const Kel16s *pScaleLevels,
                                                 const Kel16s *pScan, int QP, int intra) {
    return quantise(pSrc, pDst, pNumCoeffs, pLastCoeff, pScaleLevels, {QP, intra, pScan});
}

KelStatus keliQuantizeResidual4x4Fwd_H264_32s_C1(const Kel32s *pSrc, Kel32s *pDst, int *pNumCoeffs,
                                                 int *pLastCoeff, const Kel16s *pScaleLevels,
                                                 const Kel16s *pScan, int QP, int intra) {
    return quantise(pSrc, pDst, pNumCoeffs, pLastCoeff, pScaleLevels, {QP, intra, pScan});
}

KelStatus keliQuantizeResidual4x4Fwd_H264_16s32s_C1(const Kel16s *pSrc, Kel16s *pDst, int *pNumCoeffs,
                                                    int *pLastCoeff, const Kel32s *pFactors,
                                                    const Kel16s *pScan, int QP, int intra) {
    return quantiseBy(pSrc, pDst, pNumCoeffs, pLastCoeff, pFactors, {QP, intra, pScan});
}
