// weightedprediction.cpp - the exported means and weighted predictions of H.264.

#include "../common/checks.h"
#include "interpolate.h"
#include "kelvc.h"

namespace kelvara {

namespace {

const int implicitLog2wd = 5; // ITU-T H.264 8.4.2.3

// The weight and the offset of each reference, of which there may be one.
struct Weighting {
    int log2wd, weight1, weight2, offset1, offset2;
};

bool isWeight(int weight) {
    return weight >= -128 && weight <= 128;
}

bool isOffset(int offset) {
    return offset >= -128 && offset <= 127;
}

bool isWeighting(const Weighting &w) {
    return w.log2wd >= 0 && w.log2wd <= 7 && isWeight(w.weight1) && isWeight(w.weight2) &&
           isOffset(w.offset1) && isOffset(w.offset2);
}

// ---- kernels -------------------------------------------------------------------

// Sets each sample of the block to value(row, col), limited to the range of a sample. The destination may be
// one of the blocks that the values come from.
template <class Value>
void setBlock(Kel8u *pDst, int dstStep, KeliSize size, Value value) {
    PredictedBlock block;
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col)
            block.at[row][col] = static_cast<Kel8u>(std::clamp(value(row, col), 0, 255));
    }
    copyBlock(block, Target<Kel8u>(pDst, dstStep), size);
}

int mean(int a, int b) {
    return (a + b + 1) >> 1;
}

// ---- argument checks -----------------------------------------------------------

// sources, destination, step, size; samples are value(row, col, source blocks)
template <class Value, class... Source>
KelStatus average(Kel8u *pDst, KeliSize size, int step, Value value, const Source *...pSrc) {
    if (anyNull(pSrc..., pDst)) return kelStsNullPtrErr;
    if (!isBlock(size)) return kelStsSizeErr;
    if (tooNarrow<Kel8u>(step, size.width)) return kelStsStepErr;
    setBlock(pDst, step, size,
             [=](int row, int col) { return value(Samples<Kel8u>(pSrc, step)(row, col)...); });
    return kelStsNoErr;
}

KelStatus weightOne(Kel8u *pSrcDst, int step, const Weighting &w, KeliSize size) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    if (!isBlock(size)) return kelStsSizeErr;
    if (tooNarrow<Kel8u>(step, size.width)) return kelStsStepErr;
    if (!isWeighting(w)) return kelStsRangeErr;
    const Samples<Kel8u> src(pSrcDst, step);
    const int rounding = w.log2wd >= 1 ? 1 << (w.log2wd - 1) : 0;
    setBlock(pSrcDst, step, size, [&](int row, int col) {
        return ((src(row, col) * w.weight1 + rounding) >> w.log2wd) + w.offset1;
    });
    return kelStsNoErr;
}

KelStatus weightTwo(const Kel8u *pSrc1, int src1Step, const Kel8u *pSrc2, int src2Step, Kel8u *pDst,
                    int dstStep, const Weighting &w, KeliSize size) {
    if (anyNull(pSrc1, pSrc2, pDst)) return kelStsNullPtrErr;
    if (!isBlock(size)) return kelStsSizeErr;
    if (tooNarrow<Kel8u>(src1Step, size.width) || tooNarrow<Kel8u>(src2Step, size.width))
        return kelStsStepErr;
    if (tooNarrow<Kel8u>(dstStep, size.width)) return kelStsStepErr;
    if (!isWeighting(w)) return kelStsRangeErr;
    const Samples<Kel8u> src1(pSrc1, src1Step), src2(pSrc2, src2Step);
    const int offset = mean(w.offset1, w.offset2);
    setBlock(pDst, dstStep, size, [&](int row, int col) {
        const int sum = src1(row, col) * w.weight1 + src2(row, col) * w.weight2;
        return ((sum + (1 << w.log2wd)) >> (w.log2wd + 1)) + offset;
    });
    return kelStsNoErr;
}

} // namespace

} // namespace kelvara

using namespace kelvara;

// ---- means --------------------------------------------------------------------------

KelStatus keliInterpolateBlock_H264_8u_P2P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, Kel8u *pDst, int width,
                                             int height, int step) {
    return average(pDst, {width, height}, step, mean, pSrc1, pSrc2);
}

KelStatus keliInterpolateBlock_H264_8u_P3P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, const Kel8u *pSrc3,
                                             Kel8u *pDst, int width, int height, int step) {
    return average(
        pDst, {width, height}, step, [](int a, int b, int c) { return mean(mean(a, b), c); }, pSrc1, pSrc2,
        pSrc3);
}

// ---- weighted predictions -----------------------------------------------------------

KelStatus keliUniDirWeightBlock_H264_8u_C1R(Kel8u *pSrcDst, int srcDstStep, int log2wd, int weight,
                                            int offset, KeliSize roi) {
    return weightOne(pSrcDst, srcDstStep, {log2wd, weight, 0, offset, 0}, roi);
}

KelStatus keliBiDirWeightBlock_H264_8u_P2P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, Kel8u *pDst, int srcStep,
                                             int dstStep, int log2wd, int weight1, int weight2, int offset1,
                                             int offset2, KeliSize roi) {
    return weightTwo(pSrc1, srcStep, pSrc2, srcStep, pDst, dstStep,
                     {log2wd, weight1, weight2, offset1, offset2}, roi);
}

KelStatus keliBiDirWeightBlock_H264_8u_P3P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, Kel8u *pDst,
                                             int src1Step, int src2Step, int dstStep, int log2wd, int weight1,
                                             int weight2, int offset1, int offset2, KeliSize roi) {
    return weightTwo(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep,
                     {log2wd, weight1, weight2, offset1, offset2}, roi);
}

KelStatus keliBiDirWeightBlockImplicit_H264_8u_P2P1R(const Kel8u *pSrc1, const Kel8u *pSrc2, Kel8u *pDst,
                                                     int srcStep, int dstStep, int weight1, int weight2,
                                                     KeliSize roi) {
    return weightTwo(pSrc1, srcStep, pSrc2, srcStep, pDst, dstStep, {implicitLog2wd, weight1, weight2, 0, 0},
                     roi);
}

// One offset is the mean of two that are alike.
KelStatus keliWeightedAverage_H264_8u_C1IR(const Kel8u *pSrc, Kel8u *pSrc2Dst, int step, int weight1,
                                           int weight2, int shift, int offset, KeliSize roi) {
    const int log2wd = shift > 0 ? shift - 1 : -1;
    return weightTwo(pSrc, step, pSrc2Dst, step, pSrc2Dst, step, {log2wd, weight1, weight2, offset, offset},
                     roi);
}
