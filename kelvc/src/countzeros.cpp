// countzeros.cpp - counting the coefficients that are 0.

#include "dvtest.h"

// ---- data ---------------------------------------------------------------------

static kmVector block;
static int countZeros;

// ---- class --------------------------------------------------------------------

class pCountZeros : public rkDvTest {
public:
    using rkDvTest::rkDvTest;

    bool initData() override;
    void flushData() override { block.deleteVector(); }
};

bool pCountZeros::initData() {
    block.init(m_func, kmSrc);
    // Values between 0 and 1 are cut off: a block of zeros.
    return block.createVectorExt(dvBlockLength, rkGetVectorShift(), SetRandom, 0, 1);
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(pCountZeros, keliCountZeros8x8_16s_C1, block.p16s, &countZeros);
// clang-format on
