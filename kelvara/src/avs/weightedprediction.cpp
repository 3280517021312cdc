// weightedprediction.cpp - the exported weighted prediction of AVS (GB/T 20090.2).

#include "../common/checks.h"
#include "../common/samples.h"
#include "kelvc.h"

#include <algorithm>

using namespace kelvara;

namespace {

bool isBlock(KeliSize size) {
    return size.width >= 1 && size.width <= 16 && size.height >= 1 && size.height <= 16;
}

// The ranges of luma_scale and luma_shift in the stream.
bool isWeighting(int scale, int shift) {
    return scale >= 0 && scale <= 255 && shift >= -128 && shift <= 127;
}

void weight(Samples<Kel8u> src, Target<Kel8u> dst, int scale, int shift, KeliSize size) {
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col)
            dst.set(row, col, std::clamp(((src(row, col) * scale + 16) >> 5) + shift, 0, 255));
    }
}

} // namespace

KelStatus keliWeightPrediction_AVS_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int scale,
                                          int shift, KeliSize roiSize) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (!isBlock(roiSize)) return kelStsSizeErr;
    if (tooNarrow<Kel8u>(srcStep, roiSize.width) || tooNarrow<Kel8u>(dstStep, roiSize.width))
        return kelStsStepErr;
    if (!isWeighting(scale, shift)) return kelStsRangeErr;
    weight({pSrc, srcStep}, {pDst, dstStep}, scale, shift, roiSize);
    return kelStsNoErr;
}
