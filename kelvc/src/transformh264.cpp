// transformh264.cpp - transforms with quantisation of 4x4 and DC blocks of H.264, both ways.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> Intra;         // 1: the rounding of intra blocks; inverse: DC is in the block
static rkMapIterator<int> NeedTransform; // 1: DC coefficients come untransformed
static rkMapIterator<int> ScaleLevels;   // 1: the caller's, 0: the library's own

// Keeps a column empty where a function lacks the parameter of its neighbours.
static rkDummyIterator *dummy() {
    static rkDummyIterator none(1, "");
    return &none;
}

// ---- data ---------------------------------------------------------------------

static const int blockLength = 16;
static const int pictureWidth = 320, pictureHeight = 4;
static const int flatWeight = 16; // of each place of a scaling list that changes nothing

static const int QP = 2;
static const int AC = 1;
static const int bitDepth = 12;

static kmVector scaleLevelsFwd, scaleLevelsInv, pScanMatrix; // from canStart to flushStart
static kmVector pSrc, pDstFwd;
static kmImage pDstInv, pPred;
static int dstStep, predStep;
static Kel16s const *pScaleLevels; // null: the library's own
static Kel16s const *pDC16;        // null: DC is in the block
static Kel32s const *pDC32;
static int numCoeffs, lastCoeff;

// ---- class --------------------------------------------------------------------

class Timvc_H264_Transform : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    void flushStart() override;
    bool initData() override;
    void flushData() override;

private:
    void pushParameters();
    bool makeScaleLevels();
    bool has(char const *word) { return m_func.find(word, 0) >= 0; }
};

// ---- start ----------------------------------------------------------------------

static void initFlag(rkMapIterator<int> &parm, char const *name, char const *on, char const *off) {
    parm.init(name);
    parm[1] = on;
    parm[0] = off;
    parm.add(1);
    parm.add(0);
}

void Timvc_H264_Transform::pushParameters() {
    const bool isDC = has("Luma") || has("Chroma"), isForward = has("Fwd");
    const bool hasIntra = isDC ? !has("Luma") && isForward : true;
    m_parms.push_back(dummy());
    m_parms.push_back(hasIntra ? static_cast<rkParameter *>(&Intra) : dummy());
    m_parms.push_back(isDC && isForward ? static_cast<rkParameter *>(&NeedTransform) : dummy());
    m_parms.push_back(&ScaleLevels);
    initFlag(NeedTransform, "NeedTransform", "NeedTransform", "-");
    initFlag(Intra, "Intra", "Intra", "-");
    initFlag(ScaleLevels, "ScaleLevels", "UserScaleLevels", "DefaultScaleLevels");
}

bool Timvc_H264_Transform::makeScaleLevels() {
    const int shift = rkGetVectorShift();
    kmVector scalingList(8);
    scaleLevelsFwd.init(16 | kmTypeSigned);
    scaleLevelsInv.init(16 | kmTypeSigned);
    if (!scalingList.createVectorExt(blockLength, shift, SetValue, flatWeight, 0)) return false;
    if (!scaleLevelsFwd.createVectorExt(blockLength, shift, SetDefault, 0, 0)) return false;
    if (!scaleLevelsInv.createVectorExt(blockLength, shift, SetDefault, 0, 0)) return false;
    if (!keliGenScaleLevel4x4_H264_8u16s_C1) return false;
    return !rkIsError(checkStatus(
        keliGenScaleLevel4x4_H264_8u16s_C1(scalingList.p8u, scaleLevelsInv.p16s, scaleLevelsFwd.p16s, QP)));
}

bool Timvc_H264_Transform::canStart() {
    pushParameters();
    if (!makeScaleLevels()) return false;
    pScanMatrix.init(16 | kmTypeSigned);
    if (!pScanMatrix.createVectorExt(blockLength, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    pScanMatrix.setSequence(0.0, 20.0, 1.0, true);
    return true;
}

void Timvc_H264_Transform::flushStart() {
    pScanMatrix.deleteVector();
    scaleLevelsFwd.deleteVector();
    scaleLevelsInv.deleteVector();
}

// ---- data of a set ----------------------------------------------------------------

// Samples behind 32-bit coefficients have more than 8 bits.
bool Timvc_H264_Transform::initData() {
    const kmType samples = has("AddPred") && m_func.type(1) == (32 | kmTypeSigned) ? 16 : 8;
    const int shift = rkGetVectorShift();
    pSrc.init(m_func, 1);
    pDstFwd.init(m_func, 2);
    pDstInv.init(samples, 1, false);
    pPred.init(samples, 1, false);
    if (!pSrc.createVectorExt(blockLength, shift, SetDefault, 0, 0)) return false;
    if (!pDstFwd.createVectorExt(blockLength, shift, SetDefault, 0, 0)) return false;
    if (!pDstInv.createVectorExt(pictureWidth, pictureHeight, shift, SetDefault, 0, 0)) return false;
    if (!pPred.createVectorExt(pictureWidth, pictureHeight, shift, SetDefault, 0, 0)) return false;
    dstStep = pDstInv.m_step;
    predStep = pPred.m_step;
    kmVector const &levels = has("Fwd") ? scaleLevelsFwd : scaleLevelsInv;
    pScaleLevels = ScaleLevels.value() == 1 ? levels.p16s : nullptr;
    const bool isInBlock = Intra.value() == 1;
    pDC16 = isInBlock ? nullptr : pSrc.p16s;
    pDC32 = isInBlock ? nullptr : pSrc.p32s;
    return true;
}

void Timvc_H264_Transform::flushData() {
    pSrc.deleteVector();
    pDstFwd.deleteVector();
    pDstInv.deleteVector();
    pPred.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define FORWARD   QP, &numCoeffs, Intra.value(), pScanMatrix.p16s, &lastCoeff, pScaleLevels
#define LUMA_DC   QP, &numCoeffs, NeedTransform.value(), pScanMatrix.p16s, &lastCoeff, pScaleLevels
#define CHROMA_DC QP, &numCoeffs, Intra.value(), NeedTransform.value(), pScaleLevels

// clang-format off
KM_REG(Timvc_H264_Transform, keliTransformQuantFwd4x4_H264_16s_C1,           pSrc.p16s, pDstFwd.p16s, FORWARD);
KM_REG(Timvc_H264_Transform, keliTransformQuantFwd4x4_H264_16s32s_C1,        pSrc.p16s, pDstFwd.p32s, FORWARD);
KM_REG(Timvc_H264_Transform, keliTransformQuantInvAddPred4x4_H264_16s_C1IR,
       pPred.p8u, predStep, pSrc.p16s, pDC16, pDstInv.p8u, dstStep, QP, AC, pScaleLevels);
KM_REG(Timvc_H264_Transform, keliTransformQuantInvAddPred4x4_H264_32s_C1IR,
       pPred.p16u, predStep, pSrc.p32s, pDC32, pDstInv.p16u, dstStep, QP, AC, bitDepth, pScaleLevels);
KM_REG(Timvc_H264_Transform, keliTransformQuantFwdLumaDC4x4_H264_16s_C1I,    pSrc.p16s, pDstFwd.p16s, LUMA_DC);
KM_REG(Timvc_H264_Transform, keliTransformQuantFwdLumaDC4x4_H264_32s_C1I,    pSrc.p32s, pDstFwd.p32s, LUMA_DC);
KM_REG(Timvc_H264_Transform, keliTransformQuantInvLumaDC4x4_H264_16s_C1I,    pSrc.p16s, QP, pScaleLevels);
KM_REG(Timvc_H264_Transform, keliTransformQuantInvLumaDC4x4_H264_32s_C1I,    pSrc.p32s, QP, pScaleLevels);
KM_REG(Timvc_H264_Transform, keliTransformQuantFwdChromaDC2x2_H264_16s_C1I,  pSrc.p16s, pDstFwd.p16s, CHROMA_DC);
KM_REG(Timvc_H264_Transform, keliTransformQuantFwdChromaDC2x2_H264_32s_C1I,  pSrc.p32s, pDstFwd.p32s, CHROMA_DC);
KM_REG(Timvc_H264_Transform, keliTransformQuantInvChromaDC2x2_H264_16s_C1I,  pSrc.p16s, QP, pScaleLevels);
KM_REG(Timvc_H264_Transform, keliTransformQuantInvChromaDC2x2_H264_32s_C1I,  pSrc.p32s, QP, pScaleLevels);
KM_REG(Timvc_H264_Transform, keliTransformQuantFwdChromaDC2x4_H264_16s_C1I,  pSrc.p16s, pDstFwd.p16s, CHROMA_DC);
KM_REG(Timvc_H264_Transform, keliTransformQuantFwdChromaDC2x4_H264_32s_C1I,  pSrc.p32s, pDstFwd.p32s, CHROMA_DC);
KM_REG(Timvc_H264_Transform, keliTransformQuantInvChromaDC2x4_H264_16s_C1I,  pSrc.p16s, QP, pScaleLevels);
KM_REG(Timvc_H264_Transform, keliTransformQuantInvChromaDC2x4_H264_32s_C1I,  pSrc.p32s, QP, pScaleLevels);
// clang-format on
