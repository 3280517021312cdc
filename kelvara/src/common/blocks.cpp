// blocks.cpp - the exported arithmetic of blocks.

#include "kelvc.h"
#include "blocks.h"

using namespace kelvara;

// ---- differences ------------------------------------------------------------------

KelStatus keliSub8x8_8u16s_C1R(const Kel8u *pSrc1, int src1Step, const Kel8u *pSrc2, int src2Step,
                               Kel16s *pDst, int dstStep) {
    return getDiff<8, 8>(pSrc1, src1Step, Reference{pSrc2, src2Step, McFF}, pDst, dstStep, 0);
}

KelStatus keliSub16x16_8u16s_C1R(const Kel8u *pSrc1, int src1Step, const Kel8u *pSrc2, int src2Step,
                                 Kel16s *pDst, int dstStep) {
    return getDiff<16, 16>(pSrc1, src1Step, Reference{pSrc2, src2Step, McFF}, pDst, dstStep, 0);
}

KelStatus keliSubSAD8x8_8u16s_C1R(const Kel8u *pSrc1, int src1Step, const Kel8u *pSrc2, int src2Step,
                                  Kel16s *pDst, int dstStep, Kel32s *pSAD) {
    return subtractSad<8>(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, pSAD);
}

// ---- copies and means -------------------------------------------------------------

KelStatus keliCopy8x8_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep) {
    return storePrediction<8, 8>(Reference{pSrc, srcStep, McFF}, pDst, dstStep, 0);
}

KelStatus keliCopy16x16_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep) {
    return storePrediction<16, 16>(Reference{pSrc, srcStep, McFF}, pDst, dstStep, 0);
}

KelStatus keliCopy8x4HP_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc,
                               int rounding) {
    return storePrediction<8, 4>(Reference{pSrc, srcStep, mcTypeOfAcc(acc)}, pDst, dstStep, rounding);
}

KelStatus keliCopy8x8HP_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc,
                               int rounding) {
    return storePrediction<8, 8>(Reference{pSrc, srcStep, mcTypeOfAcc(acc)}, pDst, dstStep, rounding);
}

KelStatus keliCopy16x8HP_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc,
                                int rounding) {
    return storePrediction<16, 8>(Reference{pSrc, srcStep, mcTypeOfAcc(acc)}, pDst, dstStep, rounding);
}

KelStatus keliCopy16x16HP_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc,
                                 int rounding) {
    return storePrediction<16, 16>(Reference{pSrc, srcStep, mcTypeOfAcc(acc)}, pDst, dstStep, rounding);
}

KelStatus keliAverage8x8_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep) {
    return averageInto<8, 8>(pSrc, srcStep, pSrcDst, srcDstStep, 0, 0);
}

KelStatus keliAverage16x16_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep) {
    return averageInto<16, 16>(pSrc, srcStep, pSrcDst, srcDstStep, 0, 0);
}

KelStatus keliInterpolateAverage8x4_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep,
                                            int acc, int rounding) {
    return averageInto<8, 4>(pSrc, srcStep, pSrcDst, srcDstStep, acc, rounding);
}

KelStatus keliInterpolateAverage8x8_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep,
                                            int acc, int rounding) {
    return averageInto<8, 8>(pSrc, srcStep, pSrcDst, srcDstStep, acc, rounding);
}

KelStatus keliInterpolateAverage16x8_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep,
                                             int acc, int rounding) {
    return averageInto<16, 8>(pSrc, srcStep, pSrcDst, srcDstStep, acc, rounding);
}

KelStatus keliInterpolateAverage16x16_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep,
                                              int acc, int rounding) {
    return averageInto<16, 16>(pSrc, srcStep, pSrcDst, srcDstStep, acc, rounding);
}

// ---- sums -------------------------------------------------------------------------

KelStatus keliAdd8x8_16s8u_C1IRS(const Kel16s *pResidual, int residualStep, Kel8u *pSrcDst, int srcDstStep) {
    return compensate<8, 8>(Reference{pSrcDst, srcDstStep, McFF}, pResidual, residualStep, pSrcDst,
                            srcDstStep, 0);
}

KelStatus keliAddC8x8_16s8u_C1IR(Kel16s value, Kel8u *pSrcDst, int srcDstStep) {
    return addConstant<8>(value, pSrcDst, srcDstStep);
}

KelStatus keliAdd8x8HP_16s8u_C1RS(const Kel16s *pResidual, int residualStep, const Kel8u *pRef, int refStep,
                                  Kel8u *pDst, int dstStep, int acc, int rounding) {
    return compensate<8, 8>(Reference{pRef, refStep, mcTypeOfAcc(acc)}, pResidual, residualStep, pDst,
                            dstStep, rounding);
}
