// resizeccrotate.cpp - reduction of a 4:2:2 picture with conversion to 16-bit pixels and rotation.

#include <initializer_list>

#include "kmvc.h"

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

static void addName(rkMapIterator<int> &parm, int value, char const *name) {
    parm[value] = name;
    parm.add(value);
}

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
    rotation.init("rotation");
    addName(rotation, 0, "disable");
    addName(rotation, 1, "90ccw");
    addName(rotation, 2, "90cw");
    addName(rotation, 3, "180");
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
    KeliSize dstSize = srcSize.value();
    if (rotation.value() == 1 || rotation.value() == 2) dstSize = {dstSize.height, dstSize.width};
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
