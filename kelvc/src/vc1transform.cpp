// vc1transform.cpp - inverse transforms of VC-1, by the size of the area that holds all coefficients other
// than 0.

#include "vc1test.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> width, height; // of that area
static rkMapIterator<int> step;          // bytes; with 18 the rows are not aligned

// ---- data ---------------------------------------------------------------------

static kmVector pSrcDst(16 | kmTypeSigned); // what is done in place is done to the results of the call before
static kmVector pDst(16 | kmTypeSigned);
static KeliSize srcSizeNZ;

// ---- class --------------------------------------------------------------------

// The timing method is that of the session.
class rk_VC1Transform : public VC1Test {
public:
    using VC1Test::VC1Test;

    bool canStart() override;
    bool initData() override;
    void flushData() override;

private:
    void addSide(rkMapIterator<int> &side, char const *name, int blockSide);
};

void rk_VC1Transform::addSide(rkMapIterator<int> &side, char const *name, int blockSide) {
    if (blockSide == 8) {
        addParameter(side, name, {1, 2, 4, 8});
    } else {
        addParameter(side, name, {1, 2, 4});
    }
}

bool rk_VC1Transform::canStart() {
    KeliSize block;
    if (!getBlockSize(block, 1)) return false;
    addSide(width, "width", block.width);
    addSide(height, "height", block.height);
    addParameter(step, "step", {16, 18});
    return true;
}

bool rk_VC1Transform::initData() {
    srcSizeNZ = {width.value(), height.value()};
    return makeDefault(pSrcDst, 400) && makeDefault(pDst, 400);
}

void rk_VC1Transform::flushData() {
    pSrcDst.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define SOURCE   pSrcDst.p16s, step.value()
#define IN_PLACE SOURCE, srcSizeNZ
#define ACROSS   SOURCE, pDst.p16s, step.value(), srcSizeNZ

// clang-format off
KM_REG(rk_VC1Transform, keliTransform8x8Inv_VC1_16s_C1R,  ACROSS);
KM_REG(rk_VC1Transform, keliTransform8x4Inv_VC1_16s_C1R,  ACROSS);
KM_REG(rk_VC1Transform, keliTransform4x8Inv_VC1_16s_C1R,  ACROSS);
KM_REG(rk_VC1Transform, keliTransform4x4Inv_VC1_16s_C1R,  ACROSS);
KM_REG(rk_VC1Transform, keliTransform8x8Inv_VC1_16s_C1IR, IN_PLACE);
KM_REG(rk_VC1Transform, keliTransform8x4Inv_VC1_16s_C1IR, IN_PLACE);
KM_REG(rk_VC1Transform, keliTransform4x8Inv_VC1_16s_C1IR, IN_PLACE);
KM_REG(rk_VC1Transform, keliTransform4x4Inv_VC1_16s_C1IR, IN_PLACE);
// clang-format on
