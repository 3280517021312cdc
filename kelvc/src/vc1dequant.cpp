// vc1dequant.cpp - inverse quantisation of VC-1 blocks.

#include "vc1test.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> width, height;
static rkMapIterator<int> doubleQuant;
static rkMapIterator<int> srcDstStep, srcStep, dstStep; // bytes

// ---- data ---------------------------------------------------------------------

static kmVector pSrcDst(16 | kmTypeSigned); // every call works on the results of the one before
static kmVector pSrc(16 | kmTypeSigned), pDst(16 | kmTypeSigned);
static KeliSize blockSize;  // the Intra functions take none
static KeliSize pDstSizeNZ; // of the results other than 0

// ---- class --------------------------------------------------------------------

class rk_VC1Dequant : public VC1Test {
public:
    using VC1Test::VC1Test;

    bool canStart() override;
    bool initData() override;
    // The blocks of the other functions stay until they are made anew.
    void flushData() override { pSrcDst.deleteVector(); }

private:
    bool m_inPlace = false;
};

bool rk_VC1Dequant::canStart() {
    m_inPlace = m_func.find("C1IR") >= 0;
    addBlockSize(width, height);
    addParameter(doubleQuant, "doubleQuant", {2, 7, 21, 30, 39, 64});
    if (m_inPlace) {
        addParameter(srcDstStep, "srcDstStep", {16, 18});
    } else {
        addParameter(srcStep, "srcStep", {16, 18});
        addParameter(dstStep, "dstStep", {16, 18});
    }
    makeAutoStatistic(1024);
    return true;
}

bool rk_VC1Dequant::initData() {
    blockSize = {width.value(), height.value()};
    if (m_inPlace) return makeDefault(pSrcDst, 400);
    return makeDefault(pSrc, 400) && makeDefault(pDst, 400);
}

// ---- registration -------------------------------------------------------------

#define IN_PLACE pSrcDst.p16s, srcDstStep.value(), doubleQuant.value()
#define ACROSS   pSrc.p16s, srcStep.value(), pDst.p16s, dstStep.value(), doubleQuant.value()

// clang-format off
KM_REG(rk_VC1Dequant, keliQuantInvIntraUniform_VC1_16s_C1IR,    IN_PLACE, &pDstSizeNZ);
KM_REG(rk_VC1Dequant, keliQuantInvIntraNonuniform_VC1_16s_C1IR, IN_PLACE, &pDstSizeNZ);
KM_REG(rk_VC1Dequant, keliQuantInvInterUniform_VC1_16s_C1IR,    IN_PLACE, blockSize, &pDstSizeNZ);
KM_REG(rk_VC1Dequant, keliQuantInvInterNonuniform_VC1_16s_C1IR, IN_PLACE, blockSize, &pDstSizeNZ);
KM_REG(rk_VC1Dequant, keliQuantInvIntraUniform_VC1_16s_C1R,     ACROSS, &pDstSizeNZ);
KM_REG(rk_VC1Dequant, keliQuantInvIntraNonuniform_VC1_16s_C1R,  ACROSS, &pDstSizeNZ);
KM_REG(rk_VC1Dequant, keliQuantInvInterUniform_VC1_16s_C1R,     ACROSS, blockSize, &pDstSizeNZ);
KM_REG(rk_VC1Dequant, keliQuantInvInterNonuniform_VC1_16s_C1R,  ACROSS, blockSize, &pDstSizeNZ);
// clang-format on
