// idct8x8.cpp - the exported inverse 8x8 DCT of transposed blocks.

#include "idct8x8.h"
#include "checks.h"
#include "kelvc.h"
#include "samples.h"

namespace kelvara {

static bool isCount(int count) {
    return count >= 0 && count <= 64;
}

static Samples8x8 inverse(const Kel16s *pSrc, int count) {
    if (count > 1) return inverseDctOfTransposed(Block8x8<Kel16s>(pSrc));
    return inverseDctOfDc(count == 0 ? 0 : Samples<Kel16s>(pSrc, 0)(0, 0));
}

// Sample x of a row goes to element Stride * x.
template <int Stride, class T>
static void storeSamples(const Samples8x8 &block, T *pDst, int dstStep) {
    for (int y = 0; y < 8; ++y) {
        T row[8];
        for (int x = 0; x < 8; ++x) row[x] = roundTo<T>(block.sample[y][x]);
        T *p = reinterpret_cast<T *>(reinterpret_cast<unsigned char *>(pDst) +
                                     y * static_cast<std::ptrdiff_t>(dstStep));
        for (int x = 0; x < 8; ++x) store<T>(p + Stride * x, row[x]);
    }
}

// source, destination, step, count
template <class T>
static KelStatus inverseDct(const Kel16s *pSrc, T *pDst, int dstStep, int count) {
    if (anyNull(pSrc) || anyNull(pDst)) return kelStsNullPtrErr;
    if (tooNarrow<T>(dstStep, 8)) return kelStsStepErr;
    if (!isCount(count)) return kelStsRangeErr;
    storeSamples<1>(inverse(pSrc, count), pDst, dstStep);
    return kelStsNoErr;
}

// U source, V source, destination, step, U count, V count
template <class T>
static KelStatus inverseDctOfPair(const Kel16s *pSrcU, const Kel16s *pSrcV, T *pDstUV, int dstStep,
                                  int countU, int countV) {
    if (anyNull(pSrcU, pSrcV) || anyNull(pDstUV)) return kelStsNullPtrErr;
    if (tooNarrow<T>(dstStep, 16)) return kelStsStepErr;
    if (!isCount(countU) || !isCount(countV)) return kelStsRangeErr;
    storeSamples<2>(inverse(pSrcU, countU), pDstUV, dstStep);
    storeSamples<2>(inverse(pSrcV, countV), pDstUV + 1, dstStep);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliDCT8x8Inv_AANTransposed_16s_C1R(const Kel16s *pSrc, Kel16s *pDst, int dstStep, int count) {
    return inverseDct(pSrc, pDst, dstStep, count);
}

KelStatus keliDCT8x8Inv_AANTransposed_16s8u_C1R(const Kel16s *pSrc, Kel8u *pDst, int dstStep, int count) {
    return inverseDct(pSrc, pDst, dstStep, count);
}

KelStatus keliDCT8x8Inv_AANTransposed_16s_P2C2R(const Kel16s *pSrcU, const Kel16s *pSrcV, Kel16s *pDstUV,
                                                int dstStep, int countU, int countV) {
    return inverseDctOfPair(pSrcU, pSrcV, pDstUV, dstStep, countU, countV);
}

KelStatus keliDCT8x8Inv_AANTransposed_16s8u_P2C2R(const Kel16s *pSrcU, const Kel16s *pSrcV, Kel8u *pDstUV,
                                                  int dstStep, int countU, int countV) {
    return inverseDctOfPair(pSrcU, pSrcV, pDstUV, dstStep, countU, countV);
}
