// kelvc_picture.h - functions of whole pictures: denoising, a test for edges, resizing, rotation.

#ifndef KELVC_PICTURE_H
#define KELVC_PICTURE_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. All steps are in bytes but that of the test for edges.

// What a denoising filter carries from one picture of a sequence to the next. The library's to allocate.
typedef struct KeliDenoiseAdaptiveState_8u_C1 KeliDenoiseAdaptiveState_8u_C1;
typedef struct KeliDenoiseMosquitoState_8u_C1 KeliDenoiseMosquitoState_8u_C1;

// clang-format off

// ---- denoising ----------------------------------------------------------------------
//
// Pointers are to the first sample of a picture of `size` samples, each side 1 to 16384, else kelStsSizeErr.
// The filter works on roi alone, which lies within the picture, else kelStsSizeErr; a neighbour beyond its border
// is the nearest sample of roi. The rest of the destination stays. All pictures of pSrcPlane share srcStep.
// "near" to a sample, by a limit, is a value that differs from it by the limit at most.
//
// InitAlloc makes the state of a sequence of pictures of `size`, Free releases it. kelStsMemAllocErr without
// memory; in case of an error *ppState stays. A filter wants the state of its own kind, else kelStsContextErr,
// and the size that the state was made for, else kelStsSizeErr.

// Filter over time and place. pSrcPlane: the previous, the current and the next picture p, c, n; the denoised
// current one is written. For each sample:
//  1. The difference is the greater of |c - p| and |c - n|; its mean over the maskSize samples around, rounded
//     down, is how much the sample moves now. Both sides of maskSize are odd, 1 to 15, and those that the state
//     was made for, else kelStsSizeErr.
//  2. Its motion is that or three quarters of its motion at the last call, rounded down, whichever is greater; it
//     is kept in the state. In front of the first call it is 0.
//  3. By w = threshold - motion, limited to 0..16, sixteenths of the sample become that of a mean over time:
//     t = ((16 - w) c + w ((p + 2c + n + 2) / 4) + 8) / 16.
//  4. blurFlag 0: t is the result; 1: t and its neighbours in the row with weights 1 2 1, 2: those in the column,
//     3: both, the weights multiplied, have a mean, halves rounded up: it is the result if near to t by threshold,
//     so that edges stay; else t is.
// threshold is 0 to 255, else kelStsRangeErr, as for another blurFlag.
KELAPI KelStatus keliFilterDenoiseAdaptiveInitAlloc_8u_C1(KeliDenoiseAdaptiveState_8u_C1 **ppState, KeliSize size, KeliSize maskSize);
KELAPI KelStatus keliFilterDenoiseAdaptiveFree_8u_C1(KeliDenoiseAdaptiveState_8u_C1 *pState);
KELAPI KelStatus keliFilterDenoiseAdaptive_8u_C1R(const Kel8u *const pSrcPlane[3], int srcStep, Kel8u *pDst, int dstStep, KeliSize size, KeliSize maskSize, KeliRect roi, int threshold, int blurFlag, KeliDenoiseAdaptiveState_8u_C1 *pState);

// Filter against the flicker that coding in 8x8 blocks leaves beside edges. pSrcPlane: the previous and the
// current picture p, c; the denoised current one is written. Blocks of 8x8 are counted from the corner of the
// picture; what roi has of a block is one.
//  1. The contrast of a block is its greatest less its least sample, or three quarters of its contrast at the
//     last call, rounded down, whichever is greater; it is kept in the state, 0 in front of the first call. An
//     eighth of it, rounded down, is the limit for its samples.
//  2. t is (c + p + 1) / 2 where p is near to c, else c.
//  3. Each of the eight neighbours of t that is near to t counts as it is, the others as t itself; the result is
//     the mean of t and the mean of these eight, (8t + their sum + 8) / 16.
KELAPI KelStatus keliFilterDenoiseMosquitoInitAlloc_8u_C1(KeliDenoiseMosquitoState_8u_C1 **ppState, KeliSize size);
KELAPI KelStatus keliFilterDenoiseMosquitoFree_8u_C1(KeliDenoiseMosquitoState_8u_C1 *pState);
KELAPI KelStatus keliFilterDenoiseMosquito_8u_C1R(const Kel8u *const pSrcPlane[2], int srcStep, Kel8u *pDst, int dstStep, KeliSize size, KeliDenoiseMosquitoState_8u_C1 *pState, KeliRect roi);

// Filter that smooths and keeps edges: (a + 2c + b + 2) / 4 of each sample c and its two neighbours in the row,
// and the same of what this gives with the neighbours in the column. A neighbour that is not near to c by
// threshold counts as c. threshold is 0 to 255, else kelStsRangeErr. pWorkBuffer: (2 height + 6) (width + 3)
// bytes, by size, that the function writes.
KELAPI KelStatus keliFilterDenoiseSmooth_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, KeliSize size, int threshold, KeliRect roi, Kel8u *pWorkBuffer);

// ---- edges --------------------------------------------------------------------------

// keliEdgesDetect16x16_8u_C1R of kelvc.h for samples of 16 bits; srcStep is in samples here too.
KELAPI KelStatus keliEdgesDetect16x16_16u_C1R(const Kel16u *pSrc, int srcStep, int edgePelDifference, int edgePelCount, Kel8u *pResult);

// ---- resizing and rotation ----------------------------------------------------------
//
// rotation turns what is written: 0 not at all, 1 by 90 degrees counterclockwise, 2 by 90 degrees clockwise, 3 by
// 180 degrees; kelStsRangeErr for another one. With 1 and 2 the destination is as wide as the picture is high.

// A picture of rows Cb Y Cr Y is reduced, converted to 16-bit pixels and turned. It has an even width, and is at
// least zoomFactor, which is 2, 4 or 8, wide and high, each side up to 16384, else kelStsSizeErr. The reduced
// picture has that part of its width and height, rounded down, before it is turned.
// interpolation 1: a pixel is the first one, in raster order, of the zoomFactor x zoomFactor pixels that it stands
// for. 2: it is interpolated linearly at their middle, which lies halfway between two rows and two columns of
// luma. Samples of chroma stand at the even columns (ITU-R BT.601), the middle a quarter or three quarters of
// their distance behind one of them; the last column of chroma repeats. Halves are rounded up.
// The conversion is that of ITU-R BT.601 with Y 16..235, Cb and Cr 16..240:
//     R = (298 (Y - 16)                  + 409 (Cr - 128) + 128) / 256
//     G = (298 (Y - 16) - 100 (Cb - 128) - 208 (Cr - 128) + 128) / 256
//     B = (298 (Y - 16) + 516 (Cb - 128)                  + 128) / 256
// rounded down and limited to 0..255. colorConversion 0 gives BGR565: the 5 high bits of B in bits 0 to 4, the 6
// of G in bits 5 to 10, the 5 of R in bits 11 to 15; 1 gives BGR555: B in bits 0 to 4, G in 5 to 9, R in 10 to 14,
// bit 15 is 0. kelStsRangeErr for another factor or code.
KELAPI KelStatus keliResizeCCRotate_8u_C2R(const Kel8u *pSrc, int srcStep, KeliSize srcSize, Kel16u *pDst, int dstStep, int zoomFactor, int interpolation, int colorConversion, int rotation);

// A 4:2:2 picture becomes a 4:2:0 one and is turned. Samples of chroma are the means of two rows each, halves
// rounded up. The source of C2P3R has rows Cb Y Cr Y; all other planes are in the order Y, Cb, Cr. Width and
// height are even, 2 to 16384, else kelStsSizeErr.
KELAPI KelStatus keliCbYCr422ToYCbCr420_Rotate_8u_C2P3R(const Kel8u *pSrc, int srcStep, KeliSize srcSize, Kel8u *const pDst[3], const int dstStep[3], int rotation);
KELAPI KelStatus keliCbYCr422ToYCbCr420_Rotate_8u_P3R(const Kel8u *const pSrc[3], const int srcStep[3], KeliSize srcSize, Kel8u *const pDst[3], const int dstStep[3], int rotation);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
