// kelvc_mpeg4bits.h - MPEG-4: quantisation, and coefficients in bit streams.

#ifndef KELVC_MPEG4BITS_H
#define KELVC_MPEG4BITS_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// What kelvc.h says of all functions holds here too. The standard is ISO/IEC 14496-2. A block is 64 elements
// without a gap.

// A quantiser: what the Init functions below make of a matrix. Its memory is the caller's, any bytes of the
// size that the matching GetSize function tells, and may be copied and thrown away as such.
typedef struct KeliQuantSpec_MPEG4 KeliQuantSpec_MPEG4;

// clang-format off

// The size of a quantiser in bytes.
KELAPI KelStatus keliQuantInvIntraGetSize_MPEG4(int *pSpecSize);
KELAPI KelStatus keliQuantInvInterGetSize_MPEG4(int *pSpecSize);
KELAPI KelStatus keliQuantIntraGetSize_MPEG4(int *pSpecSize);
KELAPI KelStatus keliQuantInterGetSize_MPEG4(int *pSpecSize);

// A quantiser for the function of the same name. pQuantMatrix holds the 64 weights of the first
// quantisation method in raster order; null selects the second one, which has none. bitsPerPixel is 4 to 12.
// kelStsRangeErr for another number and for a weight of 0.
KELAPI KelStatus keliQuantInvIntraInit_MPEG4(const Kel8u *pQuantMatrix, KeliQuantSpec_MPEG4 *pSpec, int bitsPerPixel);
KELAPI KelStatus keliQuantInvInterInit_MPEG4(const Kel8u *pQuantMatrix, KeliQuantSpec_MPEG4 *pSpec, int bitsPerPixel);
KELAPI KelStatus keliQuantIntraInit_MPEG4(const Kel8u *pQuantMatrix, KeliQuantSpec_MPEG4 *pSpec, int bitsPerPixel);
KELAPI KelStatus keliQuantInterInit_MPEG4(const Kel8u *pQuantMatrix, KeliQuantSpec_MPEG4 *pSpec, int bitsPerPixel);

// For all that follows: QP is quantiser_scale, 1 to 511 (quant_precision has up to 9 bits); blockType is 0 for
// luma and 1 for chroma, which have different steps of DC (Table 7-1). kelStsRangeErr for other values,
// kelStsContextErr for a quantiser that is not of the function's own kind.
//
// Inverse quantisation of a block in raster order, in place, exactly 7.4.4. With W the weight, both quotients
// dropping their fraction:
//
// - first method: (2 * level + k) * W * QP / 16, k the sign of the level in inter blocks and 0 in intra blocks;
// - second method: (2 * |level| + 1) * QP, less 1 for an even QP, with the level's sign; 0 for 0;
// - DC of intra blocks: level * dc_scaler;
// - saturation to -2^(bitsPerPixel + 3) to 2^(bitsPerPixel + 3) - 1;
// - first method: mismatch control, an even sum of the block flips the lowest bit of the last coefficient.
//
// indxLastNonZero, 0 to 63, is the place of the last level other than 0 in the order of whichever scan; those
// further back are 0. Elements that no scan reaches up to there stay as they are and count for nothing, save the
// last one in mismatch control.
KELAPI KelStatus keliQuantInvIntra_MPEG4_16s_C1I(Kel16s *pCoeffs, int indxLastNonZero, const KeliQuantSpec_MPEG4 *pSpec, int QP, int blockType);
KELAPI KelStatus keliQuantInvInter_MPEG4_16s_C1I(Kel16s *pCoeffs, int indxLastNonZero, const KeliQuantSpec_MPEG4 *pSpec, int QP);

// Quantisation of a block in raster order, in place; the standard leaves it to the encoder. *pCountNonZero
// becomes the number of levels other than 0, DC counted too. With a the magnitude, a // b the quotient rounded to
// the nearest, halves up, and a / b without its fraction:
//
// - first method, intra: (16 * a // W + 3 * QP // 4) / (2 * QP);
// - first method, inter: (16 * a // W) / (2 * QP);
// - second method, intra: a / (2 * QP);
// - second method, inter: (a - QP / 2) / (2 * QP), 0 if that is negative;
// - DC of intra blocks: a // dc_scaler.
//
// Levels are limited to -2047 to 2047, what the escape codes carry, DC of intra blocks to
// -2^(bitsPerPixel + 3) / dc_scaler to (2^(bitsPerPixel + 3) - 1) / dc_scaler, so that it does not saturate.
KELAPI KelStatus keliQuantIntra_MPEG4_16s_C1I(Kel16s *pCoeffs, const KeliQuantSpec_MPEG4 *pSpec, int QP, int *pCountNonZero, int blockType);
KELAPI KelStatus keliQuantInter_MPEG4_16s_C1I(Kel16s *pCoeffs, const KeliQuantSpec_MPEG4 *pSpec, int QP, int *pCountNonZero);

// Bit streams. *ppBitStream is the byte and *pBitOffset the bit in it, 0 (the highest) to 7, where the block's
// codes begin; both move behind its last code. Encoders change no bit but those of the block. Decoders only read,
// and no byte but those with bits of the block; codes that no block can have are kelStsBitStreamErr, and in the
// search for one that there is not they look at no more bits than the longest has. On any error nothing is
// written, and the position stays.
//
// - rvlcFlag is 0 for the variable-length codes of Tables B-16 (intra) and B-17 (inter) with their three escape
//   forms, 1 for the reversible ones of Table B-23 with theirs.
// - dcVlcFlag of intra blocks is 1 if DC has a code of its own (below): the block begins at place 1, and element 0 is
//   neither coded nor written. With 0 it begins with DC at place 0 (use_intra_dc_vlc).
// - scan is the order of the block in memory: -1 none, the order of the codes; else raster order, brought into that
//   of the codes by the scan 0 zigzag, 1 alternate-vertical or 2 alternate-horizontal (7.4.2).
//
// kelStsRangeErr for any other value.

// countNonZero, 0 to 64, is the number of levels other than 0 to be coded; behind that many the rest is taken as 0.
// A block without a level writes nothing, as such a block is not in the stream. kelStsRangeErr for a level out of
// -2047 to 2047. The form of the code is the first that fits: the table's, escape 1, 2, 3.
KELAPI KelStatus keliEncodeCoeffsIntra_MPEG4_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset, int countNonZero, int rvlcFlag, int dcVlcFlag, int scan);
KELAPI KelStatus keliEncodeCoeffsInter_MPEG4_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset, int countNonZero, int rvlcFlag, int scan);

// *pIndxLastNonZero becomes the place of the last level in the order of the codes.
KELAPI KelStatus keliDecodeCoeffsIntra_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int rvlcFlag, int dcVlcFlag, int scan);
KELAPI KelStatus keliDecodeCoeffsInter_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int rvlcFlag, int scan);

// Reversible codes read from the block's end: the position is that of the last bit of the block, and moves to the
// bit in front of its first one, which may be in the byte before. The block begins behind the code in front of it
// that has LAST set, the end of another block, as all codes are read up to that one; only a block that has a level
// at every place needs none. Levels are stored in the order of the codes, as with scan -1.
KELAPI KelStatus keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int dcVlcFlag);
KELAPI KelStatus keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero);

// An inter block decoded and, by the quantiser of keliQuantInvInterInit_MPEG4 and QP, dequantised. With scan -1
// the block stays in the order of the codes and takes the weights in that order.
KELAPI KelStatus keliReconstructCoeffsInter_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int rvlcFlag, int scan, const KeliQuantSpec_MPEG4 *pSpec, int QP);

// The code of DC of an intra block: dct_dc_size (Table B-13 luma, B-14 chroma), the differential (B-15), and behind
// one of more than 8 bits a marker of 1. kelStsRangeErr for a DC out of -4095 to 4095.
KELAPI KelStatus keliEncodeDCIntra_MPEG4_16s1u(Kel16s dcCoeff, Kel8u **ppBitStream, int *pBitOffset, int blockType);
KELAPI KelStatus keliDecodeDCIntra_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pDcCoeff, int blockType);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
