// interpolateboundary.cpp - interpolation of H.264 across the top and the bottom of a picture.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> dx, dy; // quarters of a sample in luma, eighths in chroma
static rkStepIterator<int> size;   // number of the block's size

// ---- data ---------------------------------------------------------------------

static const KeliSize luma_size[] = {{16, 16}, {16, 8}, {8, 16}, {8, 8}, {8, 4}, {4, 8}, {4, 4}};
static const KeliSize chroma_size[] = {{8, 8}, {8, 4}, {4, 8}, {4, 4}, {4, 2}, {2, 4}, {2, 2}};
static const int lastSize = 6;

static kmVector pSrc(8), pDct(8); // 42 rows; the block has neighbours on all sides
static const int srcStep = 48, dstStep = 48;
static const int outRows = 1; // of the block's own, beyond the boundary
static KeliSize roi;

// ---- class --------------------------------------------------------------------

class rk_InterpolateThroughBoundary : public kmTest {
public:
    using kmTest::kmTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return roi.width * roi.height; }
    rkString getUnit() override { return "e"; }

private:
    bool m_luma = false;
};

bool rk_InterpolateThroughBoundary::canStart() {
    m_luma = m_func.find("Luma", 0) >= 0;
    m_parms.push_back(&dx);
    m_parms.push_back(&dy);
    m_parms.push_back(&size);
    dx.init("dx", 0, m_luma ? 3 : 7, 1, StepPlus);
    dy.init("dy", 0, m_luma ? 3 : 7, 1, StepPlus);
    size.init("size", 0, lastSize, 1, StepPlus);
    return true;
}

bool rk_InterpolateThroughBoundary::initData() {
    const int number = size.value();
    if (number < 0 || number > lastSize) return false; // a user's number
    roi = m_luma ? luma_size[number] : chroma_size[number];
    const int shift = rkGetVectorShift();
    return pSrc.createVectorExt(2032, shift, SetDefault, 0, 0) &&
           pDct.createVectorExt(2032, shift, SetDefault, 0, 0);
}

void rk_InterpolateThroughBoundary::flushData() {
    pSrc.deleteVector();
    pDct.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define BOUNDARY_ARGS pSrc.p8u + 1072, srcStep, pDct.p8u + 160, dstStep, dx.value(), dy.value(), outRows, roi

// clang-format off
KM_REG(rk_InterpolateThroughBoundary, keliInterpolateLumaTop_H264_8u_C1R,      BOUNDARY_ARGS);
KM_REG(rk_InterpolateThroughBoundary, keliInterpolateLumaBottom_H264_8u_C1R,   BOUNDARY_ARGS);
KM_REG(rk_InterpolateThroughBoundary, keliInterpolateChromaTop_H264_8u_C1R,    BOUNDARY_ARGS);
KM_REG(rk_InterpolateThroughBoundary, keliInterpolateChromaBottom_H264_8u_C1R, BOUNDARY_ARGS);
// clang-format on
