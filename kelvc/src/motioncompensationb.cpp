// motioncompensationb.cpp - the mean of two predictions with the residual added.

#include <iterator>

#include "approximationpairs.h"
#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static kmVector g_refFVector(8), g_refBVector(8); // pictures of 160 x 320 samples
static kmVector g_dstVector(8);
static kmVector g_pYDataVector(16 | kmTypeSigned); // the residual
static Kel8u *g_pRefF, *g_pRefB, *g_pDst;          // the block is their top left corner
static Kel16s *g_pYData;
static int g_refStepF, g_refStepB, g_dstStep, g_yDataStep; // bytes
static int g_mcTypeF, g_mcTypeB;                           // half-sample positions of the references
static int g_roundControl;

// Units of a call.
static char const *const g_aszFunctions[] = {
    "keliMC16x16B_8u_C1", "keliMC16x8B_8u_C1", "keliMC8x16B_8u_C1",   "keliMC8x8B_8u_C1",
    "keliMC8x4B_8u_C1",   "keliMC16x4B_8u_C1", "keliMC16x8BUV_8u_C1", "keliMC4x8B_8u_C1",
    "keliMC4x4B_8u_C1",   "keliMC2x4B_8u_C1",  "keliMC4x2B_8u_C1",    "keliMC2x2B_8u_C1",
};
static const int g_iDivisions[] = {256, 128, 128, 64, 32, 64, 128, 32, 16, 8, 8, 4};
static_assert(std::size(g_aszFunctions) == std::size(g_iDivisions));

// ---- class --------------------------------------------------------------------

class CMC_B : public CApproximationPairTest {
public:
    using CApproximationPairTest::CApproximationPairTest;

    bool canStart() override;
    bool canContinue() override;
    void prepareSet() override;
    void releaseSet() override;
    double getDivisor() override {
        return divisorOf(g_aszFunctions, g_iDivisions, static_cast<int>(std::size(g_aszFunctions)));
    }
    rkString getUnit() override { return "element"; }

private:
    bool m_allocated = false;
};

bool CMC_B::canStart() {
    CPerfTest::canStart();
    readSettings("MC_B");
    readPairs("MC_B", "FFFF,FHFF,HFFF,HHFF,FFFH,FHFH,HFFH,HHFH,FFHF,FHHF,HFHF,HHHF,FFHH,FHHH,HFHH,HHHH");
    return true;
}

// Nothing flushes a set that was not made.
bool CMC_B::canContinue() {
    if (!CApproximationPairTest::canContinue()) return false;
    if (!m_allocated) releaseSet();
    return m_allocated;
}

void CMC_B::prepareSet() {
    m_allocated = g_refFVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0) &&
                  g_refBVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0) &&
                  g_dstVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0) &&
                  g_pYDataVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    g_pRefF = g_refFVector.p8u;
    g_pRefB = g_refBVector.p8u;
    g_pDst = g_dstVector.p8u;
    g_pYData = g_pYDataVector.p16s;
    g_refStepF = g_refStepB = g_dstStep = g_yDataStep = 160;
    g_mcTypeF = forward();
    g_mcTypeB = backward();
    g_roundControl = 0;
}

void CMC_B::releaseSet() {
    g_refFVector.deleteVector();
    g_refBVector.deleteVector();
    g_dstVector.deleteVector();
    g_pYDataVector.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
#define MCB_ARGS g_pRefF, g_refStepF, g_mcTypeF, g_pRefB, g_refStepB, g_mcTypeB, \
                 g_pYData, g_yDataStep, g_pDst, g_dstStep, g_roundControl

KM_REG(CMC_B, keliMC16x16B_8u_C1,  MCB_ARGS);
KM_REG(CMC_B, keliMC16x8B_8u_C1,   MCB_ARGS);
KM_REG(CMC_B, keliMC8x16B_8u_C1,   MCB_ARGS);
KM_REG(CMC_B, keliMC8x8B_8u_C1,    MCB_ARGS);
KM_REG(CMC_B, keliMC8x4B_8u_C1,    MCB_ARGS);
KM_REG(CMC_B, keliMC16x4B_8u_C1,   MCB_ARGS);
KM_REG(CMC_B, keliMC16x8BUV_8u_C1, MCB_ARGS);
KM_REG(CMC_B, keliMC4x8B_8u_C1,    MCB_ARGS);
KM_REG(CMC_B, keliMC4x4B_8u_C1,    MCB_ARGS);
KM_REG(CMC_B, keliMC2x4B_8u_C1,    MCB_ARGS);
KM_REG(CMC_B, keliMC4x2B_8u_C1,    MCB_ARGS);
KM_REG(CMC_B, keliMC2x2B_8u_C1,    MCB_ARGS);
