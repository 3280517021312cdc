// kelvc_vc1.h - transforms, quantisers, Hadamard sums, range mapping and overlap smoothing of VC-1.

#ifndef KELVC_VC1_H
#define KELVC_VC1_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. All steps are in bytes, whatever the element type, and at least a
// row of the block unless a group says otherwise. The name holds width x height. C1IR functions work in
// place. Clauses are those of SMPTE 421M. Results out of the range of their type are limited to it.

// clang-format off

// Inverse transforms, exactly Annex A: rows first, then columns. srcSizeNZ is the area at the top left that
// holds all coefficients other than 0: those outside of it are taken as 0, whatever is there, and the work on
// them is left out. Its width is 0 to that of the block, its height 0 to that of the block, else
// kelStsSizeErr. The whole block is written.
KELAPI KelStatus keliTransform8x8Inv_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, KeliSize srcSizeNZ);
KELAPI KelStatus keliTransform8x4Inv_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, KeliSize srcSizeNZ);
KELAPI KelStatus keliTransform4x8Inv_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, KeliSize srcSizeNZ);
KELAPI KelStatus keliTransform4x4Inv_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, KeliSize srcSizeNZ);
KELAPI KelStatus keliTransform8x8Inv_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, KeliSize srcSizeNZ);
KELAPI KelStatus keliTransform8x4Inv_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, KeliSize srcSizeNZ);
KELAPI KelStatus keliTransform4x8Inv_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, KeliSize srcSizeNZ);
KELAPI KelStatus keliTransform4x4Inv_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, KeliSize srcSizeNZ);

// Forward transforms, the ones that those inverses belong to: the product with both matrices of Annex A,
// divided by the norms of their rows, so that coefficient (v, u) is (V * X * U')[v][u] * 1024 / (n(v) * n(u)),
// rounded to the nearest; the norms n are 1152, 1156, 1168, 1156 and again for 8 points, 1156, 1168 and again
// for 4. The inverse of the result is within 4 of the block, mostly within 1.
KELAPI KelStatus keliTransform8x8Fwd_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep);
KELAPI KelStatus keliTransform8x4Fwd_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep);
KELAPI KelStatus keliTransform4x8Fwd_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep);
KELAPI KelStatus keliTransform4x4Fwd_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep);
KELAPI KelStatus keliTransform8x8Fwd_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep);
KELAPI KelStatus keliTransform8x4Fwd_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep);
KELAPI KelStatus keliTransform4x8Fwd_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep);
KELAPI KelStatus keliTransform4x4Fwd_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep);

// All quantisers: doubleQuant is 2 * MQUANT + HALFQP, 2 to 64, else kelStsRangeErr. Intra blocks are 8x8;
// their DC coefficient has a step size of its own (8.1.3.3), which is the caller's, and keeps its value. Inter
// blocks are of roiSize, each side 4 or 8, else kelStsSizeErr, and have no coefficient apart.

// Inverse quantisation (8.1.3.8): level * doubleQuant, and in the nonuniform forms MQUANT more in magnitude
// unless the level is 0. *pDstSizeNZ is the smallest area at the top left that holds all results other than 0,
// DC among them: 0x0 if there are none. It is what the inverse transform takes.
KELAPI KelStatus keliQuantInvIntraUniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant, KeliSize *pDstSizeNZ);
KELAPI KelStatus keliQuantInvIntraNonuniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant, KeliSize *pDstSizeNZ);
KELAPI KelStatus keliQuantInvInterUniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant, KeliSize roiSize, KeliSize *pDstSizeNZ);
KELAPI KelStatus keliQuantInvInterNonuniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant, KeliSize roiSize, KeliSize *pDstSizeNZ);
KELAPI KelStatus keliQuantInvIntraUniform_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, int doubleQuant, KeliSize *pDstSizeNZ);
KELAPI KelStatus keliQuantInvIntraNonuniform_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, int doubleQuant, KeliSize *pDstSizeNZ);
KELAPI KelStatus keliQuantInvInterUniform_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, int doubleQuant, KeliSize roiSize, KeliSize *pDstSizeNZ);
KELAPI KelStatus keliQuantInvInterNonuniform_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, int doubleQuant, KeliSize roiSize, KeliSize *pDstSizeNZ);

// Quantisation. Uniform: the level whose reconstruction is nearest to the coefficient, halves away from 0.
// Nonuniform: the coefficient divided by doubleQuant, towards 0, so that each reconstruction stands in the
// middle of the coefficients that it is for, and the dead zone is two steps wide.
KELAPI KelStatus keliQuantIntraUniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant);
KELAPI KelStatus keliQuantIntraNonuniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant);
KELAPI KelStatus keliQuantInterUniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant, KeliSize roiSize);
KELAPI KelStatus keliQuantInterNonuniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant, KeliSize roiSize);

// Hadamard transform of an 8x8 block, a measure of how much its coding will cost. pDst takes the 64
// coefficients in raster order, without a gap and without division by a norm, in natural order: the sample at
// (y, x) counts negative in coefficient (v, u) if the numbers v & y and u & x have together an odd number of
// ones. *pSum is the sum of the magnitudes, of the values before they were limited.
KELAPI KelStatus keliHadamard8x8Sum_VC1_8u16s(const Kel8u *pSrc, int srcStep, Kel16s *pDst, Kel32s *pSum);
KELAPI KelStatus keliHadamard8x8Sum_VC1_16s(const Kel16s *pSrc, int srcStep, Kel16s *pDst, Kel32s *pSum);

// Range mapping (6.2.15.1): ((sample - 128) * (rangeMapParam + 9) + 4 >> 3) + 128, limited to 0..255.
// rangeMapParam is 0 to 7, else kelStsRangeErr; both sides of roiSize at least 1. Steps are at least 1: with a
// step shorter than a row the rows overlap, and are mapped from the top down, each over the end of the one
// before.
KELAPI KelStatus keliRangeMapping_VC1_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, KeliSize roiSize, int rangeMapParam);

// Overlap smoothing (8.5) of the two samples on each side of the edges of 8x8 blocks. Blocks are the unclamped
// reconstruction, 128 included. The first block is the one before the edge; its pointer is at the first of its
// last two columns or rows. The second block is the one behind the edge, from its first sample on, and pDst is
// the place of that sample in the picture. What is smoothed is written there, limited to 0..255, and nothing
// else. Steps are at least a row of the macroblock: 16 samples for luma, 8 for chroma.
//
// Vertical edges come before the horizontal ones, which need their results in 16 bits: VerEdge functions write
// them back to the blocks, HorEdge functions only read theirs.
//
// Luma: the edge before the macroblock of 16x16, and the one in its middle. edgeDisableFlag, 0 to 15, has bits
// for what is left alone: 1 and 2 for the upper and lower half of the edge before a macroblock (left and right
// half of a horizontal one), 4 and 8 for those of the edge in the middle. fieldNeighbourFlag, 0 to 3, tells
// whose lines are sorted by field, 8 of the top field and then 8 of the bottom field, while pDst has the order
// of the picture: 1 those of the macroblock before the edge, 2 those of the one behind it. The place of a line
// in the latter decides which half it belongs to, its place in the picture how it is rounded. kelStsRangeErr
// for other flags.
KELAPI KelStatus keliSmoothingLuma_VerEdge_VC1_16s8u_C1R(Kel16s *pSrcLeft, int srcLeftStep, Kel16s *pSrcRight, int srcRightStep, Kel8u *pDst, int dstStep, int fieldNeighbourFlag, int edgeDisableFlag);
KELAPI KelStatus keliSmoothingLuma_HorEdge_VC1_16s8u_C1R(const Kel16s *pSrcUpper, int srcUpperStep, const Kel16s *pSrcBottom, int srcBottomStep, Kel8u *pDst, int dstStep, int edgeDisableFlag);

// Chroma: the edge before a block of 8x8. C1R: one colour. P2C2R: a block of each colour before and behind the
// edge, and a picture with both colours interleaved, U first; its step is at least 16.
KELAPI KelStatus keliSmoothingChroma_VerEdge_VC1_16s8u_C1R(Kel16s *pSrcLeft, int srcLeftStep, Kel16s *pSrcRight, int srcRightStep, Kel8u *pDst, int dstStep);
KELAPI KelStatus keliSmoothingChroma_HorEdge_VC1_16s8u_C1R(const Kel16s *pSrcUpper, int srcUpperStep, const Kel16s *pSrcBottom, int srcBottomStep, Kel8u *pDst, int dstStep);
KELAPI KelStatus keliSmoothingChroma_VerEdge_VC1_16s8u_P2C2R(Kel16s *pSrcLeftU, int srcLeftUStep, Kel16s *pSrcRightU, int srcRightUStep, Kel16s *pSrcLeftV, int srcLeftVStep, Kel16s *pSrcRightV, int srcRightVStep, Kel8u *pDst, int dstStep);
KELAPI KelStatus keliSmoothingChroma_HorEdge_VC1_16s8u_P2C2R(const Kel16s *pSrcUpperU, int srcUpperUStep, const Kel16s *pSrcBottomU, int srcBottomUStep, const Kel16s *pSrcUpperV, int srcUpperVStep, const Kel16s *pSrcBottomV, int srcBottomVStep, Kel8u *pDst, int dstStep);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
