// variance.h - variances and means of blocks: kernels and argument checks.

#ifndef KELVARA_VARIANCE_H
#define KELVARA_VARIANCE_H

#include "prediction.h"

#include <algorithm>

namespace kelvara {

// ---- kernels -------------------------------------------------------------------

// Sum and sum of squares of 2^bits samples. The whole numbers hold all that the divisions would lose.
struct Moments {
    long long sum = 0, squares = 0;

    Kel32s mean(int bits) const { return rounded(sum, bits); }
    Kel32s variance(int bits) const { return rounded((squares << bits) - sum * sum, 2 * bits); }

private:
    // value / 2^bits to the nearest, halves up.
    static Kel32s rounded(long long value, int bits) {
        const long long nearest = (value + (1LL << (bits - 1))) >> bits;
        return static_cast<Kel32s>(std::clamp<long long>(nearest, INT32_MIN, INT32_MAX));
    }
};

template <int W, int H, class Block>
inline Moments momentsOf(const Block &block) {
    Moments moments;
    for (int row = 0; row < H; ++row) {
        for (int col = 0; col < W; ++col) {
            const int sample = block(row, col);
            moments.sum += sample;
            moments.squares += static_cast<long long>(sample) * sample;
        }
    }
    return moments;
}

// ---- argument checks -----------------------------------------------------------

inline KelStatus variance(const Kel8u *pSrc, int srcStep, Kel32s *pVar) {
    if (anyNull(pSrc) || anyNull(pVar)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcStep, 16)) return kelStsStepErr;
    store<Kel32s>(pVar, momentsOf<16, 16>(Samples<Kel8u>(pSrc, srcStep)).variance(8));
    return kelStsNoErr;
}

template <class T>
inline KelStatus varMean(const T *pSrc, int srcStep, Kel32s *pVar, Kel32s *pMean) {
    if (anyNull(pSrc) || anyNull(pVar, pMean)) return kelStsNullPtrErr;
    if (tooNarrow<T>(srcStep, 8)) return kelStsStepErr;
    const Moments moments = momentsOf<8, 8>(Samples<T>(pSrc, srcStep));
    store<Kel32s>(pVar, moments.variance(6));
    store<Kel32s>(pMean, moments.mean(6));
    return kelStsNoErr;
}

// The 8x8 blocks of a block of 16 x H. The sum of the differences is the sum of the current samples, which
// the caller has, minus that of the prediction.
template <int H>
inline KelStatus varMeanDiff(const Kel8u *pCur, int curStep, const Reference &ref, const Kel32s *pCurSum,
                             Kel32s *pVar, Kel32s *pMean) {
    if (anyNull(pCur) || anyNull(ref) || anyNull(pCurSum, pVar, pMean)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(curStep, 16) || tooNarrow(ref, 16)) return kelStsStepErr;
    if (!isMcType(ref)) return kelStsRangeErr;
    const Samples<Kel8u> cur(pCur, curStep);
    const Samples<Kel32s> sums(pCurSum, 0);
    const Prediction<16, H> pred(ref, 0);
    for (int i = 0; i < H / 4; ++i) {
        const int top = i / 2 * 8, left = i % 2 * 8;
        const auto predicted = [&](int row, int col) { return pred(top + row, left + col); };
        const auto difference = [&](int row, int col) {
            return cur(top + row, left + col) - predicted(row, col);
        };
        Moments moments = momentsOf<8, 8>(difference);
        moments.sum = sums(0, i) - momentsOf<8, 8>(predicted).sum;
        store<Kel32s>(pVar + i, moments.variance(6));
        store<Kel32s>(pMean + i, moments.mean(6));
    }
    return kelStsNoErr;
}

} // namespace kelvara

#endif
