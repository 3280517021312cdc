// weightedaverage.cpp - the weighted average of two blocks of H.264, in place.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> len; // one value, which nothing reads
static rkIterator<int> width, height;

// ---- data ---------------------------------------------------------------------

static kmVector pSrc(8), pSrc2Dst(8); // 16 rows of 16 samples
static const int step = 16;
static int weight1, weight2, shift, offset;
static KeliSize blockSize;

// ---- class --------------------------------------------------------------------

class rk_WAverage : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return width.value() * height.value(); }
    rkString getUnit() override { return "e"; }
};

static void initLength(rkIterator<int> &parm, char const *name) {
    parm.init(name);
    for (int length = 2; length <= 16; length *= 2) parm.add(length);
}

bool rk_WAverage::canStart() {
    m_parms.push_back(&len);
    m_parms.push_back(&width);
    m_parms.push_back(&height);
    len.init("len");
    len.add(0);
    initLength(width, "width");
    initLength(height, "height");
    return true;
}

bool rk_WAverage::initData() {
    blockSize.width = width.value();
    blockSize.height = height.value();
    if (blockSize.width > 16 || blockSize.height > 16) return false; // a user's block
    weight1 = weight2 = 32;
    shift = 6;
    offset = 0;
    const int vectorShift = rkGetVectorShift();
    return pSrc.createVectorExt(256, vectorShift, SetDefault, 0, 0) &&
           pSrc2Dst.createVectorExt(256, vectorShift, SetDefault, 0, 0);
}

void rk_WAverage::flushData() {
    pSrc.deleteVector();
    pSrc2Dst.deleteVector();
}

// ---- registration -------------------------------------------------------------

KM_REG(rk_WAverage, keliWeightedAverage_H264_8u_C1IR, pSrc.p8u, pSrc2Dst.p8u, step, weight1, weight2, shift,
       offset, blockSize);
