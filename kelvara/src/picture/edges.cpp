// edges.cpp - the test of a block for edges.

#include "kelvc.h"
#include "../common/checks.h"
#include "../common/samples.h"

#include <cstdlib>

using namespace kelvara;

// Pairs of neighbours `down` rows and `right` columns apart that differ by more than `limit`.
template <class T>
static int countEdges(Samples<T> src, int down, int right, int limit) {
    int count = 0;
    for (int row = 0; row < 16 - down; ++row) {
        for (int col = 0; col < 16 - right; ++col) {
            count += std::abs(src(row, col) - src(row + down, col + right)) > limit;
        }
    }
    return count;
}

template <class T>
static KelStatus edgesDetect16x16(const T *pSrc, int srcStep, int limit, int maxCount, Kel8u *pResult) {
    if (anyNull(pSrc, pResult)) return kelStsNullPtrErr;
    if (srcStep < 16) return kelStsStepErr;
    if (limit < 0 || maxCount < 0) return kelStsRangeErr;
    const Samples<T> src(pSrc, srcStep * static_cast<std::ptrdiff_t>(sizeof(T)));
    *pResult = countEdges(src, 0, 1, limit) + countEdges(src, 1, 0, limit) > maxCount;
    return kelStsNoErr;
}

KelStatus keliEdgesDetect16x16_8u_C1R(const Kel8u *pSrc, int srcStep, int edgePelDifference, int edgePelCount,
                                      Kel8u *pResult) {
    return edgesDetect16x16(pSrc, srcStep, edgePelDifference, edgePelCount, pResult);
}

KelStatus keliEdgesDetect16x16_16u_C1R(const Kel16u *pSrc, int srcStep, int edgePelDifference,
                                       int edgePelCount, Kel8u *pResult) {
    return edgesDetect16x16(pSrc, srcStep, edgePelDifference, edgePelCount, pResult);
}
