// kelvc_intra.h - the video coding functions that predict intra blocks and put macroblocks together, for
// H.264.

#ifndef KELVC_INTRA_H
#define KELVC_INTRA_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. Samples are predicted and stored in place: pSrcDst is the block's
// first sample in a plane that holds its neighbours, too. Steps are in bytes and at least the width of the
// block: 16 for luma, 8 for chroma, 4 for a block of 4x4. With that least step the left neighbours of a row
// are the last samples of the row above it; they are read when the block's turn comes, before it is written.
//
// availability is a set of bits for the neighbours of the block or macroblock that exist and may be used: 1
// upper, 2 left, 32 upper left, 64 upper right. Other bits are not looked at. What is not available is not
// read. Samples to the upper right of a 4x4 or 8x8 block that are not available are the last one above it.
//
// Modes are those of ITU-T H.264. Blocks of 4x4 and 8x8 (8.3.1, 8.3.2): 0 vertical, 1 horizontal, 2 DC, 3
// diagonal down left, 4 diagonal down right, 5 vertical right, 6 horizontal down, 7 vertical left, 8
// horizontal up. Modes 0, 3 and 7 need the upper neighbour, 1 and 8 the left one, 4, 5 and 6 the upper, the
// left and the upper left one. 16x16 (8.3.3): 0 vertical, 1 horizontal, 2 DC, 3 plane. Chroma (8.3.4): 0 DC,
// 1 horizontal, 2 vertical, 3 plane. The plane needs the upper, the left and the upper left neighbour, DC
// none. kelStsRangeErr for another mode, and for an availability that does not permit the mode, also if it is
// that of one block of several; then nothing is written.

// clang-format off

// Predicts one block: 4x4, 16x16 luma, or 8x8 chroma.
KELAPI KelStatus keliPredictIntra_4x4_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int predMode, int availability);
KELAPI KelStatus keliPredictIntra_16x16_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int predMode, int availability);
KELAPI KelStatus keliPredictIntraChroma8x8_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int predMode, int availability);

// Macroblocks: prediction, inverse quantisation, inverse transform, sum (8.5). The inter forms find the
// prediction in the plane, the others make it.
//
// *ppSrcDstCoeff points to the coefficients of the coded blocks alone, one block behind the other, each in
// raster order. They stay; the pointer is moved to the first coefficient behind them, or stays after an error.
// cbp tells which blocks are coded. Luma: bit 0 is the block of 16 DC coefficients, which only a 16x16
// prediction has, bits 1 to 16 are the 4x4 blocks in the order of 6.4.3. A block behind a DC block has 16
// coefficients as any other; the first is not looked at. With 8x8 blocks, bits 1 to 4 are these, 64
// coefficients each. Chroma of 4:2:0: bits 0 and 1 are the 4 DC coefficients of U and of V, bits 2 to 5 the 4x4
// blocks of U, bits 6 to 9 those of V. Blocks are stored in the order of their bits. DC coefficients are in
// raster order of their blocks. Other bits are not looked at.
//
// QP is that of the plane, from 0 to 51, for chroma QP'c; else kelStsRangeErr. pQuantTable holds the level
// scales (8.5.9) for QP modulo 6, 16 values in raster order, or 64 for 8x8 blocks; null: those of the flat
// list of 16. With a bypassFlag other than 0, the coefficients are differences of samples (8.5.15), and
// quantiser and table are not used.
KELAPI KelStatus keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, int predMode, Kel32u cbp, int QP, int availability, const Kel16s *pQuantTable, int bypassFlag);
KELAPI KelStatus keliReconstructLumaIntra4x4MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, const Kel32s *pPredModes, Kel32u cbp, int QP, int availability, const Kel16s *pQuantTable, int bypassFlag);
KELAPI KelStatus keliReconstructLumaIntra8x8MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, const Kel32s *pPredModes, Kel32u cbp, int QP, int availability, const Kel16s *pQuantTable, int bypassFlag);
KELAPI KelStatus keliReconstructLumaInter4x4MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, Kel32u cbp, int QP, const Kel16s *pQuantTable, int bypassFlag);
KELAPI KelStatus keliReconstructLumaInter8x8MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, Kel32u cbp, int QP, const Kel16s *pQuantTable, int bypassFlag);

// U and V have a step in common. They may be the same plane: U is stored before V is predicted.
KELAPI KelStatus keliReconstructChromaIntra4x4MB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU, Kel8u *pSrcDstV, int srcDstStep, int predMode, Kel32u cbp, int QPu, int QPv, int availability, const Kel16s *pQuantTableU, const Kel16s *pQuantTableV, int bypassFlag);
KELAPI KelStatus keliReconstructChromaInter4x4MB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU, Kel8u *pSrcDstV, int srcDstStep, Kel32u cbp, int QPu, int QPv, const Kel16s *pQuantTableU, const Kel16s *pQuantTableV, int bypassFlag);

// Field macroblocks beside a pair of frame macroblocks: the upper and the lower half of the left neighbour
// belong to different macroblocks. In availability, bit 2 is the upper half and bit 4 the lower one. Chroma has
// a set of bits for each half; only the left neighbour is taken from that of the lower one.
KELAPI KelStatus keliReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, const Kel32s *pPredModes, Kel32u cbp, int QP, int availability, const Kel16s *pQuantTable, int bypassFlag);
KELAPI KelStatus keliReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, const Kel32s *pPredModes, Kel32u cbp, int QP, int availability, const Kel16s *pQuantTable, int bypassFlag);
KELAPI KelStatus keliReconstructLumaIntraHalfMB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, const Kel32s *pPredModes, Kel32u cbp, int QP, int availability);
KELAPI KelStatus keliReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU, Kel8u *pSrcDstV, int srcDstStep, int predMode, Kel32u cbp, int QPu, int QPv, int availability, int lowerAvailability, const Kel16s *pQuantTableU, const Kel16s *pQuantTableV, int bypassFlag);
KELAPI KelStatus keliReconstructChromaIntraHalfsMB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU, Kel8u *pSrcDstV, int srcDstStep, int predMode, Kel32u cbp, int QP, int availability, int lowerAvailability);

// The forms of the profiles without quantisation tables: always the flat list, luma in blocks of 4x4. `missing`
// has the bits of availability set for the neighbours that are not available. The chroma form has all of them.
KELAPI KelStatus keliReconstructLumaIntra16x16MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, int predMode, Kel32u cbp, int QP, int missing);
KELAPI KelStatus keliReconstructLumaIntraMB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, const Kel32s *pPredModes, Kel32u cbp, int QP, int missing);
KELAPI KelStatus keliReconstructLumaInterMB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep, Kel32u cbp, int QP);
KELAPI KelStatus keliReconstructChromaIntraMB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU, Kel8u *pSrcDstV, int srcDstStep, int predMode, Kel32u cbp, int QP);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
