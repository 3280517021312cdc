// genscale.cpp - scale levels of H.264, made from scaling lists.

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static const int blockLength = 64; // of the larger block
static const int pictureWidth = 320, pictureHeight = 8;
static const int QpRem = 2; // remainder of the quantiser

static kmVector pSrcVector;
static kmImage pSrcImage;
static int srcStep;
static kmVector pInvLevels, pFwdLevels;

// ---- class --------------------------------------------------------------------

class Timvc_H264_GenScale : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool initData() override;
    void flushData() override;
};

bool Timvc_H264_GenScale::initData() {
    const int shift = rkGetVectorShift();
    pSrcVector.init(m_func, 1);
    pSrcImage.init(m_func.type(1), 1, false);
    pInvLevels.init(m_func, 2);
    pFwdLevels.init(m_func, 3);
    if (!pSrcVector.createVectorExt(blockLength, shift, SetDefault, 0, 0)) return false;
    if (!pSrcImage.createVectorExt(pictureWidth, pictureHeight, shift, SetDefault, 0, 0)) return false;
    if (!pInvLevels.createVectorExt(blockLength, shift, SetDefault, 0, 0)) return false;
    if (!pFwdLevels.createVectorExt(blockLength, shift, SetDefault, 0, 0)) return false;
    srcStep = pSrcImage.m_step;
    return true;
}

void Timvc_H264_GenScale::flushData() {
    pSrcVector.deleteVector();
    pSrcImage.deleteVector();
    pInvLevels.deleteVector();
    pFwdLevels.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define LEVELS pInvLevels.p16s, pFwdLevels.p16s, QpRem

// clang-format off
KM_REG(Timvc_H264_GenScale, keliGenScaleLevel8x8_H264_8u16s_D2, pSrcImage.p8u, srcStep, LEVELS);
KM_REG(Timvc_H264_GenScale, keliGenScaleLevel4x4_H264_8u16s_C1, pSrcVector.p8u, LEVELS);
// clang-format on
