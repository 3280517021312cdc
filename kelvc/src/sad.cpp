// sad.cpp - sums of absolute differences at the half-sample positions of the reference, and the edge test.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static kmVector g_srcCurVector(8), g_srcRefVector(8); // pictures of 160 x 320 samples
static Kel8u *g_sad_pSrcCur, *g_sad_pSrcRef;          // the block is their top left corner
static int g_sad_srcCurStep, g_sad_srcRefStep;
static Kel32s g_sad_dst;
static int g_sad_mcType; // half-sample position of the reference
static Kel8u Ind;        // whether the block has edges

// ---- class --------------------------------------------------------------------

class CSAD : public CApproximationTest {
public:
    using CApproximationTest::CApproximationTest;

    bool canStart() override;
    void prepareSet() override;
    void releaseSet() override;
    double getDivisor() override { return m_func == "keliSAD16x8_8u32s_C1R" ? 128.0 : 256.0; }
    rkString getUnit() override { return "element"; }
};

bool CSAD::canStart() {
    CPerfTest::canStart();
    readSettings("SAD");
    readApproximations("SAD");
    return true;
}

void CSAD::prepareSet() {
    g_srcCurVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    g_srcRefVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    g_sad_pSrcCur = g_srcCurVector.p8u;
    g_sad_pSrcRef = g_srcRefVector.p8u;
    g_sad_srcCurStep = g_sad_srcRefStep = 160;
    g_sad_mcType = approximation();
}

void CSAD::releaseSet() {
    g_srcCurVector.deleteVector();
    g_srcRefVector.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
#define SAD_ARGS g_sad_pSrcCur, g_sad_srcCurStep, g_sad_pSrcRef, g_sad_srcRefStep, &g_sad_dst, g_sad_mcType

KM_REG(CSAD, keliSAD16x16_8u32s,           SAD_ARGS);
KM_REG(CSAD, keliSAD16x8_8u32s_C1R,        SAD_ARGS);
KM_REG(CSAD, keliEdgesDetect16x16_8u_C1R,  g_sad_pSrcCur, g_sad_srcCurStep, 5, 12, &Ind);
