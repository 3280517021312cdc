// denoisemosquito.cpp - the denoising filter against the flicker beside edges.

#include "denoisetest.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> resolution; // a place in imgSize

// ---- data ---------------------------------------------------------------------

static kmImage pSrcPrev, pSrcCurr, pDst;
static const Kel8u *pSrcPlane[2];
static KeliRect roi;
static KeliSize size;
static KeliDenoiseMosquitoState_8u_C1 *pDenoiseMsqtState;

static KeliSize imageSize() {
    return imageSizeAt(resolution.value());
}

// ---- class --------------------------------------------------------------------

class TimDenoiseMosquito : public DenoiseTest {
public:
    using DenoiseTest::DenoiseTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0 * imageSize().width * imageSize().height; }
    void parmsToCstrm() override { toTable(imageSize()); }

private:
    bool initState();
};

bool TimDenoiseMosquito::canStart() {
    m_parms.push_back(&resolution);
    resolution.init("resolution counter", 0, 2, 1, StepPlus);
    readAtOnce(resolution);
    return true;
}

// The state is carried from call to call, so that each set has its own.
bool TimDenoiseMosquito::initState() {
    if (!keliFilterDenoiseMosquitoInitAlloc_8u_C1 || !keliFilterDenoiseMosquitoFree_8u_C1) return false;
    return keliFilterDenoiseMosquitoInitAlloc_8u_C1(&pDenoiseMsqtState, size) == 0;
}

bool TimDenoiseMosquito::initData() {
    size = imageSize();
    roi = {0, 0, size.width, size.height};
    if (!makeRandom({&pSrcPrev, &pSrcCurr, &pDst}, size)) return false;
    pSrcPlane[0] = pSrcPrev.p8u;
    pSrcPlane[1] = pSrcCurr.p8u;
    return initState();
}

void TimDenoiseMosquito::flushData() {
    pSrcPrev.deleteVector();
    pSrcCurr.deleteVector();
    pDst.deleteVector();
    if (pDenoiseMsqtState) keliFilterDenoiseMosquitoFree_8u_C1(pDenoiseMsqtState);
    pDenoiseMsqtState = nullptr;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(TimDenoiseMosquito, keliFilterDenoiseMosquito_8u_C1R,
       pSrcPlane, pSrcCurr.m_step, pDst.p8u, pDst.m_step, size, pDenoiseMsqtState, roi);
// clang-format on
