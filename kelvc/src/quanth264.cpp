// quanth264.cpp - transforms and quantisers of 8x8 luma blocks of H.264, both ways.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> Intra; // 1: the rounding of intra blocks

// Keeps a column empty where a function lacks the parameter of its neighbours.
static rkDummyIterator *dummy() {
    static rkDummyIterator none(1, "");
    return &none;
}

// ---- data ---------------------------------------------------------------------

static const int len = 64;
static const int pictureWidth = 320;
static const int width = 8, height = 8;
static const int Qp6 = 2; // the quantiser divided by 6

static kmVector scaleLevelsFwd, scaleLevelsInv, pScan; // from canStart to flushStart
static kmVector pSrc, pDst;
static kmImage pPred, pDstImage;
static int predStep, dstStep;
static int numLevels, lastCoeff;

// ---- class --------------------------------------------------------------------

class Timvc_H264_Quant : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    void flushStart() override;
    bool initData() override;
    void flushData() override;

private:
    bool makeScaleLevels();
};

// ---- start ----------------------------------------------------------------------

bool Timvc_H264_Quant::makeScaleLevels() {
    const int shift = rkGetVectorShift();
    kmVector scalingList(8);
    scaleLevelsFwd.init(16 | kmTypeSigned);
    scaleLevelsInv.init(16 | kmTypeSigned);
    if (!scalingList.createVectorExt(len, shift, SetRandom, 1.0, 255.0)) return false;
    if (!scaleLevelsFwd.createVectorExt(len, shift, SetDefault, 0, 0)) return false;
    if (!scaleLevelsInv.createVectorExt(len, shift, SetDefault, 0, 0)) return false;
    if (!keliGenScaleLevel8x8_H264_8u16s_D2) return false;
    return !rkIsError(checkStatus(keliGenScaleLevel8x8_H264_8u16s_D2(
        scalingList.p8u, width, scaleLevelsInv.p16s, scaleLevelsFwd.p16s, Qp6)));
}

bool Timvc_H264_Quant::canStart() {
    m_parms.push_back(dummy());
    if (m_func.find("Quant", 0) >= 0 && m_func.find("Inv", 0) < 0) m_parms.push_back(&Intra);
    Intra.init("Intra");
    Intra[1] = "Intra";
    Intra[0] = "-";
    Intra.add(1);
    Intra.add(0);
    if (!makeScaleLevels()) return false;
    pScan.init(16 | kmTypeSigned);
    if (!pScan.createVectorExt(len, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    pScan.setSequence(0.0, len, 1.0, true);
    return true;
}

void Timvc_H264_Quant::flushStart() {
    pScan.deleteVector();
    scaleLevelsFwd.deleteVector();
    scaleLevelsInv.deleteVector();
}

// ---- data of a set ----------------------------------------------------------------

bool Timvc_H264_Quant::initData() {
    const int shift = rkGetVectorShift();
    pSrc.init(m_func, 1);
    pDst.init(m_func, 2);
    pPred.init(8, 1, false);
    pDstImage.init(8, 1, false);
    if (!pSrc.createVectorExt(len, shift, SetDefault, 0, 0)) return false;
    if (!pDst.createVectorExt(len, shift, SetDefault, 0, 0)) return false;
    if (!pPred.createVectorExt(pictureWidth, height, shift, SetDefault, 0, 0)) return false;
    if (!pDstImage.createVectorExt(pictureWidth, height, shift, SetDefault, 0, 0)) return false;
    predStep = pPred.m_step;
    dstStep = pDstImage.m_step;
    return true;
}

void Timvc_H264_Quant::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
    pPred.deleteVector();
    pDstImage.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define QUANT Qp6, Intra.value(), pScan.p16s, scaleLevelsFwd.p16s, &numLevels, &lastCoeff

// clang-format off
KM_REG(Timvc_H264_Quant, keliTransformLuma8x8Fwd_H264_16s_C1I,  pSrc.p16s);
KM_REG(Timvc_H264_Quant, keliQuantLuma8x8_H264_16s_C1,          pSrc.p16s, pDst.p16s, QUANT);
KM_REG(Timvc_H264_Quant, keliQuantLuma8x8_H264_32s_C1,          pSrc.p32s, pDst.p32s, QUANT);
KM_REG(Timvc_H264_Quant, keliQuantLuma8x8Inv_H264_16s_C1I,      pSrc.p16s, Qp6, scaleLevelsInv.p16s);
KM_REG(Timvc_H264_Quant, keliQuantInvLuma8x8_H264_32s_C1I,      pSrc.p32s, Qp6, scaleLevelsInv.p16s);
KM_REG(Timvc_H264_Quant, keliTransformLuma8x8InvAddPred_H264_16s8u_C1R,
       pPred.p8u, predStep, pSrc.p16s, pDstImage.p8u, dstStep);
// clang-format on
