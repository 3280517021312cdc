// interpolate.cpp - interpolation of H.264 at fractions of a sample.

#include "kmvc.h"
#include "rotatingoffset.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> size;   // number of the block's size
static rkStepIterator<int> dy, dx; // quarters of a sample in luma, eighths in chroma

// ---- data ---------------------------------------------------------------------

static const KeliSize luma_size[] = {{4, 4}, {8, 8}, {16, 16}};
static const KeliSize chroma_size[] = {{2, 2}, {4, 4}, {8, 8}};
static const int lastSize = 2;

static kmVector pSrc; // 23 rows: the block with its neighbours, anywhere within 64 bytes
static kmVector pDst; // 16 rows
static const int srcStep = 128, dstStep = 128;
static KeliSize roi;

static RotatingOffset src_offset;
static Kel8u const *nextSource() {
    return pSrc.p8u + 512 + src_offset.next();
}

// ---- class --------------------------------------------------------------------

class rk_Interpolate : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "all"; }

private:
    bool m_luma = false;
};

bool rk_Interpolate::canStart() {
    m_luma = m_func.find("Luma", 0) >= 0;
    pSrc.init(m_func, kmSrc);
    pDst.init(m_func, kmDst);
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    m_parms.push_back(&size);
    m_parms.push_back(&dy);
    m_parms.push_back(&dx);
    size.init("size_num", 0, lastSize, 1, StepPlus);
    dy.init("dy", 0, m_luma ? 3 : 1, 1, StepPlus);
    dx.init("dx", 0, m_luma ? 3 : 1, 1, StepPlus);
    src_offset.restart();
    return true;
}

bool rk_Interpolate::initData() {
    const int number = size.value();
    if (number < 0 || number > lastSize) return false; // a user's number
    roi = m_luma ? luma_size[number] : chroma_size[number];
    const int shift = rkGetVectorShift();
    return pSrc.createVectorExt(2944, shift, SetDefault, 0, 0) &&
           pDst.createVectorExt(2048, shift, SetDefault, 0, 0);
}

void rk_Interpolate::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define INTERPOLATE_ARGS nextSource(), srcStep, pDst.p8u, dstStep, dx.value(), dy.value(), roi

// clang-format off
KM_REG(rk_Interpolate, keliInterpolateLuma_H264_8u_C1R,   INTERPOLATE_ARGS);
KM_REG(rk_Interpolate, keliInterpolateChroma_H264_8u_C1R, INTERPOLATE_ARGS);
// clang-format on
