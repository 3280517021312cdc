// interpolate.cpp - the exported interpolations of H.264.

#include "interpolate.h"
#include "../common/checks.h"
#include "kelvc.h"

#include <limits>

namespace kelvara {

namespace {

struct Luma {
    static constexpr int parts = 4; // of a sample
    template <class Src, class Dst>
    static void run(Src src, Dst dst, int dx, int dy, KeliSize size) {
        interpolateLuma(src, dst, dx, dy, size);
    }
};

struct Chroma {
    static constexpr int parts = 8;
    template <class Src, class Dst>
    static void run(Src src, Dst dst, int dx, int dy, KeliSize size) {
        interpolateChroma(src, dst, dx, dy, size);
    }
};

// ---- argument checks -----------------------------------------------------------

template <class Component>
KelStatus check(const Kel8u *pSrc, int srcStep, const Kel8u *pDst, int dstStep, int dx, int dy,
                KeliSize roi) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (!isBlock(roi)) return kelStsSizeErr;
    if (tooNarrow<Kel8u>(srcStep, roi.width) || tooNarrow<Kel8u>(dstStep, roi.width)) return kelStsStepErr;
    if (dx < 0 || dx >= Component::parts || dy < 0 || dy >= Component::parts) return kelStsRangeErr;
    return kelStsNoErr;
}

template <class Component>
KelStatus interpolate(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx, int dy,
                      KeliSize roi) {
    const KelStatus status = check<Component>(pSrc, srcStep, pDst, dstStep, dx, dy, roi);
    if (status != kelStsNoErr) return status;
    Component::run(Samples<Kel8u>(pSrc, srcStep), Target<Kel8u>(pDst, dstStep), dx, dy, roi);
    return kelStsNoErr;
}

enum Boundary { Top, Bottom };

template <class Component, Boundary boundary>
KelStatus interpolateThrough(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx, int dy,
                             int outRows, KeliSize roi) {
    const KelStatus status = check<Component>(pSrc, srcStep, pDst, dstStep, dx, dy, roi);
    if (status != kelStsNoErr) return status;
    if (outRows < 0) return kelStsRangeErr;
    const int first = boundary == Top ? outRows : std::numeric_limits<int>::min();
    const int last = boundary == Bottom ? roi.height - 1 - outRows : std::numeric_limits<int>::max();
    const BoundedRows src(Samples<Kel8u>(pSrc, srcStep), first, last);
    Component::run(src, Target<Kel8u>(pDst, dstStep), dx, dy, roi);
    return kelStsNoErr;
}

} // namespace

} // namespace kelvara

using namespace kelvara;

KelStatus keliInterpolateLuma_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx,
                                          int dy, KeliSize roi) {
    return interpolate<Luma>(pSrc, srcStep, pDst, dstStep, dx, dy, roi);
}

KelStatus keliInterpolateChroma_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx,
                                            int dy, KeliSize roi) {
    return interpolate<Chroma>(pSrc, srcStep, pDst, dstStep, dx, dy, roi);
}

KelStatus keliInterpolateLumaTop_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep, int dx,
                                             int dy, int outRows, KeliSize roi) {
    return interpolateThrough<Luma, Top>(pSrc, srcStep, pDst, dstStep, dx, dy, outRows, roi);
}

KelStatus keliInterpolateLumaBottom_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                                int dx, int dy, int outRows, KeliSize roi) {
    return interpolateThrough<Luma, Bottom>(pSrc, srcStep, pDst, dstStep, dx, dy, outRows, roi);
}

KelStatus keliInterpolateChromaTop_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                               int dx, int dy, int outRows, KeliSize roi) {
    return interpolateThrough<Chroma, Top>(pSrc, srcStep, pDst, dstStep, dx, dy, outRows, roi);
}

KelStatus keliInterpolateChromaBottom_H264_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                                  int dx, int dy, int outRows, KeliSize roi) {
    return interpolateThrough<Chroma, Bottom>(pSrc, srcStep, pDst, dstStep, dx, dy, outRows, roi);
}
