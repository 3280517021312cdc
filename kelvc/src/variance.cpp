// variance.cpp - variances and means of blocks.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static kmVector g_pSrcVector(8); // the block is the top left corner of rows of 60 samples
static Kel8u *g_pSrc;
static int g_step;

static kmVector g_Src8u(8), g_Src16s(16 | kmTypeSigned); // 300 elements
static int g_srcStep;                                    // bytes

static Kel32s g_Var, g_Mean;

// ---- classes ------------------------------------------------------------------

class CME_Variance : public CPerfTest {
public:
    using CPerfTest::CPerfTest;

    bool canStart() override;
    bool canContinue() override;
    void flushData() override { g_pSrcVector.deleteVector(); }
    double getDivisor() override { return 256.0; }
    rkString getUnit() override { return "element"; }
};

bool CME_Variance::canStart() {
    CPerfTest::canStart();
    readSettings("ME_Variance");
    return true;
}

bool CME_Variance::canContinue() {
    if (!nextPass()) return false;
    g_pSrcVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    g_pSrc = g_pSrcVector.p8u;
    g_step = 60;
    return true;
}

class CVarMean : public CPerfTest {
public:
    using CPerfTest::CPerfTest;

    bool canStart() override;
    bool canContinue() override;
    void flushData() override;
    double getDivisor() override { return 64.0; }
    rkString getUnit() override { return "element"; }
};

bool CVarMean::canStart() {
    CPerfTest::canStart();
    readSettings("VarMean");
    return true;
}

bool CVarMean::canContinue() {
    if (!nextPass()) return false;
    g_Src8u.createVectorExt(300, m_align, SetRandom, 0.0, 255.0);
    g_Src16s.createVectorExt(300, m_align, SetRandom, -2000.0, 2000.0);
    g_srcStep = 32;
    return true;
}

void CVarMean::flushData() {
    g_Src8u.deleteVector();
    g_Src16s.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(CME_Variance, keliVariance16x16_8u32s,    g_pSrc, g_step, &g_Var);

KM_REG(CVarMean,     keliVarMean8x8_8u32s_C1R,   g_Src8u.p8u, g_srcStep, &g_Var, &g_Mean);
KM_REG(CVarMean,     keliVarMean8x8_16s32s_C1R,  g_Src16s.p16s, g_srcStep, &g_Var, &g_Mean);
