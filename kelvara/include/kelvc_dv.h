// kelvc_dv.h - the video of DV (SMPTE 314M, IEC 61834-2) and of DV100 (SMPTE 370M).

#ifndef KELVC_DV_H
#define KELVC_DV_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// What kelvc.h says of all functions holds here too. A block is 64 elements in raster order, rows of 8
// without a gap. Where a function works in place, pSrcDst is read and written. Coefficients are those of an
// orthonormal transform, before the encoder's weighting.

// clang-format off

// Inverse quantisation of DV coefficients in place: each is multiplied by its step of the 64 of pMatrix and
// limited to the 16s range. DV does not quantise DC: its step is 1.
KELAPI KelStatus keliQuantInv_DV_16s_C1I(Kel16s *pSrcDst, const Kel16s *pMatrix);

// Inverse quantisation and weighting in place: level * step * inverse weight / 4096, rounded to the nearest,
// halves up, and limited to the 16s range. pDeQuantTable holds the 64 steps, that of DC is 1; pWeightInvTable
// holds 4096 / weight for the 64 weights of the block's mode, 1/4 for DC and 0.26 to 0.5 for the others.
KELAPI KelStatus keliQuantWeightBlockInv_DV_16s_C1I(Kel16s *pSrcDst, const Kel16s *pDeQuantTable, const Kel16s *pWeightInvTable);

// The same of DV100, whose steps do not depend on the place: level * quantStep * weight / 32, DC without
// quantStep. pWeightInvTable holds the 64 weights of the format, 128 for DC. quantStep is that of the
// quantisation number doubled as often as the class number says: kelStsRangeErr unless it is 1 to 416.
KELAPI KelStatus keliQuantWeightBlockInv_DV100_16s_C1I(Kel16s *pSrcDst, const Kel16s *pWeightInvTable, int quantStep);

// The 2-4-8 transform of DV in place, orthonormal as a whole: the four sums and the four differences of the
// lines 2z and 2z + 1 go, each set by itself, through an 8-point transform across and a 4-point one down.
// Coefficients of the sums are rows 0 to 3, of the differences rows 4 to 7. Results are rounded to the nearest
// and limited to the 16s range.
KELAPI KelStatus keliDCT2x4x8Frw_16s_C1I(Kel16s *pSrcDst);
KELAPI KelStatus keliDCT2x4x8Inv_16s_C1I(Kel16s *pSrcDst);

// A picture of half the width and height out of the coefficients of a 2-4-8 block: the 4x4 coefficients of
// lowest horizontal frequency of the sums, halved, go through a 4-point transform each way. So a row of the
// result is the mean of two lines, one of each field, and a flat block keeps its level. The differences are
// not read. The 16 samples are stored in rows of 4 without a gap, rounded to the nearest and limited to the
// 16s range; the other 48 elements stay.
KELAPI KelStatus keliDCT8x4x2To4x4Inv_DV_16s_C1I(Kel16s *pSrcDst);

// The table for the codes of DV in the form that kelvc_coeffs.h tells of the RunLevel codes; the values have
// the sign and the codes the sign bit. pCodes1 and pCodes2 are one list in two parts, each ended by 0. An
// element is a code without its sign bit, with a 1 in front so that leading zeros count, in the upper half, its
// run in the third byte and its amplitude in the lowest. No sign follows an amplitude of 0: that is run + 1
// zeros, or for run 127 the end of the block. Errors as there.
KELAPI KelStatus keliInitAllocHuffmanTable_DV_32u(const Kel32u *pCodes1, const Kel32u *pCodes2, Kel32u **ppTable);
KELAPI void keliFreeHuffmanTable_DV_32u(Kel32u *pTable);

// Decodes a compressed video segment of 25 Mbit/s: five DIF blocks of 80 bytes, each a macroblock. Of the 80
// bytes, 3 are the ID, which is not read, one is the status in its upper and the quantisation number in its
// lower half, then come the areas of the blocks Y0 to Y3 with 14 bytes and of CR and CB with 10. An area starts
// with DC (9 bits, signed), the mode (1 bit, 1 for 2-4-8) and the class number (2 bits); the codes follow in
// three passes: what does not fit into a block's own area goes on in the spare bits of the macroblock, and then
// in those of the segment.
//
// pDstBlocks receives 30 blocks of 64 levels, not yet dequantised, the six of a macroblock behind each other.
// The level at place i of the scan goes to pDezigzag[i], in a 2-4-8 block to pDezigzag[64 + i], DC to element
// 0: the 128 positions are 0 to 63, else kelStsRangeErr. pBlParams receives for each block what is needed to go
// on:
//
// - bits 0 to 3: the quantisation number
// - bits 4 and 5: the class number
// - bit 6: the mode
// - bits 8 to 14: how many places of the scan there are up to the last level other than 0, that one included
// - bit 31: broken, that is, an unknown code, a level behind the 64th place or no end of the block
//
// A broken block keeps the levels in front of the break. Nobody can tell then where the spare bits go on: the
// other blocks of its macroblock that had not ended, and those of the macroblocks behind it that wait for the
// spare bits of the segment, are broken too. The result is kelStsBitStreamErr, with all blocks written all the
// same.
KELAPI KelStatus keliHuffmanDecodeSegment_DV_8u16s(const Kel8u *pSrc, const Kel32u *pDezigzag, const Kel32u *pHuffTable, Kel16s *pDstBlocks, Kel32u *pBlParams);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
