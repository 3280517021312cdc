// nv12dct.cpp - discrete cosine transforms of interleaved chroma.

#include "nv12.h"

// ---- data ---------------------------------------------------------------------

static kmVector pSrcNV12(8);                                        // 8 rows of 8 pairs
static kmVector pDstU(16 | kmTypeSigned), pDstV(16 | kmTypeSigned); // blocks of coefficients

static kmVector srcDstU(16 | kmTypeSigned), srcDstV(16 | kmTypeSigned);
static kmVector srcDstNV12(8);
static const int flag = 1; // the blocks have more than a first coefficient

// ---- classes ------------------------------------------------------------------

class rk_test_keliDCT8x8Fwd_8u16s_C2P2 : public NV12Test {
public:
    using NV12Test::NV12Test;

    bool initData() override {
        return makeSamples(pSrcNV12, 128) && makeDefault(pDstU, 64) && makeDefault(pDstV, 64);
    }
    void flushData() override;
};

class rk_test_keliDCT8x8InvOrSet_16s8u_P2C2 : public NV12Test {
public:
    using NV12Test::NV12Test;

    bool initData() override {
        return makeSamples(srcDstU, 64) && makeSamples(srcDstV, 64) && makeDefault(srcDstNV12, 256);
    }
    void flushData() override;
};

void rk_test_keliDCT8x8Fwd_8u16s_C2P2::flushData() {
    pSrcNV12.deleteVector();
    pDstU.deleteVector();
    pDstV.deleteVector();
}

void rk_test_keliDCT8x8InvOrSet_16s8u_P2C2::flushData() {
    srcDstU.deleteVector();
    srcDstV.deleteVector();
    srcDstNV12.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_test_keliDCT8x8Fwd_8u16s_C2P2, keliDCT8x8Fwd_8u16s_C2P2,
       pSrcNV12.p8u, nv12Step, pDstU.p16s, pDstV.p16s);
KM_REG(rk_test_keliDCT8x8InvOrSet_16s8u_P2C2, keliDCT8x8InvOrSet_16s8u_P2C2,
       srcDstU.p16s, srcDstV.p16s, srcDstNV12.p8u, nv12Step, flag);
// clang-format on
