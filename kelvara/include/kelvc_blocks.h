// kelvc_blocks.h - arithmetic of blocks, scans of coefficients, the 8x8 luma transforms of H.264.

#ifndef KELVC_BLOCKS_H
#define KELVC_BLOCKS_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. All steps are in bytes and at least a row of the block, whatever
// the element type. The name holds width x height.

// clang-format off

// Differences: first block minus second block. SubSAD also stores the sum of their magnitudes.
KELAPI KelStatus keliSub8x8_8u16s_C1R(const Kel8u *pSrc1, int src1Step, const Kel8u *pSrc2, int src2Step, Kel16s *pDst, int dstStep);
KELAPI KelStatus keliSub16x16_8u16s_C1R(const Kel8u *pSrc1, int src1Step, const Kel8u *pSrc2, int src2Step, Kel16s *pDst, int dstStep);
KELAPI KelStatus keliSubSAD8x8_8u16s_C1R(const Kel8u *pSrc1, int src1Step, const Kel8u *pSrc2, int src2Step, Kel16s *pDst, int dstStep, Kel32s *pSAD);

// Copies of a block.
KELAPI KelStatus keliCopy8x8_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep);
KELAPI KelStatus keliCopy16x16_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep);

// The mean of two blocks, halves rounded up, in place of the second.
KELAPI KelStatus keliAverage8x8_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep);
KELAPI KelStatus keliAverage16x16_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep);

// The residual, or value, is added to the block, and the sums are limited to 0..255.
KELAPI KelStatus keliAdd8x8_16s8u_C1IRS(const Kel16s *pResidual, int residualStep, Kel8u *pSrcDst, int srcDstStep);
KELAPI KelStatus keliAddC8x8_16s8u_C1IR(Kel16s value, Kel8u *pSrcDst, int srcDstStep);

// acc is the position of a reference block, the lowest bits of a motion vector in half samples: 1 stands for
// half a sample to the right, 2 for half a sample down, 3 for both, 0 for a full sample. Half-sample values are
// the means of two or four neighbours (ISO/IEC 14496-2 7.6.2.1); for them the reference is one sample wider,
// one row higher or both. rounding is 0 where halves in these means are rounded up and 1 where they are rounded
// down. kelStsRangeErr for another acc or rounding.

// Copies of the block at this position.
KELAPI KelStatus keliCopy8x4HP_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc, int rounding);
KELAPI KelStatus keliCopy8x8HP_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc, int rounding);
KELAPI KelStatus keliCopy16x8HP_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc, int rounding);
KELAPI KelStatus keliCopy16x16HP_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc, int rounding);

// The mean of the block at this position and the second block, in place of the second. Whatever rounding is,
// halves in this mean are rounded up.
KELAPI KelStatus keliInterpolateAverage8x4_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep, int acc, int rounding);
KELAPI KelStatus keliInterpolateAverage8x8_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep, int acc, int rounding);
KELAPI KelStatus keliInterpolateAverage16x8_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep, int acc, int rounding);
KELAPI KelStatus keliInterpolateAverage16x16_8u_C1IR(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep, int acc, int rounding);

// The residual is added to the block at this position, and the sums are limited to 0..255.
KELAPI KelStatus keliAdd8x8HP_16s8u_C1RS(const Kel16s *pResidual, int residualStep, const Kel8u *pRef, int refStep, Kel8u *pDst, int dstStep, int acc, int rounding);

// Scans of 64 coefficients. scan is 0 for zigzag, 1 for alternate-vertical, 2 for alternate-horizontal
// (ISO/IEC 14496-2 7.4.2); any other is kelStsRangeErr. Fwd brings a block in raster order, rows of 8 without a
// gap, into the order of the scan. countNonZero, 0 to 64, is the number of coefficients other than 0: behind
// that many the rest is taken as 0. Inv brings it back; indxLastNonZero, -1 to 63, is the place in the scan of
// the last coefficient other than 0: the rest is taken as 0. All 64 are written. kelStsRangeErr for another
// number or place.
KELAPI KelStatus keliScanFwd_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int countNonZero, int scan);
KELAPI KelStatus keliScanInv_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int indxLastNonZero, int scan);

// Forward 8x8 transform of luma differences, the one that the inverse of ITU-T H.264 8.5.13 belongs to: rows
// first, then columns, without the norms, which are part of the quantisation. Blocks are 64 elements in raster
// order. The 16s form limits a coefficient to the range of its type; differences of 8-bit samples never need it.
KELAPI KelStatus keliTransformFwdLuma8x8_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst);
KELAPI KelStatus keliTransformFwdLuma8x8_H264_16s32s_C1(const Kel16s *pSrc, Kel32s *pDst);

// Inverse 8x8 transform of scaled coefficients, in raster order, to the residual, exactly ITU-T H.264 8.5.13;
// it is added to the prediction, and the sums are limited to 0..2^bitDepth - 1. bitDepth is 1 to 16, else
// kelStsRangeErr. Coefficients that no stream may hold, where sums leave 32 bits, wrap around.
KELAPI KelStatus keliTransformInvAddPredLuma8x8_H264_32s16u_C1R(const Kel16u *pPred, int predStep, const Kel32s *pCoeffs, Kel16u *pDst, int dstStep, int bitDepth);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
