// kelvc_interpolate.h - the inter prediction of H.264: samples between samples, and weighted prediction.

#ifndef KELVC_INTERPOLATE_H
#define KELVC_INTERPOLATE_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. Blocks are 1 to 16 samples wide and high, else kelStsSizeErr. All
// steps are in bytes and at least the width of the block.

// clang-format off

// The prediction of a luma block: pSrc is the sample at its full-sample position, dx and dy are the quarter
// samples, 0 to 3, from there to the right and down (ITU-T H.264 8.4.2.2.1). With dx other than 0 the block's
// rows are read from 2 samples in front of it to 3 samples behind it, with dy other than 0 its columns from 2
// rows above it to 3 rows below it. kelStsRangeErr for another dx or dy.
KELAPI KelStatus keliInterpolateLuma_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx, int dy, KeliSize roi);

// The prediction of a block of one chroma plane at dx and dy eighths of a sample, 0 to 7 (8.4.2.2.2). With dx
// other than 0 one sample more is read behind the block, with dy other than 0 one row more below it.
// kelStsRangeErr for another dx or dy.
KELAPI KelStatus keliInterpolateChroma_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx, int dy, KeliSize roi);

// The same for a block that reaches over the top of the picture: the first outRows rows of the block at pSrc lie
// above it. Every row above the picture, those that only a filter reads too, has the samples of the picture's
// first row, which is row outRows counted from pSrc; none of them is read. kelStsRangeErr for a negative outRows.
KELAPI KelStatus keliInterpolateLumaTop_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx, int dy, int outRows, KeliSize roi);
KELAPI KelStatus keliInterpolateChromaTop_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx, int dy, int outRows, KeliSize roi);

// The same for the bottom: the last outRows rows of the block at pSrc lie below the picture, whose last row is
// row roi.height - 1 - outRows counted from pSrc.
KELAPI KelStatus keliInterpolateLumaBottom_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx, int dy, int outRows, KeliSize roi);
KELAPI KelStatus keliInterpolateChromaBottom_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx, int dy, int outRows, KeliSize roi);

// The mean of two blocks, halves rounded up (8.4.2.3.1); all three have one step. P3: the first two are
// the neighbours of a quarter-sample position; their mean, so rounded, is the prediction from one reference, and
// the third block is that from the other: the result is the mean of both. The destination may be one of the
// sources.
KELAPI KelStatus keliInterpolateBlock_H264_8u_P2P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, Kel8u *pDst, int width, int height, int step);
KELAPI KelStatus keliInterpolateBlock_H264_8u_P3P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, const Kel8u *pSrc3, Kel8u *pDst, int width, int height, int step);

// Weighted prediction (8.4.2.3.2), limited to 0..255. Weights are -128 to 128, offsets -128 to 127, log2wd, the
// binary logarithm of the weight that stands for 1, is 0 to 7; another one is kelStsRangeErr. The destination
// may be one of the sources.

// From one reference, in place: the samples times weight, rounded and shifted right by log2wd, plus offset.
KELAPI KelStatus keliUniDirWeightBlock_H264_8u_C1R(Kel8u *pSrcDst, int srcDstStep, int log2wd, int weight, int offset, KeliSize roi);

// From two references: the sum of both times their weights, rounded and shifted right by log2wd + 1, plus the
// mean of the offsets, halves up. In P2P1R srcStep is the step of both sources.
KELAPI KelStatus keliBiDirWeightBlock_H264_8u_P2P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, Kel8u *pDst, int srcStep, int dstStep, int log2wd, int weight1, int weight2, int offset1, int offset2, KeliSize roi);
KELAPI KelStatus keliBiDirWeightBlock_H264_8u_P3P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, Kel8u *pDst, int src1Step, int src2Step, int dstStep, int log2wd, int weight1, int weight2, int offset1, int offset2, KeliSize roi);

// The same with implicit weights, for which log2wd is 5 and the offsets are 0 (8.4.2.3).
KELAPI KelStatus keliBiDirWeightBlockImplicit_H264_8u_P2P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, Kel8u *pDst, int srcStep, int dstStep, int weight1, int weight2, KeliSize roi);

// The same with the second source as the destination, one step for both, one offset, and the whole shift, 1 to
// 8, in place of log2wd.
KELAPI KelStatus keliWeightedAverage_H264_8u_C1IR(const Kel8u *pSrc, Kel8u *pSrc2Dst, int step, int weight1, int weight2, int shift, int offset, KeliSize roi);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
