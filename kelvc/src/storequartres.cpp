// storequartres.cpp - macroblocks of DV that were decoded at a half of their width and height, stored as
// pictures of 4:2:2.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static const int macroblocks = 5, macroblockSize = 768, pictureDistance = 512; // bytes

static kmVector src, dst;
static Kel16s *ppSrcArray[macroblocks];
static Kel8u *ppDstArray[macroblocks];
static int dstStep = 64;

// ---- class --------------------------------------------------------------------

class rk_StoreYCrCB_QuartRes : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    rkString getUnit() override { return "DV"; }
};

bool rk_StoreYCrCB_QuartRes::canStart() {
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1048576, 0);
    return true;
}

bool rk_StoreYCrCB_QuartRes::initData() {
    src.init(m_func, kmSrc);
    dst.init(m_func, kmDst);
    if (!src.createVectorExt(1920, 0, SetDefault, 0, 0)) return false;
    if (!dst.createVectorExt(2560, 0, SetDefault, 0, 0)) return false;
    for (int i = 0; i < macroblocks; ++i) {
        ppSrcArray[i] = src.p16s + i * macroblockSize / 2;
        ppDstArray[i] = dst.p8u + i * pictureDistance;
    }
    src.setRandom(-128, 127);
    return true;
}

void rk_StoreYCrCB_QuartRes::flushData() {
    src.deleteVector();
    dst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define ONE  ppSrcArray[0], ppDstArray[0], dstStep
#define FIVE ppSrcArray, ppDstArray, dstStep

// clang-format off
KM_REG(rk_StoreYCrCB_QuartRes, keliYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R,  FIVE);
KM_REG(rk_StoreYCrCB_QuartRes, keliYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R, FIVE);
KM_REG(rk_StoreYCrCB_QuartRes, keliYCrCb411ToYCbCr422_8x8MB_DV_16s8u_P3C2R,    ONE);
KM_REG(rk_StoreYCrCB_QuartRes, keliYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R,  FIVE);
// clang-format on
