// timvcsad.cpp - sums of absolute and of transformed differences of blocks in a picture.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static const int pictureWidth = 320;

static kmImage pSrc, pRef; // as high as the block
static int srcStep, refStep;
static KeliSize size; // of the block, from the function's name
static Kel32s frameSAD, fieldSAD;
static Kel32s SAD;
static Kel32s pDstSAD[16]; // the largest function stores a sum for each 4x4 block of 16x16
static const int mcType = 0;

// ---- class --------------------------------------------------------------------

class Timvc_SAD : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool initData() override;
    void flushData() override;
    double getDivisor() override { return size.width * size.height; }
    rkString getUnit() override { return "e"; }
    void parmsToCstrm() override;
};

bool Timvc_SAD::initData() {
    if (!getBlockSize(size, 1)) return false;
    pSrc.init(m_func.srcType(), 1, false);
    pRef.init(m_func.srcType(), 1, false);
    if (!pSrc.createVector(pictureWidth, size.height, SetDefault, 0, 0)) return false;
    if (!pRef.createVector(pictureWidth, size.height, SetDefault, 0, 0)) return false;
    srcStep = pSrc.m_step;
    refStep = pRef.m_step;
    return true;
}

void Timvc_SAD::flushData() {
    pSrc.deleteVector();
    pRef.deleteVector();
}

void Timvc_SAD::parmsToCstrm() {
    g_cstrm << rkValueToString(size);
}

// ---- registration -------------------------------------------------------------

#define PAIR_8u     pSrc.p8u, srcStep, pRef.p8u, refStep
#define PAIR_16u    pSrc.p16u, srcStep, pRef.p16u, refStep
#define FRAME_FIELD srcStep, &frameSAD, &fieldSAD
#define DST_32u     reinterpret_cast<Kel32u *>(pDstSAD)

// clang-format off
KM_REG(Timvc_SAD, keliFrameFieldSAD16x16_8u32s_C1R,  pSrc.p8u, FRAME_FIELD);
KM_REG(Timvc_SAD, keliFrameFieldSAD16x16_16s32s_C1R, pSrc.p16s, FRAME_FIELD);
KM_REG(Timvc_SAD, keliSAD16x16Blocks4x4_16u32u_C1R,  PAIR_16u, DST_32u, mcType);
KM_REG(Timvc_SAD, keliSAD16x16Blocks8x8_16u32u_C1R,  PAIR_16u, DST_32u, mcType);
KM_REG(Timvc_SAD, keliSAD16x16_16u32s_C1R,           PAIR_16u, &SAD, mcType);
KM_REG(Timvc_SAD, keliSAD4x4_16u32s_C1R,             PAIR_16u, &SAD, mcType);
KM_REG(Timvc_SAD, keliSAD8x8_16u32s_C1R,             PAIR_16u, &SAD, mcType);
KM_REG(Timvc_SAD, keliSATD16x16_8u32s_C1R,           PAIR_8u, pDstSAD);
KM_REG(Timvc_SAD, keliSATD16x8_8u32s_C1R,            PAIR_8u, pDstSAD);
KM_REG(Timvc_SAD, keliSATD8x16_8u32s_C1R,            PAIR_8u, pDstSAD);
KM_REG(Timvc_SAD, keliSATD8x8_8u32s_C1R,             PAIR_8u, pDstSAD);
KM_REG(Timvc_SAD, keliSATD8x4_8u32s_C1R,             PAIR_8u, pDstSAD);
KM_REG(Timvc_SAD, keliSATD4x8_8u32s_C1R,             PAIR_8u, pDstSAD);
KM_REG(Timvc_SAD, keliSATD4x4_8u32s_C1R,             PAIR_8u, pDstSAD);
KM_REG(Timvc_SAD, keliSAT8x8D_8u32s_C1R,             PAIR_8u, pDstSAD);
KM_REG(Timvc_SAD, keliSAT8x8D_16u32s_C1R,            PAIR_16u, pDstSAD);
KM_REG(Timvc_SAD, keliSAD8x16_8u32s_C1R,             PAIR_8u, pDstSAD, mcType);
KM_REG(Timvc_SAD, keliSAD8x4_8u32s_C1R,              PAIR_8u, pDstSAD, mcType);
KM_REG(Timvc_SAD, keliSAD4x8_8u32s_C1R,              PAIR_8u, pDstSAD, mcType);
// clang-format on
