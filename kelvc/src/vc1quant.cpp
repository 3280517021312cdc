// vc1quant.cpp - quantisation of VC-1 blocks.

#include "vc1test.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> width, height;
static rkMapIterator<int> srcDstStep; // bytes
static rkMapIterator<int> doubleQuant;

// ---- data ---------------------------------------------------------------------

static kmVector pSrcDst(16 | kmTypeSigned); // every call works on the results of the one before
static KeliSize blockSize;                  // the Intra functions take none

// ---- class --------------------------------------------------------------------

class rk_VC1Quant : public VC1Test {
public:
    using VC1Test::VC1Test;

    bool canStart() override;
    bool initData() override;
    void flushData() override { pSrcDst.deleteVector(); }
};

bool rk_VC1Quant::canStart() {
    addBlockSize(width, height);
    addParameter(srcDstStep, "srcDstStep", {16, 18});
    addParameter(doubleQuant, "doubleQuant", {4, 6, 26, 30, 38, 60});
    makeAutoStatistic(1024);
    return true;
}

bool rk_VC1Quant::initData() {
    blockSize = {width.value(), height.value()};
    return makeDefault(pSrcDst, 400);
}

// ---- registration -------------------------------------------------------------

#define BLOCK pSrcDst.p16s, srcDstStep.value(), doubleQuant.value()

// clang-format off
KM_REG(rk_VC1Quant, keliQuantIntraUniform_VC1_16s_C1IR,    BLOCK);
KM_REG(rk_VC1Quant, keliQuantIntraNonuniform_VC1_16s_C1IR, BLOCK);
KM_REG(rk_VC1Quant, keliQuantInterUniform_VC1_16s_C1IR,    BLOCK, blockSize);
KM_REG(rk_VC1Quant, keliQuantInterNonuniform_VC1_16s_C1IR, BLOCK, blockSize);
// clang-format on
