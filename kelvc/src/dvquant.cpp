// dvquant.cpp - inverse quantisation of DV and DV100, with and without weighting.

#include "dvtest.h"

// ---- data ---------------------------------------------------------------------

static kmVector block; // every call works on the results of the one before
static kmVector weights, pDeQuantTable, table;

static Kel16s quantStep = 3;
static Kel16s pWeightInvTable[dvBlockLength]; // nothing writes it: all results are 0

// ---- classes ------------------------------------------------------------------

class rk_Dv100QuantWeight : public rkDvTest {
public:
    using rkDvTest::rkDvTest;

    bool initData() override;
    void flushData() override;
};

bool rk_Dv100QuantWeight::initData() {
    block.init(m_func, kmSrc);
    weights.init(m_func, kmSrc);
    return block.createVectorExt(dvBlockLength, rkGetVectorShift(), SetRandom, -255, 255) &&
           weights.createVectorExt(dvBlockLength, rkGetVectorShift(), SetValue, 5, 5);
}

void rk_Dv100QuantWeight::flushData() {
    block.deleteVector();
    weights.deleteVector();
}

class rk_DvQuantWeight : public rkDvTest {
public:
    using rkDvTest::rkDvTest;

    bool initData() override;
    void flushData() override;
};

bool rk_DvQuantWeight::initData() {
    block.init(m_func, kmSrc);
    pDeQuantTable.init(m_func, kmSrc);
    return block.createVectorExt(dvBlockLength, rkGetVectorShift(), SetRandom, -255, 255) &&
           pDeQuantTable.createVectorExt(dvBlockLength, rkGetVectorShift(), SetValue, 5, 5);
}

void rk_DvQuantWeight::flushData() {
    block.deleteVector();
    pDeQuantTable.deleteVector();
}

class pQuantInv : public rkDvTest {
public:
    using rkDvTest::rkDvTest;

    bool initData() override;
    void flushData() override;
};

bool pQuantInv::initData() {
    block.init(m_func, kmSrc);
    table.init(m_func, kmSrc);
    if (!block.createVectorExt(dvBlockLength, 16, SetDefault, 0, 0)) return false;
    block.setRandom(65535.0, 32767.0); // the higher bound first: values stay comparable with earlier results
    return table.createVectorExt(dvBlockLength, 16, SetValue, 3, 3);
}

void pQuantInv::flushData() {
    block.deleteVector();
    table.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_Dv100QuantWeight, keliQuantWeightBlockInv_DV100_16s_C1I, block.p16s, weights.p16s, static_cast<int>(quantStep));
KM_REG(rk_DvQuantWeight,    keliQuantWeightBlockInv_DV_16s_C1I,    block.p16s, pDeQuantTable.p16s, pWeightInvTable);
KM_REG(pQuantInv,           keliQuantInv_DV_16s_C1I,               block.p16s, table.p16s);
// clang-format on
