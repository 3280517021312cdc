// yccrotate.cpp - rotation of 4:2:2 pictures into 4:2:0 ones.

#include <limits.h>

#include <initializer_list>

#include "rotation.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<KeliSize> srcSize;
static rkMapIterator<int> rotation;

// ---- data ---------------------------------------------------------------------

// Planes of chroma are as large as that of luma, and a part of them is used.
static kmImage pSrc, pDst;
static int srcStep, srcStep3[3], dstStep, dstStep3[3];

// ---- class --------------------------------------------------------------------

class Timvc_YCCRotate : public kmvcTest {
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
    void keepSteps();
};

void Timvc_YCCRotate::initParameters() {
    srcSize.init("srcSize");
    for (KeliSize size : {KeliSize{64, 64}, {256, 256}, {720, 480}}) srcSize.add(size);
    initRotation(rotation);
}

bool Timvc_YCCRotate::canStart() {
    m_parms.push_back(&srcSize);
    m_parms.push_back(&rotation);
    initParameters();
    return true;
}

void Timvc_YCCRotate::keepSteps() {
    srcStep = pSrc.m_step;
    dstStep = pDst.m_step;
    for (int i = 0; i < 3; ++i) {
        srcStep3[i] = srcStep;
        dstStep3[i] = dstStep;
    }
}

// A user may ask for any width that memory holds.
static int fourTimes(int width) {
    return width <= INT_MAX / 4 ? 4 * width : INT_MAX;
}

bool Timvc_YCCRotate::initData() {
    const int shift = rkGetVectorShift();
    const KeliSize dstSize = turnedSize(srcSize.value(), rotation.value());
    pSrc.init(m_func.type(kmSrc), m_func.channels(kmSrc), m_func.plane(kmSrc));
    pDst.init(m_func.type(kmDst), m_func.channels(kmDst), m_func.plane(kmDst));
    if (!pSrc.createImageExt(srcSize.value(), srcSize.value().width, shift, SetRandom, 0, 0)) return false;
    if (!pDst.createImageExt(dstSize, fourTimes(dstSize.width), shift, SetDefault, 0, 0)) return false;
    keepSteps();
    return true;
}

void Timvc_YCCRotate::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define DST pDst.planes8u, dstStep3, rotation.value()

// clang-format off
KM_REG(Timvc_YCCRotate, keliCbYCr422ToYCbCr420_Rotate_8u_C2P3R, pSrc.p8u,      srcStep,  srcSize.value(), DST);
KM_REG(Timvc_YCCRotate, keliCbYCr422ToYCbCr420_Rotate_8u_P3R,   pSrc.planes8u, srcStep3, srcSize.value(), DST);
// clang-format on
