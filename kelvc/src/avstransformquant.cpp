// avstransformquant.cpp - forward transform with quantisation of AVS.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> QP_value;

// ---- data ---------------------------------------------------------------------

static const int blockLength = 64;

static kmVector g_src, g_dst;
static int numCoeffs;
static const int intra = 1;

// ---- class --------------------------------------------------------------------

class rk_TransformQuant8x8 : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "per iteration"; }
};

bool rk_TransformQuant8x8::canStart() {
    m_parms.push_back(&QP_value);
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    QP_value.init("QP value", 2, 62, 15, StepPlus);
    g_src.init(m_func, kmSrc);
    g_dst.init(m_func, kmDst);
    return true;
}

bool rk_TransformQuant8x8::initData() {
    return g_src.createVectorExt(blockLength, rkGetVectorShift(), SetRandom, 1.0, 32.0) &&
           g_dst.createVectorExt(blockLength, rkGetVectorShift(), SetDefault, 0, 0);
}

void rk_TransformQuant8x8::flushData() {
    g_src.deleteVector();
    g_dst.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_TransformQuant8x8, keliTransformQuant8x8Fwd_AVS_16s_C1,
       g_src.p16s, g_dst.p16s, &numCoeffs, QP_value.value(), intra);
// clang-format on
