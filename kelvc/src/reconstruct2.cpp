// reconstruct2.cpp - reconstruction of H.264 chroma macroblocks, each call a fresh one of two strips.

#include "reconstructionstrip.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> block_type, prediction_type;

// ---- data ---------------------------------------------------------------------

static StripCoefficients coefficients;
static StripPlane planeU, planeV; // U is one macroblock ahead: the two stand at different places of a row
static Kel32u cbp;
static const int QP = 26;
static int predMode;

// ---- class --------------------------------------------------------------------

class rk_Reconstruct2 : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "all"; }
};

bool rk_Reconstruct2::canStart() {
    m_parms.push_back(&block_type);
    m_parms.push_back(&prediction_type);
    block_type.init("block_type", 0, 3, 1, StepPlus);
    prediction_type.init("prediction_type", 0, 3, 1, StepPlus);
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    coefficients.restart();
    planeU.restart();
    planeV.restart();
    return true;
}

bool rk_Reconstruct2::initData() {
    if (!patternOfBlockType(block_type.value(), cbp)) return false;
    predMode = prediction_type.value();
    return coefficients.create() && planeU.create() && planeV.create();
}

void rk_Reconstruct2::flushData() {
    coefficients.flush();
    planeU.flush();
    planeV.flush();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_Reconstruct2, keliReconstructChromaIntraMB_H264_16s8u_P2R,
       coefficients.next(), planeU.next(1), planeV.next(), stripStep, predMode, cbp, QP);
// clang-format on
