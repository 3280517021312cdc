// dvtransform.cpp - the 2-4-8 transform of DV, its inverse, and the inverse at half the size.

#include "dvtest.h"

// ---- data ---------------------------------------------------------------------

static kmVector block; // every call works on the results of the one before

// ---- classes ------------------------------------------------------------------

class rk_Dv_Dct2x4x8 : public rkDvTest {
public:
    using rkDvTest::rkDvTest;

    bool initData() override;
    void flushData() override { block.deleteVector(); }
};

bool rk_Dv_Dct2x4x8::initData() {
    block.init(m_func, kmSrc);
    return block.createVectorExt(dvBlockLength, rkGetVectorShift(), SetRandom, -128, 127);
}

// Starts with the coefficients of such a block. A library that cannot make them has no data for the test.
class rk_Dv_Idct2x4x8 : public rk_Dv_Dct2x4x8 {
public:
    using rk_Dv_Dct2x4x8::rk_Dv_Dct2x4x8;

    bool initData() override;
};

bool rk_Dv_Idct2x4x8::initData() {
    if (!rk_Dv_Dct2x4x8::initData() || !keliDCT2x4x8Frw_16s_C1I) return false;
    return !rkIsError(checkStatus(keliDCT2x4x8Frw_16s_C1I(block.p16s)));
}

class rk_DvIdct8x4x2to4x4 : public rk_Dv_Idct2x4x8 {
public:
    using rk_Dv_Idct2x4x8::rk_Dv_Idct2x4x8;
};

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_Dv_Dct2x4x8,      keliDCT2x4x8Frw_16s_C1I,         block.p16s);
KM_REG(rk_Dv_Idct2x4x8,     keliDCT2x4x8Inv_16s_C1I,         block.p16s);
KM_REG(rk_DvIdct8x4x2to4x4, keliDCT8x4x2To4x4Inv_DV_16s_C1I, block.p16s);
// clang-format on
