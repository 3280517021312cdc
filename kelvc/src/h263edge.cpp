// h263edge.cpp - filters of block edges of H.263.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static const int pictureWidth = 320;

static kmImage picture;
static Kel8u *pSrc; // the first sample behind the edge
static int step;
static const int QP = 2;
static KeliSize blockSize;

// ---- class --------------------------------------------------------------------

class TimmHEdge : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { picture.deleteVector(); }

private:
    bool m_verticalEdge = false;
};

// The boundary filters have no size in their names.
bool TimmHEdge::canStart() {
    blockSize = {16, 16};
    getBlockSize(blockSize, 1);
    m_verticalEdge = m_func.find("Ver") >= 0;
    return true;
}

// A block on each side of the edge, of shades so near to each other that their steps are taken for those of
// block edges: others are left as they are.
bool TimmHEdge::initData() {
    picture.init(m_func.srcType(), 1, false);
    const int height = 2 * blockSize.height;
    if (!picture.createVectorExt(pictureWidth, height, rkGetVectorShift(), SetRandom, 124.0, 132.0))
        return false;
    step = picture.m_step;
    pSrc = picture.p8u + (m_verticalEdge ? blockSize.width : blockSize.height * step);
    return true;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(TimmHEdge, keliFilterDeblocking8x8HorEdge_H263_8u_C1IR,   pSrc, step, QP);
KM_REG(TimmHEdge, keliFilterDeblocking8x8VerEdge_H263_8u_C1IR,   pSrc, step, QP);
KM_REG(TimmHEdge, keliFilterDeblocking16x16HorEdge_H263_8u_C1IR, pSrc, step, QP);
KM_REG(TimmHEdge, keliFilterDeblocking16x16VerEdge_H263_8u_C1IR, pSrc, step, QP);
KM_REG(TimmHEdge, keliFilterBlockBoundaryHorEdge_H263_8u_C1IR,   pSrc, step, QP);
KM_REG(TimmHEdge, keliFilterBlockBoundaryVerEdge_H263_8u_C1IR,   pSrc, step, QP);
// clang-format on
