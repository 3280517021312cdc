// vc1hadamardsum.cpp - Hadamard transforms of 8x8 blocks and their sums of magnitudes.

#include "vc1test.h"

// ---- data ---------------------------------------------------------------------

static kmVector pSrc8u(8), pSrc16s(16 | kmTypeSigned);
static kmVector pDst(16 | kmTypeSigned);
static Kel32s sum;
static unsigned int src_offset; // calls so far

// Elements to the block of this call: 64 places in turn, most of them not aligned.
static KM_INLINE int nextOffset() {
    return static_cast<int>(src_offset++ % 64);
}

// ---- class --------------------------------------------------------------------

class rk_VC1HadamardSum : public VC1Test {
public:
    using VC1Test::VC1Test;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
};

bool rk_VC1HadamardSum::canStart() {
    src_offset = 0;
    makeAutoStatistic(1023);
    return true;
}

bool rk_VC1HadamardSum::initData() {
    return makeDefault(pSrc8u, 131072) && makeDefault(pSrc16s, 262144) && makeDefault(pDst, 64);
}

void rk_VC1HadamardSum::flushData() {
    pSrc8u.deleteVector();
    pSrc16s.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_VC1HadamardSum, keliHadamard8x8Sum_VC1_8u16s, pSrc8u.p8u + nextOffset(), 16, pDst.p16s, &sum);
KM_REG(rk_VC1HadamardSum, keliHadamard8x8Sum_VC1_16s,   pSrc16s.p16s + nextOffset(), 32, pDst.p16s, &sum);
// clang-format on
