// kelvc_transform.h - H.264: transforms and quantisation of residuals, and what belongs to them.

#ifndef KELVC_TRANSFORM_H
#define KELVC_TRANSFORM_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// What kelvc.h says of all functions holds here too, but that sources of coefficients may overlap each other.
// A block is 16, or 64, elements in raster order without a gap; chroma DC is 4 in rows of two, or 8 in four
// rows of two. Steps are in bytes and at least a row of the block. Results out of the range of their type
// become its limits; no stream that conforms needs that. Coefficients that no stream may hold, where sums
// leave 32 bits, wrap around.
//
// QP is 0 to 51; in 32s forms it has QpBdOffset in it and is 0 to 87. With chroma DC of 2x4 it is QP'c,dc,
// which is 3 more than that of the AC coefficients, and so are its limits. Else kelStsRangeErr.
//
// pScaleLevels are levels of keliGenScaleLevel... for QP modulo 6: the forward ones of a forward function,
// the inverse ones of an inverse function. Null stands for those of the flat scaling list of 16. DC functions
// use the first level alone.
//
// A forward function forms the level of a coefficient c as sign(c) * (|c| * factor / 2^s + r), the fraction
// dropped. factor is the forward level, s is 15 + QP / 6 for 4x4, 16 + QP / 6 for 8x8 and DC blocks. r is 1/3
// if intra is other than 0, else 1/6, as a fraction of 2^s that is rounded down. *pNumCoeffs becomes the
// number of levels other than 0, *pLastCoeff the place in the scan of the last of these, -1 if there is none.
// pScan holds the place in the scan of each position of the block, in raster order: 0 1 5 6 2 4 7 12 ... for
// the zigzag scan. kelStsRangeErr for a place outside of the scan.

// clang-format off

// The 4x4 core transform of a residual, and that of a prediction as SP and SI decoding needs it.
KELAPI KelStatus keliTransformResidual4x4Fwd_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst);
KELAPI KelStatus keliTransformResidual4x4Fwd_H264_32s_C1(const Kel32s *pSrc, Kel32s *pDst);
KELAPI KelStatus keliTransformPrediction_H264_8u16s_C1(const Kel8u *pSrc, int srcStep, Kel16s *pDst);

// The residual of scaled coefficients, exactly ITU-T H.264 8.5.12.2, rounding included.
KELAPI KelStatus keliTransformResidual4x4Inv_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst);
KELAPI KelStatus keliTransformResidual4x4Inv_H264_32s_C1(const Kel32s *pSrc, Kel32s *pDst);

// Core transform and quantisation of a residual.
KELAPI KelStatus keliTransformQuantFwd4x4_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int QP, int *pNumCoeffs, int intra, const Kel16s *pScan, int *pLastCoeff, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantFwd4x4_H264_16s32s_C1(const Kel16s *pSrc, Kel32s *pDst, int QP, int *pNumCoeffs, int intra, const Kel16s *pScan, int *pLastCoeff, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantResidual_H264_16s_C1I(Kel16s *pSrcDst, int QP, int *pNumCoeffs, int intra, const Kel16s *pScan, int *pLastCoeff);

// Quantisation of transformed coefficients. pFactors are the 16 factors for QP modulo 6.
KELAPI KelStatus keliQuantizeResidual4x4Fwd_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int *pNumCoeffs, int *pLastCoeff, const Kel16s *pScaleLevels, const Kel16s *pScan, int QP, int intra);
KELAPI KelStatus keliQuantizeResidual4x4Fwd_H264_32s_C1(const Kel32s *pSrc, Kel32s *pDst, int *pNumCoeffs, int *pLastCoeff, const Kel16s *pScaleLevels, const Kel16s *pScan, int QP, int intra);
KELAPI KelStatus keliQuantizeResidual4x4Fwd_H264_16s32s_C1(const Kel16s *pSrc, Kel16s *pDst, int *pNumCoeffs, int *pLastCoeff, const Kel32s *pFactors, const Kel16s *pScan, int QP, int intra);

// Transform and quantisation of DC coefficients. With needTransform other than 0 those of pSrcDst are
// transformed into pTransformed; the luma ones are halved, halves up, so that they fit 16 bits. With 0
// pTransformed is read and stays as it is, which quantises the same block once more. The levels go to pSrcDst.
// Luma DC is always intra.
KELAPI KelStatus keliTransformQuantFwdLumaDC4x4_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP, int *pNumCoeffs, int needTransform, const Kel16s *pScan, int *pLastCoeff, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantFwdLumaDC4x4_H264_32s_C1I(Kel32s *pSrcDst, Kel32s *pTransformed, int QP, int *pNumCoeffs, int needTransform, const Kel16s *pScan, int *pLastCoeff, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantLumaDC_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP, int *pNumCoeffs, int needTransform, const Kel16s *pScan, int *pLastCoeff);
KELAPI KelStatus keliTransformQuantFwdChromaDC2x2_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP, int *pNumCoeffs, int intra, int needTransform, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantFwdChromaDC2x2_H264_32s_C1I(Kel32s *pSrcDst, Kel32s *pTransformed, int QP, int *pNumCoeffs, int intra, int needTransform, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantFwdChromaDC2x4_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP, int *pNumCoeffs, int intra, int needTransform, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantFwdChromaDC2x4_H264_32s_C1I(Kel32s *pSrcDst, Kel32s *pTransformed, int QP, int *pNumCoeffs, int intra, int needTransform, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantChromaDC_H264_16s_C1I(Kel16s *pSrcDst, Kel16s *pTransformed, int QP, int *pNumCoeffs, int intra, int needTransform);

// The inverse: DC levels to scaled DC coefficients, exactly ITU-T H.264 8.5.10 and 8.5.11.
KELAPI KelStatus keliTransformQuantInvLumaDC4x4_H264_16s_C1I(Kel16s *pSrcDst, int QP, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantInvLumaDC4x4_H264_32s_C1I(Kel32s *pSrcDst, int QP, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantInvChromaDC2x2_H264_16s_C1I(Kel16s *pSrcDst, int QP, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantInvChromaDC2x2_H264_32s_C1I(Kel32s *pSrcDst, int QP, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantInvChromaDC2x4_H264_16s_C1I(Kel16s *pSrcDst, int QP, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantInvChromaDC2x4_H264_32s_C1I(Kel32s *pSrcDst, int QP, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformDequantLumaDC_H264_16s_C1I(Kel16s *pSrcDst, int QP);
KELAPI KelStatus keliTransformDequantChromaDC_H264_16s_C1I(Kel16s *pSrcDst, int QP);

// Levels to the residual, exactly ITU-T H.264 8.5.12, which is added to the prediction; the sums are limited to
// the range of a sample. Unless pDC is null, *pDC is the scaled DC coefficient in place of that of the block.
// AC of 0 says that the block has no AC levels: they are not read. bitDepth is 8 to 14, else kelStsRangeErr.
// The destination may be the prediction.
KELAPI KelStatus keliTransformQuantInvAddPred4x4_H264_16s_C1IR(const Kel8u *pPred, int predStep, const Kel16s *pCoeffs, const Kel16s *pDC, Kel8u *pDst, int dstStep, int QP, int AC, const Kel16s *pScaleLevels);
KELAPI KelStatus keliTransformQuantInvAddPred4x4_H264_32s_C1IR(const Kel16u *pPred, int predStep, const Kel32s *pCoeffs, const Kel32s *pDC, Kel16u *pDst, int dstStep, int QP, int AC, int bitDepth, const Kel16s *pScaleLevels);
KELAPI KelStatus keliDequantTransformResidualAndAdd_H264_16s_C1I(const Kel8u *pPred, const Kel16s *pCoeffs, const Kel16s *pDC, Kel8u *pDst, int predStep, int dstStep, int QP, int AC);

// The same without a prediction, in place: levels and residual are rows srcDstStep bytes apart. *pDC may be
// one of the levels.
KELAPI KelStatus keliDequantTransformResidual_H264_16s_C1I(Kel16s *pSrcDst, int srcDstStep, const Kel16s *pDC, int AC, int QP);

// Levels of SP and SI slices to samples before their limit, exactly ITU-T H.264 8.6.1 and, with switchPicture
// other than 0, 8.6.2. pPredCoeffs are the transformed coefficients of the prediction. QS quantises their sum
// with the levels, which QP scales where no switching is. pDC and AC as above.
KELAPI KelStatus keliDequantTransformResidual_SISP_H264_16s_C1I(Kel16s *pSrcDst, const Kel16s *pPredCoeffs, const Kel16s *pDC, int AC, int QP, int QS, int switchPicture);

// The same for chroma DC levels of 2x2, to scaled DC coefficients. pPredDC holds the DC coefficients of the
// four transformed blocks of the prediction.
KELAPI KelStatus keliTransformDequantChromaDC_SISP_H264_16s_C1I(Kel16s *pSrcDst, const Kel16s *pPredDC, int QP, int QS, int switchPicture);

// The 8x8 luma transform of a residual in place, as keliTransformFwdLuma8x8_H264_16s_C1.
KELAPI KelStatus keliTransformLuma8x8Fwd_H264_16s_C1I(Kel16s *pSrcDst);

// Quantisation of 8x8 coefficients. Qp6 is QP / 6, the fraction dropped: 0 to 8, in 32s forms to 14.
// pScaleLevels is not null, as the remainder of QP is not known here.
KELAPI KelStatus keliQuantLuma8x8_H264_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int Qp6, int intra, const Kel16s *pScan, const Kel16s *pScaleLevels, int *pNumLevels, int *pLastCoeff);
KELAPI KelStatus keliQuantLuma8x8_H264_32s_C1(const Kel32s *pSrc, Kel32s *pDst, int Qp6, int intra, const Kel16s *pScan, const Kel16s *pScaleLevels, int *pNumLevels, int *pLastCoeff);

// The inverse in place, exactly ITU-T H.264 8.5.13.1.
KELAPI KelStatus keliQuantLuma8x8Inv_H264_16s_C1I(Kel16s *pSrcDst, int Qp6, const Kel16s *pScaleLevels);
KELAPI KelStatus keliQuantInvLuma8x8_H264_32s_C1I(Kel32s *pSrcDst, int Qp6, const Kel16s *pScaleLevels);

// Inverse 8x8 transform of scaled coefficients, exactly ITU-T H.264 8.5.13, added to the prediction; the sums
// are limited to 0..255. The destination may be the prediction.
KELAPI KelStatus keliTransformLuma8x8InvAddPred_H264_16s8u_C1R(const Kel8u *pPred, int predStep, const Kel16s *pCoeffs, Kel8u *pDst, int dstStep);

// The levels of a scaling list in raster order, for QP modulo 6. Inverse levels are LevelScale of ITU-T H.264
// 8.5.9. Forward levels are the forward factors of a flat list, 13107 for DC at QP 0, times 16 / weight, the
// fraction dropped and limited to 32767: so they are for weight 0, which no list may hold. srcStep is in bytes
// and at least 8. kelStsRangeErr for a QpRem that is not 0 to 5.
KELAPI KelStatus keliGenScaleLevel8x8_H264_8u16s_D2(const Kel8u *pSrc, int srcStep, Kel16s *pInvLevels, Kel16s *pFwdLevels, int QpRem);
KELAPI KelStatus keliGenScaleLevel4x4_H264_8u16s_C1(const Kel8u *pSrc, Kel16s *pInvLevels, Kel16s *pFwdLevels, int QpRem);

// What the CAVLC coder of ITU-T H.264 9.2 codes of a block of chroma DC levels, whose scan is raster order for
// 2x2 and that of 8.5.4 for 2x4. *pNumOutCoeffs becomes the number of levels other than 0, *pTotalZeros that
// of the zeros in front of the last of these. *pTrailingOnes is how many of the last levels, three at most, are
// 1 or -1; *pTrailingOneSigns has a bit for each, 1 for a negative one, the last level's bit highest. All
// others go to pLevels, and the numbers of zeros right in front of each level to pRuns, both from the last
// level to the first. pLevels and pRuns have room for 4 or 8 elements; what is not used stays as it is.
KELAPI KelStatus keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s(const Kel32s *pSrc, Kel8u *pTrailingOnes, Kel8u *pTrailingOneSigns, Kel8u *pNumOutCoeffs, Kel8u *pTotalZeros, Kel32s *pLevels, Kel8u *pRuns);
KELAPI KelStatus keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s(const Kel16s *pSrc, Kel8u *pTrailingOnes, Kel8u *pTrailingOneSigns, Kel8u *pNumOutCoeffs, Kel8u *pTotalZeros, Kel16s *pLevels, Kel8u *pRuns);
KELAPI KelStatus keliEncodeCoeffsCAVLCChromaDC2x4_H264_32s(const Kel32s *pSrc, Kel8u *pTrailingOnes, Kel8u *pTrailingOneSigns, Kel8u *pNumOutCoeffs, Kel8u *pTotalZeros, Kel32s *pLevels, Kel8u *pRuns);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
