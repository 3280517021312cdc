// satd.cpp - the exported sums of absolute transformed differences.

#include "satd.h"
#include "kelvc.h"

using namespace kelvara;

KelStatus keliSATD16x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                  Kel32s *pSAT) {
    return compareBlocks<Satd<16, 16>>(pSrc, srcStep, pRef, refStep, pSAT);
}

KelStatus keliSATD16x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                 Kel32s *pSAT) {
    return compareBlocks<Satd<16, 8>>(pSrc, srcStep, pRef, refStep, pSAT);
}

KelStatus keliSATD8x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                 Kel32s *pSAT) {
    return compareBlocks<Satd<8, 16>>(pSrc, srcStep, pRef, refStep, pSAT);
}

KelStatus keliSATD8x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                Kel32s *pSAT) {
    return compareBlocks<Satd<8, 8>>(pSrc, srcStep, pRef, refStep, pSAT);
}

KelStatus keliSATD8x4_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                Kel32s *pSAT) {
    return compareBlocks<Satd<8, 4>>(pSrc, srcStep, pRef, refStep, pSAT);
}

KelStatus keliSATD4x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                Kel32s *pSAT) {
    return compareBlocks<Satd<4, 8>>(pSrc, srcStep, pRef, refStep, pSAT);
}

KelStatus keliSATD4x4_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                Kel32s *pSAT) {
    return compareBlocks<Satd<4, 4>>(pSrc, srcStep, pRef, refStep, pSAT);
}

KelStatus keliSAT8x8D_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                Kel32s *pSAT) {
    return compareBlocks<Sat8x8>(pSrc, srcStep, pRef, refStep, pSAT);
}

KelStatus keliSAT8x8D_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep,
                                 Kel32s *pSAT) {
    return compareBlocks<Sat8x8>(pSrc, srcStep, pRef, refStep, pSAT);
}
