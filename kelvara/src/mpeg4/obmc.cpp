// obmc.cpp - the exported overlapped motion compensation.

#include "kelvc_mpeg4.h"
#include "quartersample.h"

#include "../common/prediction.h"

using namespace kelvara;

namespace {

// ---- weights ----------------------------------------------------------------------

// ISO/IEC 14496-2 Figures 7-35 to 7-37: the block's own vector, the neighbour above or below, the one at the
// left or right.
const Kel8u ownWeight[8][8] = {{4, 5, 5, 5, 5, 5, 5, 4}, {5, 5, 5, 5, 5, 5, 5, 5}, {5, 5, 6, 6, 6, 6, 5, 5},
                               {5, 5, 6, 6, 6, 6, 5, 5}, {5, 5, 6, 6, 6, 6, 5, 5}, {5, 5, 6, 6, 6, 6, 5, 5},
                               {5, 5, 5, 5, 5, 5, 5, 5}, {4, 5, 5, 5, 5, 5, 5, 4}};
const Kel8u verticalWeight[8][8] = {
    {2, 2, 2, 2, 2, 2, 2, 2}, {1, 1, 2, 2, 2, 2, 1, 1}, {1, 1, 1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1, 1, 1},
    {1, 1, 1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1, 1, 1}, {1, 1, 2, 2, 2, 2, 1, 1}, {2, 2, 2, 2, 2, 2, 2, 2}};
const Kel8u horizontalWeight[8][8] = {
    {2, 1, 1, 1, 1, 1, 1, 2}, {2, 2, 1, 1, 1, 1, 2, 2}, {2, 2, 1, 1, 1, 1, 2, 2}, {2, 2, 1, 1, 1, 1, 2, 2},
    {2, 2, 1, 1, 1, 1, 2, 2}, {2, 2, 1, 1, 1, 1, 2, 2}, {2, 2, 1, 1, 1, 1, 2, 2}, {2, 1, 1, 1, 1, 1, 1, 2}};

// ---- predictions by a vector ---------------------------------------------------------

template <int N>
struct HalfSampleVectors {
    using Block = Prediction<N, N>;

    static Block predict(const Kel8u *pSrc, int step, KeliMotionVector mv, int rounding) {
        const int mcType = (mv.x & 1 ? McHF : McFF) + (mv.y & 1 ? McFH : McFF);
        const std::ptrdiff_t full = static_cast<std::ptrdiff_t>(mv.y >> 1) * step + (mv.x >> 1);
        return Block(Reference{pSrc + full, step, mcType}, rounding);
    }
};

template <int N>
struct QuarterSampleVectors {
    using Block = QuarterSamples<N, N>;

    static Block predict(const Kel8u *pSrc, int step, KeliMotionVector mv, int rounding) {
        const std::ptrdiff_t full = static_cast<std::ptrdiff_t>(mv.y >> 2) * step + (mv.x >> 2);
        return Block(Samples<Kel8u>(pSrc + full, step), mv.x & 3, mv.y & 3, rounding);
    }
};

// ---- kernel and argument check -----------------------------------------------------

struct Neighbourhood {
    const KeliMotionVector *own, *left, *right, *above, *below;
};

KeliMotionVector vectorAt(const KeliMotionVector *p) {
    return load<KeliMotionVector>(reinterpret_cast<const unsigned char *>(p));
}

// 7.6.6: (q * H0 + r * H1 + s * H2 + 4) / 8. The halves of the sum are rounded up whatever rounding is.
template <int N, template <int> class Vectors>
KelStatus overlap(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, const Neighbourhood &mv,
                  int rounding) {
    if (anyNull(pSrc, pDst) || anyNull(mv.own, mv.left, mv.right, mv.above, mv.below))
        return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcStep, N) || tooNarrow<Kel8u>(dstStep, N)) return kelStsStepErr;
    if (!isRoundControl(rounding)) return kelStsRangeErr;
    const auto by = [&](const KeliMotionVector *p) {
        return Vectors<N>::predict(pSrc, srcStep, vectorAt(p), rounding);
    };
    const auto own = by(mv.own), left = by(mv.left), right = by(mv.right), above = by(mv.above),
               below = by(mv.below);
    const Target<Kel8u> dst(pDst, dstStep);
    for (int row = 0; row < N; ++row) {
        const auto &vertical = row < N / 2 ? above : below;
        for (int col = 0; col < N; ++col) {
            const auto &horizontal = col < N / 2 ? left : right;
            const int i = row * 8 / N, j = col * 8 / N;
            const int sum = own(row, col) * ownWeight[i][j] + vertical(row, col) * verticalWeight[i][j] +
                            horizontal(row, col) * horizontalWeight[i][j];
            dst.set(row, col, (sum + 4) >> 3);
        }
    }
    return kelStsNoErr;
}

} // namespace

KelStatus keliOBMC8x8HP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                     const KeliMotionVector *pMVCur, const KeliMotionVector *pMVLeft,
                                     const KeliMotionVector *pMVRight, const KeliMotionVector *pMVAbove,
                                     const KeliMotionVector *pMVBelow, int rounding) {
    return overlap<8, HalfSampleVectors>(pSrc, srcStep, pDst, dstStep,
                                         {pMVCur, pMVLeft, pMVRight, pMVAbove, pMVBelow}, rounding);
}

KelStatus keliOBMC16x16HP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                       const KeliMotionVector *pMVCur, const KeliMotionVector *pMVLeft,
                                       const KeliMotionVector *pMVRight, const KeliMotionVector *pMVAbove,
                                       const KeliMotionVector *pMVBelow, int rounding) {
    return overlap<16, HalfSampleVectors>(pSrc, srcStep, pDst, dstStep,
                                          {pMVCur, pMVLeft, pMVRight, pMVAbove, pMVBelow}, rounding);
}

KelStatus keliOBMC8x8QP_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                     const KeliMotionVector *pMVCur, const KeliMotionVector *pMVLeft,
                                     const KeliMotionVector *pMVRight, const KeliMotionVector *pMVAbove,
                                     const KeliMotionVector *pMVBelow, int rounding) {
    return overlap<8, QuarterSampleVectors>(pSrc, srcStep, pDst, dstStep,
                                            {pMVCur, pMVLeft, pMVRight, pMVAbove, pMVBelow}, rounding);
}
