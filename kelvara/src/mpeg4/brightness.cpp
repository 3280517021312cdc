// brightness.cpp - the brightness of a sprite.

#include "kelvc_mpeg4.h"

#include "../common/checks.h"
#include "../common/samples.h"

#include <algorithm>

using namespace kelvara;

namespace {

// ISO/IEC 14496-2 7.8.6: the sample times 0.01 * factor + 1. The smallest factors make the product negative,
// which ends at 0 whatever its rounding.
Kel8u brightened(int sample, int factor) {
    const int hundredfold = sample * (100 + factor);
    return static_cast<Kel8u>(std::clamp((hundredfold + 50) / 100, 0, 255));
}

} // namespace

KelStatus keliChangeSpriteBrightness_MPEG4_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int width, int height,
                                                   int brightnessChangeFactor) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    if (width < 1 || height < 1) return kelStsSizeErr;
    if (tooNarrow<Kel8u>(srcDstStep, width)) return kelStsStepErr;
    if (brightnessChangeFactor < -112 || brightnessChangeFactor > 1648) return kelStsRangeErr;
    Kel8u changed[256];
    for (int sample = 0; sample < 256; ++sample) changed[sample] = brightened(sample, brightnessChangeFactor);
    for (int row = 0; row < height; ++row, pSrcDst += srcDstStep) {
        for (int col = 0; col < width; ++col) pSrcDst[col] = changed[pSrcDst[col]];
    }
    return kelStsNoErr;
}
