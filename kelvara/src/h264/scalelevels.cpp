// scalelevels.cpp - the exported levels of scaling lists of H.264.

#include "quantise.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

// ITU-T H.264 8.5.9, and its counterpart of an encoder. N is 16 or 64.
template <int N>
static void storeScaleLevels(const Words<N> &weights, int qpRem, Kel16s *pInvLevels, Kel16s *pFwdLevels) {
    Words<N> inverse, forward;
    for (int i = 0; i < N; ++i) {
        const int weight = weights(i);
        const int adjust = N == 16 ? normAdjust4x4(qpRem, i) : normAdjust8x8(qpRem, i);
        const int factor = N == 16 ? forwardFactor4x4(qpRem, i) : forwardFactor8x8(qpRem, i);
        inverse.at[i] = static_cast<Kel32u>(weight * adjust);
        forward.at[i] = static_cast<Kel32u>(weight ? 16 * factor / weight : 32767);
    }
    inverse.storeTo(pInvLevels);
    forward.storeTo(pFwdLevels);
}

static bool isRemainder(int qpRem) {
    return qpRem >= 0 && qpRem < 6;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliGenScaleLevel8x8_H264_8u16s_D2(const Kel8u *pSrc, int srcStep, Kel16s *pInvLevels,
                                             Kel16s *pFwdLevels, int QpRem) {
    if (anyNull(pSrc, pInvLevels, pFwdLevels)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcStep, 8)) return kelStsStepErr;
    if (!isRemainder(QpRem)) return kelStsRangeErr;
    const Samples<Kel8u> list(pSrc, srcStep);
    Words<64> weights;
    for (int i = 0; i < 64; ++i) weights.at[i] = static_cast<Kel32u>(list(i / 8, i % 8));
    storeScaleLevels(weights, QpRem, pInvLevels, pFwdLevels);
    return kelStsNoErr;
}

KelStatus keliGenScaleLevel4x4_H264_8u16s_C1(const Kel8u *pSrc, Kel16s *pInvLevels, Kel16s *pFwdLevels,
                                             int QpRem) {
    if (anyNull(pSrc, pInvLevels, pFwdLevels)) return kelStsNullPtrErr;
    if (!isRemainder(QpRem)) return kelStsRangeErr;
    storeScaleLevels(Words<16>(pSrc), QpRem, pInvLevels, pFwdLevels);
    return kelStsNoErr;
}
