// deviation.cpp - the mean absolute deviations of blocks.

#include "kelvc_mpeg4.h"

#include "../common/checks.h"
#include "../common/samples.h"

#include <cstdlib>

using namespace kelvara;

namespace {

template <int N, class Value>
int sumOf(Value value) {
    int sum = 0;
    for (int row = 0; row < N; ++row) {
        for (int col = 0; col < N; ++col) sum += value(row, col);
    }
    return sum;
}

template <int N>
KelStatus meanAbsDev(const Kel8u *pSrc, int srcStep, Kel32s *pDeviation) {
    if (anyNull(pSrc) || anyNull(pDeviation)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcStep, N)) return kelStsStepErr;
    const Samples<Kel8u> src(pSrc, srcStep);
    const int mean = sumOf<N>(src) / (N * N);
    store<Kel32s>(pDeviation, sumOf<N>([&](int row, int col) { return std::abs(src(row, col) - mean); }));
    return kelStsNoErr;
}

} // namespace

KelStatus keliMeanAbsDev8x8_8u32s_C1R(const Kel8u *pSrc, int srcStep, Kel32s *pMeanAbsDev) {
    return meanAbsDev<8>(pSrc, srcStep, pMeanAbsDev);
}

KelStatus keliMeanAbsDev16x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, Kel32s *pMeanAbsDev) {
    return meanAbsDev<16>(pSrc, srcStep, pMeanAbsDev);
}
