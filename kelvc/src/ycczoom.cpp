// ycczoom.cpp - decoded macroblocks of DV stored in a narrow picture of 4:2:2.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static const int macroblocks = 5, macroblockSize = 768, pictureDistance = 32; // bytes

static kmVector source;
// Rows of bytes, two a pixel: macroblocks of 4:1:1 are 32 pixels wide, and the next ones overlap them.
static kmImage image;
static Kel16s *pSrc[macroblocks];
static Kel8u *pDst[macroblocks];
static int dstStep;

// ---- class --------------------------------------------------------------------

class Timvc_YCCZoom : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool initData() override;
    void flushData() override;
    double getDivisor() override { return macroblocks; }
    rkString getUnit() override { return "block"; }
};

bool Timvc_YCCZoom::initData() {
    source.init(m_func, kmSrc);
    image.init(m_func.dstType(), 1, false);
    if (!source.createVectorExt(1920, 0, SetRandom, 0, 0)) return false;
    if (!image.createImageExt(320, 16, 0, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    for (int i = 0; i < macroblocks; ++i) {
        pSrc[i] = source.p16s + i * macroblockSize / 2;
        pDst[i] = image.p8u + i * pictureDistance;
    }
    dstStep = image.m_step;
    return true;
}

void Timvc_YCCZoom::flushData() {
    source.deleteVector();
    image.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define ONE  pSrc[0], pDst[0], dstStep
#define FIVE pSrc, pDst, dstStep

// clang-format off
KM_REG(Timvc_YCCZoom, keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R,           FIVE);
KM_REG(Timvc_YCCZoom, keliYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(Timvc_YCCZoom, keliYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(Timvc_YCCZoom, keliYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R,  pSrc, pDst);
KM_REG(Timvc_YCCZoom, keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R,           FIVE);
KM_REG(Timvc_YCCZoom, keliYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(Timvc_YCCZoom, keliYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(Timvc_YCCZoom, keliYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R,  pSrc, pDst);
KM_REG(Timvc_YCCZoom, keliYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R,           FIVE);
KM_REG(Timvc_YCCZoom, keliYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(Timvc_YCCZoom, keliYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R,  FIVE);
KM_REG(Timvc_YCCZoom, keliYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R,  pSrc, pDst);
KM_REG(Timvc_YCCZoom, keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R,          ONE);
KM_REG(Timvc_YCCZoom, keliYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R, ONE);
KM_REG(Timvc_YCCZoom, keliYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R, ONE);
KM_REG(Timvc_YCCZoom, keliYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R, ONE);
// clang-format on
