// mpeg4smooth.cpp - the smoothing of MPEG-4's deringing post-filter.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> data; // 1: columns of bright samples, which the filter leaves

// ---- data ---------------------------------------------------------------------

static kmImage source, destination; // 320 x 16, 160 x 8
static Kel8u *pSrc;                 // the filter reads a row and a column around the block
static int srcStep, dstStep;
static const int QP = 2, threshold = 32;

// ---- class --------------------------------------------------------------------

class Timvcmp4_filterSmooth : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
};

bool Timvcmp4_filterSmooth::canStart() {
    m_parms.push_back(&data);
    data.init("data");
    data[0] = "mono";
    data[1] = "drizzle";
    data.add(0);
    data.add(1);
    return true;
}

static void setDrizzle() {
    for (int row = 0; row < 10; ++row) {
        for (int col = 1; col <= 9; col += 2) source.p8u[row * srcStep + col] = 127;
    }
}

bool Timvcmp4_filterSmooth::initData() {
    source.init(m_func.srcType(), 1, false);
    destination.init(m_func.dstType(), 1, false);
    if (!source.createVector(320, 16, SetDefault, 0, 0)) return false;
    if (!destination.createVector(160, 8, SetDefault, 0, 0)) return false;
    srcStep = source.m_step;
    dstStep = destination.m_step;
    pSrc = source.p8u + srcStep + 1;
    if (data.value() == 1) setDrizzle();
    return true;
}

void Timvcmp4_filterSmooth::flushData() {
    source.deleteVector();
    destination.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvcmp4_filterSmooth, keliFilterDeringingSmooth8x8_MPEG4_8u_C1R,
       pSrc, srcStep, destination.p8u, dstStep, QP, threshold);
// clang-format on
