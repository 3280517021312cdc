// reconstructluma.cpp - reconstruction of H.264 luma macroblocks, each call a fresh one of a strip.

#include "reconstructionstrip.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> block_type, prediction_type;

// ---- data ---------------------------------------------------------------------

static StripCoefficients coefficients;
static StripPlane plane;
static Kel32u cbp;
static const int QP = 26;
static int MB16x16IntraType;
static Kel32s pMBIntraTypes[16];
static const int missing = 0; // all neighbours are there

// ---- class --------------------------------------------------------------------

class rk_ReconstructLuma : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "all"; }

private:
    void initParameters(int firstBlock, int lastPrediction);

    bool m_intra = false;
};

void rk_ReconstructLuma::initParameters(int firstBlock, int lastPrediction) {
    m_parms.push_back(&block_type);
    block_type.init("block_type", firstBlock, 3, 1, StepPlus);
    if (!m_intra) return;
    m_parms.push_back(&prediction_type);
    prediction_type.init("prediction_type", 0, lastPrediction, 1, StepPlus);
}

bool rk_ReconstructLuma::canStart() {
    const bool whole = m_func.find("16x16", 0) >= 0;
    m_intra = m_func.find("Intra", 0) >= 0;
    initParameters(whole ? 0 : m_intra ? 1 : 2, whole ? 3 : 8);
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    coefficients.restart();
    plane.restart();
    return true;
}

bool rk_ReconstructLuma::initData() {
    if (!patternOfBlockType(block_type.value(), cbp)) return false;
    if (!coefficients.create() || !plane.create()) return false;
    MB16x16IntraType = m_intra ? prediction_type.value() : 0;
    for (Kel32s &type : pMBIntraTypes) type = MB16x16IntraType;
    return true;
}

void rk_ReconstructLuma::flushData() {
    coefficients.flush();
    plane.flush();
}

// ---- registration -------------------------------------------------------------

#define STRIP coefficients.next(), plane.next(), stripStep

// clang-format off
KM_REG(rk_ReconstructLuma, keliReconstructLumaIntra16x16MB_H264_16s8u_C1R,
       STRIP, MB16x16IntraType, cbp, QP, missing);
KM_REG(rk_ReconstructLuma, keliReconstructLumaIntraMB_H264_16s8u_C1R, STRIP, pMBIntraTypes, cbp, QP, missing);
KM_REG(rk_ReconstructLuma, keliReconstructLumaInterMB_H264_16s8u_C1R, STRIP, cbp, QP);
// clang-format on
