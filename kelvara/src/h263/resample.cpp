// resample.cpp - the exported reference picture resampling of H.263.

#include "../common/prediction.h"
#include "kelvc.h"
#include "warp.h"

#include <algorithm>

using namespace kelvara;

namespace {

enum FillMode { FillColor, FillBlack, FillGray, FillClip };

// ---- kernels ----------------------------------------------------------------------

// What a plane looks like outside of itself.
class Plane {
public:
    Plane(const Kel8u *p, int step, KeliSize size) : m_samples(p, step), m_size(size) {}

    KeliSize size() const { return m_size; }
    int inside(int row, int col) const { return m_samples(row, col); }
    int nearest(int row, int col) const {
        return m_samples(std::clamp(row, 0, m_size.height - 1), std::clamp(col, 0, m_size.width - 1));
    }
    bool holds(int row, int col) const {
        return row >= 0 && row < m_size.height && col >= 0 && col < m_size.width;
    }

private:
    Samples<Kel8u> m_samples;
    KeliSize m_size;
};

struct ClippedPlane : Plane {
    using Plane::Plane;
    int operator()(int row, int col) const { return nearest(row, col); }
};

struct FilledPlane : Plane {
    FilledPlane(const Plane &plane, int color) : Plane(plane), m_color(color) {}
    int operator()(int row, int col) const { return holds(row, col) ? inside(row, col) : m_color; }

    int m_color;
};

// P.3: bilinear between four neighbours, the place in 1/16 sample
template <class Source>
inline int interpolated(const Source &src, int y, int x, int bias) {
    const int row = y >> 4, col = x >> 4, down = y & 15, right = x & 15;
    const int upper = (16 - right) * src(row, col) + right * src(row, col + 1);
    const int lower = (16 - right) * src(row + 1, col) + right * src(row + 1, col + 1);
    return ((16 - down) * upper + down * lower + bias) >> 8;
}

struct Warp {
    WarpComponent x, y;
};

// The rounding type is what Annex P calls RCRPR.
template <class Source>
void warpPlane(const Source &src, Target<Kel8u> dst, KeliSize dstSize, const Warp &warp, int sampling,
               int rounding) {
    for (int row = 0; row < dstSize.height; ++row) {
        const WarpComponent::AlongRow dx = warp.x.alongRow(row, sampling);
        const WarpComponent::AlongRow dy = warp.y.alongRow(row, sampling);
        for (int col = 0; col < dstSize.width; ++col)
            dst.set(row, col, interpolated(src, 16 * row + dy(col), 16 * col + dx(col), 127 + rounding));
    }
}

// ---- arguments --------------------------------------------------------------------

// P.3: the four parameters of a component, in units of 1/32 sample, and how much the source is greater
CornerDisplacements cornersOf(const int *w, int unit, int moreRight, int moreDown) {
    const std::int64_t origin = unit * w[0];
    const std::int64_t right = unit * w[2] + 32 * moreRight, down = unit * w[4] + 32 * moreDown;
    return {origin, origin + right, origin + down, origin + right + down + unit * w[6]};
}

Warp warpOf(const int *params, int wda, KeliSize src, KeliSize dst) {
    const int unit = wda ? 2 : 16;
    return {{cornersOf(params, unit, src.width - dst.width, 0), dst},
            {cornersOf(params + 1, unit, 0, src.height - dst.height), dst}};
}

int colorOf(int fillMode, int fillColor, bool luma) {
    if (fillMode == FillColor) return fillColor;
    return fillMode == FillBlack && luma ? 16 : 128;
}

bool isPictureSize(KeliSize size) {
    const bool fours = size.width % 4 == 0 && size.height % 4 == 0;
    return fours && size.width > 0 && size.height > 0 && size.width <= 2048 && size.height <= 1152;
}

bool areWarpParams(const int *params) {
    return std::all_of(params, params + 8, [](int w) { return w >= -4095 && w <= 4095; });
}

struct PlaneArgs {
    const Kel8u *pSrc;
    int srcStep;
    Kel8u *pDst;
    int dstStep;
};

KeliSize planeSize(KeliSize size, int sampling) {
    return {size.width / sampling, size.height / sampling};
}

// The place of the warp parameters is any byte, as that of all data.
struct WarpParams {
    explicit WarpParams(const int *p) { std::memcpy(at, static_cast<const void *>(p), sizeof at); }
    int at[8];
};

bool narrow(const PlaneArgs &plane, KeliSize srcSize, KeliSize dstSize, int sampling) {
    return tooNarrow<Kel8u>(plane.srcStep, srcSize.width / sampling) ||
           tooNarrow<Kel8u>(plane.dstStep, dstSize.width / sampling);
}

// Luma, then both planes of chroma.
KelStatus resample(const PlaneArgs (&planes)[3], KeliSize srcSize, KeliSize dstSize, const int *warpParams,
                   int wda, int rounding, int fillMode, int fillColor) {
    for (const PlaneArgs &plane : planes) {
        if (anyNull(plane.pSrc, plane.pDst)) return kelStsNullPtrErr;
    }
    if (anyNull(warpParams)) return kelStsNullPtrErr;
    if (!isPictureSize(srcSize) || !isPictureSize(dstSize)) return kelStsSizeErr;
    for (int i = 0; i < 3; ++i) {
        if (narrow(planes[i], srcSize, dstSize, i ? 2 : 1)) return kelStsStepErr;
    }
    const WarpParams params(warpParams);
    if (!areWarpParams(params.at) || wda < 0 || wda > 1 || !isRoundControl(rounding)) return kelStsRangeErr;
    if (fillMode < FillColor || fillMode > FillClip || fillColor < 0 || fillColor > 255)
        return kelStsRangeErr;
    const Warp warp = warpOf(params.at, wda, srcSize, dstSize);
    for (int i = 0; i < 3; ++i) {
        const int sampling = i ? 2 : 1;
        const ClippedPlane src(planes[i].pSrc, planes[i].srcStep, planeSize(srcSize, sampling));
        const FilledPlane filled(src, colorOf(fillMode, fillColor, i == 0));
        const Target<Kel8u> dst(planes[i].pDst, planes[i].dstStep);
        const KeliSize size = planeSize(dstSize, sampling);
        if (fillMode == FillClip) {
            warpPlane(src, dst, size, warp, sampling, rounding);
        } else {
            warpPlane(filled, dst, size, warp, sampling, rounding);
        }
    }
    return kelStsNoErr;
}

} // namespace

KelStatus keliResample_H263_8u_P3R(const Kel8u *pSrcY, int srcStepY, const Kel8u *pSrcCb, int srcStepCb,
                                   const Kel8u *pSrcCr, int srcStepCr, KeliSize srcSize, Kel8u *pDstY,
                                   int dstStepY, Kel8u *pDstCb, int dstStepCb, Kel8u *pDstCr, int dstStepCr,
                                   KeliSize dstSize, const int *warpParams, int wda, int rounding,
                                   int fillMode, int fillColor) {
    const PlaneArgs planes[] = {{pSrcY, srcStepY, pDstY, dstStepY},
                                {pSrcCb, srcStepCb, pDstCb, dstStepCb},
                                {pSrcCr, srcStepCr, pDstCr, dstStepCr}};
    return resample(planes, srcSize, dstSize, warpParams, wda, rounding, fillMode, fillColor);
}
