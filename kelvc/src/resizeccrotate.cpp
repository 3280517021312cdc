// resizeccrotate.cpp - reduction of a 4:2:2 picture with conversion to 16-bit pixels and rotation.

#include <initializer_list>

#include "rotation.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<KeliSize> srcSize;
static rkIterator<int> zoomFactor;
static rkMapIterator<int> interpolation, colorConversion, rotation;

// ---- data ---------------------------------------------------------------------

static kmImage pSrc, pDst;
static int srcStep, dstStep;

// ---- class --------------------------------------------------------------------

class Timvc_ResizeCCRotate : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override {
        return static_cast<double>(srcSize.value().width) * srcSize.value().height;
    }
    rkString getUnit() override { return "px"; }

private:
    void initParameters();
};

void Timvc_ResizeCCRotate::initParameters() {
    srcSize.init("srcSize");
    for (KeliSize size : {KeliSize{8, 8}, {16, 16}, {256, 256}, {720, 480}}) srcSize.add(size);
    zoomFactor.init("zoomFactor");
    for (int factor : {2, 4, 8}) zoomFactor.add(factor);
    interpolation.init("interpolation");
    addName(interpolation, 1, "nn");
    addName(interpolation, 2, "linear");
    colorConversion.init("colorConversion");
    addName(colorConversion, 0, "CbYCr422ToBGR565");
    addName(colorConversion, 1, "CbYCr422ToBGR555");
    initRotation(rotation);
}

bool Timvc_ResizeCCRotate::canStart() {
    m_parms.push_back(&srcSize);
    m_parms.push_back(&zoomFactor);
    m_parms.push_back(&interpolation);
    m_parms.push_back(&colorConversion);
    m_parms.push_back(&rotation);
    initParameters();
    return true;
}

// The destination is that of the full size, whatever the factor.
bool Timvc_ResizeCCRotate::initData() {
    const KeliSize dstSize = turnedSize(srcSize.value(), rotation.value());
    pSrc.init(8, 2, false);
    pDst.init(16, 2, false);
    if (!pSrc.createVectorExt(srcSize.value(), 0, SetRandom, 0, 0)) return false;
    if (!pDst.createVectorExt(dstSize, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    srcStep = pSrc.m_step;
    dstStep = pDst.m_step;
    return true;
}

void Timvc_ResizeCCRotate::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvc_ResizeCCRotate, keliResizeCCRotate_8u_C2R,
       pSrc.p8u, srcStep, srcSize.value(), pDst.p16u, dstStep,
       zoomFactor.value(), interpolation.value(), colorConversion.value(), rotation.value());
// clang-format on
