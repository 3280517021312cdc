// luma8x8.cpp - the 8x8 luma transforms of H.264's high profiles.

#include <limits.h>

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> numpoint; // the one pass of the forward test
static rkStepIterator<int> dstStep;  // elements from row to row

// ---- data ---------------------------------------------------------------------

static kmVector pSrc, pDst, pPred;
static int step; // the value of dstStep

// ---- classes ------------------------------------------------------------------

class vcTransformFwdLuma8x8 : public kmTest {
public:
    using kmTest::kmTest;

    bool canStart() override;
    bool canContinue() override;
    bool initData() override { return pSrc.m_data && pDst.m_data; }
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "pxch"; }
    void parmsToCstrm() override {}
};

class vcTransformInvAddPredLuma8x8_H264 : public kmTest {
public:
    using kmTest::kmTest;

    bool canStart() override;
    bool canContinue() override;
    bool initData() override { return pSrc.m_data && pDst.m_data && pPred.m_data; }
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "pxch"; }
};

// ---- forward ------------------------------------------------------------------

bool vcTransformFwdLuma8x8::canStart() {
    pSrc.init(m_func, kmSrc);
    pDst.init(m_func, kmDst);
    m_parms.push_back(&numpoint);
    numpoint.init("numpoint", 0, 0, 1, StepPlus);
    return true;
}

bool vcTransformFwdLuma8x8::canContinue() {
    if (!(m_firstPass ? numpoint.firstValue() : numpoint.nextValue())) return false;
    pSrc.createVectorExt(64, 0, SetRandom, 0, 0);
    pDst.createVectorExt(64, 0, SetRandom, 0, 0);
    return true;
}

void vcTransformFwdLuma8x8::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- inverse ------------------------------------------------------------------

bool vcTransformInvAddPredLuma8x8_H264::canStart() {
    pSrc.init(m_func, kmSrc);
    pDst.init(m_func, kmDst);
    pPred.init(m_func, kmDst);
    m_parms.push_back(&dstStep);
    dstStep.init("dstStep", 8, 80, 10, StepTimes);
    return true;
}

// A user may ask for any step; an impossible one gets no memory.
static int elementsOfRows(int rows, int rowStep) {
    return rowStep > 0 && rowStep <= INT_MAX / rows ? rows * rowStep : 0;
}

bool vcTransformInvAddPredLuma8x8_H264::canContinue() {
    if (!(m_firstPass ? dstStep.firstValue() : dstStep.nextValue())) return false;
    step = dstStep.value();
    const int elements = elementsOfRows(8, step);
    pSrc.createVectorExt(64, 0, SetRandom, 0, 0);
    pDst.createVectorExt(elements, 0, SetRandom, 0, 0);
    pPred.createVectorExt(elements, 0, SetRandom, 0, 0);
    return true;
}

void vcTransformInvAddPredLuma8x8_H264::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
    pPred.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(vcTransformFwdLuma8x8, keliTransformFwdLuma8x8_H264_16s_C1,    pSrc.p16s, pDst.p16s);
KM_REG(vcTransformFwdLuma8x8, keliTransformFwdLuma8x8_H264_16s32s_C1, pSrc.p16s, pDst.p32s);
KM_REG(vcTransformInvAddPredLuma8x8_H264, keliTransformInvAddPredLuma8x8_H264_32s16u_C1R,
       pPred.p16u, 2 * step, pSrc.p32s, pDst.p16u, 2 * step, 1);
// clang-format on
