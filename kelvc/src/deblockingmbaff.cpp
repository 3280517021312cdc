// deblockingmbaff.cpp - deblocking filters of H.264 for the left edge between frame and field macroblocks.

#include <string.h>

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> len; // one value, which nothing reads
static rkIterator<int> rnd_betta, rnd_bs;

// ---- data ---------------------------------------------------------------------

static const int step = 32;
static const int blockBytes = 1024; // 32 rows
static Kel8u *pBlock;               // the same one for all calls: from the second on it is filtered already
static Kel8u *pSrcDst;              // row 4, column 16 of it

static const Kel8u nAlpha[2] = {12, 12};
static Kel8u nBeta[2];
static const Kel8u thresholds[16] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
static Kel8u pBs[4];

// ---- class --------------------------------------------------------------------

class rk_DeblockingMBAFF : public kmTest {
public:
    using kmTest::kmTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    rkString getUnit() override { return "all"; }
};

bool rk_DeblockingMBAFF::canStart() {
    m_parms.push_back(&len);
    m_parms.push_back(&rnd_betta);
    m_parms.push_back(&rnd_bs);
    len.init("len");
    len.add(0);
    rnd_betta.init("betta");
    rnd_betta.add(6);
    rnd_betta.add(12);
    rnd_bs.init("bs");
    rnd_bs.add(1);
    rnd_bs.add(4);
    return true;
}

bool rk_DeblockingMBAFF::initData() {
    pBlock = static_cast<Kel8u *>(rkTest::allocate(blockBytes, -1));
    if (!pBlock) return false;
    for (int i = 0; i < blockBytes; ++i) pBlock[i] = static_cast<Kel8u>(i / step + i % step + 100);
    pSrcDst = pBlock + 4 * step + 16;
    memset(nBeta, rnd_betta.value(), sizeof nBeta);
    memset(pBs, rnd_bs.value(), sizeof pBs);
    return true;
}

void rk_DeblockingMBAFF::flushData() {
    rkTest::deallocate(pBlock);
    pBlock = pSrcDst = nullptr;
}

// ---- registration -------------------------------------------------------------

#define MBAFF_ARGS pSrcDst, step, nAlpha, nBeta, thresholds, pBs

// clang-format off
KM_REG(rk_DeblockingMBAFF, keliFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR,   MBAFF_ARGS);
KM_REG(rk_DeblockingMBAFF, keliFilterDeblockingChroma_VerEdge_MBAFF_H264_8u_C1IR, MBAFF_ARGS);
// clang-format on
