// h263resample.cpp - reference picture resampling of H.263.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<KeliSize> size; // of luma, before and after
static rkIterator<int> wda;       // accuracy of the warp: 0 half a sample, 1 a sixteenth
static rkMapIterator<int> fillMode;
static rkIterator<int> rounding;

// ---- data ---------------------------------------------------------------------

// Planes of chroma are as large as that of luma, and a quarter of them is used.
static kmImage pSrc, pDst;
static int srcStep, dstStep;
static int warpParams[8];
static const int fillColor = 64;

// The displacements of the corners in half samples: a turned and twisted picture, whose left border and
// bottom come from outside.
static const int warp[8] = {-7, 3, 4, -6, 5, 9, 2, -3};

// ---- class --------------------------------------------------------------------

class Timvch263_Resample : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return static_cast<double>(size.value().width) * size.value().height; }
    rkString getUnit() override { return "e"; }

private:
    void initParameters();
};

static void addFillMode(int mode, char const *name) {
    fillMode[mode] = name;
    fillMode.add(mode);
}

void Timvch263_Resample::initParameters() {
    size.init("size");
    size.add({64, 64});
    size.add({256, 256});
    wda.init("wda");
    wda.add(0);
    wda.add(1);
    fillMode.init("fillMode");
    addFillMode(0, "color");
    addFillMode(1, "black");
    addFillMode(2, "gray");
    addFillMode(3, "clip");
    rounding.init("rounding");
    rounding.add(0);
    rounding.add(1);
}

bool Timvch263_Resample::canStart() {
    m_parms.push_back(&size);
    m_parms.push_back(&wda);
    m_parms.push_back(&fillMode);
    m_parms.push_back(&rounding);
    initParameters();
    return true;
}

// Both accuracies get the same warp, so that their figures compare.
bool Timvch263_Resample::initData() {
    const int shift = rkGetVectorShift();
    pSrc.init(m_func.srcType(), 3, true);
    pDst.init(m_func.dstType(), 3, true);
    if (!pSrc.createVectorExt(size.value(), shift, SetRandom, 0, 0)) return false;
    if (!pDst.createVectorExt(size.value(), 2 * shift, SetDefault, 0, 0)) return false;
    srcStep = pSrc.m_step;
    dstStep = pDst.m_step;
    for (int i = 0; i < 8; ++i) warpParams[i] = warp[i] * (wda.value() == 1 ? 8 : 1);
    return true;
}

void Timvch263_Resample::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define SRC pSrc.planes8u[0], srcStep, pSrc.planes8u[1], srcStep, pSrc.planes8u[2], srcStep, size.value()
#define DST pDst.planes8u[0], dstStep, pDst.planes8u[1], dstStep, pDst.planes8u[2], dstStep, size.value()

// clang-format off
KM_REG(Timvch263_Resample, keliResample_H263_8u_P3R,
       SRC, DST, warpParams, wda.value(), rounding.value(), fillMode.value(), fillColor);
// clang-format on
