// deringing.cpp - the deringing post-filter.

#include "kelvc_mpeg4.h"

#include "../common/checks.h"
#include "../common/edges.h"
#include "../common/samples.h"

#include <algorithm>

using namespace kelvara;

// ISO/IEC 14496-2 Annex F, deringing filter.

namespace {

// ---- thresholds ---------------------------------------------------------------------

struct Extremes {
    int low = 255, high = 0;

    int range() const { return high - low; }
    int middle() const { return (high + low + 1) / 2; }
};

Extremes extremesOf(Samples<Kel8u> block) {
    Extremes extremes;
    for (int row = 0; row < 8; ++row) {
        for (int col = 0; col < 8; ++col) {
            extremes.low = std::min(extremes.low, block(row, col));
            extremes.high = std::max(extremes.high, block(row, col));
        }
    }
    return extremes;
}

// A flat luma block beside a block of high contrast takes that one's threshold, and a macroblock without
// contrast is filtered everywhere.
void setLumaThresholds(Samples<Kel8u> luma, Kel32s *pThresholds) {
    Extremes blocks[4];
    for (int k = 0; k < 4; ++k) blocks[k] = extremesOf(luma.from(k / 2 * 8, k % 2 * 8));
    const Extremes *most = std::max_element(
        blocks, blocks + 4, [](const Extremes &a, const Extremes &b) { return a.range() < b.range(); });
    for (int k = 0; k < 4; ++k) {
        const bool takesOther = blocks[k].range() < 32 && most->range() >= 64;
        const int threshold = takesOther ? most->middle() : blocks[k].middle();
        store<Kel32s>(pThresholds + k, most->range() < 16 ? 0 : threshold);
    }
}

// ---- smoothing ----------------------------------------------------------------------

// Whether all nine samples around a position are on one side of the threshold.
bool isUniform(Samples<Kel8u> src, int row, int col, int threshold) {
    int above = 0;
    for (int i = -1; i <= 1; ++i) {
        for (int j = -1; j <= 1; ++j) above += src(row + i, col + j) >= threshold;
    }
    return above == 0 || above == 9;
}

int weightedMean(Samples<Kel8u> src, int row, int col) {
    int sum = 8;
    for (int i = -1; i <= 1; ++i)
        sum += (2 - i * i) * (src(row + i, col - 1) + 2 * src(row + i, col) + src(row + i, col + 1));
    return sum >> 4;
}

} // namespace

KelStatus keliFilterDeringingThreshold_MPEG4_8u_P3R(const Kel8u *pSrcY, int srcYStep, const Kel8u *pSrcCb,
                                                    int srcCbStep, const Kel8u *pSrcCr, int srcCrStep,
                                                    Kel32s *pThresholds) {
    if (anyNull(pSrcY, pSrcCb, pSrcCr) || anyNull(pThresholds)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcYStep, 16) || tooNarrow<Kel8u>(srcCbStep, 8) || tooNarrow<Kel8u>(srcCrStep, 8))
        return kelStsStepErr;
    setLumaThresholds(Samples<Kel8u>(pSrcY, srcYStep), pThresholds);
    store<Kel32s>(pThresholds + 4, extremesOf(Samples<Kel8u>(pSrcCb, srcCbStep)).middle());
    store<Kel32s>(pThresholds + 5, extremesOf(Samples<Kel8u>(pSrcCr, srcCrStep)).middle());
    return kelStsNoErr;
}

KelStatus keliFilterDeringingSmooth8x8_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                                    int QP, int threshold) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcStep, 10) || tooNarrow<Kel8u>(dstStep, 8)) return kelStsStepErr;
    if (QP < 1 || QP > 31 || threshold < 0 || threshold > 255) return kelStsRangeErr;
    const Samples<Kel8u> src(pSrc, srcStep);
    const Target<Kel8u> dst(pDst, dstStep);
    for (int row = 0; row < 8; ++row) {
        for (int col = 0; col < 8; ++col) {
            const int sample = src(row, col);
            const bool smooth = isUniform(src, row, col, threshold);
            dst.set(row, col,
                    smooth ? clip3(sample - QP / 2, sample + QP / 2, weightedMean(src, row, col)) : sample);
        }
    }
    return kelStsNoErr;
}
