// kelvc_h263.h - picture functions of H.261 and H.263: filters, predictions and resampling.

#ifndef KELVC_H263_H
#define KELVC_H263_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. All steps are in bytes and at least a row of what is read or
// written.

// clang-format off

// The loop filter of an 8x8 block, exactly ITU-T H.261 3.2.3: taps 1/4, 1/2, 1/4 along rows and columns; a
// sample at the border of the block is not filtered across that border. The full precision is kept between both
// directions, and halves are rounded up at the end.
KELAPI KelStatus keliFilter8x8_H261_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep);

// The deblocking edge filter, exactly ITU-T H.263 Annex J, in place. pSrcDst is the first sample behind the edge:
// the top left one of the block below a horizontal edge or to the right of a vertical one. Two samples of
// each side are read and written. 8x8 filters that edge, 8 samples long; 16x16 is a macroblock: its outer
// edge and the one in its middle, 16 samples long. The step is at least the block's width. QP is the quantiser of
// the block behind the edge, 1 to 31, else kelStsRangeErr.
KELAPI KelStatus keliFilterDeblocking8x8HorEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP);
KELAPI KelStatus keliFilterDeblocking8x8VerEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP);
KELAPI KelStatus keliFilterDeblocking16x16HorEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP);
KELAPI KelStatus keliFilterDeblocking16x16VerEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP);

// The default filter of the borders of 16x16 blocks of reduced resolution, ITU-T H.263 Annex Q, in place, and called
// as the filters above are: one edge, 16 samples long, one sample of each side. It is the same for all
// quantisers: QP is only checked.
KELAPI KelStatus keliFilterBlockBoundaryHorEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP);
KELAPI KelStatus keliFilterBlockBoundaryVerEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP);

// Backward prediction of the B block of a PB-frame, ITU-T H.263 Annex G: the part of the block for which the
// backward vector stays within the macroblock becomes the mean, halves rounded down, of the forward prediction
// that it holds and the source. acc is the position of the source: 1 stands for half a sample to the right, 2 for
// half a sample down, 3 for both, 0 for a full sample. Half-sample values are means of two or four neighbours,
// halves rounded up; for them the source is one sample wider, one row higher or both. kelStsSizeErr for a width or
// height below 1, kelStsRangeErr for another acc.
KELAPI KelStatus keliAddBackPredPB_H263_8u_C1R(const Kel8u *pSrc, int srcStep, KeliSize size, Kel8u *pSrcDst, int srcDstStep, int acc);

// Reference picture resampling, ITU-T H.263 Annex P. Sizes are those of luma, multiples of 4 up to 2048x1152, else
// kelStsSizeErr; chroma planes are half as wide and half as high. warpParams are the eight warping parameters,
// -4095 to 4095: x and y of the displacement of the upper left corner, of its growth to the right corner, of that to
// the lower corner, and of what the corner opposite has beside these; all 0 maps the corners of the destination
// onto those of the source, whatever both sizes are. Their unit is half a sample for wda 0 and 1/16 sample for
// wda 1. Samples come from the bilinear interpolation between four neighbours at an accuracy of 1/16; the rounding
// type is 0 where halves are rounded down and 1 where they are rounded up. What lies outside of the source has,
// by fillMode: 0 fillColor, 0 to 255, in all planes; 1 black, 16 in luma and 128 in chroma; 2 gray, 128; 3 the
// nearest sample. kelStsRangeErr for any other value.
KELAPI KelStatus keliResample_H263_8u_P3R(const Kel8u *pSrcY, int srcStepY, const Kel8u *pSrcCb, int srcStepCb, const Kel8u *pSrcCr, int srcStepCr, KeliSize srcSize, Kel8u *pDstY, int dstStepY, Kel8u *pDstCb, int dstStepCb, Kel8u *pDstCr, int dstStepCr, KeliSize dstSize, const int *warpParams, int wda, int rounding, int fillMode, int fillColor);

// The factor-of-four forms of the same without a warp, for one plane. size is that of the source: upsampling writes
// twice its width and height, downsampling half of both, so that there they are even. A size is otherwise at
// least 1, else kelStsSizeErr. rounding is the rounding type. Outside of the source there is fillColor, 0 to 255, or,
// for -1, the nearest sample. kelStsRangeErr for another one or another rounding.
KELAPI KelStatus keliUpsampleFour_H263_8u_C1R(const Kel8u *pSrc, int srcStep, KeliSize size, Kel8u *pDst, int dstStep, int rounding, int fillColor);
KELAPI KelStatus keliDownsampleFour_H263_8u_C1R(const Kel8u *pSrc, int srcStep, KeliSize size, Kel8u *pDst, int dstStep, int rounding);

// Interpolation of a reference layer for spatial scalability, exactly ITU-T H.263 Annex O. size, at least 1x1, is
// that of the source. interpolation is 1 for twice the width, 2 for twice the height, 3 for both, else
// kelStsRangeErr. Halves are rounded up; outside of the source there is the nearest sample.
KELAPI KelStatus keliSpatialInterpolation_H263_8u_C1R(const Kel8u *pSrc, int srcStep, KeliSize size, Kel8u *pDst, int dstStep, int interpolation);

// The prediction error of reduced resolution: an 8x8 block becomes one of 16x16, ITU-T H.263 Annex Q. Quotients are
// cut off towards zero. No sample outside of the block is used.
KELAPI KelStatus keliUpsampleFour8x8_H263_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
