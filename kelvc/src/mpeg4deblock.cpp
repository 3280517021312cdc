// mpeg4deblock.cpp - the deblocking post-filter of MPEG-4.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

// The greatest step between two samples that counts as none. The data are a ramp of steps of 1: with 1 it is
// all smooth, with 0 not at all.
static rkMapIterator<int> offsetMode;

// ---- data ---------------------------------------------------------------------

static kmImage image;  // 320 x 16
static Kel8u *pSrcDst; // the first sample behind the edge
static int srcDstStep;
static const int QP = 5, THR2 = 4;

// ---- class --------------------------------------------------------------------

class Timvcmp4_filterDeblock : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { image.deleteVector(); }

private:
    bool m_verticalEdge = false;
};

bool Timvcmp4_filterDeblock::canStart() {
    m_verticalEdge = m_func.find("VerEdge") >= 0;
    m_parms.push_back(&offsetMode);
    offsetMode.init("offsetMode");
    offsetMode[1] = "DC_mode";
    offsetMode[0] = "default_mode";
    offsetMode.add(1);
    offsetMode.add(0);
    return true;
}

// Ten samples across the edge, the values 0 to 9. The filter reads five in front of it: of a horizontal edge
// these are the rows above the pointer; of a vertical one those of the first line end the row before.
static void setRamp(int across, int along) {
    for (int r = -5; r <= 4; ++r) {
        for (int c = 0; c <= 8; ++c) pSrcDst[r * across + c * along] = static_cast<Kel8u>(r + 5);
    }
}

bool Timvcmp4_filterDeblock::initData() {
    image.init(m_func.srcType(), 1, false);
    if (!image.createVector(320, 16, SetDefault, 0, 0)) return false;
    srcDstStep = image.m_step;
    pSrcDst = image.p8u + 5 * srcDstStep;
    m_verticalEdge ? setRamp(1, srcDstStep) : setRamp(srcDstStep, 1);
    return true;
}

// ---- registration -------------------------------------------------------------

#define EDGE pSrcDst, srcDstStep, QP, offsetMode.value(), THR2

// clang-format off
KM_REG(Timvcmp4_filterDeblock, keliFilterDeblocking8x8HorEdge_MPEG4_8u_C1IR, EDGE);
KM_REG(Timvcmp4_filterDeblock, keliFilterDeblocking8x8VerEdge_MPEG4_8u_C1IR, EDGE);
// clang-format on
