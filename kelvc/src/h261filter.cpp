// h261filter.cpp - the loop filter of H.261.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static const int pictureWidth = 320;

static kmImage pSrc, pDst;
static int srcStep, dstStep;
static KeliSize blockSize; // from the function's name

// ---- class --------------------------------------------------------------------

class Timvch261_Filter : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override { return getBlockSize(blockSize, 1); }
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 64.0; }
    rkString getUnit() override { return "e"; }
};

// The range is wider than that of a sample, so that both of its ends are hit.
bool Timvch261_Filter::initData() {
    const int shift = rkGetVectorShift();
    pSrc.init(m_func.srcType(), 1, false);
    pDst.init(m_func.dstType(), 1, false);
    if (!pSrc.createVectorExt(pictureWidth, blockSize.height, shift, SetRandom, -300.0, 300.0)) return false;
    if (!pDst.createVectorExt(pictureWidth, blockSize.height, 2 * shift, SetDefault, 0, 0)) return false;
    srcStep = pSrc.m_step;
    dstStep = pDst.m_step;
    return true;
}

void Timvch261_Filter::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvch261_Filter, keliFilter8x8_H261_8u_C1R, pSrc.p8u, srcStep, pDst.p8u, dstStep);
// clang-format on
