// kelvc_motion.h - the video coding functions of motion compensation, motion estimation and block statistics.

#ifndef KELVC_MOTION_H
#define KELVC_MOTION_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share and what mcType is. All steps are in bytes and at least a row of the
// block, whatever the element type. At a half-sample position the reference is one sample wider, one row
// higher or both; interleaved chroma is wider by one sample of each colour.
//
// roundControl is 0 where halves in the means of neighbouring samples are rounded up and 1 where they are
// rounded down; any other value is kelStsRangeErr. With two references each has a position of its own, and
// the prediction is the mean of the two blocks, halves always rounded up (ISO/IEC 13818-2 7.6.7.1).

// clang-format off

// Motion compensation of a block of width x height samples: the prediction from the reference and the
// residual are added and limited to 0..255 (ISO/IEC 13818-2 7.6.8). UV: rows of 8 pairs of chroma samples, U
// in front of V in the reference, the residual and the destination alike.
KELAPI KelStatus keliMC16x16_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC16x8_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC8x16_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC8x8_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC8x4_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC16x4_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC16x8UV_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC4x8_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC4x4_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC4x2_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC2x4_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC2x2_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);

// The same with the mean of a forward and a backward prediction.
KELAPI KelStatus keliMC16x16B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC16x8B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC8x16B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC8x8B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC8x4B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC16x4B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC16x8BUV_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC4x8B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC4x4B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC4x2B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC2x4B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC2x2B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep, int roundControl);

// Differences of a block: current sample minus prediction. The prediction itself is stored too, each sample
// as 16 bits.
KELAPI KelStatus keliGetDiff16x16_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType, int roundControl);
KELAPI KelStatus keliGetDiff16x8_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType, int roundControl);
KELAPI KelStatus keliGetDiff8x16_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType, int roundControl);
KELAPI KelStatus keliGetDiff8x8_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType, int roundControl);
KELAPI KelStatus keliGetDiff8x4_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType, int roundControl);
KELAPI KelStatus keliGetDiff4x4_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType, int roundControl);

// The same of rows of 8 pairs of chroma samples, U in front of V in the current block and in the reference;
// the differences of U and of V go to blocks 8 samples wide. The prediction is not stored.
KELAPI KelStatus keliGetDiff8x8_8u16s_C2P2(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel16s *pDstU, int dstStepU, Kel16s *pDstV, int dstStepV, int mcType, int roundControl);
KELAPI KelStatus keliGetDiff8x4_8u16s_C2P2(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel16s *pDstU, int dstStepU, Kel16s *pDstV, int dstStepV, int mcType, int roundControl);

// Differences from the mean of a forward and a backward prediction; the prediction is not stored.
KELAPI KelStatus keliGetDiff16x16B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliGetDiff16x8B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliGetDiff8x16B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliGetDiff8x8B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliGetDiff8x4B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliGetDiff8x8B_8u16s_C2P2(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDstU, int dstStepU, Kel16s *pDstV, int dstStepV, int roundControl);
KELAPI KelStatus keliGetDiff8x4B_8u16s_C2P2(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDstU, int dstStepU, Kel16s *pDstV, int dstStepV, int roundControl);

// Sum of the squared differences between the current block and the prediction, halves rounded up.
KELAPI KelStatus keliSqrDiff16x16_8u32s(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, int mcType, Kel32s *pSqrDiff);
KELAPI KelStatus keliSqrDiff16x16B_8u32s(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel32s *pSqrDiff);
KELAPI KelStatus keliSSD8x8_8u32s_C1R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel32s *pSSD, int mcType);
KELAPI KelStatus keliSSD4x4_8u32s_C1R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel32s *pSSD, int mcType);

// Variance of a 16x16 block: the mean square of the distances from the exact mean. Variances and means are
// rounded to the nearest integer, halves up.
KELAPI KelStatus keliVariance16x16_8u32s(const Kel8u *pSrc, int srcStep, Kel32s *pVar);

// Variance and mean of an 8x8 block.
KELAPI KelStatus keliVarMean8x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, Kel32s *pVar, Kel32s *pMean);
KELAPI KelStatus keliVarMean8x8_16s32s_C1R(const Kel16s *pSrc, int srcStep, Kel32s *pVar, Kel32s *pMean);

// Variance and mean of the differences between the current block and the prediction, halves rounded up, for
// each 8x8 block of it: 4 or 2 of each. pCurSum holds the sum of the current samples of each 8x8 block, which
// an encoder has from the block's own statistics. The sums are trusted: with S = pCurSum[i] minus the sum of
// the prediction and Q the sum of the squared differences the mean is S / 64 and the variance
// Q / 64 - (S / 64)^2, rounded as above and limited to 32 bits.
KELAPI KelStatus keliVarMeanDiff16x16_8u32s_C1R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, const Kel32s *pCurSum, Kel32s *pVar, Kel32s *pMean, int mcType);
KELAPI KelStatus keliVarMeanDiff16x8_8u32s_C1R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, const Kel32s *pCurSum, Kel32s *pVar, Kel32s *pMean, int mcType);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
