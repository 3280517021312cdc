// vc1rangemap.cpp - mapping of samples to the range of another picture of VC-1.

#include "vc1test.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> width, height;
static rkMapIterator<int> step; // bytes; the rows of 18 samples overlap in a step of 16
static rkMapIterator<int> rangeMapParam;

// ---- data ---------------------------------------------------------------------

static kmVector pSrc(8), pDst(8);
static KeliSize roiSize;

// ---- class --------------------------------------------------------------------

class rk_VC1RangeMap : public VC1Test {
public:
    using VC1Test::VC1Test;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
};

bool rk_VC1RangeMap::canStart() {
    addParameter(width, "width", {16, 18});
    addParameter(height, "height", {16, 18});
    addParameter(step, "step", {16, 18});
    addParameter(rangeMapParam, "rangeMapParam", {0, 1, 2, 3, 5, 7});
    makeAutoStatistic(1024);
    return true;
}

bool rk_VC1RangeMap::initData() {
    roiSize = {width.value(), height.value()};
    return makeDefault(pSrc, 400) && makeDefault(pDst, 400);
}

void rk_VC1RangeMap::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_VC1RangeMap, keliRangeMapping_VC1_8u_C1R,
       pSrc.p8u, step.value(), pDst.p8u, step.value(), roiSize, rangeMapParam.value());
// clang-format on
