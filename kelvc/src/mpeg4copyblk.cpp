// mpeg4copyblk.cpp - copies of blocks at MPEG-4's quarter-sample positions.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> acc;         // quarters of a sample to the right
static rkMapIterator<int> rounding; // 1: halves are rounded down

// ---- data ---------------------------------------------------------------------

static const int pictureWidth = 320;

static kmImage pSrc, pDst; // as high as the block: no position of the test reads below it
static int srcStep, dstStep;
static KeliSize blockSize; // from the function's name

// ---- class --------------------------------------------------------------------

class Timvcmp4_CopyBlk : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return blockSize.width * blockSize.height; }
    rkString getUnit() override { return "e"; }
};

bool Timvcmp4_CopyBlk::canStart() {
    if (!getBlockSize(blockSize, 1)) return false;
    m_parms.push_back(&acc);
    m_parms.push_back(&rounding);
    acc.init("acc");
    for (int position = 0; position < 4; ++position) acc.add(position);
    rounding.init("rounding");
    rounding[0] = "-";
    rounding[1] = "round";
    rounding.add(0);
    rounding.add(1);
    return true;
}

bool Timvcmp4_CopyBlk::initData() {
    pSrc.init(m_func.srcType(), 1, false);
    pDst.init(m_func.dstType(), 1, false);
    if (!pSrc.createVector(pictureWidth, blockSize.height, SetDefault, 0, 0)) return false;
    if (!pDst.createVector(pictureWidth, blockSize.height, SetDefault, 0, 0)) return false;
    srcStep = pSrc.m_step;
    dstStep = pDst.m_step;
    return true;
}

void Timvcmp4_CopyBlk::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define COPY pSrc.p8u, srcStep, pDst.p8u, dstStep, acc.value(), rounding.value()

// clang-format off
KM_REG(Timvcmp4_CopyBlk, keliCopy8x8QP_MPEG4_8u_C1R,   COPY);
KM_REG(Timvcmp4_CopyBlk, keliCopy16x8QP_MPEG4_8u_C1R,  COPY);
KM_REG(Timvcmp4_CopyBlk, keliCopy16x16QP_MPEG4_8u_C1R, COPY);
// clang-format on
