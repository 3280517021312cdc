// reconstructmbaff.cpp - reconstruction of H.264 field macroblocks beside a pair of frame macroblocks.

#include "reconstruct.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> predMode_code;

// ---- data ---------------------------------------------------------------------

static ReconstructedMacroblock mb;

// ---- class --------------------------------------------------------------------

class rk_ReconstructMBAFF : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { mb.flush(); }
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "e"; }

private:
    bool m_chroma = false;
};

bool rk_ReconstructMBAFF::canStart() {
    m_chroma = m_func.find("Chroma", 0) >= 0;
    if (!m_chroma) return true;
    mb.predMode = PredMode();
    m_parms.push_back(&predMode_code);
    predMode_code.init("predMode_code", 0, lastPredModeMacroblock, 1, StepPlus);
    return true;
}

bool rk_ReconstructMBAFF::initData() {
    if (!mb.create()) return false;
    if (m_chroma) mb.predMode.take(predModesChroma, predMode_code.value());
    mb.availability1 = mb.availability2 = m_chroma ? mb.predMode.availability : 52;
    return true;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_ReconstructMBAFF, keliReconstructLumaIntraHalfMB_H264_16s8u_C1R,
       mb.coefficients(), mb.pSrcDst1, srcdstStep, mb.predModeArr, mb.cbp4x4, mb.QP, mb.availability1);
KM_REG(rk_ReconstructMBAFF, keliReconstructChromaIntraHalfsMB_H264_16s8u_P2R,
       mb.coefficients(), mb.pSrcDst1, mb.pSrcDst2, srcdstStep, mb.predMode.mode, mb.cbp4x4, mb.QP,
       mb.availability1, mb.availability2);
// clang-format on
