// avsreconstructluma.cpp - reconstruction of AVS luma macroblocks, each call a fresh one of a strip.

#include "reconstructionstrip.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> block_type, prediction_type;

// ---- data ---------------------------------------------------------------------

static StripCoefficients coefficients;
static StripPlane plane;
static Kel32u cbp;
static const int QP = 26;
static Kel32s predictionTypes[4];
static const int availability = 99; // all neighbours: 1 upper, 2 left, 32 upper left, 64 upper right

// ---- class --------------------------------------------------------------------

class rk_ReconstructLumaAVS : public kmvcTest {
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

bool rk_ReconstructLumaAVS::canStart() {
    m_intra = m_func.find("Intra", 0) >= 0;
    m_parms.push_back(&block_type);
    block_type.init("block_type", m_intra ? 0 : 2, 3, 1, StepPlus);
    if (m_intra) {
        m_parms.push_back(&prediction_type);
        prediction_type.init("prediction_type", 0, 4, 1, StepPlus);
    }
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    coefficients.restart();
    plane.restart();
    return true;
}

bool rk_ReconstructLumaAVS::initData() {
    if (!patternOfBlockType(block_type.value(), cbp)) return false;
    for (Kel32s &type : predictionTypes) type = m_intra ? prediction_type.value() : 0;
    return coefficients.create() && plane.create();
}

void rk_ReconstructLumaAVS::flushData() {
    coefficients.flush();
    plane.flush();
}

// ---- registration -------------------------------------------------------------

#define STRIP coefficients.next(), plane.next(), stripStep

// clang-format off
KM_REG(rk_ReconstructLumaAVS, keliReconstructLumaIntra_AVS_16s8u_C1R,
       STRIP, predictionTypes, cbp, QP, availability, 0);
KM_REG(rk_ReconstructLumaAVS, keliReconstructLumaInter_AVS_16s8u_C1R, STRIP, cbp, QP, 0);
// clang-format on
