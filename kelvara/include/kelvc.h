// kelvc.h - the video coding functions (libkelvc.so).

#ifndef KELVC_H
#define KELVC_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// What all functions share unless their group says otherwise: a pointer may have any address, also one that
// is no multiple of its element's size. Sources are only read. Destinations overlap neither the sources nor
// each other. Arguments are judged before anything is written, in this order: kelStsNullPtrErr for a null
// pointer, kelStsSizeErr for a size out of range, kelStsStepErr for a step that is too small, kelStsRangeErr
// for another argument out of range. Blocks within a block are counted in raster order: from left to right,
// then from the top down.
//
// mcType is the position of the reference block: 0 (FF) full sample, 4 (FH) half a sample down, 8 (HF) half a
// sample to the right, 12 (HH) both. Its first letter is the horizontal position, its second the vertical
// one. Half-sample values are the means of two or four neighbours, halves rounded up (ISO/IEC 13818-2 7.6.4);
// for them the reference is one sample wider, one row higher or both. Any other code is kelStsRangeErr.

// clang-format off

// The version record of this library; it lives as long as the library.
KELAPI const KelLibraryVersion *kelvcGetLibVersion(void);

// Sum of absolute differences between the source block and the reference block at mcType. The name holds
// width x height. Steps are in bytes and at least the width of the block. Stores one sum.
KELAPI KelStatus keliSAD16x16_8u32s(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD, int mcType);
KELAPI KelStatus keliSAD16x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD, int mcType);
KELAPI KelStatus keliSAD8x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD, int mcType);
KELAPI KelStatus keliSAD4x4_8u32s(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD, int mcType);
KELAPI KelStatus keliSAD8x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD, int mcType);
KELAPI KelStatus keliSAD8x4_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD, int mcType);
KELAPI KelStatus keliSAD4x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD, int mcType);
KELAPI KelStatus keliSAD16x16_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep, Kel32s *pSAD, int mcType);
KELAPI KelStatus keliSAD8x8_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep, Kel32s *pSAD, int mcType);
KELAPI KelStatus keliSAD4x4_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep, Kel32s *pSAD, int mcType);

// The same for each 8x8 or 4x4 block of a 16x16 block: stores 4 or 16 sums.
KELAPI KelStatus keliSAD16x16Blocks8x8_8u16u(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD, int mcType);
KELAPI KelStatus keliSAD16x16Blocks4x4_8u16u(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD, int mcType);
KELAPI KelStatus keliSAD16x16Blocks8x8_16u32u_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep, Kel32u *pSAD, int mcType);
KELAPI KelStatus keliSAD16x16Blocks4x4_16u32u_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep, Kel32u *pSAD, int mcType);

// Sum of absolute transformed differences at the full-sample position: each 4x4 block of differences goes
// through the two-dimensional Hadamard transform, and the sums of the magnitudes, halved, are added up. Steps
// are in bytes and at least the width of the block. Stores one sum.
KELAPI KelStatus keliSATD16x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAT);
KELAPI KelStatus keliSATD16x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAT);
KELAPI KelStatus keliSATD8x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAT);
KELAPI KelStatus keliSATD8x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAT);
KELAPI KelStatus keliSATD8x4_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAT);
KELAPI KelStatus keliSATD4x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAT);
KELAPI KelStatus keliSATD4x4_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAT);

// The same with the Hadamard transform of the whole 8x8 block, its sum of magnitudes divided by 4, rounded.
KELAPI KelStatus keliSAT8x8D_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAT);
KELAPI KelStatus keliSAT8x8D_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep, Kel32s *pSAT);

// Two measures of how much the lines of a 16x16 block differ (ISO/IEC 14496-2, adaptive frame/field DCT): the
// sums of the absolute differences between lines n and n + 1, and between lines n and n + 2, each for n from 0
// to 13. The smaller one tells whether to code the block as a frame or as two fields. srcStep is in bytes and
// at least 16 samples.
KELAPI KelStatus keliFrameFieldSAD16x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, Kel32s *pFrameSAD, Kel32s *pFieldSAD);
KELAPI KelStatus keliFrameFieldSAD16x16_16s32s_C1R(const Kel16s *pSrc, int srcStep, Kel32s *pFrameSAD, Kel32s *pFieldSAD);

// Sums of absolute differences at numSAD places in a row: pSAD[i] compares the source block with the
// reference block that starts i samples to the right of pRef. Steps are in bytes; srcStep is at least the
// block's width w, refStep at least the numSAD + w - 1 samples that are read of each row. kelStsSizeErr for
// numSAD below 1.
KELAPI KelStatus keliSAD2x2xN_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD, int numSAD);
KELAPI KelStatus keliSAD4x4xN_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD, int numSAD);
KELAPI KelStatus keliSAD8x8xN_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD, int numSAD);
KELAPI KelStatus keliSAD16x16xN_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD, int numSAD);

// The same, and the index of the smallest sum goes to *pMinIndex: the first one of several.
KELAPI KelStatus keliSAD4x4xNI_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD, int numSAD, Kel32s *pMinIndex);
KELAPI KelStatus keliSAD8x8xNI_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD, int numSAD, Kel32s *pMinIndex);
KELAPI KelStatus keliSAD16x16xNI_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD, int numSAD, Kel32s *pMinIndex);

// Differences source minus prediction of a 16x16 or 8x8 block, summed over each of its 16 or 4 blocks of 4x4.
// Steps are in samples, for 16u data too, and at least the width of the block. Stores 16 or 4 sums and,
// unless pDiff is null, the 256 or 64 differences 4x4 block by block, the 16 of a block row by row: the form
// in which a 4x4 transform takes them. A difference of 16u samples that is out of the 16s range is stored as
// the limit; the sums are exact.
KELAPI KelStatus keliSumsDiff16x16Blocks4x4_8u16s_C1(const Kel8u *pSrc, int srcStep, const Kel8u *pPred, int predStep, Kel16s *pSums, Kel16s *pDiff);
KELAPI KelStatus keliSumsDiff8x8Blocks4x4_8u16s_C1(const Kel8u *pSrc, int srcStep, const Kel8u *pPred, int predStep, Kel16s *pSums, Kel16s *pDiff);
KELAPI KelStatus keliSumsDiff16x16Blocks4x4_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pPred, int predStep, Kel32s *pSums, Kel16s *pDiff);
KELAPI KelStatus keliSumsDiff8x8Blocks4x4_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pPred, int predStep, Kel32s *pSums, Kel16s *pDiff);

// Test of a 16x16 block for edges. Counts the pairs of samples, next to each other in a row or in a column of
// the block, that differ by more than edgePelDifference; *pResult is 1 if there are more than edgePelCount of
// them, else 0. srcStep is in samples and at least 16. kelStsRangeErr for a negative difference or count.
KELAPI KelStatus keliEdgesDetect16x16_8u_C1R(const Kel8u *pSrc, int srcStep, int edgePelDifference, int edgePelCount, Kel8u *pResult);

// clang-format on

#ifdef __cplusplus
}
#endif

// The families that have a header of their own; what is said above holds for them too.
#include "kelvc_avs.h"
#include "kelvc_blocks.h"
#include "kelvc_coeffs.h"
#include "kelvc_deblocking.h"
#include "kelvc_dv.h"
#include "kelvc_dvpicture.h"
#include "kelvc_h263.h"
#include "kelvc_h26xbits.h"
#include "kelvc_interleaved.h"
#include "kelvc_interpolate.h"
#include "kelvc_intra.h"
#include "kelvc_motion.h"
#include "kelvc_mpeg4.h"
#include "kelvc_mpeg4bits.h"
#include "kelvc_picture.h"
#include "kelvc_transform.h"
#include "kelvc_vc1.h"
#include "kelvc_vc1motion.h"

#endif
