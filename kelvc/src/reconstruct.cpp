// reconstruct.cpp - reconstruction of H.264 macroblocks with quantisation tables.

#include "reconstruct.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> predMode_code;

// ---- data ---------------------------------------------------------------------

static ReconstructedMacroblock mb;
static const int QP2 = 26;
static const int bypass_flag = 0;
static Kel16s QuantTable[64], QuantTable2[64]; // of chroma, each colour has one
static Kel16s const *pQuantTable = QuantTable, *pQuantTable2 = QuantTable2;

// ---- class --------------------------------------------------------------------

class rk_Reconstruct : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { mb.flush(); }
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "e"; }

private:
    bool m_16x16 = false, m_chroma = false; // intra with one mode for the macroblock
};

bool rk_Reconstruct::canStart() {
    m_16x16 = m_func.find("Intra_16x16", 0) >= 0;
    m_chroma = m_func.find("ChromaIntra", 0) >= 0;
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    if (!m_16x16 && !m_chroma) return true;
    mb.predMode = PredMode();
    m_parms.push_back(&predMode_code);
    predMode_code.init("predMode_code", 0, lastPredModeMacroblock, 1, StepPlus);
    return true;
}

bool rk_Reconstruct::initData() {
    if (!mb.create()) return false;
    const Kel16s scale = 16 * 13; // the flat list, with the smallest factor of this QP
    for (int i = 0; i < 64; ++i) QuantTable[i] = QuantTable2[i] = scale;
    if (m_16x16) mb.predMode.take(predModes16x16, predMode_code.value());
    if (m_chroma) mb.predMode.take(predModesChroma, predMode_code.value());
    mb.availability1 = mb.availability2 = m_16x16 || m_chroma ? mb.predMode.availability : 52;
    return true;
}

// ---- registration -------------------------------------------------------------

#define LUMA         mb.coefficients(), mb.pSrcDst1, srcdstStep
#define INTRA_CHROMA mb.coefficients(), mb.pSrcDst1, mb.pSrcDst1, srcdstStep, mb.predMode.mode
#define INTER_CHROMA mb.coefficients(), mb.pSrcDst1, mb.pSrcDst2, srcdstStep
#define BLOCKS_4x4   LUMA, mb.predModeArr, mb.cbp4x4, mb.QP, mb.availability1
#define BLOCKS_8x8   LUMA, mb.predModeArr8, mb.cbp8x8, mb.QP, mb.availability1
#define TABLE        pQuantTable, bypass_flag
#define TABLES       pQuantTable, pQuantTable2, bypass_flag

// clang-format off
KM_REG(rk_Reconstruct, keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R,
       LUMA, mb.predMode.mode, mb.cbp4x4, mb.QP, mb.availability1, TABLE);
KM_REG(rk_Reconstruct, keliReconstructLumaIntra4x4MB_H264_16s8u_C1R, BLOCKS_4x4, TABLE);
KM_REG(rk_Reconstruct, keliReconstructLumaInter4x4MB_H264_16s8u_C1R, LUMA, mb.cbp4x4, mb.QP, TABLE);
KM_REG(rk_Reconstruct, keliReconstructChromaInter4x4MB_H264_16s8u_P2R,
       INTER_CHROMA, mb.cbp4x4, mb.QP, QP2, TABLES);
KM_REG(rk_Reconstruct, keliReconstructChromaIntra4x4MB_H264_16s8u_P2R,
       INTRA_CHROMA, mb.cbp4x4, mb.QP, QP2, mb.availability1, TABLES);
KM_REG(rk_Reconstruct, keliReconstructLumaIntra8x8MB_H264_16s8u_C1R, BLOCKS_8x8, TABLE);
KM_REG(rk_Reconstruct, keliReconstructLumaInter8x8MB_H264_16s8u_C1R, LUMA, mb.cbp8x8, mb.QP, TABLE);
KM_REG(rk_Reconstruct, keliReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R, BLOCKS_4x4, TABLE);
KM_REG(rk_Reconstruct, keliReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R, BLOCKS_8x8, TABLE);
KM_REG(rk_Reconstruct, keliReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R,
       INTRA_CHROMA, mb.cbp4x4, mb.QP, QP2, mb.availability1, mb.availability2, TABLES);
// clang-format on
