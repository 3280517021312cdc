// denoiseadapt.cpp - the denoising filter over time and place.

#include "denoisetest.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> resolution, blur; // places in imgSize and blurFlag
static rkIterator<int> threshold;

// ---- data ---------------------------------------------------------------------

static kmImage pSrcPrev, pSrcCurr, pSrcNext, pDst;
static const Kel8u *pSrcPlane[3];
static KeliRect roi;
static KeliSize size;
static const KeliSize maskSize = {1, 1};
static const int blurFlag[] = {0, 1, 2, 3};
static int flag; // the value of the set
static KeliDenoiseAdaptiveState_8u_C1 *pDenoiseState;

static KeliSize imageSize() {
    return imageSizeAt(resolution.value());
}

// ---- class --------------------------------------------------------------------

class TimDenoiseAdapt : public DenoiseTest {
public:
    using DenoiseTest::DenoiseTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0 * imageSize().width * imageSize().height; }
    void parmsToCstrm() override;

private:
    bool initState();
};

bool TimDenoiseAdapt::canStart() {
    m_parms.push_back(&resolution);
    m_parms.push_back(&blur);
    m_parms.push_back(&threshold);
    resolution.init("resolution counter", 0, 2, 1, StepPlus);
    blur.init("blur counter", 0, 3, 1, StepPlus);
    initThreshold(threshold);
    for (rkParameter *parm : m_parms) readAtOnce(*parm);
    return true;
}

// A flag behind the table is left to the library to refuse.
static int flagAt(int i) {
    return i >= 0 && i < 4 ? blurFlag[i] : -1;
}

// The state is carried from call to call, so that each set has its own.
bool TimDenoiseAdapt::initState() {
    if (!keliFilterDenoiseAdaptiveInitAlloc_8u_C1 || !keliFilterDenoiseAdaptiveFree_8u_C1) return false;
    return keliFilterDenoiseAdaptiveInitAlloc_8u_C1(&pDenoiseState, size, maskSize) == 0;
}

bool TimDenoiseAdapt::initData() {
    size = imageSize();
    roi = {0, 0, size.width, size.height};
    if (!makeRandom({&pSrcPrev, &pSrcCurr, &pSrcNext, &pDst}, size)) return false;
    pSrcPlane[0] = pSrcPrev.p8u;
    pSrcPlane[1] = pSrcCurr.p8u;
    pSrcPlane[2] = pSrcNext.p8u;
    flag = flagAt(blur.value());
    return initState();
}

void TimDenoiseAdapt::flushData() {
    pSrcPrev.deleteVector();
    pSrcCurr.deleteVector();
    pSrcNext.deleteVector();
    pDst.deleteVector();
    if (pDenoiseState) keliFilterDenoiseAdaptiveFree_8u_C1(pDenoiseState);
    pDenoiseState = nullptr;
}

void TimDenoiseAdapt::parmsToCstrm() {
    toTable(imageSize());
    toTable(flagAt(blur.value()));
    threshold.toCStream(g_cstrm);
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(TimDenoiseAdapt, keliFilterDenoiseAdaptive_8u_C1R,
       pSrcPlane, pSrcCurr.m_step, pDst.p8u, pDst.m_step, size, maskSize, roi, threshold.value(), flag, pDenoiseState);
// clang-format on
