// colorconversion.cpp - decoded macroblocks of DV and DV100 stored in a large picture of 4:2:2.

#include "dvtest.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> dstStep; // bytes

// ---- data ---------------------------------------------------------------------

static const int macroblockSize = 768, pictureDistance = 32768; // bytes

static kmVector src, dst;
static Kel16s *ppSrcArray[5];
static Kel8u *ppDstArray[10]; // half macroblocks of DV100 have one each, others only use five

// ---- class --------------------------------------------------------------------

class rk_ColorConversion : public rkDvTest {
public:
    using rkDvTest::rkDvTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
};

bool rk_ColorConversion::canStart() {
    m_parms.push_back(&dstStep);
    rkDvTest::canStart();
    dstStep.init("dstStep", 4096, 8192, 1024, StepPlus);
    return true;
}

// The step may be any that a user asks for: the last of the ten pictures has at most 16 rows behind its
// start.
static bool fits(int step) {
    return step <= (dst.m_len - 10 * pictureDistance) / 16;
}

bool rk_ColorConversion::initData() {
    src.init(m_func, kmSrc);
    dst.init(m_func, kmDst);
    if (!src.createVectorExt(2560, 0, SetDefault, 0, 0)) return false;
    if (!dst.createVectorExt(1048576, 0, SetDefault, 0, 0)) return false;
    for (int i = 0; i < 5; ++i) ppSrcArray[i] = src.p16s + i * macroblockSize / 2;
    for (int i = 0; i < 10; ++i) ppDstArray[i] = dst.p8u + i * pictureDistance;
    src.setRandom(-128, 127);
    return fits(dstStep.value());
}

void rk_ColorConversion::flushData() {
    src.deleteVector();
    dst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define ONE  ppSrcArray[0], ppDstArray[0], dstStep.value()
#define FIVE ppSrcArray, ppDstArray, dstStep.value()

// clang-format off
KM_REG(rk_ColorConversion, keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R,          ONE);
KM_REG(rk_ColorConversion, keliYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R, ONE);
KM_REG(rk_ColorConversion, keliYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R, ONE);
KM_REG(rk_ColorConversion, keliYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R, ONE);
KM_REG(rk_ColorConversion, keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R,           FIVE);
KM_REG(rk_ColorConversion, keliYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(rk_ColorConversion, keliYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(rk_ColorConversion, keliYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R,  ppSrcArray, ppDstArray);
KM_REG(rk_ColorConversion, keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R,           FIVE);
KM_REG(rk_ColorConversion, keliYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(rk_ColorConversion, keliYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(rk_ColorConversion, keliYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R,  ppSrcArray, ppDstArray);
KM_REG(rk_ColorConversion, keliYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R,           FIVE);
KM_REG(rk_ColorConversion, keliYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(rk_ColorConversion, keliYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(rk_ColorConversion, keliYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R,  ppSrcArray, ppDstArray);
KM_REG(rk_ColorConversion, keliYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R,
       src.p16s, ppDstArray, dstStep.value());
// clang-format on
