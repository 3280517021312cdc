// rangemap.cpp - the exported range mapping of VC-1.

#include "../common/checks.h"
#include "../common/samples.h"
#include "kelvc.h"

#include <algorithm>

namespace kelvara {
namespace vc1 {

// SMPTE 421M 6.2.15.1, for luma and chroma alike
static int mapped(int sample, int rangeMapParam) {
    return std::clamp((((sample - 128) * (rangeMapParam + 9) + 4) >> 3) + 128, 0, 255);
}

} // namespace vc1
} // namespace kelvara

using namespace kelvara;

// Rows that overlap are allowed: a picture laid out so is mapped to one that is laid out alike.
KelStatus keliRangeMapping_VC1_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                      KeliSize roiSize, int rangeMapParam) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (roiSize.width < 1 || roiSize.height < 1) return kelStsSizeErr;
    if (srcStep < 1 || dstStep < 1) return kelStsStepErr;
    if (rangeMapParam < 0 || rangeMapParam > 7) return kelStsRangeErr;
    const Samples<Kel8u> src(pSrc, srcStep);
    const Target<Kel8u> dst(pDst, dstStep);
    for (int row = 0; row < roiSize.height; ++row) {
        for (int col = 0; col < roiSize.width; ++col)
            dst.set(row, col, vc1::mapped(src(row, col), rangeMapParam));
    }
    return kelStsNoErr;
}
