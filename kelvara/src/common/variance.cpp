// variance.cpp - the exported variances and means.

#include "kelvc.h"
#include "variance.h"

using namespace kelvara;

KelStatus keliVariance16x16_8u32s(const Kel8u *pSrc, int srcStep, Kel32s *pVar) {
    return variance(pSrc, srcStep, pVar);
}

KelStatus keliVarMean8x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, Kel32s *pVar, Kel32s *pMean) {
    return varMean(pSrc, srcStep, pVar, pMean);
}

KelStatus keliVarMean8x8_16s32s_C1R(const Kel16s *pSrc, int srcStep, Kel32s *pVar, Kel32s *pMean) {
    return varMean(pSrc, srcStep, pVar, pMean);
}

KelStatus keliVarMeanDiff16x16_8u32s_C1R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                         const Kel32s *pCurSum, Kel32s *pVar, Kel32s *pMean, int mcType) {
    return varMeanDiff<16>(pCur, curStep, {pRef, refStep, mcType}, pCurSum, pVar, pMean);
}

KelStatus keliVarMeanDiff16x8_8u32s_C1R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                        const Kel32s *pCurSum, Kel32s *pVar, Kel32s *pMean, int mcType) {
    return varMeanDiff<8>(pCur, curStep, {pRef, refStep, mcType}, pCurSum, pVar, pMean);
}
