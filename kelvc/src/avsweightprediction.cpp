// avsweightprediction.cpp - weighted prediction of AVS.

#include "kmvc.h"
#include "rotatingoffset.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> size_num; // number of the block's size

// ---- data ---------------------------------------------------------------------

// The blocks that a macroblock is predicted in.
static const KeliSize luma_size[] = {{8, 8}, {8, 16}, {16, 8}, {16, 16}};
static const int lastSize = 3;

static kmVector pSrc; // 23 rows, of which a block is read anywhere within 64 bytes
static kmVector pDst; // 16 rows
static const int srcStep = 128, dstStep = 128;
static const int scale = 32, shift = 0; // the weight 1, as in other weighted predictions
static KeliSize roi;

static RotatingOffset src_offset;
static Kel8u const *nextSource() {
    return pSrc.p8u + 512 + src_offset.next();
}

// ---- class --------------------------------------------------------------------

class rk_WeightPrediction_AVS : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "all"; }
};

bool rk_WeightPrediction_AVS::canStart() {
    pSrc.init(m_func, kmSrc);
    pDst.init(m_func, kmDst);
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    m_parms.push_back(&size_num);
    size_num.init("size_num", 0, lastSize, 1, StepPlus);
    src_offset.restart();
    return true;
}

bool rk_WeightPrediction_AVS::initData() {
    const int number = size_num.value();
    if (number < 0 || number > lastSize) return false; // a user's number
    roi = luma_size[number];
    return pSrc.createVectorExt(2944, rkGetVectorShift(), SetDefault, 0, 0) &&
           pDst.createVectorExt(2048, rkGetVectorShift(), SetDefault, 0, 0);
}

void rk_WeightPrediction_AVS::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_WeightPrediction_AVS, keliWeightPrediction_AVS_8u_C1R,
       nextSource(), srcStep, pDst.p8u, dstStep, scale, shift, roi);
// clang-format on
