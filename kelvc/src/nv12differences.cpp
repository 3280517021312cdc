// nv12differences.cpp - differences of interleaved chroma: their sums over 4x4 blocks, and their magnitudes.

#include "nv12.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> iFlag; // 1: the differences are stored too

// ---- data ---------------------------------------------------------------------

static kmVector pCur(8), pRef(8); // 9 rows of 8 pairs
static const int mcType = 0;      // at full samples
static Kel32s sadU, sadV;

// The sums of both colours stand at the start of the one vector; the second half of each is for differences.
static kmVector pSumsU(16 | kmTypeSigned), pSumsV(16 | kmTypeSigned);
static const int sumsStep = 16;
static Kel16s sumDiffU, sumDiffV;
static Kel16s *pDiffU, *pDiffV; // null asks the library for the sums alone

// ---- classes ------------------------------------------------------------------

class NV12Differences : public NV12Test {
public:
    using NV12Test::NV12Test;

    bool initData() override { return makeSamples(pCur, 144) && makeSamples(pRef, 144); }
    void flushData() override;
};

class rk_test_keliSumsDiff8x8Blocks4x4_8u16s_C2P2 : public NV12Differences {
public:
    using NV12Differences::NV12Differences;

    bool canStart() override;
    bool initData() override;
};

class rk_test_keliSAD8x8_8u32s_C2R : public NV12Differences {
public:
    using NV12Differences::NV12Differences;
};

void NV12Differences::flushData() {
    pCur.deleteVector();
    pRef.deleteVector();
    pSumsU.deleteVector();
    pSumsV.deleteVector();
}

bool rk_test_keliSumsDiff8x8Blocks4x4_8u16s_C2P2::canStart() {
    NV12Differences::canStart();
    m_parms.push_back(&iFlag);
    iFlag.init("iFlag", 0, 1, 1, StepPlus);
    return true;
}

bool rk_test_keliSumsDiff8x8Blocks4x4_8u16s_C2P2::initData() {
    if (!NV12Differences::initData()) return false;
    if (!makeDefault(pSumsU, 128) || !makeDefault(pSumsV, 128)) return false;
    pDiffU = iFlag.value() ? pSumsU.p16s + 64 : nullptr;
    pDiffV = iFlag.value() ? pSumsV.p16s + 64 : nullptr;
    return true;
}

// ---- registration -------------------------------------------------------------

#define PAIRS pCur.p8u, nv12Step, pRef.p8u, nv12Step

// clang-format off
KM_REG(rk_test_keliSumsDiff8x8Blocks4x4_8u16s_C2P2, keliSumsDiff8x8Blocks4x4_8u16s_C2P2,
       PAIRS, pSumsU.p16s, sumsStep, &sumDiffU, pDiffU, &sumDiffV, pDiffV);
KM_REG(rk_test_keliSAD8x8_8u32s_C2R, keliSAD8x8_8u32s_C2R, PAIRS, &sadU, &sadV, mcType);
// clang-format on
