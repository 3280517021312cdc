// globalmotion.cpp - the vector that stands for the global motion of a macroblock.

#include "kelvc_mpeg4.h"
#include "warping.h"

#include "../common/checks.h"
#include "../common/samples.h"

#include <algorithm>

using namespace kelvara;

namespace {

struct Motion {
    long long x = 0, y = 0;
};

// The sum over the 16x16 samples from (left, top) on, counted from the picture's first sample: how far each
// comes from its own place.
template <class Coordinate>
Motion sumOfMotion(const WarpSpec &spec, int left, int top, const Coordinate &x, const Coordinate &y) {
    Motion sum;
    for (int row = top; row < top + 16; ++row) {
        for (int col = left; col < left + 16; ++col) {
            sum.x += x.at(col, row) - spec.unit() * (spec.picture.x + col);
            sum.y += y.at(col, row) - spec.unit() * (spec.picture.y + row);
        }
    }
    return sum;
}

// The mean of 256 samples in half or quarter samples, to the nearest, halves away from zero.
Kel16s meanOf(long long sum, const WarpSpec &spec) {
    const int shift = 8 + spec.accuracy - spec.quarterSample;
    const long long half = 1LL << (shift - 1);
    const long long mean = sum < 0 ? -((half - sum) >> shift) : (sum + half) >> shift;
    const long long range = 16LL << spec.fcode;
    return static_cast<Kel16s>(std::clamp(mean, -range, range - 1));
}

} // namespace

KelStatus keliCalcGlobalMV_MPEG4(int xOffset, int yOffset, KeliMotionVector *pGMV,
                                 const KeliWarpSpec_MPEG4 *pSpec) {
    if (anyNull(pGMV) || anyNull(pSpec)) return kelStsNullPtrErr;
    WarpSpec spec;
    if (!loadSpec(pSpec, spec)) return kelStsContextErr;
    if (xOffset < 0 || xOffset >= spec.picture.width || yOffset < 0 || yOffset >= spec.picture.height)
        return kelStsRangeErr;
    if (!spec.keepsSide(xOffset, yOffset, 15, 15)) return kelStsRangeErr;
    const Mapping &luma = spec.luma;
    const Motion sum = luma.perspective ? sumOfMotion(spec, xOffset, yOffset, luma.px, luma.py)
                                        : sumOfMotion(spec, xOffset, yOffset, luma.x, luma.y);
    store<KeliMotionVector>(pGMV, {meanOf(sum.x, spec), meanOf(sum.y, spec)});
    return kelStsNoErr;
}
