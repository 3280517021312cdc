// mpeg4warp.cpp - the warping of MPEG-4 sprites.

#include "warpspec.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<KeliSize> size; // of the picture
static const int lengths[] = {8, 16, 64, 128};
static rkIterator<int> numWarpingPoints;
static rkIterator<int> warpingAccuracy; // 2: an eighth of a sample
static rkIterator<int> clip;            // 1: positions leave the sprite, whose border then goes on

// ---- data ---------------------------------------------------------------------

static kmImage pSrc1, pSrc2, pDst1, pDst2; // chroma planes are as large as luma ones and half used
static kmImage *const images[] = {&pSrc1, &pSrc2, &pDst1, &pDst2};
static int src1Step, src2Step, dst1Step, dst2Step;
static KeliRect rect, rectS;      // of the picture, of the sprite
static KeliWarpSpec_MPEG4 *pSpec; // tracked
static const int pDU[] = {8, 1, 2, 3}, pDV[] = {8, 1, 2, 3};

// ---- class --------------------------------------------------------------------

class Timvcmp4_Warp : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return size.value().width * size.value().height; }
    rkString getUnit() override { return "e"; }

private:
    bool createImages(KeliSize sprite);
};

bool Timvcmp4_Warp::canStart() {
    m_parms.push_back(&size);
    m_parms.push_back(&numWarpingPoints);
    m_parms.push_back(&warpingAccuracy);
    m_parms.push_back(&clip);
    size.init("size");
    for (int length : lengths) size.add({length, length});
    numWarpingPoints.init("numWarpingPoints");
    for (int points = 0; points <= 4; ++points) numWarpingPoints.add(points);
    warpingAccuracy.init("warpingAccuracy");
    warpingAccuracy.add(2);
    clip.init("clip");
    clip.add(0);
    clip.add(1);
    return true;
}

bool Timvcmp4_Warp::createImages(KeliSize sprite) {
    for (kmImage *image : images) image->init(m_func.srcType(), 1, false);
    if (!pSrc1.createVector(sprite, SetDefault, 0, 0)) return false;
    if (!pSrc2.createVector(sprite, SetDefault, 0, 0)) return false;
    if (!pDst1.createVector(size.value(), SetDefault, 0, 0)) return false;
    if (!pDst2.createVector(size.value(), SetDefault, 0, 0)) return false;
    src1Step = pSrc1.m_step;
    src2Step = pSrc2.m_step;
    dst1Step = pDst1.m_step;
    dst2Step = pDst2.m_step;
    return true;
}

// The differentials are 14 half samples at most, so that 16 samples more hold all positions.
bool Timvcmp4_Warp::initData() {
    const KeliSize picture = size.value();
    KeliSize sprite = picture;
    if (clip.value() == 0) {
        sprite.width += 16;
        sprite.height += 16;
    }
    rect = {0, 0, picture.width, picture.height};
    rectS = {0, 0, sprite.width, sprite.height};
    if (!createWarpSpec(pSpec, pDU, pDV, numWarpingPoints.value(), warpingAccuracy.value(), rectS, rect))
        return false;
    return createImages(sprite);
}

void Timvcmp4_Warp::flushData() {
    deleteWarpSpec(pSpec);
    for (kmImage *image : images) image->deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvcmp4_Warp, keliWarpLuma_MPEG4_8u_C1R,
       pSrc1.p8u, src1Step, pDst1.p8u, dst1Step, &rect, pSpec);
KM_REG(Timvcmp4_Warp, keliWarpChroma_MPEG4_8u_P2R,
       pSrc1.p8u, src1Step, pSrc2.p8u, src2Step, pDst1.p8u, dst1Step, pDst2.p8u, dst2Step, &rect, pSpec);
// clang-format on
