// interpolate.cpp - the exported interpolation of VC-1.

#include "interpolate.h"
#include "../common/checks.h"
#include "kelvc.h"

namespace kelvara {
namespace vc1 {

// The record, and a block of one or two interleaved colours.
template <class Filter, int channels>
static KelStatus interpolate(const KeliInterpolateVC1_8u *pParam) {
    if (anyNull(pParam)) return kelStsNullPtrErr;
    const auto param = load<KeliInterpolateVC1_8u>(reinterpret_cast<const unsigned char *>(pParam));
    const long long rowBytes = 1LL * channels * param.roiSize.width;
    const Position at = {param.dx, param.dy, param.roundControl};
    if (anyNull(param.pSrc, param.pDst)) return kelStsNullPtrErr;
    if (!isBlock(param.roiSize)) return kelStsSizeErr;
    if (param.srcStep < rowBytes || param.dstStep < rowBytes) return kelStsStepErr;
    if (!isPosition(at)) return kelStsRangeErr;
    const Samples<Kel8u> src(param.pSrc, param.srcStep);
    const Target<Kel8u> dst(param.pDst, param.dstStep);
    if constexpr (channels == 1) {
        Filter::run(src, dst, param.roiSize, at);
    } else {
        for (int i = 0; i < channels; ++i)
            Filter::run(Interleaved(src, i), Interleaved(dst, i), param.roiSize, at);
    }
    return kelStsNoErr;
}

} // namespace vc1
} // namespace kelvara

using namespace kelvara::vc1;

KelStatus keliInterpolateQPBilinear_VC1_8u_C1R(const KeliInterpolateVC1_8u *pParam) {
    return interpolate<Bilinear, 1>(pParam);
}

KelStatus keliInterpolateQPBilinear_VC1_8u_C2R(const KeliInterpolateVC1_8u *pParam) {
    return interpolate<Bilinear, 2>(pParam);
}

KelStatus keliInterpolateQPBicubic_VC1_8u_C1R(const KeliInterpolateVC1_8u *pParam) {
    return interpolate<Bicubic, 1>(pParam);
}
