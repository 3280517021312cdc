// mpeg4obmc.cpp - MPEG-4's overlapped motion compensation.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> motionVector; // lowest bits of the vectors: bit 0 to the right, bit 1 down
static rkIterator<int> rounding;        // 1: halves are rounded down

// ---- data ---------------------------------------------------------------------

static const int pictureWidth = 320;

static kmImage pSrc, pDst; // the source 8 rows higher than the block
static int srcStep, dstStep;
static KeliSize blockSize;      // from the function's name
static KeliMotionVector pMV[5]; // own, left, right, above, below

// ---- class --------------------------------------------------------------------

class Timvcmp4_OBMC : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return blockSize.width * blockSize.height; }
    rkString getUnit() override { return "e"; }
};

bool Timvcmp4_OBMC::canStart() {
    static char const *const names[] = {"00", "01", "10", "11"};
    if (!getBlockSize(blockSize, 1)) return false;
    m_parms.push_back(&motionVector);
    m_parms.push_back(&rounding);
    motionVector.init("motionVector");
    for (int m = 0; m < 4; ++m) {
        motionVector[m] = names[m];
        motionVector.add(m);
    }
    rounding.init("rounding");
    rounding.add(0);
    rounding.add(1);
    return true;
}

bool Timvcmp4_OBMC::initData() {
    pSrc.init(m_func.srcType(), 1, false);
    pDst.init(m_func.dstType(), 1, false);
    if (!pSrc.createVector(pictureWidth, blockSize.height + 8, SetDefault, 0, 0)) return false;
    if (!pDst.createVector(pictureWidth, blockSize.height, SetDefault, 0, 0)) return false;
    srcStep = pSrc.m_step;
    dstStep = pDst.m_step;
    const int m = motionVector.value();
    for (int i = 4; i >= 0; --i) {
        pMV[i].x = static_cast<Kel16s>((m & 1) + 6);
        pMV[i].y = static_cast<Kel16s>(((m & 2) >> 1) + 6);
    }
    return true;
}

void Timvcmp4_OBMC::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define OVERLAP \
    pSrc.p8u, srcStep, pDst.p8u, dstStep, &pMV[0], &pMV[1], &pMV[2], &pMV[3], &pMV[4], rounding.value()

// clang-format off
KM_REG(Timvcmp4_OBMC, keliOBMC8x8HP_MPEG4_8u_C1R,   OVERLAP);
KM_REG(Timvcmp4_OBMC, keliOBMC16x16HP_MPEG4_8u_C1R, OVERLAP);
KM_REG(Timvcmp4_OBMC, keliOBMC8x8QP_MPEG4_8u_C1R,   OVERLAP);
// clang-format on
