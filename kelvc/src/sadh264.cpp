// sadh264.cpp - sums of absolute differences of a macroblock in one, or of its blocks.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static kmVector g_srcCurVector, g_srcRefVector; // 16 x 16 samples
static kmVector g_SAD;                          // 256 results, of which at most 16 are written
static int g_sad_srcCurStep, g_sad_srcRefStep;
static int g_sad_mcType;

// ---- class --------------------------------------------------------------------

class CSAD_H264 : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    rkString getUnit() override { return "all"; }
};

bool CSAD_H264::canStart() {
    g_srcCurVector.init(m_func, kmSrc);
    g_srcRefVector.init(m_func, kmSrc);
    g_SAD.init(m_func, kmDst);
    g_sad_mcType = 0;
    g_sad_srcCurStep = g_sad_srcRefStep = 16;
    return true;
}

bool CSAD_H264::initData() {
    return g_srcCurVector.createVectorExt(256, rkGetVectorShift(), SetDefault, 0, 0) &&
           g_srcRefVector.createVectorExt(256, rkGetVectorShift(), SetDefault, 0, 0) &&
           g_SAD.createVectorExt(256, rkGetVectorShift(), SetDefault, 0, 0);
}

void CSAD_H264::flushData() {
    g_srcCurVector.deleteVector();
    g_srcRefVector.deleteVector();
    g_SAD.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
#define SAD_SOURCES g_srcCurVector.p8u, g_sad_srcCurStep, g_srcRefVector.p8u, g_sad_srcRefStep

KM_REG(CSAD_H264, keliSAD4x4_8u32s,               SAD_SOURCES, g_SAD.p32s, g_sad_mcType);
KM_REG(CSAD_H264, keliSAD16x16Blocks8x8_8u16u,    SAD_SOURCES, g_SAD.p16u, g_sad_mcType);
KM_REG(CSAD_H264, keliSAD16x16Blocks4x4_8u16u,    SAD_SOURCES, g_SAD.p16u, g_sad_mcType);
