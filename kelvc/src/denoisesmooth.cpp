// denoisesmooth.cpp - the denoising filter that smooths and keeps edges.

#include "denoisetest.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> resolution; // a place in imgSize
static rkIterator<int> threshold;

// ---- data ---------------------------------------------------------------------

static kmImage pSrc, pDst;
static kmVector workBuffer(8);
static KeliRect roi;
static KeliSize size;

static KeliSize imageSize() {
    return imageSizeAt(resolution.value());
}

// ---- class --------------------------------------------------------------------

class TimDenoiseSmooth : public DenoiseTest {
public:
    using DenoiseTest::DenoiseTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0 * imageSize().width * imageSize().height; }
    void parmsToCstrm() override;
};

bool TimDenoiseSmooth::canStart() {
    m_parms.push_back(&resolution);
    m_parms.push_back(&threshold);
    resolution.init("resolution counter", 0, 2, 1, StepPlus);
    initThreshold(threshold);
    for (rkParameter *parm : m_parms) readAtOnce(*parm);
    return true;
}

bool TimDenoiseSmooth::initData() {
    size = imageSize();
    roi = {0, 0, size.width, size.height};
    if (!makeRandom({&pSrc, &pDst}, size)) return false;
    return workBuffer.createVector((2 * size.height + 6) * (size.width + 3), -1);
}

void TimDenoiseSmooth::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
    workBuffer.deleteVector();
}

void TimDenoiseSmooth::parmsToCstrm() {
    toTable(imageSize());
    threshold.toCStream(g_cstrm);
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(TimDenoiseSmooth, keliFilterDenoiseSmooth_8u_C1R,
       pSrc.p8u, pSrc.m_step, pDst.p8u, pDst.m_step, size, threshold.value(), roi, workBuffer.p8u);
// clang-format on
