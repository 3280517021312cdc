// weightedprediction.cpp - explicit and implicit weighted prediction of H.264.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> size; // number of the block's size

// ---- data ---------------------------------------------------------------------

// Of luma, then of chroma.
static const KeliSize block_size[] = {{16, 16}, {16, 8}, {8, 16}, {8, 8}, {8, 4}, {4, 8}, {4, 4},
                                      {8, 8},   {8, 4},  {4, 8},  {4, 4}, {4, 2}, {2, 4}, {2, 2}};
static const int lastSize = 13;

static kmVector g_wp_Src1(8), g_wp_Src2(8), g_wp_Dst(8); // 16 rows of 16 samples
static int g_wp_Src1Step, g_wp_Src2Step, g_wp_DstStep;
static int g_wp_Log2wd, g_wp_Weight1, g_wp_Weight2, g_wp_Offset1, g_wp_Offset2;
static KeliSize g_wp_roi;

// ---- class --------------------------------------------------------------------

class CWP_H264 : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return g_wp_roi.width * g_wp_roi.height; }
    rkString getUnit() override { return "e"; }
};

bool CWP_H264::canStart() {
    m_parms.push_back(&size);
    size.init("size", 0, lastSize, 1, StepPlus);
    return true;
}

bool CWP_H264::initData() {
    const int number = size.value();
    if (number < 0 || number > lastSize) return false; // a user's number
    g_wp_roi = block_size[number];
    g_wp_Src1Step = g_wp_Src2Step = g_wp_DstStep = 16;
    g_wp_Log2wd = g_wp_Offset1 = g_wp_Offset2 = 0;
    g_wp_Weight1 = g_wp_Weight2 = 1;
    const int shift = rkGetVectorShift();
    return g_wp_Src1.createVectorExt(256, shift, SetDefault, 0, 0) &&
           g_wp_Src2.createVectorExt(256, shift, SetDefault, 0, 0) &&
           g_wp_Dst.createVectorExt(256, shift, SetDefault, 0, 0);
}

void CWP_H264::flushData() {
    g_wp_Src1.deleteVector();
    g_wp_Src2.deleteVector();
    g_wp_Dst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define BLOCKS   g_wp_Src1.p8u, g_wp_Src2.p8u, g_wp_Dst.p8u
#define EXPLICIT g_wp_Log2wd, g_wp_Weight1, g_wp_Weight2, g_wp_Offset1, g_wp_Offset2

// clang-format off
KM_REG(CWP_H264, keliUniDirWeightBlock_H264_8u_C1R,
       g_wp_Src1.p8u, g_wp_Src1Step, g_wp_Log2wd, g_wp_Weight1, g_wp_Offset1, g_wp_roi);
KM_REG(CWP_H264, keliBiDirWeightBlock_H264_8u_P2P1R,
       BLOCKS, g_wp_Src1Step, g_wp_DstStep, EXPLICIT, g_wp_roi);
KM_REG(CWP_H264, keliBiDirWeightBlockImplicit_H264_8u_P2P1R,
       BLOCKS, g_wp_Src1Step, g_wp_DstStep, g_wp_Weight1, g_wp_Weight2, g_wp_roi);
KM_REG(CWP_H264, keliBiDirWeightBlock_H264_8u_P3P1R,
       BLOCKS, g_wp_Src1Step, g_wp_Src2Step, g_wp_DstStep, EXPLICIT, g_wp_roi);
// clang-format on
