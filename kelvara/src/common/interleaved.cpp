// interleaved.cpp - the exported functions of interleaved chroma that all standards share.

#include "compensation.h"
#include "fdct8x8.h"
#include "idct8x8.h"
#include "kelvc.h"
#include "sad.h"
#include "sumsdiff.h"

#include <functional>

namespace kelvara {

namespace {

const int colours = 2;

// ---- argument checks -----------------------------------------------------------

// From is Reference or Bidirectional; rows of 8 interleaved pairs, the residual of each colour by itself.
template <int H, class From>
KelStatus compensatePairs(const From &from, const Kel16s *pResidualU, const Kel16s *pResidualV,
                          int residualStep, Kel8u *pDst, int dstStep, int roundControl) {
    if (anyNull(from) || anyNull(pResidualU, pResidualV) || anyNull(pDst)) return kelStsNullPtrErr;
    if (tooNarrow(from, 16) || tooNarrow<Kel16s>(residualStep, 8) || tooNarrow<Kel8u>(dstStep, 16))
        return kelStsStepErr;
    if (!isMcType(from) || !isRoundControl(roundControl)) return kelStsRangeErr;
    const Prediction<16, H, colours> pred(from, roundControl);
    const Target<Kel8u> dst(pDst, dstStep);
    const Kel16s *const residuals[] = {pResidualU, pResidualV};
    for (int i = 0; i < colours; ++i) {
        addResidual<8, H>(Interleaved(std::cref(pred), i), Samples<Kel16s>(residuals[i], residualStep),
                          Interleaved(dst, i));
    }
    return kelStsNoErr;
}

// Samples of each row in both rows of pairs.
bool tooNarrowForPairs(int step1, int step2) {
    return tooNarrow<Kel8u>(step1, 16) || tooNarrow<Kel8u>(step2, 16);
}

} // namespace

} // namespace kelvara

using namespace kelvara;

// ---- motion -------------------------------------------------------------------------

KelStatus keliMC8x8_16s8u_P2C2R(const Kel8u *pRef, int refStep, const Kel16s *pResidualU,
                                const Kel16s *pResidualV, int residualStep, Kel8u *pDst, int dstStep,
                                int mcType, int roundControl) {
    return compensatePairs<8>(Reference{pRef, refStep, mcType}, pResidualU, pResidualV, residualStep, pDst,
                              dstStep, roundControl);
}

KelStatus keliMC8x4_16s8u_P2C2R(const Kel8u *pRef, int refStep, const Kel16s *pResidualU,
                                const Kel16s *pResidualV, int residualStep, Kel8u *pDst, int dstStep,
                                int mcType, int roundControl) {
    return compensatePairs<4>(Reference{pRef, refStep, mcType}, pResidualU, pResidualV, residualStep, pDst,
                              dstStep, roundControl);
}

KelStatus keliMC8x8B_16s8u_P2C2R(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB,
                                 int refStepB, int mcTypeB, const Kel16s *pResidualU,
                                 const Kel16s *pResidualV, int residualStep, Kel8u *pDst, int dstStep,
                                 int roundControl) {
    return compensatePairs<8>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}},
                              pResidualU, pResidualV, residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC8x4B_16s8u_P2C2R(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB,
                                 int refStepB, int mcTypeB, const Kel16s *pResidualU,
                                 const Kel16s *pResidualV, int residualStep, Kel8u *pDst, int dstStep,
                                 int roundControl) {
    return compensatePairs<4>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}},
                              pResidualU, pResidualV, residualStep, pDst, dstStep, roundControl);
}

// ---- differences --------------------------------------------------------------------

KelStatus keliSAD8x8_8u32s_C2R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel32s *pSadU,
                               Kel32s *pSadV, int mcType) {
    if (anyNull(pCur, pRef) || anyNull(pSadU, pSadV)) return kelStsNullPtrErr;
    if (tooNarrowForPairs(curStep, refStep)) return kelStsStepErr;
    if (!isMcType(mcType)) return kelStsRangeErr;
    const Samples<Kel8u> cur(pCur, curStep);
    atPosition<0, colours>(mcType, Samples<Kel8u>(pRef, refStep), [&](auto ref) {
        Sad<8, 8>::run(Interleaved(cur, 0), Interleaved(ref, 0), pSadU);
        Sad<8, 8>::run(Interleaved(cur, 1), Interleaved(ref, 1), pSadV);
    });
    return kelStsNoErr;
}

KelStatus keliSumsDiff8x8Blocks4x4_8u16s_C2P2(const Kel8u *pSrc, int srcStep, const Kel8u *pPred,
                                              int predStep, Kel16s *pSums, int sumsStep, Kel16s *pSumDiffU,
                                              Kel16s *pDiffU, Kel16s *pSumDiffV, Kel16s *pDiffV) {
    if (anyNull(pSrc, pPred) || anyNull(pSums, pSumDiffU, pSumDiffV)) return kelStsNullPtrErr;
    if (tooNarrowForPairs(srcStep, predStep) || tooNarrow<Kel16s>(sumsStep, 4)) return kelStsStepErr;
    const Samples<Kel8u> src(pSrc, srcStep), pred(pPred, predStep);
    const Target<Kel16s> sums(pSums, sumsStep);
    Kel16s *const totals[] = {pSumDiffU, pSumDiffV}, *const differences[] = {pDiffU, pDiffV};
    for (int i = 0; i < colours; ++i) {
        Kel16s sum[4];
        sumsOfDiff<8>(Interleaved(src, i), Interleaved(pred, i), sum, differences[i]);
        for (int block = 0; block < 4; ++block) sums.set(i, block, sum[block]);
        store<Kel16s>(totals[i], static_cast<Kel16s>(sum[0] + sum[1] + sum[2] + sum[3]));
    }
    return kelStsNoErr;
}

// ---- transforms ---------------------------------------------------------------------

KelStatus keliDCT8x8Fwd_8u16s_C2P2(const Kel8u *pSrc, int srcStep, Kel16s *pDstU, Kel16s *pDstV) {
    if (anyNull(pSrc) || anyNull(pDstU, pDstV)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcStep, 16)) return kelStsStepErr;
    const Samples<Kel8u> src(pSrc, srcStep);
    forwardDct(Interleaved(src, 0)).storeTo(pDstU);
    forwardDct(Interleaved(src, 1)).storeTo(pDstV);
    return kelStsNoErr;
}

KelStatus keliDCT8x8InvOrSet_16s8u_P2C2(const Kel16s *pSrcU, const Kel16s *pSrcV, Kel8u *pDst, int dstStep,
                                        int flag) {
    if (anyNull(pSrcU, pSrcV) || anyNull(pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(dstStep, 16)) return kelStsStepErr;
    if (flag != 0 && flag != 1) return kelStsRangeErr;
    const Target<Kel8u> dst(pDst, dstStep);
    const Kel16s *const blocks[] = {pSrcU, pSrcV};
    for (int i = 0; i < colours; ++i) {
        // The transform takes transposed blocks, so that one in the order of rows gives transposed samples.
        const Samples8x8 block = flag ? inverseDctOfTransposed(Block8x8<Kel16s>(blocks[i]))
                                      : inverseDctOfDc(Samples<Kel16s>(blocks[i], 0)(0, 0));
        for (int n = 0; n < 64; ++n)
            Interleaved(dst, i).set(n / 8, n % 8, roundTo<Kel8u>(block.sample[n % 8][n / 8]));
    }
    return kelStsNoErr;
}
