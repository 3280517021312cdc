// kelvc_interleaved.h - the functions of interleaved chroma: rows of pairs of samples, U in front of V.

#ifndef KELVC_INTERLEAVED_H
#define KELVC_INTERLEAVED_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share and what mcType is, kelvc_motion.h what roundControl is. All steps
// are in bytes and at least a row: of 16 samples for 8 interleaved pairs, of 8 samples or words for one
// colour. At a half-sample position the interleaved reference is one pair wider, one row higher or both.

// clang-format off

// Motion compensation of 8x8 or 8x4 pairs: the prediction from the interleaved reference and the residual, a
// block of 8 words a row for each colour, are added, limited to 0..255 and stored interleaved (ISO/IEC 13818-2
// 7.6.8). The residuals have one step.
KELAPI KelStatus keliMC8x8_16s8u_P2C2R(const Kel8u *pRef, int refStep, const Kel16s *pResidualU, const Kel16s *pResidualV, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);
KELAPI KelStatus keliMC8x4_16s8u_P2C2R(const Kel8u *pRef, int refStep, const Kel16s *pResidualU, const Kel16s *pResidualV, int residualStep, Kel8u *pDst, int dstStep, int mcType, int roundControl);

// The same with the mean of a forward and a backward prediction.
KELAPI KelStatus keliMC8x8B_16s8u_P2C2R(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidualU, const Kel16s *pResidualV, int residualStep, Kel8u *pDst, int dstStep, int roundControl);
KELAPI KelStatus keliMC8x4B_16s8u_P2C2R(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, const Kel16s *pResidualU, const Kel16s *pResidualV, int residualStep, Kel8u *pDst, int dstStep, int roundControl);

// Sums of absolute differences of 8x8 pairs, a sum for each colour, the reference at mcType.
KELAPI KelStatus keliSAD8x8_8u32s_C2R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel32s *pSadU, Kel32s *pSadV, int mcType);

// Differences source minus prediction of 8x8 pairs. pSums gets their sums over each 4x4 block, a row of four
// for U and sumsStep bytes behind it one for V; sumsStep is at least 8. *pSumDiffU and *pSumDiffV are the sums
// over the whole block of each colour. pDiffU and pDiffV, each unless it is null, get the 64 differences of
// their colour 4x4 block by block, the 16 of a block row by row: the form in which a 4x4 transform takes them.
KELAPI KelStatus keliSumsDiff8x8Blocks4x4_8u16s_C2P2(const Kel8u *pSrc, int srcStep, const Kel8u *pPred, int predStep, Kel16s *pSums, int sumsStep, Kel16s *pSumDiffU, Kel16s *pDiffU, Kel16s *pSumDiffV, Kel16s *pDiffV);

// The orthonormal 8x8 DCT of the samples of each colour of 8x8 pairs, to the nearest integers: 64 coefficients a
// colour in rows of the same vertical frequency. A value within 0.002 of a half may become either neighbour. No
// level is taken off: the first one is the sum of the samples divided by 8.
KELAPI KelStatus keliDCT8x8Fwd_8u16s_C2P2(const Kel8u *pSrc, int srcStep, Kel16s *pDstU, Kel16s *pDstV);

// Its inverse: the samples of both colours, rounded alike and limited to 0..255, stored interleaved.
// flag tells what the blocks hold: with 1 both are transformed; with 0 they have no coefficient but the first,
// an eighth of which all samples of the colour are set to, and the others are not read. kelStsRangeErr for
// another flag.
KELAPI KelStatus keliDCT8x8InvOrSet_16s8u_P2C2(const Kel16s *pSrcU, const Kel16s *pSrcV, Kel8u *pDst, int dstStep, int flag);

// The chroma prediction of H.264 (ITU-T H.264 8.4.2.2.2) at dx and dy eighths of a sample, 0 to 7, from an
// interleaved source to a block of each colour; these have one step. The block is 1 to 16 pairs wide and high,
// else kelStsSizeErr. With dx other than 0 one pair more is read behind the block, with dy other than 0 one
// row more below it. kelStsRangeErr for another dx or dy.
KELAPI KelStatus keliInterpolateChroma_H264_8u_C2P2R(const Kel8u *pSrc, int srcStep, Kel8u *pDstU, Kel8u *pDstV, int dstStep, int dx, int dy, KeliSize roi);

// A block of a picture and where its prediction is.
typedef struct {
    const Kel8u *pSrc; // the first pair of the reference picture
    Kel32s srcStep;    // bytes
    Kel8u *pDstU;
    Kel8u *pDstV;
    Kel32s dstStep;
    KeliSize sizeFrame;  // of the reference picture, in pairs
    KeliSize sizeBlock;  // 1 to 16 pairs wide and high
    KeliPoint blockPos;  // of the block, in pairs from the first one of the picture
    KeliPoint pointVector; // eighths of a pair from there
} KeliInterpolateInfo;

// The same for a block that a vector moves, anywhere: pairs outside of the picture have the samples of the
// nearest one in it (8.4.2.2.2), and nothing outside of it is read. kelStsSizeErr for a picture without a pair,
// too.
KELAPI KelStatus keliInterpolateChromaBlock_H264_8u_C2P2R(const KeliInterpolateInfo *pInfo);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
