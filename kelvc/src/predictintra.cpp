// predictintra.cpp - intra prediction of H.264.

#include "predmodecodes.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> len; // one value, which nothing reads
static rkStepIterator<int> predMode_code;

// ---- data ---------------------------------------------------------------------

static const int step = 16;
static kmVector srcDst; // 18 rows
static Kel8u *pSrcDst;  // row 2: the block has a row above it, and a sample in front of that
static PredMode predMode;

// ---- class --------------------------------------------------------------------

class rk_PredictIntra : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "all"; }

private:
    void takeCode(int code);

    bool m_4x4 = false, m_chroma = false;
};

bool rk_PredictIntra::canStart() {
    m_4x4 = m_func.find("4x4", 0) >= 0;
    m_chroma = m_func.find("Chroma", 0) >= 0;
    predMode = PredMode();
    m_parms.push_back(&len);
    m_parms.push_back(&predMode_code);
    len.init("len");
    len.add(0);
    predMode_code.init("predMode_code", 0, m_4x4 ? lastPredMode4x4 : lastPredModeMacroblock, 1, StepPlus);
    return true;
}

void rk_PredictIntra::takeCode(int code) {
    if (m_4x4) return predMode.take(predModes4x4, code);
    m_chroma ? predMode.take(predModesChroma, code) : predMode.take(predModes16x16, code);
}

bool rk_PredictIntra::initData() {
    srcDst.init(m_func, kmSrc);
    if (!srcDst.createVectorExt(16 * 9 * 2, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    pSrcDst = srcDst.p8u + 2 * step;
    takeCode(predMode_code.value());
    return true;
}

void rk_PredictIntra::flushData() {
    srcDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define PREDICT_ARGS pSrcDst, step, predMode.mode, predMode.availability

// clang-format off
KM_REG(rk_PredictIntra, keliPredictIntra_4x4_H264_8u_C1IR,      PREDICT_ARGS);
KM_REG(rk_PredictIntra, keliPredictIntra_16x16_H264_8u_C1IR,    PREDICT_ARGS);
KM_REG(rk_PredictIntra, keliPredictIntraChroma8x8_H264_8u_C1IR, PREDICT_ARGS);
// clang-format on
