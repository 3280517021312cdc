// h263predict.cpp - backward prediction of the B blocks of PB-frames of H.263.

#include <limits.h>

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<KeliSize> size; // of the block
static rkIterator<int> acc;       // half a sample: 1 to the right, 2 down, 3 both

// ---- data ---------------------------------------------------------------------

static kmImage pSrc, pSrcDst;
static int srcStep, srcDstStep;

// ---- class --------------------------------------------------------------------

class Timvc_Predict : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return static_cast<double>(size.value().width) * size.value().height; }
    rkString getUnit() override { return "e"; }

private:
    bool initSource(KeliSize block);
};

bool Timvc_Predict::canStart() {
    m_parms.push_back(&size);
    m_parms.push_back(&acc);
    size.init("size");
    for (int side = 4; side <= 16; side *= 2) size.add({side, side});
    acc.init("acc");
    for (int position = 0; position < 4; ++position) acc.add(position);
    return true;
}

// Half a sample further down a row more is read than the block has. It is no part of the random data, so that
// what is drawn behind them does not depend on it.
bool Timvc_Predict::initSource(KeliSize block) {
    if (block.width > INT_MAX - 2 || block.height > INT_MAX - 1) return false;
    const int width = block.width + 2;
    pSrc.init(m_func.srcType(), 1, false);
    if (!pSrc.createVectorExt(width, block.height + 1, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    for (int row = 0; row < block.height; ++row)
        pSrc.setDataRandom(pSrc.getRowPointer(row), width, pSrc.minValue(), pSrc.maxValue());
    srcStep = pSrc.m_step;
    return true;
}

bool Timvc_Predict::initData() {
    if (!initSource(size.value())) return false;
    pSrcDst.init(m_func.dstType(), 1, false);
    if (!pSrcDst.createVectorExt(size.value(), 2 * rkGetVectorShift(), SetRandom, 0, 0)) return false;
    srcDstStep = pSrcDst.m_step;
    return true;
}

void Timvc_Predict::flushData() {
    pSrc.deleteVector();
    pSrcDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvc_Predict, keliAddBackPredPB_H263_8u_C1R,
       pSrc.p8u, srcStep, size.value(), pSrcDst.p8u, srcDstStep, acc.value());
// clang-format on
