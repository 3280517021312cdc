// kelvc_coeffs.h - coefficients of 8x8 blocks: quantisation, inverse transforms, tables of variable-length
// codes.

#ifndef KELVC_COEFFS_H
#define KELVC_COEFFS_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// What kelvc.h says of all functions holds here too. A block is 64 elements in raster order, rows of 8
// without a gap. Where a function works in place, pSrcDst is read and written.

// clang-format off

// Quantisation of MPEG-2 coefficients in place; quantiserScale is that of ISO/IEC 13818-2 Table 7-6, 1 to 112,
// and pInvMatrix holds the reciprocals of the 64 weights. With x = 16 * coefficient * reciprocal /
// quantiserScale, the inter form stores x with its fraction dropped, so that zero has the widest interval; the
// Intra form stores x + 3/8 for positive and x - 3/8 for negative x, the fraction dropped, and leaves the DC
// coefficient, whose divisor depends on intra_dc_precision alone. Results are limited to -2047 to 2047, what
// the escape code can carry. *pCount becomes the number of results other than 0; the Intra form does not count
// DC. x is formed in double precision. kelStsRangeErr for another quantiserScale.
KELAPI KelStatus keliQuantIntra_MPEG2_16s_C1I(Kel16s *pSrcDst, int quantiserScale, const Kel32f *pInvMatrix, int *pCount);
KELAPI KelStatus keliQuant_MPEG2_16s_C1I(Kel16s *pSrcDst, int quantiserScale, const Kel32f *pInvMatrix, int *pCount);

// The inverse in place, exactly ISO/IEC 13818-2 7.4.2 to 7.4.4: (2 * level + k) * weight * quantiserScale / 32
// towards zero, where k is 0 in the Intra form and the sign of the level in the other one; then saturation to
// -2048 to 2047, then mismatch control: an even sum of the block flips the lowest bit of the last coefficient.
// The Intra form takes the DC coefficient as already multiplied; saturation and the sum have it.
KELAPI KelStatus keliQuantInvIntra_MPEG2_16s_C1I(Kel16s *pSrcDst, int quantiserScale, const Kel16s *pMatrix);
KELAPI KelStatus keliQuantInv_MPEG2_16s_C1I(Kel16s *pSrcDst, int quantiserScale, const Kel16s *pMatrix);

// Stores how many of the 64 coefficients are 0.
KELAPI KelStatus keliCountZeros8x8_16s_C1(const Kel16s *pSrc, int *pCount);

// Inverse 8x8 DCT (ISO/IEC 13818-2 Annex A) of a block that comes transposed: the coefficient of vertical
// frequency v and horizontal frequency u is pSrc[8 * u + v]. Accuracy as in IEEE 1180. The samples are rounded
// to the nearest and limited to the range of the destination's type. dstStep is in bytes and at least the 8
// samples of a row. count tells how many coefficients there are in the order of the scan, the last one other
// than 0 included: with 0 the block is all zero, with 1 it is DC alone, and the rest is not read; with 2 to 64
// all are read. kelStsRangeErr for another count.
KELAPI KelStatus keliDCT8x8Inv_AANTransposed_16s_C1R(const Kel16s *pSrc, Kel16s *pDst, int dstStep, int count);
KELAPI KelStatus keliDCT8x8Inv_AANTransposed_16s8u_C1R(const Kel16s *pSrc, Kel8u *pDst, int dstStep, int count);

// The same of a U and a V block, stored side by side as U0 V0 U1 V1...: dstStep is at least 16 samples.
KELAPI KelStatus keliDCT8x8Inv_AANTransposed_16s_P2C2R(const Kel16s *pSrcU, const Kel16s *pSrcV, Kel16s *pDstUV, int dstStep, int countU, int countV);
KELAPI KelStatus keliDCT8x8Inv_AANTransposed_16s8u_P2C2R(const Kel16s *pSrcU, const Kel16s *pSrcV, Kel8u *pDstUV, int dstStep, int countU, int countV);

// Tables for decoding variable-length codes. The source is a list of codes that ends at a length of 0:
// (length, code, value) or, in the RunLevel form, (length, code, run, level); lengths 1 to 20, values and
// levels -32768 to 32767, runs 0 to 127. *ppTable receives the table, which the caller releases by
// keliHuffmanTableFree_32s:
//
// - table[0] is the number n of bits to look at first, at most 8; entry table[1 + bits] belongs to them.
// - An entry is 0 where no code begins so. Else its low byte is a number of bits: below 128 the length of the
//   code, and the upper 24 bits are its value: value or (run << 16) + (level & 65535).
// - With 128 set it is 128 + m, and the code is longer: with the next m bits after the first n, the entry is
//   table[upper 24 bits + those bits].
//
// kelStsRangeErr for a number out of range, a code that does not fit its length, and an empty list,
// kelStsBitStreamErr if a code is the beginning of another, kelStsMemAllocErr without memory; *ppTable is
// written on success only.
KELAPI KelStatus keliHuffmanTableInitAlloc_32s(const Kel32s *pCodes, Kel32s **ppTable);
KELAPI KelStatus keliHuffmanRunLevelTableInitAlloc_32s(const Kel32s *pCodes, Kel32s **ppTable);

// Takes null too.
KELAPI void keliHuffmanTableFree_32s(Kel32s *pTable);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
