// sumsdiff.cpp - the exported sums of differences of 4x4 blocks.

#include "kelvc.h"
#include "../common/sumsdiff.h"

using namespace kelvara;

KelStatus keliSumsDiff16x16Blocks4x4_8u16s_C1(const Kel8u *pSrc, int srcStep, const Kel8u *pPred,
                                              int predStep, Kel16s *pSums, Kel16s *pDiff) {
    return sumsDiff<16>(pSrc, srcStep, pPred, predStep, pSums, pDiff);
}

KelStatus keliSumsDiff8x8Blocks4x4_8u16s_C1(const Kel8u *pSrc, int srcStep, const Kel8u *pPred, int predStep,
                                            Kel16s *pSums, Kel16s *pDiff) {
    return sumsDiff<8>(pSrc, srcStep, pPred, predStep, pSums, pDiff);
}

KelStatus keliSumsDiff16x16Blocks4x4_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pPred,
                                                int predStep, Kel32s *pSums, Kel16s *pDiff) {
    return sumsDiff<16>(pSrc, srcStep, pPred, predStep, pSums, pDiff);
}

KelStatus keliSumsDiff8x8Blocks4x4_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pPred,
                                              int predStep, Kel32s *pSums, Kel16s *pDiff) {
    return sumsDiff<8>(pSrc, srcStep, pPred, predStep, pSums, pDiff);
}
