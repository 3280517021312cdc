// motioncompensation.cpp - predictions from one reference with the residual added.

#include <iterator>

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static kmVector g_refVector(8), g_dstVector(8);    // pictures of 160 x 320 samples
static kmVector g_pYDataVector(16 | kmTypeSigned); // the residual
static Kel8u *g_pRef, *g_pDst;                     // the block is their top left corner
static Kel16s *g_pYData;
static int g_refStep, g_dstStep, g_yDataStep; // bytes
static int g_mcType;                          // half-sample position of the reference
static int g_roundControl;

// Units of a call.
static char const *const g_aszFunctions[] = {
    "keliMC16x16_8u_C1", "keliMC16x8_8u_C1", "keliMC8x16_8u_C1",   "keliMC8x8_8u_C1",
    "keliMC8x4_8u_C1",   "keliMC16x4_8u_C1", "keliMC16x8UV_8u_C1", "keliMC4x8_8u_C1",
    "keliMC4x4_8u_C1",   "keliMC2x4_8u_C1",  "keliMC4x2_8u_C1",    "keliMC2x2_8u_C1",
};
static const int g_iDivisions[] = {256, 128, 128, 64, 32, 64, 128, 32, 16, 8, 8, 4};
static_assert(std::size(g_aszFunctions) == std::size(g_iDivisions));

// ---- class --------------------------------------------------------------------

class CMC : public CApproximationTest {
public:
    using CApproximationTest::CApproximationTest;

    bool canStart() override;
    void prepareSet() override;
    void releaseSet() override;
    double getDivisor() override {
        return divisorOf(g_aszFunctions, g_iDivisions, static_cast<int>(std::size(g_aszFunctions)));
    }
    rkString getUnit() override { return "element"; }
};

bool CMC::canStart() {
    CPerfTest::canStart();
    readSettings("MC");
    readApproximations("MC");
    return true;
}

void CMC::prepareSet() {
    g_refVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    g_dstVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    g_pYDataVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    g_pRef = g_refVector.p8u;
    g_pDst = g_dstVector.p8u;
    g_pYData = g_pYDataVector.p16s;
    g_refStep = g_dstStep = g_yDataStep = 160;
    g_mcType = approximation();
    g_roundControl = 0;
}

void CMC::releaseSet() {
    g_refVector.deleteVector();
    g_dstVector.deleteVector();
    g_pYDataVector.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
#define MC_ARGS g_pRef, g_refStep, g_pYData, g_yDataStep, g_pDst, g_dstStep, g_mcType, g_roundControl

KM_REG(CMC, keliMC16x16_8u_C1,  MC_ARGS);
KM_REG(CMC, keliMC16x8_8u_C1,   MC_ARGS);
KM_REG(CMC, keliMC8x16_8u_C1,   MC_ARGS);
KM_REG(CMC, keliMC8x8_8u_C1,    MC_ARGS);
KM_REG(CMC, keliMC8x4_8u_C1,    MC_ARGS);
KM_REG(CMC, keliMC16x4_8u_C1,   MC_ARGS);
KM_REG(CMC, keliMC16x8UV_8u_C1, MC_ARGS);
KM_REG(CMC, keliMC4x8_8u_C1,    MC_ARGS);
KM_REG(CMC, keliMC4x4_8u_C1,    MC_ARGS);
KM_REG(CMC, keliMC4x2_8u_C1,    MC_ARGS);
KM_REG(CMC, keliMC2x4_8u_C1,    MC_ARGS);
KM_REG(CMC, keliMC2x2_8u_C1,    MC_ARGS);
