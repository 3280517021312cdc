// encodechroma.cpp - what the CAVLC coder of H.264 codes of chroma DC blocks.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static const int len = 8; // coefficients of the larger block

static kmVector pCoeffs; // no zero and no one among them: a level each
static kmVector pLevels;
static kmVector pRuns(8);
static Kel8u trailingOnes, trailingOneSigns, numOutCoeffs, totalZeroes;

// ---- class --------------------------------------------------------------------

class Timvc_H264_EncodeChroma : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool initData() override;
    void flushData() override;
};

bool Timvc_H264_EncodeChroma::initData() {
    pCoeffs.init(m_func, kmSrc);
    pLevels.init(m_func, kmSrc);
    return pCoeffs.createVectorExt(len, rkGetVectorShift(), SetValue, 2.0, 0) &&
           pLevels.createVector(len, -1) && pRuns.createVector(len, -1);
}

void Timvc_H264_EncodeChroma::flushData() {
    pCoeffs.deleteVector();
    pLevels.deleteVector();
    pRuns.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define COUNTS &trailingOnes, &trailingOneSigns, &numOutCoeffs, &totalZeroes

// clang-format off
KM_REG(Timvc_H264_EncodeChroma, keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s, pCoeffs.p32s, COUNTS, pLevels.p32s, pRuns.p8u);
KM_REG(Timvc_H264_EncodeChroma, keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s, pCoeffs.p16s, COUNTS, pLevels.p16s, pRuns.p8u);
KM_REG(Timvc_H264_EncodeChroma, keliEncodeCoeffsCAVLCChromaDC2x4_H264_32s, pCoeffs.p32s, COUNTS, pLevels.p32s, pRuns.p8u);
// clang-format on
