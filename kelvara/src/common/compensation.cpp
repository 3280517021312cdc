// compensation.cpp - the exported motion compensations.

#include "kelvc.h"
#include "compensation.h"

using namespace kelvara;

// ---- one reference ----------------------------------------------------------------

KelStatus keliMC16x16_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                            Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<16, 16>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                              roundControl);
}

KelStatus keliMC16x8_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                           Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<16, 8>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                             roundControl);
}

KelStatus keliMC8x16_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                           Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<8, 16>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                             roundControl);
}

KelStatus keliMC8x8_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                          Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<8, 8>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                            roundControl);
}

KelStatus keliMC8x4_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                          Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<8, 4>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                            roundControl);
}

KelStatus keliMC16x4_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                           Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<16, 4>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                             roundControl);
}

KelStatus keliMC16x8UV_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                             Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<16, 8, 2>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                                roundControl);
}

KelStatus keliMC4x8_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                          Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<4, 8>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                            roundControl);
}

KelStatus keliMC4x4_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                          Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<4, 4>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                            roundControl);
}

KelStatus keliMC4x2_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                          Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<4, 2>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                            roundControl);
}

KelStatus keliMC2x4_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                          Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<2, 4>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                            roundControl);
}

KelStatus keliMC2x2_8u_C1(const Kel8u *pRef, int refStep, const Kel16s *pResidual, int residualStep,
                          Kel8u *pDst, int dstStep, int mcType, int roundControl) {
    return compensate<2, 2>(Reference{pRef, refStep, mcType}, pResidual, residualStep, pDst, dstStep,
                            roundControl);
}

// ---- two references ---------------------------------------------------------------

KelStatus keliMC16x16B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                             int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                             int roundControl) {
    return compensate<16, 16>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}},
                              pResidual, residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC16x8B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                            int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                            int roundControl) {
    return compensate<16, 8>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                             residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC8x16B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                            int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                            int roundControl) {
    return compensate<8, 16>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                             residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC8x8B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                           int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                           int roundControl) {
    return compensate<8, 8>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                            residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC8x4B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                           int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                           int roundControl) {
    return compensate<8, 4>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                            residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC16x4B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                            int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                            int roundControl) {
    return compensate<16, 4>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                             residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC16x8BUV_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                              int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst,
                              int dstStep, int roundControl) {
    return compensate<16, 8, 2>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}},
                                pResidual, residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC4x8B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                           int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                           int roundControl) {
    return compensate<4, 8>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                            residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC4x4B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                           int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                           int roundControl) {
    return compensate<4, 4>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                            residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC4x2B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                           int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                           int roundControl) {
    return compensate<4, 2>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                            residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC2x4B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                           int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                           int roundControl) {
    return compensate<2, 4>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                            residualStep, pDst, dstStep, roundControl);
}

KelStatus keliMC2x2B_8u_C1(const Kel8u *pRefF, int refStepF, int mcTypeF, const Kel8u *pRefB, int refStepB,
                           int mcTypeB, const Kel16s *pResidual, int residualStep, Kel8u *pDst, int dstStep,
                           int roundControl) {
    return compensate<2, 2>(Bidirectional{{pRefF, refStepF, mcTypeF}, {pRefB, refStepB, mcTypeB}}, pResidual,
                            residualStep, pDst, dstStep, roundControl);
}
