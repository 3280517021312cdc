// interpolateblock.cpp - the mean of blocks: the last step of quarter samples and of two references in H.264.

#include "kmvc.h"
#include "rotatingoffset.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<KeliSize> blockSize;

// ---- data ---------------------------------------------------------------------

static kmVector pSrc1(8), pSrc2(8), pSrc3(8), pDst(8);
static const int step = 128; // of all blocks
static int width, height;

static RotatingOffset src_offset1, src_offset2, src_offset3;

static Kel8u const *rotating(kmVector const &source, RotatingOffset &offset) {
    return source.p8u + offset.next();
}

// ---- classes ------------------------------------------------------------------

class kmvcInterpolateBlock : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
};

// The form with three sources, which begin where those of other interpolations have their neighbours.
class rk_InterpolateBlock : public kmvcInterpolateBlock {
public:
    using kmvcInterpolateBlock::kmvcInterpolateBlock;

    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "all"; }
};

bool kmvcInterpolateBlock::canStart() {
    m_parms.push_back(&blockSize);
    if (m_tool.getMethodAuto()) m_tool.setMethodLoop(1024);
    blockSize.init("blockSize");
    for (int length = 2; length <= 16; length *= 2) blockSize.add({length, length});
    return true;
}

bool kmvcInterpolateBlock::initData() {
    width = blockSize.value().width;
    height = blockSize.value().height;
    if (width > 16 || height > 16) return false; // a user's block
    src_offset1.restart();
    src_offset2.restart();
    src_offset3.restart();
    const int shift = rkGetVectorShift();
    return pSrc1.createVectorExt(2944, shift, SetDefault, 0, 0) &&
           pSrc2.createVectorExt(2944, shift, SetDefault, 0, 0) &&
           pDst.createVectorExt(2048, shift, SetDefault, 0, 0);
}

void kmvcInterpolateBlock::flushData() {
    pSrc1.deleteVector();
    pSrc2.deleteVector();
    pDst.deleteVector();
}

bool rk_InterpolateBlock::initData() {
    return kmvcInterpolateBlock::initData() &&
           pSrc3.createVectorExt(2944, rkGetVectorShift(), SetDefault, 0, 0);
}

void rk_InterpolateBlock::flushData() {
    kmvcInterpolateBlock::flushData();
    pSrc3.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(kmvcInterpolateBlock, keliInterpolateBlock_H264_8u_P2P1R,
       rotating(pSrc1, src_offset1), rotating(pSrc2, src_offset2), pDst.p8u, width, height, step);
KM_REG(rk_InterpolateBlock, keliInterpolateBlock_H264_8u_P3P1R,
       512 + rotating(pSrc1, src_offset1), 512 + rotating(pSrc2, src_offset2), 512 + rotating(pSrc3, src_offset3),
       pDst.p8u, width, height, step);
// clang-format on
