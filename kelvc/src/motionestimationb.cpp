// motionestimationb.cpp - differences from the mean of two predictions.

#include <iterator>

#include "approximationpairs.h"
#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static kmVector gme_refFVector(8), gme_refBVector(8); // pictures of 160 x 320 samples
static kmVector gme_curVector(8);
static kmVector gme_pDstVector(16 | kmTypeSigned), gme_pDstPredictorVector(16 | kmTypeSigned);
static Kel8u *gme_pCur, *gme_pRefF, *gme_pRefB; // the block is their top left corner
static Kel16s *gme_pDst;
static Kel16s *gme_pDstU, *gme_pDstV;
static Kel32s gme_SqrDiff;
static int gme_curStep, gme_refStepF, gme_refStepB; // bytes
static int gme_dstStep, gme_dstStepU, gme_dstStepV;
static int gme_mcTypeF, gme_mcTypeB; // half-sample positions of the references
static int gme_roundControlB;

// Units of a call.
static char const *const gme_aszFunctions[] = {
    "keliGetDiff16x16B_8u16s_C1", "keliGetDiff16x8B_8u16s_C1", "keliGetDiff8x16B_8u16s_C1",
    "keliGetDiff8x8B_8u16s_C1",   "keliGetDiff8x4B_8u16s_C1",  "keliGetDiff8x8B_8u16s_C2P2",
    "keliGetDiff8x4B_8u16s_C2P2", "keliSqrDiff16x16B_8u32s",
};
static const int gme_iDivisions[] = {256, 128, 128, 64, 32, 64, 32, 256};
static_assert(std::size(gme_aszFunctions) == std::size(gme_iDivisions));

// ---- class --------------------------------------------------------------------

class CME_B : public CApproximationPairTest {
public:
    using CApproximationPairTest::CApproximationPairTest;

    bool canStart() override;
    void prepareSet() override;
    void releaseSet() override;
    double getDivisor() override {
        return divisorOf(gme_aszFunctions, gme_iDivisions, static_cast<int>(std::size(gme_aszFunctions)));
    }
    rkString getUnit() override { return "element"; }
};

// In the default list FFFF stands twice and FFFH never.
bool CME_B::canStart() {
    CPerfTest::canStart();
    readSettings("ME_B");
    readPairs("ME_B", "FFFF,FHFF,HFFF,HHFF,FFFF,FHFH,HFFH,HHFH,FFHF,FHHF,HFHF,HHHF,FFHH,FHHH,HFHH,HHHH");
    return true;
}

void CME_B::prepareSet() {
    gme_refFVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    gme_refBVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    gme_curVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    gme_pDstVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    gme_pDstPredictorVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    gme_pCur = gme_curVector.p8u;
    gme_pRefF = gme_refFVector.p8u;
    gme_pRefB = gme_refBVector.p8u;
    gme_pDst = gme_pDstU = gme_pDstVector.p16s;
    gme_pDstV = gme_pDstPredictorVector.p16s;
    gme_refStepF = gme_refStepB = 160;
    gme_curStep = gme_dstStep = gme_dstStepU = gme_dstStepV = 32;
    gme_mcTypeF = forward();
    gme_mcTypeB = backward();
    gme_roundControlB = 0;
}

void CME_B::releaseSet() {
    gme_refFVector.deleteVector();
    gme_refBVector.deleteVector();
    gme_curVector.deleteVector();
    gme_pDstVector.deleteVector();
    gme_pDstPredictorVector.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
#define MEB_SOURCES gme_pCur, gme_curStep, gme_pRefF, gme_refStepF, gme_mcTypeF, gme_pRefB, gme_refStepB, gme_mcTypeB
#define MEB_PLANES  gme_pDstU, gme_dstStepU, gme_pDstV, gme_dstStepV

KM_REG(CME_B, keliGetDiff16x16B_8u16s_C1, MEB_SOURCES, gme_pDst, gme_dstStep, gme_roundControlB);
KM_REG(CME_B, keliGetDiff16x8B_8u16s_C1,  MEB_SOURCES, gme_pDst, gme_dstStep, gme_roundControlB);
KM_REG(CME_B, keliGetDiff8x16B_8u16s_C1,  MEB_SOURCES, gme_pDst, gme_dstStep, gme_roundControlB);
KM_REG(CME_B, keliGetDiff8x8B_8u16s_C1,   MEB_SOURCES, gme_pDst, gme_dstStep, gme_roundControlB);
KM_REG(CME_B, keliGetDiff8x4B_8u16s_C1,   MEB_SOURCES, gme_pDst, gme_dstStep, gme_roundControlB);
KM_REG(CME_B, keliGetDiff8x8B_8u16s_C2P2, MEB_SOURCES, MEB_PLANES, gme_roundControlB);
KM_REG(CME_B, keliGetDiff8x4B_8u16s_C2P2, MEB_SOURCES, MEB_PLANES, gme_roundControlB);
KM_REG(CME_B, keliSqrDiff16x16B_8u32s,    MEB_SOURCES, &gme_SqrDiff);
