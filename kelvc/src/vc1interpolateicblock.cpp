// vc1interpolateicblock.cpp - interpolation of VC-1 from references with compensated intensity.

#include "vc1interpolation.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> blockSizeIndex, dx, dy;

// ---- data ---------------------------------------------------------------------

static kmVector pSrc(8), pDst(8);
static kmVector lutTopTable(8), lutBottomTable(8);
static KeliInterpolateICBlockVC1_8u sInterICBlock;

// ---- class --------------------------------------------------------------------

class rk_VC1InterpolateICBlock : public VC1InterpolationTest {
public:
    using VC1InterpolationTest::VC1InterpolationTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;

private:
    bool makeData();
};

bool rk_VC1InterpolateICBlock::canStart() {
    start(blockSizeIndex, dx, dy);
    return true;
}

bool rk_VC1InterpolateICBlock::makeData() {
    const int srcLength = m_pairs ? 2621740 : 1311020, dstLength = m_pairs ? 2621440 : 1310720;
    return makeDefault(pSrc, srcLength) && makeDefault(pDst, dstLength) && makeDefault(lutTopTable, 256) &&
           makeDefault(lutBottomTable, 256);
}

bool rk_VC1InterpolateICBlock::initData() {
    if (!makeData()) return false;
    sInterICBlock.pSrc = pSrc.p8u + nextPlace(2560);
    sInterICBlock.srcStep = 64; // rows of the frame overlap, which the library does not mind
    sInterICBlock.pDst = pDst.p8u;
    sInterICBlock.dstStep = 32;
    sInterICBlock.pLUTBottom = lutBottomTable.p8u;
    sInterICBlock.pLUTTop = lutTopTable.p8u;
    sInterICBlock.sizeFrame = {320, 200};
    sInterICBlock.sizeBlock = blkSize[blockSizeIndex.value()];
    sInterICBlock.pointBlockPos = {7, 9};
    sInterICBlock.dx = dx.value();
    sInterICBlock.dy = dy.value();
    sInterICBlock.roundControl = 0;
    sInterICBlock.fieldPrediction = 0;
    sInterICBlock.bottomField = 0;
    sInterICBlock.fieldPadding = 0;
    return true;
}

void rk_VC1InterpolateICBlock::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
    lutTopTable.deleteVector();
    lutBottomTable.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_VC1InterpolateICBlock, keliInterpolateICBilinearBlock_VC1_8u_C1R, &sInterICBlock);
KM_REG(rk_VC1InterpolateICBlock, keliInterpolateICBicubicBlock_VC1_8u_C1R,  &sInterICBlock);
KM_REG(rk_VC1InterpolateICBlock, keliInterpolateICBilinearBlock_VC1_8u_C2R, &sInterICBlock);
// clang-format on
