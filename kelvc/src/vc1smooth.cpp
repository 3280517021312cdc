// vc1smooth.cpp - overlap smoothing of the edges of VC-1 blocks.

#include "vc1test.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> step; // bytes of a row of 16-bit samples
static rkMapIterator<int> fieldNeighbourFlag, edgeDisableFlag;

// ---- data ---------------------------------------------------------------------

static kmVector pSrc1(16 | kmTypeSigned), pSrc2(16 | kmTypeSigned);
static kmVector pSrc3(16 | kmTypeSigned), pSrc4(16 | kmTypeSigned); // of the second colour
static kmVector pDst(8);

// ---- class --------------------------------------------------------------------

class rk_VC1Smooth : public VC1Test {
public:
    using VC1Test::VC1Test;

    bool canStart() override;
    bool initData() override;
    void flushData() override;

private:
    bool m_twoColours = false;
};

bool rk_VC1Smooth::canStart() {
    m_twoColours = m_func.find("P2C2R") >= 0;
    addParameter(step, "step", {32, 36, 40});
    addParameter(fieldNeighbourFlag, "fieldNeighbourFlag", {0, 1, 2, 3});
    addParameter(edgeDisableFlag, "edgeDisableFlag", {3, 12, 15});
    makeAutoStatistic(1024);
    return true;
}

bool rk_VC1Smooth::initData() {
    if (!makeDefault(pSrc1, 400) || !makeDefault(pSrc2, 400)) return false;
    if (!m_twoColours) return makeDefault(pDst, 1600);
    return makeDefault(pSrc3, 400) && makeDefault(pSrc4, 400) && makeDefault(pDst, 12800);
}

void rk_VC1Smooth::flushData() {
    pSrc1.deleteVector();
    pSrc2.deleteVector();
    pSrc3.deleteVector();
    pSrc4.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

// A row of the picture has half of the bytes of a row of 16-bit samples.
#define HALF_STEP     step.value() / 2
#define BLOCK(vector) vector.p16s, step.value()
#define ROWS_12_ON    pSrc1.p16s + 12 * HALF_STEP, step.value()
#define ROWS_6_ON     pSrc1.p16s + 6 * HALF_STEP, step.value()
#define BOTH_COLOURS  BLOCK(pSrc1), BLOCK(pSrc2), BLOCK(pSrc3), BLOCK(pSrc4)
#define BEHIND_TWO    pDst.p8u + HALF_STEP + 2
#define BELOW_TWO     pDst.p8u + 6 * step.value()
#define FLAGS         fieldNeighbourFlag.value(), edgeDisableFlag.value()

// clang-format off
KM_REG(rk_VC1Smooth, keliSmoothingLuma_VerEdge_VC1_16s8u_C1R,
       BLOCK(pSrc1), BLOCK(pSrc2), BEHIND_TWO, HALF_STEP, FLAGS);
KM_REG(rk_VC1Smooth, keliSmoothingLuma_HorEdge_VC1_16s8u_C1R,
       ROWS_12_ON, BLOCK(pSrc2), BELOW_TWO, HALF_STEP, edgeDisableFlag.value());
KM_REG(rk_VC1Smooth, keliSmoothingChroma_VerEdge_VC1_16s8u_C1R,
       BLOCK(pSrc1), BLOCK(pSrc2), BEHIND_TWO, step.value());
KM_REG(rk_VC1Smooth, keliSmoothingChroma_HorEdge_VC1_16s8u_C1R,
       ROWS_6_ON, BLOCK(pSrc2), BELOW_TWO, step.value());
KM_REG(rk_VC1Smooth, keliSmoothingChroma_VerEdge_VC1_16s8u_P2C2R,
       BOTH_COLOURS, pDst.p8u + step.value() + 2, 2 * step.value());
KM_REG(rk_VC1Smooth, keliSmoothingChroma_HorEdge_VC1_16s8u_P2C2R,
       BOTH_COLOURS, pDst.p8u + 4 * step.value(), 2 * step.value());
// clang-format on
