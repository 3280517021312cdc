// rotate420.cpp - rotation of 4:2:2 pictures into 4:2:0 ones.

#include "kelvc.h"
#include "turnedpicture.h"
#include "wholepicture.h"

using namespace kelvara;

namespace {

struct SourcePlane {
    const Kel8u *p;
    std::ptrdiff_t step;
};

struct Planes {
    Kel8u *p[3];
    int step[3];
};

// Samples lie `stride` bytes apart.
template <int stride>
void turnLuma(SourcePlane src, const TurnedPicture<Kel8u> &dst, KeliSize size) {
    for (int y = 0; y < size.height; ++y) {
        const Kel8u *row = src.p + y * src.step;
        dst.setRow(y, size.width, [=](int x) { return row[x * stride]; });
    }
}

// size is that of the destination before it is turned: half the rows of the source.
template <int stride>
void turnChroma(SourcePlane src, const TurnedPicture<Kel8u> &dst, KeliSize size) {
    for (int y = 0; y < size.height; ++y) {
        const Kel8u *upper = src.p + 2 * y * src.step, *lower = upper + src.step;
        dst.setRow(y, size.width, [=](int x) { return (upper[x * stride] + lower[x * stride] + 1) >> 1; });
    }
}

// The planes are in the order Y, Cb, Cr.
template <int lumaStride, int chromaStride>
void turn(const SourcePlane (&src)[3], KeliSize size, const Planes &dst, int rotation) {
    const KeliSize half = {size.width / 2, size.height / 2};
    turnLuma<lumaStride>(src[0], TurnedPicture<Kel8u>(dst.p[0], dst.step[0], size, rotation), size);
    for (int i = 1; i < 3; ++i) {
        turnChroma<chromaStride>(src[i], TurnedPicture<Kel8u>(dst.p[i], dst.step[i], half, rotation), half);
    }
}

bool loadPlanes(Kel8u *const *pDst, const int *dstStep, Planes &dst) {
    for (int i = 0; i < 3; ++i) {
        dst.p[i] = entry(pDst, i);
        dst.step[i] = entry(dstStep, i);
    }
    return !anyNull(dst.p[0], dst.p[1], dst.p[2]);
}

bool isEvenSize(KeliSize size) {
    return isPictureSize(size) && size.width % 2 == 0 && size.height % 2 == 0;
}

bool tooNarrowPlanes(const int (&steps)[3], int width) {
    return steps[0] < width || steps[1] < width / 2 || steps[2] < width / 2;
}

} // namespace

KelStatus keliCbYCr422ToYCbCr420_Rotate_8u_C2P3R(const Kel8u *pSrc, int srcStep, KeliSize srcSize,
                                                 Kel8u *const pDst[3], const int dstStep[3], int rotation) {
    Planes dst;
    if (anyNull(pSrc) || anyNull(pDst) || anyNull(dstStep) || !loadPlanes(pDst, dstStep, dst))
        return kelStsNullPtrErr;
    if (!isEvenSize(srcSize)) return kelStsSizeErr;
    const bool narrow = tooNarrowPlanes(dst.step, turnedSize(srcSize, rotation).width);
    if (tooNarrow<Kel8u>(srcStep, 2 * srcSize.width) || narrow) return kelStsStepErr;
    if (!isRotation(rotation)) return kelStsRangeErr;
    const SourcePlane src[3] = {{pSrc + 1, srcStep}, {pSrc, srcStep}, {pSrc + 2, srcStep}};
    turn<2, 4>(src, srcSize, dst, rotation);
    return kelStsNoErr;
}

KelStatus keliCbYCr422ToYCbCr420_Rotate_8u_P3R(const Kel8u *const pSrc[3], const int srcStep[3],
                                               KeliSize srcSize, Kel8u *const pDst[3], const int dstStep[3],
                                               int rotation) {
    Planes dst;
    if (anyNull(pSrc) || anyNull(srcStep) || anyNull(pDst) || anyNull(dstStep)) return kelStsNullPtrErr;
    const Kel8u *const p[3] = {entry(pSrc, 0), entry(pSrc, 1), entry(pSrc, 2)};
    if (anyNull(p[0], p[1], p[2]) || !loadPlanes(pDst, dstStep, dst)) return kelStsNullPtrErr;
    if (!isEvenSize(srcSize)) return kelStsSizeErr;
    const int steps[3] = {entry(srcStep, 0), entry(srcStep, 1), entry(srcStep, 2)};
    const bool narrow = tooNarrowPlanes(dst.step, turnedSize(srcSize, rotation).width);
    if (tooNarrowPlanes(steps, srcSize.width) || narrow) return kelStsStepErr;
    if (!isRotation(rotation)) return kelStsRangeErr;
    const SourcePlane src[3] = {{p[0], steps[0]}, {p[1], steps[1]}, {p[2], steps[2]}};
    turn<1, 1>(src, srcSize, dst, rotation);
    return kelStsNoErr;
}
