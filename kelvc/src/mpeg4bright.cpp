// mpeg4bright.cpp - the brightness of MPEG-4 sprites.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<KeliSize> size;
static const int lengths[] = {8, 16, 64, 128};

// ---- data ---------------------------------------------------------------------

static kmImage pSrcDst;
static int srcDstStep;
static const int brightnessChangeFactor = 113; // hundredths

// ---- class --------------------------------------------------------------------

class Timvcmp4_Bright : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { pSrcDst.deleteVector(); }
    double getDivisor() override { return size.value().width * size.value().height; }
    rkString getUnit() override { return "e"; }
};

bool Timvcmp4_Bright::canStart() {
    m_parms.push_back(&size);
    size.init("size");
    for (int length : lengths) size.add({length, length});
    return true;
}

bool Timvcmp4_Bright::initData() {
    pSrcDst.init(m_func.srcType(), 1, false);
    if (!pSrcDst.createVector(size.value(), SetDefault, 0, 0)) return false;
    srcDstStep = pSrcDst.m_step;
    return true;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvcmp4_Bright, keliChangeSpriteBrightness_MPEG4_8u_C1IR,
       pSrcDst.p8u, srcDstStep, size.value().width, size.value().height, brightnessChangeFactor);
// clang-format on
