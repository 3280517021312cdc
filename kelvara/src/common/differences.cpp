// differences.cpp - the exported differences from predictions.

#include "kelvc.h"
#include "differences.h"

using namespace kelvara;

// ---- differences ------------------------------------------------------------------

KelStatus keliGetDiff16x16_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                    Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType,
                                    int roundControl) {
    return getDiff<16, 16>(pCur, curStep, Reference{pRef, refStep, mcType}, pDst, dstStep, pPred, predStep,
                           roundControl);
}

KelStatus keliGetDiff16x8_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                   Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType,
                                   int roundControl) {
    return getDiff<16, 8>(pCur, curStep, Reference{pRef, refStep, mcType}, pDst, dstStep, pPred, predStep,
                          roundControl);
}

KelStatus keliGetDiff8x16_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                   Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType,
                                   int roundControl) {
    return getDiff<8, 16>(pCur, curStep, Reference{pRef, refStep, mcType}, pDst, dstStep, pPred, predStep,
                          roundControl);
}

KelStatus keliGetDiff8x8_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                  Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType,
                                  int roundControl) {
    return getDiff<8, 8>(pCur, curStep, Reference{pRef, refStep, mcType}, pDst, dstStep, pPred, predStep,
                         roundControl);
}

KelStatus keliGetDiff8x4_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                  Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType,
                                  int roundControl) {
    return getDiff<8, 4>(pCur, curStep, Reference{pRef, refStep, mcType}, pDst, dstStep, pPred, predStep,
                         roundControl);
}

KelStatus keliGetDiff4x4_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                  Kel16s *pDst, int dstStep, Kel16s *pPred, int predStep, int mcType,
                                  int roundControl) {
    return getDiff<4, 4>(pCur, curStep, Reference{pRef, refStep, mcType}, pDst, dstStep, pPred, predStep,
                         roundControl);
}

KelStatus keliGetDiff8x8_8u16s_C2P2(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                    Kel16s *pDstU, int dstStepU, Kel16s *pDstV, int dstStepV, int mcType,
                                    int roundControl) {
    return getDiffPlanes<8>(pCur, curStep, Reference{pRef, refStep, mcType}, pDstU, dstStepU, pDstV, dstStepV,
                            roundControl);
}

KelStatus keliGetDiff8x4_8u16s_C2P2(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep,
                                    Kel16s *pDstU, int dstStepU, Kel16s *pDstV, int dstStepV, int mcType,
                                    int roundControl) {
    return getDiffPlanes<4>(pCur, curStep, Reference{pRef, refStep, mcType}, pDstU, dstStepU, pDstV, dstStepV,
                            roundControl);
}

// ---- differences from the mean of two predictions ---------------------------------

KelStatus keliGetDiff16x16B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF,
                                     int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst,
                                     int dstStep, int roundControl) {
    return getDiff<16, 16>(pCur, curStep,
                           Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pDst,
                           dstStep, roundControl);
}

KelStatus keliGetDiff16x8B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF,
                                    int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst,
                                    int dstStep, int roundControl) {
    return getDiff<16, 8>(pCur, curStep,
                          Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pDst,
                          dstStep, roundControl);
}

KelStatus keliGetDiff8x16B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF,
                                    int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst,
                                    int dstStep, int roundControl) {
    return getDiff<8, 16>(pCur, curStep,
                          Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pDst,
                          dstStep, roundControl);
}

KelStatus keliGetDiff8x8B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF,
                                   int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst,
                                   int dstStep, int roundControl) {
    return getDiff<8, 8>(pCur, curStep, Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}},
                         pDst, dstStep, roundControl);
}

KelStatus keliGetDiff8x4B_8u16s_C1(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF,
                                   int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB, Kel16s *pDst,
                                   int dstStep, int roundControl) {
    return getDiff<8, 4>(pCur, curStep, Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}},
                         pDst, dstStep, roundControl);
}

KelStatus keliGetDiff8x8B_8u16s_C2P2(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF,
                                     int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB,
                                     Kel16s *pDstU, int dstStepU, Kel16s *pDstV, int dstStepV,
                                     int roundControl) {
    return getDiffPlanes<8>(pCur, curStep,
                            Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pDstU,
                            dstStepU, pDstV, dstStepV, roundControl);
}

KelStatus keliGetDiff8x4B_8u16s_C2P2(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF,
                                     int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB,
                                     Kel16s *pDstU, int dstStepU, Kel16s *pDstV, int dstStepV,
                                     int roundControl) {
    return getDiffPlanes<4>(pCur, curStep,
                            Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pDstU,
                            dstStepU, pDstV, dstStepV, roundControl);
}

// ---- sums of squares ----------------------------------------------------------------

KelStatus keliSqrDiff16x16_8u32s(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, int mcType,
                                 Kel32s *pSqrDiff) {
    return squaredDiff<16, 16>(pCur, curStep, Reference{pRef, refStep, mcType}, pSqrDiff);
}

KelStatus keliSqrDiff16x16B_8u32s(const Kel8u *pCur, int curStep, const Kel8u *pRefF, int refStepF,
                                  int mcTypeF, const Kel8u *pRefB, int refStepB, int mcTypeB,
                                  Kel32s *pSqrDiff) {
    return squaredDiff<16, 16>(
        pCur, curStep, Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pSqrDiff);
}

KelStatus keliSSD8x8_8u32s_C1R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel32s *pSSD,
                               int mcType) {
    return squaredDiff<8, 8>(pCur, curStep, Reference{pRef, refStep, mcType}, pSSD);
}

KelStatus keliSSD4x4_8u32s_C1R(const Kel8u *pCur, int curStep, const Kel8u *pRef, int refStep, Kel32s *pSSD,
                               int mcType) {
    return squaredDiff<4, 4>(pCur, curStep, Reference{pRef, refStep, mcType}, pSSD);
}
