// avsreconstructchroma.cpp - reconstruction of AVS chroma macroblocks, each call a fresh one of two strips.

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

class rk_ReconstructChromaAVS : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "all"; }

private:
    bool m_intra = false;
};

bool rk_ReconstructChromaAVS::canStart() {
    m_intra = m_func.find("Intra", 0) >= 0;
    m_parms.push_back(&block_type);
    block_type.init("block_type", m_intra ? 0 : 2, 3, 1, StepPlus);
    if (m_intra) {
        m_parms.push_back(&prediction_type);
        prediction_type.init("prediction_type", 0, 3, 1, StepPlus);
    }
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    coefficients.restart();
    planeU.restart();
    planeV.restart();
    return true;
}

bool rk_ReconstructChromaAVS::initData() {
    if (!patternOfBlockType(block_type.value(), cbp)) return false;
    predMode = m_intra ? prediction_type.value() : 0;
    return coefficients.create() && planeU.create() && planeV.create();
}

void rk_ReconstructChromaAVS::flushData() {
    coefficients.flush();
    planeU.flush();
    planeV.flush();
}

// ---- registration -------------------------------------------------------------

#define STRIPS coefficients.next(), planeU.next(1), planeV.next(), stripStep

// clang-format off
KM_REG(rk_ReconstructChromaAVS, keliReconstructChromaIntra_AVS_16s8u_C1R, STRIPS, predMode, cbp, QP);
KM_REG(rk_ReconstructChromaAVS, keliReconstructChromaInter_AVS_16s8u_C1R, STRIPS, cbp, QP);
// clang-format on
