// kelvc_avs.h - the video coding functions of AVS but its deblocking filters: macroblocks, forward transform,
// weighted prediction.

#ifndef KELVC_AVS_H
#define KELVC_AVS_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. Steps are in bytes and at least the width of the block: 16 for luma
// macroblocks, 8 for chroma. The standard is GB/T 20090.2.

// clang-format off

// Macroblocks: prediction, inverse quantisation, inverse transform, sum, in place. pSrcDst is the macroblock's
// first sample in a plane that holds its neighbours, too. The inter forms find the prediction in the plane, the
// intra forms make it.
//
// *ppSrcDstCoeff points to the coefficients of the coded blocks alone, one block of 64 behind the other, each in
// raster order. They stay; the pointer is moved to the first coefficient behind them, or stays after an error.
// cbp tells which blocks are coded: bits 0 to 3 are the luma blocks in raster order, bit 4 is U, bit 5 is V. A
// function looks at the bits of its own blocks and takes their coefficients alone. QP is that of the plane, from
// 0 to 63, for chroma the one that the standard has for luma's; else kelStsRangeErr.
//
// Luma is predicted block by block, each with a mode of its own in pPredModes: 0 vertical, 1 horizontal, 2 DC, 3
// down left, 4 down right. availability is a set of bits for the neighbours of the macroblock that exist and may
// be used: 1 upper, 2 left, 32 upper left, 64 upper right. Other bits are not looked at; what is not available
// is not read. Mode 0 needs the upper neighbour of the block, 1 the left one, 3 both, 4 both and the upper left
// one, DC none. Chroma modes: 0 DC, 1 horizontal, 2 vertical, 3 plane; all neighbours of the macroblock have to
// be there. kelStsRangeErr for another mode, and for an availability that does not permit the mode, also if it
// is that of one block of several; then nothing is written.
//
// With a bypassFlag other than 0, the coefficients are differences of samples, and QP is only judged.
KELAPI KelStatus keliReconstructLumaIntra_AVS_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, const Kel32s *pPredModes, Kel32u cbp, int QP, int availability, int bypassFlag);
KELAPI KelStatus keliReconstructLumaInter_AVS_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, Kel32u cbp, int QP, int bypassFlag);

// U and V have a step in common. They may lie in one plane: U is stored before V is predicted.
KELAPI KelStatus keliReconstructChromaIntra_AVS_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU, Kel8u *pSrcDstV, int srcDstStep, int predMode, Kel32u cbp, int QP);
KELAPI KelStatus keliReconstructChromaInter_AVS_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU, Kel8u *pSrcDstV, int srcDstStep, Kel32u cbp, int QP);

// Forward transform and quantisation of 64 differences in raster order to 64 levels, which the inverse above
// takes. Coefficients are (T * X * T' + 16) >> 5 with the standard's matrix T; they are brought to one norm, and
// to their magnitude, in units of the step, 10/31 is added for intra blocks, 10/62 for others (intra 0), before
// the fraction is dropped. Levels are limited to 16 bits. *pNumCoeffs takes the number of levels other than 0. QP
// from 0 to 63, else kelStsRangeErr. pDst may be pSrc.
KELAPI KelStatus keliTransformQuant8x8Fwd_AVS_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int *pNumCoeffs, int QP, int intra);

// Weighted prediction: each sample p becomes ((p * scale + 16) >> 5) + shift, limited to 0 to 255, so that 32 and 0
// change nothing. scale 0 to 255, shift -128 to 127, else kelStsRangeErr. roiSize is 1 to 16 in either direction,
// else kelStsSizeErr. pDst may be pSrc, with the same step.
KELAPI KelStatus keliWeightPrediction_AVS_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int scale, int shift, KeliSize roiSize);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
