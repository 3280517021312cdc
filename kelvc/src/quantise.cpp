// quantise.cpp - quantisation of MPEG-2 coefficients and its inverse, and what a DV coder does beside it.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static const int blockLength = 64;
static const int quantiser = 11;

static kmVector g_InvQuantMatrix(32 | kmTypeFloat);
static kmVector g_DctCoeff(16 | kmTypeSigned); // every call works on the results of the one before
static int g_tst_quant, g_count;

static kmVector g_tst_QuantMatrix(16 | kmTypeSigned);
static kmVector g_tst_DctCoeff(16 | kmTypeSigned);
static int g_quant;

// ---- class --------------------------------------------------------------------

// One set a repeat.
class CCoefficientTest : public CPerfTest {
public:
    using CPerfTest::CPerfTest;

    bool canContinue() override;
    double getDivisor() override { return blockLength; }
    rkString getUnit() override { return "element"; }

    virtual void prepareSet() = 0;
};

bool CCoefficientTest::canContinue() {
    if (m_repeat <= 0) return false;
    --m_repeat;
    prepareSet();
    return true;
}

class CQuantize : public CCoefficientTest {
public:
    using CCoefficientTest::CCoefficientTest;

    bool canStart() override;
    void prepareSet() override;
    void flushData() override;
};

bool CQuantize::canStart() {
    CPerfTest::canStart();
    readSettings("Quantize");
    return true;
}

void CQuantize::prepareSet() {
    g_InvQuantMatrix.createVectorExt(blockLength, m_align, SetRandom, 1.0, 200.0);
    g_DctCoeff.createVectorExt(blockLength, m_align, SetRandom, -2000.0, 2000.0);
    g_tst_quant = quantiser;
}

void CQuantize::flushData() {
    g_InvQuantMatrix.deleteVector();
    g_DctCoeff.deleteVector();
}

class CDequantize : public CCoefficientTest {
public:
    using CCoefficientTest::CCoefficientTest;

    bool canStart() override;
    void prepareSet() override;
    void flushData() override;
};

bool CDequantize::canStart() {
    CPerfTest::canStart();
    readSettings("Dequantize");
    return true;
}

void CDequantize::prepareSet() {
    g_tst_QuantMatrix.createVectorExt(blockLength, m_align, SetRandom, 1.0, 100.0);
    g_tst_DctCoeff.createVectorExt(blockLength, m_align, SetRandom, -2000.0, 2000.0);
    g_quant = quantiser;
}

void CDequantize::flushData() {
    g_tst_QuantMatrix.deleteVector();
    g_tst_DctCoeff.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
#define QUANTIZE   g_DctCoeff.p16s, g_tst_quant, g_InvQuantMatrix.p32f, &g_count
#define DEQUANTIZE g_tst_DctCoeff.p16s, g_quant, g_tst_QuantMatrix.p16s

KM_REG(CQuantize,   keliQuantIntra_MPEG2_16s_C1I,    QUANTIZE);
KM_REG(CQuantize,   keliQuant_MPEG2_16s_C1I,         QUANTIZE);
KM_REG(CDequantize, keliQuantInvIntra_MPEG2_16s_C1I, DEQUANTIZE);
KM_REG(CDequantize, keliQuantInv_MPEG2_16s_C1I,      DEQUANTIZE);
KM_REG(CDequantize, keliQuantInv_DV_16s_C1I,         g_tst_DctCoeff.p16s, g_tst_QuantMatrix.p16s);
KM_REG(CDequantize, keliDCT2x4x8Frw_16s_C1I,         g_tst_DctCoeff.p16s);
KM_REG(CDequantize, keliDCT2x4x8Inv_16s_C1I,         g_tst_DctCoeff.p16s);
KM_REG(CDequantize, keliCountZeros8x8_16s_C1,        g_tst_DctCoeff.p16s, &g_count);
