// sad.cpp - the exported sums of absolute differences.

#include "kelvc.h"
#include "sad.h"

using namespace kelvara;

// ---- one sum or one for each block, at a sample position -------------------------

KelStatus keliSAD16x16_8u32s(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD,
                             int mcType) {
    return compareBlocks<Sad<16, 16>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD16x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD,
                                int mcType) {
    return compareBlocks<Sad<16, 8>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD8x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD,
                               int mcType) {
    return compareBlocks<Sad<8, 8>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD4x4_8u32s(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD,
                           int mcType) {
    return compareBlocks<Sad<4, 4>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD16x16Blocks8x8_8u16u(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                      Kel16u *pSAD, int mcType) {
    return compareBlocks<BlockSads<8>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD16x16Blocks4x4_8u16u(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                      Kel16u *pSAD, int mcType) {
    return compareBlocks<BlockSads<4>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD8x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD,
                                int mcType) {
    return compareBlocks<Sad<8, 16>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD8x4_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD,
                               int mcType) {
    return compareBlocks<Sad<8, 4>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD4x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel32s *pSAD,
                               int mcType) {
    return compareBlocks<Sad<4, 8>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD16x16_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep,
                                  Kel32s *pSAD, int mcType) {
    return compareBlocks<Sad<16, 16>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD8x8_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep,
                                Kel32s *pSAD, int mcType) {
    return compareBlocks<Sad<8, 8>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD4x4_16u32s_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep,
                                Kel32s *pSAD, int mcType) {
    return compareBlocks<Sad<4, 4>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD16x16Blocks8x8_16u32u_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep,
                                           Kel32u *pSAD, int mcType) {
    return compareBlocks<BlockSads<8>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

KelStatus keliSAD16x16Blocks4x4_16u32u_C1R(const Kel16u *pSrc, int srcStep, const Kel16u *pRef, int refStep,
                                           Kel32u *pSAD, int mcType) {
    return compareBlocks<BlockSads<4>>(pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

// ---- many places in a row ---------------------------------------------------------

KelStatus keliSAD2x2xN_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD,
                                 int numSAD) {
    return compareAlongRow<2>(pSrc, srcStep, pRef, refStep, pSAD, numSAD);
}

KelStatus keliSAD4x4xN_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD,
                                 int numSAD) {
    return compareAlongRow<4>(pSrc, srcStep, pRef, refStep, pSAD, numSAD);
}

KelStatus keliSAD8x8xN_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD,
                                 int numSAD) {
    return compareAlongRow<8>(pSrc, srcStep, pRef, refStep, pSAD, numSAD);
}

KelStatus keliSAD16x16xN_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                   Kel16u *pSAD, int numSAD) {
    return compareAlongRow<16>(pSrc, srcStep, pRef, refStep, pSAD, numSAD);
}

KelStatus keliSAD4x4xNI_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                  Kel16u *pSAD, int numSAD, Kel32s *pMinIndex) {
    return compareAlongRow<4>(pSrc, srcStep, pRef, refStep, pSAD, numSAD, pMinIndex);
}

KelStatus keliSAD8x8xNI_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                  Kel16u *pSAD, int numSAD, Kel32s *pMinIndex) {
    return compareAlongRow<8>(pSrc, srcStep, pRef, refStep, pSAD, numSAD, pMinIndex);
}

KelStatus keliSAD16x16xNI_8u16u_C1R(const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep,
                                    Kel16u *pSAD, int numSAD, Kel32s *pMinIndex) {
    return compareAlongRow<16>(pSrc, srcStep, pRef, refStep, pSAD, numSAD, pMinIndex);
}
