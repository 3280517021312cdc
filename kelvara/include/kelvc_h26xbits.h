// kelvc_h26xbits.h - H.261 and H.263: quantisation, and coefficients in bit streams.

#ifndef KELVC_H26XBITS_H
#define KELVC_H26XBITS_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// What kelvc.h says of all functions holds here too. A block is 64 elements without a gap. QP is QUANT, 1
// to 31. The flags are 0 or 1: advIntraFlag for advanced intra coding (ITU-T H.263 Annex I), modQuantFlag
// for modified quantisation (Annex T). kelStsRangeErr for any other value.

// clang-format off

// Quantisation of H.263 coefficients in place. What limits a level is its escape code: -127 to 127, with
// modQuantFlag -1024 to 1023. *pCountNonZero becomes the number of levels other than 0.
//
// - Inter: (|coefficient| - QP / 2) / (2 * QP), the fraction dropped.
// - Intra: |coefficient| / (2 * QP), the fraction dropped. Element 0 is DC: to the nearest of 8 * level for
//   the levels 1 to 254; it is not counted.
// - Intra with advIntraFlag: to the nearest of 2 * QP * level, DC too, and DC is counted.
KELAPI KelStatus keliQuantIntra_H263_16s_C1I(Kel16s *pSrcDst, int QP, int *pCountNonZero, int advIntraFlag, int modQuantFlag);
KELAPI KelStatus keliQuantInter_H263_16s_C1I(Kel16s *pSrcDst, int QP, int *pCountNonZero, int modQuantFlag);

// The inverse in place, exactly ITU-T H.263 6.2.1 and 6.2.2, of elements 0 to indxLastNonZero, -1 to 63;
// the others stay. A level other than 0 becomes QP * (2 * |level| + 1), less 1 for an even QP, with its
// sign; DC of the Intra form becomes 8 * level; results are limited to -2048 to 2047. With advIntraFlag all
// become 2 * QP * level (Annex I): the prediction is added to these and the sum limited, so that only the
// 16s range limits here. Levels of any size are taken, so that modQuantFlag makes no difference.
KELAPI KelStatus keliQuantInvIntra_H263_16s_C1I(Kel16s *pSrcDst, int indxLastNonZero, int QP, int advIntraFlag, int modQuantFlag);
KELAPI KelStatus keliQuantInvInter_H263_16s_C1I(Kel16s *pSrcDst, int indxLastNonZero, int QP, int modQuantFlag);

// Bit streams. *ppBitStream is the byte and *pBitOffset the bit in it, 0 (the highest) to 7, where the
// block's codes begin; both move behind its last code. Encoders write no byte but those with bits of the
// block, and leave the other bits of these. Decoders read no byte but those with bits of the block, and
// whatever the bits are never more than 265 bytes. They take an escape code for any event, also for one
// with a shorter code; codes that no block can have are kelStsBitStreamErr. On any error nothing is
// written, and the position stays.
//
// scan is the order of the block in memory: -1 none, the order of the codes; else raster order, brought
// into that of the codes by a scan, 0 zigzag. H.263 has 1 alternate-vertical and 2 alternate-horizontal too
// (Annex I). Any other is kelStsRangeErr.
//
// Encoders take countNonZero, 0 to 64, as the number of levels other than 0 to be coded; behind that many
// the rest is taken as 0. kelStsRangeErr for another number, and for a level out of the range of the escape
// code. A DC level without a code, below 1 or above 254, takes the nearest one that has one.
//
// Decoders write all 64 levels, except where DC is not theirs. *pIndxLastNonZero is the place of the last
// level other than 0 in the order of the codes.

// H.261 (ITU-T H.261 4.2.4.1, Table 5). Intra: DC in 8 bits, which countNonZero counts unless it is 0, then
// the others up to the end of block. The Inter form of a block without levels writes nothing, as such a
// block is not in the stream.
KELAPI KelStatus keliEncodeCoeffsIntra_H261_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset, int countNonZero, int scan);
KELAPI KelStatus keliEncodeCoeffsInter_H261_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset, int countNonZero, int scan);
KELAPI KelStatus keliDecodeCoeffsIntra_H261_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int scan);
KELAPI KelStatus keliDecodeCoeffsInter_H261_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int scan);

// Decoded, brought from the zigzag scan into raster order, and turned into coefficients (4.2.4.1): as the
// inverse quantisation of H.263 above.
KELAPI KelStatus keliReconstructCoeffsIntra_H261_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int QP);
KELAPI KelStatus keliReconstructCoeffsInter_H261_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int QP);

// DC of an intra block of H.263 in 8 bits (ITU-T H.263 5.4.1, Table 15), as a level.
KELAPI KelStatus keliEncodeDCIntra_H263_16s1u(Kel16s dcCoeff, Kel8u **ppBitStream, int *pBitOffset);
KELAPI KelStatus keliDecodeDCIntra_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pDcCoeff);

// H.263 (ITU-T H.263 5.4.2, Table 16; with advIntraFlag the Intra forms by Table I.2). Without advIntraFlag
// element 0 of an intra block is DC: it is neither coded nor counted nor written here. With it, it is coded
// with the others. A block without levels is not in the stream, and nothing is written for it. With
// modQuantFlag levels beyond -127 to 127 take the extended escape code (T.4).
KELAPI KelStatus keliEncodeCoeffsIntra_H263_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset, int countNonZero, int advIntraFlag, int modQuantFlag, int scan);
KELAPI KelStatus keliEncodeCoeffsInter_H263_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset, int countNonZero, int modQuantFlag, int scan);
KELAPI KelStatus keliDecodeCoeffsIntra_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int advIntraFlag, int modQuantFlag, int scan);
KELAPI KelStatus keliDecodeCoeffsInter_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int modQuantFlag, int scan);

// Decoded and turned into coefficients as by the inverse quantisation above. The Inter form brings them
// from the zigzag scan into raster order. The Intra form reads DC first, unless advIntraFlag is set, then
// the others if cbp is not 0, which tells that there are any; *pIndxLastNonZero of a block with nothing but
// DC is 0, of one with nothing at all -1.
KELAPI KelStatus keliReconstructCoeffsIntra_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int cbp, int QP, int advIntraFlag, int scan, int modQuantFlag);
KELAPI KelStatus keliReconstructCoeffsInter_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero, int QP, int modQuantFlag);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
