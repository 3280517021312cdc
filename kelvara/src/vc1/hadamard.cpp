// hadamard.cpp - the exported Hadamard sums of VC-1.

#include "../common/satd.h"
#include "kelvc.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace kelvara {
namespace vc1 {

// Stores the coefficients, limited, and returns the sum of the magnitudes. No sum leaves 25 bits.
template <class T>
static int transformAndSum(Samples<T> src, Kel16s *pDst) {
    int x[64];
    for (int i = 0; i < 64; ++i) x[i] = src(i / 8, i % 8);
    for (int row = 0; row < 8; ++row) hadamard<8>(x + 8 * row, 1);
    for (int col = 0; col < 8; ++col) hadamard<8>(x + col, 8);
    const Target<Kel16s> dst(pDst, 16);
    const int low = std::numeric_limits<Kel16s>::min(), high = std::numeric_limits<Kel16s>::max();
    int sum = 0;
    for (int i = 0; i < 64; ++i) {
        dst.set(i / 8, i % 8, std::clamp(x[i], low, high));
        sum += std::abs(x[i]);
    }
    return sum;
}

// source, step, coefficients, sum
template <class T>
static KelStatus hadamardSum(const T *pSrc, int srcStep, Kel16s *pDst, Kel32s *pSum) {
    if (anyNull(pSrc, pDst, pSum)) return kelStsNullPtrErr;
    if (tooNarrow<T>(srcStep, 8)) return kelStsStepErr;
    store<Kel32s>(pSum, transformAndSum(Samples<T>(pSrc, srcStep), pDst));
    return kelStsNoErr;
}

} // namespace vc1
} // namespace kelvara

using namespace kelvara;

KelStatus keliHadamard8x8Sum_VC1_8u16s(const Kel8u *pSrc, int srcStep, Kel16s *pDst, Kel32s *pSum) {
    return vc1::hadamardSum(pSrc, srcStep, pDst, pSum);
}

KelStatus keliHadamard8x8Sum_VC1_16s(const Kel16s *pSrc, int srcStep, Kel16s *pDst, Kel32s *pSum) {
    return vc1::hadamardSum(pSrc, srcStep, pDst, pSum);
}
