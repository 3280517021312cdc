// mpeg4quant.cpp - quantisation of MPEG-4 coefficients and its inverse.

#include "quantspec.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> indxLastNonZero; // forward functions do not take it: there it only fills its column
static const int lasts[] = {3, 7, 15, 31, 63};
static rkIterator<int> bitsPerPixel;
static const int depths[] = {4, 8, 12};

// ---- data ---------------------------------------------------------------------

static const int blocks = 1024, blockLength = 64;

static kmVector pool(16 |
                     kmTypeSigned); // equal blocks: every call meets coefficients that are not quantised yet
static kmVector matrix(8);
static KeliQuantSpec_MPEG4 *pSpec; // tracked
static Kel16s *pCfs;
static int iArr; // the next block of the pool
static int QP = 2;
static const int blockType = 0; // luma
static int count;

// Behind the last block the first one comes again, as the call left it.
static void reset() {
    pCfs = pool.p16s + iArr * blockLength;
    iArr = (iArr + 1) % blocks;
}

// ---- class --------------------------------------------------------------------

class Timm4Quant : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return blockLength; }
    rkString getUnit() override { return "e"; }

private:
    QuantForm m_form{};
};

bool Timm4Quant::canStart() {
    m_form.inverse = m_func.find("Inv") >= 0;
    m_form.intra = m_func.find("Intra") >= 0;
    m_parms.push_back(&indxLastNonZero);
    m_parms.push_back(&bitsPerPixel);
    indxLastNonZero.init("indxLastNonZero");
    if (m_form.inverse) {
        for (int last : lasts) indxLastNonZero.add(last);
    } else {
        indxLastNonZero.add(0);
    }
    bitsPerPixel.init("bitsPerPixel");
    for (int depth : depths) bitsPerPixel.add(depth);
    return true;
}

bool Timm4Quant::initData() {
    if (!pool.createVectorExt(blocks * blockLength, rkGetVectorShift(), SetRandom, -300.0, 300.0))
        return false;
    if (!matrix.createVectorExt(blockLength, rkGetVectorShift(), SetRandom, 2.0, 127.0)) return false;
    if (!kelsCopy_16s) return false;
    for (int i = 1; i < blocks; ++i) kelsCopy_16s(pool.p16s, pool.p16s + i * blockLength, blockLength);
    if (!createQuantSpec(pSpec, m_form, matrix.p8u, bitsPerPixel.value())) return false;
    iArr = 0;
    QP = bitsPerPixel.value() == 4 ? 1 : 2;
    return true;
}

void Timm4Quant::flushData() {
    deleteQuantSpec(pSpec);
    pool.deleteVector();
    matrix.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG_I(Timm4Quant, keliQuantInvIntra_MPEG4_16s_C1I, reset(), pCfs, indxLastNonZero.value(), pSpec, QP, blockType);
KM_REG_I(Timm4Quant, keliQuantInvInter_MPEG4_16s_C1I, reset(), pCfs, indxLastNonZero.value(), pSpec, QP);
KM_REG_I(Timm4Quant, keliQuantIntra_MPEG4_16s_C1I,    reset(), pCfs, pSpec, QP, &count, blockType);
KM_REG_I(Timm4Quant, keliQuantInter_MPEG4_16s_C1I,    reset(), pCfs, pSpec, QP, &count);
// clang-format on
