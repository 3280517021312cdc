// nv12interpolate.cpp - interpolation of interleaved chroma of H.264.

#include "nv12.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> size_num; // number of the block's size
static rkStepIterator<int> dy, dx;   // eighths of a pair
static rkStepIterator<int> vectorX, vectorY;

// ---- data ---------------------------------------------------------------------

static const KeliSize chroma_size[] = {{2, 2}, {4, 4}, {8, 8}};
static const int lastSize = 2;

static kmVector pSrcNV12(8); // 33 rows of 8 pairs, or a picture of 64 rows of 64 pairs
static kmVector pDstU(8), pDstV(8);
static const int dstStep = 16;
static KeliSize roi;

static const int pictureStep = 128;
static KeliInterpolateInfo interpolateInfo;

// ---- classes ------------------------------------------------------------------

class rk_test_keliInterpolateChroma_H264_8u_C2P2R : public NV12Test {
public:
    using NV12Test::NV12Test;

    bool canStart() override;
    bool initData() override;
    void flushData() override;

protected:
    // The sizes come first.
    void startSizes();
    bool makeData(int sourceLength);
};

// The block is one of a picture, and the vector takes it through all positions of some pairs.
class rk_test_keliInterpolateChromaBlock_H264_8u_C2P2R : public rk_test_keliInterpolateChroma_H264_8u_C2P2R {
public:
    using rk_test_keliInterpolateChroma_H264_8u_C2P2R::rk_test_keliInterpolateChroma_H264_8u_C2P2R;

    bool canStart() override;
    bool initData() override;
};

// ---- a block at a position ----------------------------------------------------

void rk_test_keliInterpolateChroma_H264_8u_C2P2R::startSizes() {
    NV12Test::canStart();
    m_parms.push_back(&size_num);
    size_num.init("size_num", 0, lastSize, 1, StepPlus);
}

bool rk_test_keliInterpolateChroma_H264_8u_C2P2R::canStart() {
    startSizes();
    m_parms.push_back(&dy);
    m_parms.push_back(&dx);
    dy.init("dy", 0, 1, 1, StepPlus);
    dx.init("dx", 0, 1, 1, StepPlus);
    return true;
}

bool rk_test_keliInterpolateChroma_H264_8u_C2P2R::makeData(int sourceLength) {
    return makeDefault(pSrcNV12, sourceLength) && makeDefault(pDstU, 272) && makeDefault(pDstV, 272);
}

bool rk_test_keliInterpolateChroma_H264_8u_C2P2R::initData() {
    const int number = size_num.value();
    if (number < 0 || number > lastSize) return false; // a user's number
    roi = chroma_size[number];
    return makeData(528);
}

void rk_test_keliInterpolateChroma_H264_8u_C2P2R::flushData() {
    pSrcNV12.deleteVector();
    pDstU.deleteVector();
    pDstV.deleteVector();
}

// ---- a block of a picture -----------------------------------------------------

bool rk_test_keliInterpolateChromaBlock_H264_8u_C2P2R::canStart() {
    startSizes();
    m_parms.push_back(&vectorX);
    m_parms.push_back(&vectorY);
    vectorX.init("pointVector x", 0, 40, 1, StepPlus);
    vectorY.init("pointVector y", 0, 40, 1, StepPlus);
    return true;
}

// The block has one size, whatever the number.
bool rk_test_keliInterpolateChromaBlock_H264_8u_C2P2R::initData() {
    if (!makeData(pictureStep * 128)) return false;
    interpolateInfo.pSrc = pSrcNV12.p8u;
    interpolateInfo.srcStep = pictureStep;
    interpolateInfo.pDstU = pDstU.p8u;
    interpolateInfo.pDstV = pDstV.p8u;
    interpolateInfo.dstStep = dstStep;
    interpolateInfo.sizeFrame = {64, 64};
    interpolateInfo.sizeBlock = {4, 4};
    interpolateInfo.blockPos = {0, 0};
    interpolateInfo.pointVector = {vectorX.value(), vectorY.value()};
    return true;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_test_keliInterpolateChroma_H264_8u_C2P2R, keliInterpolateChroma_H264_8u_C2P2R,
       pSrcNV12.p8u, nv12Step, pDstU.p8u, pDstV.p8u, dstStep, dx.value(), dy.value(), roi);
KM_REG(rk_test_keliInterpolateChromaBlock_H264_8u_C2P2R, keliInterpolateChromaBlock_H264_8u_C2P2R,
       &interpolateInfo);
// clang-format on
