// kelvc_mpeg4.h - the video coding functions of MPEG-4 pictures: quarter samples, overlapped compensation,
// sprites and global motion, post-filters.

#ifndef KELVC_MPEG4_H
#define KELVC_MPEG4_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. All steps are in bytes and at least a row of what is read or
// written. The standard is ISO/IEC 14496-2. rounding is vop_rounding_type: 0 where halves in the means of
// neighbouring samples are rounded up and 1 where they are rounded down; any other value is kelStsRangeErr.

// A motion vector in half or quarter samples, to the right and down.
typedef struct {
    Kel16s x, y;
} KeliMotionVector;

// What keliWarpInit_MPEG4 makes of a set of warping points. Its memory is the caller's, any bytes of the size
// that keliWarpGetSize_MPEG4 tells, and may be copied and thrown away as such.
typedef struct KeliWarpSpec_MPEG4 KeliWarpSpec_MPEG4;

// clang-format off

// Copies of a block at a quarter-sample position (7.6.2.2). acc holds the lowest bits of a motion vector in
// quarter samples: bits 0 and 1 the quarters to the right, bits 2 and 3 the quarters down; 0 to 15, else
// kelStsRangeErr. With a quarter to the right the source is one sample wider than the block, with one down a
// row higher, and never more: the 8-tap filter sees the samples behind these borders as their mirror image.
KELAPI KelStatus keliCopy8x8QP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc, int rounding);
KELAPI KelStatus keliCopy16x8QP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc, int rounding);
KELAPI KelStatus keliCopy16x16QP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc, int rounding);

// Overlapped motion compensation of a luma block (7.6.6): the weighted mean of the predictions by its own
// vector and by those of its neighbours, the upper and lower one for the halves above and below, the left and
// right one for the halves beside. Vectors are in half samples, for QP in quarter samples; pSrc is the
// block's own place in the reference, and the block that a vector points to must exist around it, one sample
// wider or one row higher where the vector has a fraction. In the 16x16 form, for pictures of reduced
// resolution, each weight is that of 2x2 samples. For a neighbour that has no vector, the caller passes the
// block's own.
KELAPI KelStatus keliOBMC8x8HP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, const KeliMotionVector *pMVCur, const KeliMotionVector *pMVLeft, const KeliMotionVector *pMVRight, const KeliMotionVector *pMVAbove, const KeliMotionVector *pMVBelow, int rounding);
KELAPI KelStatus keliOBMC16x16HP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, const KeliMotionVector *pMVCur, const KeliMotionVector *pMVLeft, const KeliMotionVector *pMVRight, const KeliMotionVector *pMVAbove, const KeliMotionVector *pMVBelow, int rounding);
KELAPI KelStatus keliOBMC8x8QP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, const KeliMotionVector *pMVCur, const KeliMotionVector *pMVLeft, const KeliMotionVector *pMVRight, const KeliMotionVector *pMVAbove, const KeliMotionVector *pMVBelow, int rounding);

// Bytes of a description.
KELAPI KelStatus keliWarpGetSize_MPEG4(int *pSpecSize);

// Makes the description of a warping (7.8.4, 7.8.5). pDU and pDV hold the differentials of numWarpingPoints
// points, 0 to 4, in half samples, -16383 to 16383. spriteType is 1 for a static sprite and 2 for global
// motion, which has 3 points at most; warpingAccuracy 0 to 3 stands for 1/2 to 1/16 sample; quarterSample, 0
// or 1, is the unit of the vectors of keliCalcGlobalMV_MPEG4, and fcode, 1 to 7, their range. spriteRect is
// the place of the sprite, for global motion of the reference picture, and vopRect that of the picture to be
// made, in luma samples: width and height 1 to 8191, else kelStsSizeErr, x and y even and -4096 to 4094.
// kelStsRangeErr for all else that is out of range, and for four points where the sprite would turn over
// within the picture.
KELAPI KelStatus keliWarpInit_MPEG4(KeliWarpSpec_MPEG4 *pSpec, const int *pDU, const int *pDV, int numWarpingPoints, int spriteType, int warpingAccuracy, int rounding, int quarterSample, int fcode, const KeliRect *spriteRect, const KeliRect *vopRect);

// Warps a part of the picture from the sprite (7.8.6). pSrc is the sprite's first sample and pDst the first
// of the part. dstRect is that part, for chroma too in luma samples: it lies within vopRect, else
// kelStsSizeErr. Chroma planes have half the columns and rows, a half rounded up; x and y of a part are even
// for them, else kelStsRangeErr. Positions outside the sprite take its nearest sample. kelStsContextErr for a
// description that keliWarpInit_MPEG4 has not made.
KELAPI KelStatus keliWarpLuma_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, const KeliRect *dstRect, const KeliWarpSpec_MPEG4 *pSpec);
KELAPI KelStatus keliWarpChroma_MPEG4_8u_P2R(const Kel8u *pSrcCb, int srcCbStep, const Kel8u *pSrcCr, int srcCrStep, Kel8u *pDstCb, int dstCbStep, Kel8u *pDstCr, int dstCrStep, const KeliRect *dstRect, const KeliWarpSpec_MPEG4 *pSpec);

// The motion vector of the macroblock whose first sample is xOffset to the right of the picture's and yOffset
// below: the mean of the motion of its 256 samples in half or quarter samples, to the nearest, halves away
// from zero, limited to the range of fcode (7.8). kelStsRangeErr for a place outside vopRect, and
// where a sprite of four points would turn over within the macroblock. kelStsContextErr as above.
KELAPI KelStatus keliCalcGlobalMV_MPEG4(int xOffset, int yOffset, KeliMotionVector *pGMV, const KeliWarpSpec_MPEG4 *pSpec);

// Changes the brightness of a sprite in place (7.8.6): each sample times 1 + 0.01 * brightnessChangeFactor,
// to the nearest, halves up, limited to 0..255. kelStsSizeErr for a width or height below 1, kelStsRangeErr
// for a factor outside -112..1648.
KELAPI KelStatus keliChangeSpriteBrightness_MPEG4_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int width, int height, int brightnessChangeFactor);

// Deblocking post-filter for the edge of an 8x8 block in place (Annex F, deblocking filter). pSrcDst is the
// first sample behind the edge. Eight lines across the edge are filtered; of each, five samples in front of
// the edge and five behind it are read, and all but the outermost may change. HorEdge: the edge is
// horizontal, lines are columns, the step is at least 8; VerEdge: it is vertical, lines are rows, the step is
// at least 10. A line with at least THR2 steps of at most THR1 takes the DC offset mode, others the default
// mode; the standard has 2 and 6. QP is 1 to 31; kelStsRangeErr for another and for negative thresholds.
KELAPI KelStatus keliFilterDeblocking8x8HorEdge_MPEG4_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP, int THR1, int THR2);
KELAPI KelStatus keliFilterDeblocking8x8VerEdge_MPEG4_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP, int THR1, int THR2);

// Deringing post-filter (Annex F, deringing filter). First the thresholds of a macroblock's four luma blocks,
// Cb and Cr: pThresholds gets 6. Steps are at least 16 for luma and 8 for chroma.
KELAPI KelStatus keliFilterDeringingThreshold_MPEG4_8u_P3R(const Kel8u *pSrcY, int srcYStep, const Kel8u *pSrcCb, int srcCbStep, const Kel8u *pSrcCr, int srcCrStep, Kel32s *pThresholds);

// Then, block by block: a sample whose 3x3 surroundings lie all at or above the threshold or all below it
// becomes their weighted mean, but moves by QP / 2 at most. Of the source the samples around the block are
// read too: srcStep is at least 10. QP is 1 to 31 and threshold 0 to 255, else kelStsRangeErr.
KELAPI KelStatus keliFilterDeringingSmooth8x8_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int QP, int threshold);

// Sum of the absolute deviations of a block's samples from their mean, the mean's fraction dropped: what is
// compared with a sum of absolute differences to choose between intra and inter coding. Stores one sum.
KELAPI KelStatus keliMeanAbsDev8x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, Kel32s *pMeanAbsDev);
KELAPI KelStatus keliMeanAbsDev16x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, Kel32s *pMeanAbsDev);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
