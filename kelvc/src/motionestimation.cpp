// motionestimation.cpp - differences from the prediction of one reference.

#include <iterator>

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static kmVector gme_refVector(8), gme_curVector(8); // the block is the top left corner of 32 x 1600 samples
static kmVector gme_pDstVector(16 | kmTypeSigned), gme_pDstPredictorVector(16 | kmTypeSigned);
static kmVector gme_SrcSum(32 | kmTypeSigned); // sums of the current 8x8 blocks
static kmVector gme_DstVar(32 | kmTypeSigned), gme_DstMean(32 | kmTypeSigned);
static Kel8u *gme_pCur, *gme_pRef;
static Kel16s *gme_pDst, *gme_pDstPredictor;
static Kel16s *gme_pDstU, *gme_pDstV;
static Kel32s gme_SqrDiff;
static int gme_curStep, gme_refStep; // bytes
static int gme_dstStep, gme_dstPredictorStep;
static int gme_dstStepU, gme_dstStepV;
static int gme_mcType; // half-sample position of the reference
static int gme_roundControl;

// Units of a call.
static char const *const gme_aszFunctions[] = {
    "keliGetDiff16x16_8u16s_C1",     "keliGetDiff16x8_8u16s_C1", "keliGetDiff8x16_8u16s_C1",
    "keliGetDiff8x8_8u16s_C1",       "keliGetDiff8x4_8u16s_C1",  "keliGetDiff8x8_8u16s_C2P2",
    "keliGetDiff8x4_8u16s_C2P2",     "keliSqrDiff16x16_8u32s",   "keliVarMeanDiff16x16_8u32s_C1R",
    "keliVarMeanDiff16x8_8u32s_C1R", "keliGetDiff4x4_8u16s_C1",  "keliSSD8x8_8u32s_C1R",
    "keliSSD4x4_8u32s_C1R",
};
static const int gme_iDivisions[] = {256, 128, 128, 64, 32, 64, 32, 256, 256, 128, 16, 64, 16};
static_assert(std::size(gme_aszFunctions) == std::size(gme_iDivisions));

// The last name is out of reach: it counts calls.
static const int lookedAt = 12;

// ---- class --------------------------------------------------------------------

class CME : public CApproximationTest {
public:
    using CApproximationTest::CApproximationTest;

    bool canStart() override;
    void prepareSet() override;
    void releaseSet() override;
    double getDivisor() override { return divisorOf(gme_aszFunctions, gme_iDivisions, lookedAt); }
    rkString getUnit() override { return "element"; }

private:
    void createVectors();
};

bool CME::canStart() {
    CPerfTest::canStart();
    readSettings("ME");
    readApproximations("ME");
    return true;
}

void CME::createVectors() {
    gme_refVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    gme_curVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    gme_pDstVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    gme_pDstPredictorVector.createVectorExt(51200, m_align, SetRandom, 0.0, 255.0);
    gme_SrcSum.createVectorExt(4, m_align, SetRandom, 0.0, 255.0);
    gme_DstVar.createVectorExt(4, m_align, SetRandom, 0.0, 255.0);
    gme_DstMean.createVectorExt(4, m_align, SetRandom, 0.0, 255.0);
}

void CME::prepareSet() {
    createVectors();
    gme_pCur = gme_curVector.p8u;
    gme_pRef = gme_refVector.p8u;
    gme_pDst = gme_pDstU = gme_pDstVector.p16s;
    gme_pDstPredictor = gme_pDstV = gme_pDstPredictorVector.p16s;
    gme_curStep = gme_refStep = 32;
    gme_dstStep = gme_dstPredictorStep = gme_dstStepU = gme_dstStepV = 32;
    gme_mcType = approximation();
    gme_roundControl = 0;
}

void CME::releaseSet() {
    gme_refVector.deleteVector();
    gme_curVector.deleteVector();
    gme_pDstVector.deleteVector();
    gme_pDstPredictorVector.deleteVector();
    gme_SrcSum.deleteVector();
    gme_DstVar.deleteVector();
    gme_DstMean.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
#define ME_SOURCES gme_pCur, gme_curStep, gme_pRef, gme_refStep
#define ME_BLOCKS  gme_pDst, gme_dstStep, gme_pDstPredictor, gme_dstPredictorStep
#define ME_PLANES  gme_pDstU, gme_dstStepU, gme_pDstV, gme_dstStepV
#define ME_MOMENTS gme_SrcSum.p32s, gme_DstVar.p32s, gme_DstMean.p32s

KM_REG(CME, keliGetDiff16x16_8u16s_C1,      ME_SOURCES, ME_BLOCKS, gme_mcType, gme_roundControl);
KM_REG(CME, keliGetDiff16x8_8u16s_C1,       ME_SOURCES, ME_BLOCKS, gme_mcType, gme_roundControl);
KM_REG(CME, keliGetDiff8x16_8u16s_C1,       ME_SOURCES, ME_BLOCKS, gme_mcType, gme_roundControl);
KM_REG(CME, keliGetDiff8x8_8u16s_C1,        ME_SOURCES, ME_BLOCKS, gme_mcType, gme_roundControl);
KM_REG(CME, keliGetDiff8x4_8u16s_C1,        ME_SOURCES, ME_BLOCKS, gme_mcType, gme_roundControl);
KM_REG(CME, keliGetDiff4x4_8u16s_C1,        ME_SOURCES, ME_BLOCKS, gme_mcType, gme_roundControl);
KM_REG(CME, keliGetDiff8x8_8u16s_C2P2,      ME_SOURCES, ME_PLANES, gme_mcType, gme_roundControl);
KM_REG(CME, keliGetDiff8x4_8u16s_C2P2,      ME_SOURCES, ME_PLANES, gme_mcType, gme_roundControl);
KM_REG(CME, keliSqrDiff16x16_8u32s,         ME_SOURCES, gme_mcType, &gme_SqrDiff);
KM_REG(CME, keliSSD8x8_8u32s_C1R,           ME_SOURCES, &gme_SqrDiff, gme_mcType);
KM_REG(CME, keliSSD4x4_8u32s_C1R,           ME_SOURCES, &gme_SqrDiff, gme_mcType);
KM_REG(CME, keliVarMeanDiff16x16_8u32s_C1R, ME_SOURCES, ME_MOMENTS, gme_mcType);
KM_REG(CME, keliVarMeanDiff16x8_8u32s_C1R,  ME_SOURCES, ME_MOMENTS, gme_mcType);
