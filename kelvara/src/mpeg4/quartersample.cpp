// quartersample.cpp - the exported copies of blocks at quarter-sample positions.

#include "kelvc_mpeg4.h"
#include "quartersample.h"

#include "../common/prediction.h"

using namespace kelvara;

namespace {

template <int W, int H>
KelStatus copyAtQuarters(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc, int rounding) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcStep, W) || tooNarrow<Kel8u>(dstStep, W)) return kelStsStepErr;
    if (acc < 0 || acc > 15 || !isRoundControl(rounding)) return kelStsRangeErr;
    const QuarterSamples<W, H> block(Samples<Kel8u>(pSrc, srcStep), acc & 3, acc >> 2, rounding);
    const Target<Kel8u> dst(pDst, dstStep);
    for (int row = 0; row < H; ++row) {
        for (int col = 0; col < W; ++col) dst.set(row, col, block(row, col));
    }
    return kelStsNoErr;
}

} // namespace

KelStatus keliCopy8x8QP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc,
                                     int rounding) {
    return copyAtQuarters<8, 8>(pSrc, srcStep, pDst, dstStep, acc, rounding);
}

KelStatus keliCopy16x8QP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc,
                                      int rounding) {
    return copyAtQuarters<16, 8>(pSrc, srcStep, pDst, dstStep, acc, rounding);
}

KelStatus keliCopy16x16QP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int acc,
                                       int rounding) {
    return copyAtQuarters<16, 16>(pSrc, srcStep, pDst, dstStep, acc, rounding);
}
