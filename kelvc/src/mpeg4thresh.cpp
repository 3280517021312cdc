// mpeg4thresh.cpp - the thresholds of MPEG-4's deringing post-filter.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static kmImage pSrcY, pSrcCb, pSrcCr; // 320 x 16, 160 x 8
static kmImage *const planes[] = {&pSrcY, &pSrcCb, &pSrcCr};
static int srcYStep, srcCbStep, srcCrStep;
static Kel32s threshold[6]; // of four luma blocks, Cb, Cr

// ---- class --------------------------------------------------------------------

class Timvcmp4_filterThresh : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool initData() override;
    void flushData() override;
};

bool Timvcmp4_filterThresh::initData() {
    for (kmImage *plane : planes) plane->init(m_func.srcType(), 1, false);
    if (!pSrcY.createVector(320, 16, SetDefault, 0, 0)) return false;
    if (!pSrcCb.createVector(160, 8, SetDefault, 0, 0)) return false;
    if (!pSrcCr.createVector(160, 8, SetDefault, 0, 0)) return false;
    srcYStep = pSrcY.m_step;
    srcCbStep = pSrcCb.m_step;
    srcCrStep = pSrcCr.m_step;
    return true;
}

void Timvcmp4_filterThresh::flushData() {
    for (kmImage *plane : planes) plane->deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvcmp4_filterThresh, keliFilterDeringingThreshold_MPEG4_8u_P3R,
       pSrcY.p8u, srcYStep, pSrcCb.p8u, srcCbStep, pSrcCr.p8u, srcCrStep, threshold);
// clang-format on
