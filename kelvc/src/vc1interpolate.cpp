// vc1interpolate.cpp - interpolation of VC-1 at quarters of a sample.

#include "vc1interpolation.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> blockSizeIndex, dx, dy, roundControl;
static rkMapIterator<int> srcStep, dstStep; // bytes

// ---- data ---------------------------------------------------------------------

static kmVector pSrc(8), pDst(8); // far more than the caches hold
static KeliInterpolateVC1_8u sInter;

// ---- class --------------------------------------------------------------------

class rk_VC1Interpolate : public VC1InterpolationTest {
public:
    using VC1InterpolationTest::VC1InterpolationTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
};

bool rk_VC1Interpolate::canStart() {
    start(blockSizeIndex, dx, dy);
    addParameter(roundControl, "roundControl", {0, 1});
    addParameter(srcStep, "srcStep", {64, 65});
    addParameter(dstStep, "dstStep", {32, 33});
    return true;
}

bool rk_VC1Interpolate::initData() {
    const int length = m_pairs ? 10485760 : 5242880;
    if (!makeDefault(pSrc, length) || !makeDefault(pDst, length)) return false;
    sInter.pSrc = pSrc.p8u + nextPlace(5120);
    sInter.srcStep = srcStep.value();
    sInter.pDst = pDst.p8u;
    sInter.dstStep = dstStep.value();
    sInter.dx = dx.value();
    sInter.dy = dy.value();
    sInter.roiSize = blkSize[blockSizeIndex.value()];
    sInter.roundControl = roundControl.value();
    return true;
}

void rk_VC1Interpolate::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_VC1Interpolate, keliInterpolateQPBilinear_VC1_8u_C1R, &sInter);
KM_REG(rk_VC1Interpolate, keliInterpolateQPBicubic_VC1_8u_C1R,  &sInter);
KM_REG(rk_VC1Interpolate, keliInterpolateQPBilinear_VC1_8u_C2R, &sInter);
// clang-format on
