// warp.cpp - the exported warping of sprites.

#include "kelvc_mpeg4.h"
#include "warping.h"

#include "../common/checks.h"
#include "../common/samples.h"

#include <algorithm>

using namespace kelvara;

namespace {

// ---- kernel -------------------------------------------------------------------------

struct Plane {
    const Kel8u *pSrc;
    int srcStep;
    Kel8u *pDst;
    int dstStep;
};

// The part of a plane to be made, from the picture's first sample on, and the sprite it comes from, all in
// samples of the plane.
struct Area {
    KeliRect part, sprite;
};

// ISO/IEC 14496-2 7.8.6: the mean of the four samples around a position, weighted by its fractions.
class Sprite {
public:
    Sprite(const Plane &plane, const KeliRect &rect, const WarpSpec &spec)
        : m_samples(plane.pSrc, plane.srcStep), m_rect(rect), m_bits(spec.bits()) {
        m_rounding = (1 << (2 * m_bits - 1)) - spec.rounding;
    }

    int at(int x, int y) const {
        const int unit = 1 << m_bits, right = x & (unit - 1), down = y & (unit - 1);
        const int left = column(x >> m_bits), next = column((x >> m_bits) + 1);
        const int top = row(y >> m_bits), below = row((y >> m_bits) + 1);
        const int upper = (unit - right) * m_samples(top, left) + right * m_samples(top, next);
        const int lower = (unit - right) * m_samples(below, left) + right * m_samples(below, next);
        return ((unit - down) * upper + down * lower + m_rounding) >> (2 * m_bits);
    }

private:
    int column(int x) const { return std::clamp(x - m_rect.x, 0, m_rect.width - 1); }
    int row(int y) const { return std::clamp(y - m_rect.y, 0, m_rect.height - 1); }

    Samples<Kel8u> m_samples;
    KeliRect m_rect;
    int m_bits, m_rounding;
};

template <class Coordinate>
void warpPlane(const Sprite &sprite, const Plane &plane, const KeliRect &part, const Coordinate &x,
               const Coordinate &y) {
    const Target<Kel8u> dst(plane.pDst, plane.dstStep);
    for (int row = 0; row < part.height; ++row) {
        for (int col = 0; col < part.width; ++col) {
            const int i = part.x + col, j = part.y + row;
            dst.set(row, col, sprite.at(x.at(i, j), y.at(i, j)));
        }
    }
}

void warp(const Plane &plane, const Area &area, const WarpSpec &spec, const Mapping &mapping) {
    const Sprite sprite(plane, area.sprite, spec);
    if (mapping.perspective) return warpPlane(sprite, plane, area.part, mapping.px, mapping.py);
    warpPlane(sprite, plane, area.part, mapping.x, mapping.y);
}

// ---- argument checks -------------------------------------------------------------------

bool isIn(int value, int low, int high) {
    return low <= value && value <= high;
}

bool areIn(const int *values, int count, int low, int high) {
    return std::all_of(values, values + count, [=](int value) { return isIn(value, low, high); });
}

bool isSize(const KeliRect &rect) {
    return isIn(rect.width, 1, 8191) && isIn(rect.height, 1, 8191);
}

bool isPlace(const KeliRect &rect) {
    return isIn(rect.x, -4096, 4094) && isIn(rect.y, -4096, 4094) && rect.x % 2 == 0 && rect.y % 2 == 0;
}

bool isPartOf(const KeliRect &part, const KeliRect &rect) {
    const long long right = part.x + static_cast<long long>(part.width);
    const long long bottom = part.y + static_cast<long long>(part.height);
    return part.width > 0 && part.height > 0 && part.x >= rect.x && part.y >= rect.y &&
           right <= rect.x + rect.width && bottom <= rect.y + rect.height;
}

bool isInRange(const WarpSpec &spec, int spriteType) {
    return isIn(spriteType, 1, 2) && isIn(spec.points, 0, spriteType == 2 ? 3 : 4) &&
           isIn(spec.accuracy, 0, 3) && isIn(spec.rounding, 0, 1) && isIn(spec.quarterSample, 0, 1) &&
           isIn(spec.fcode, 1, 7) && isPlace(spec.sprite) && isPlace(spec.picture);
}

KeliRect loadRect(const KeliRect *p) {
    return load<KeliRect>(reinterpret_cast<const unsigned char *>(p));
}

int halved(int size) {
    return (size + 1) / 2;
}

KeliRect chromaRect(const KeliRect &rect) {
    return {rect.x / 2, rect.y / 2, halved(rect.width), halved(rect.height)};
}

KeliRect fromFirst(const KeliRect &part, const KeliRect &picture) {
    return {part.x - picture.x, part.y - picture.y, part.width, part.height};
}

KelStatus checkPlane(const Plane &plane, const Area &area) {
    if (tooNarrow<Kel8u>(plane.srcStep, area.sprite.width)) return kelStsStepErr;
    if (tooNarrow<Kel8u>(plane.dstStep, area.part.width)) return kelStsStepErr;
    return kelStsNoErr;
}

} // namespace

// ---- descriptions ----------------------------------------------------------------------

KelStatus keliWarpGetSize_MPEG4(int *pSpecSize) {
    if (anyNull(pSpecSize)) return kelStsNullPtrErr;
    store<int>(pSpecSize, static_cast<int>(sizeof(WarpSpec)));
    return kelStsNoErr;
}

KelStatus keliWarpInit_MPEG4(KeliWarpSpec_MPEG4 *pSpec, const int *pDU, const int *pDV, int numWarpingPoints,
                             int spriteType, int warpingAccuracy, int rounding, int quarterSample, int fcode,
                             const KeliRect *spriteRect, const KeliRect *vopRect) {
    if (anyNull(pSpec) || anyNull(pDU, pDV) || anyNull(spriteRect, vopRect)) return kelStsNullPtrErr;
    WarpSpec spec = {};
    spec.mark = WarpSpec::made;
    spec.points = numWarpingPoints;
    spec.accuracy = warpingAccuracy;
    spec.rounding = rounding;
    spec.quarterSample = quarterSample;
    spec.fcode = fcode;
    spec.sprite = loadRect(spriteRect);
    spec.picture = loadRect(vopRect);
    if (!isSize(spec.sprite) || !isSize(spec.picture)) return kelStsSizeErr;
    if (!isInRange(spec, spriteType)) return kelStsRangeErr;
    int du[4], dv[4];
    std::memcpy(du, static_cast<const void *>(pDU), spec.points * sizeof(int));
    std::memcpy(dv, static_cast<const void *>(pDV), spec.points * sizeof(int));
    if (!areIn(du, spec.points, -16383, 16383) || !areIn(dv, spec.points, -16383, 16383))
        return kelStsRangeErr;
    setMappings(spec, du, dv);
    if (!spec.keepsSide(0, 0, spec.picture.width, spec.picture.height)) return kelStsRangeErr;
    std::memcpy(static_cast<void *>(pSpec), &spec, sizeof spec);
    return kelStsNoErr;
}

// ---- planes --------------------------------------------------------------------------------

KelStatus keliWarpLuma_MPEG4_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                    const KeliRect *dstRect, const KeliWarpSpec_MPEG4 *pSpec) {
    if (anyNull(pSrc, pDst) || anyNull(dstRect) || anyNull(pSpec)) return kelStsNullPtrErr;
    WarpSpec spec;
    if (!loadSpec(pSpec, spec)) return kelStsContextErr;
    const KeliRect part = loadRect(dstRect);
    if (!isPartOf(part, spec.picture)) return kelStsSizeErr;
    const Plane plane = {pSrc, srcStep, pDst, dstStep};
    const Area area = {fromFirst(part, spec.picture), spec.sprite};
    const KelStatus status = checkPlane(plane, area);
    if (status != kelStsNoErr) return status;
    warp(plane, area, spec, spec.luma);
    return kelStsNoErr;
}

KelStatus keliWarpChroma_MPEG4_8u_P2R(const Kel8u *pSrcCb, int srcCbStep, const Kel8u *pSrcCr, int srcCrStep,
                                      Kel8u *pDstCb, int dstCbStep, Kel8u *pDstCr, int dstCrStep,
                                      const KeliRect *dstRect, const KeliWarpSpec_MPEG4 *pSpec) {
    if (anyNull(pSrcCb, pSrcCr, pDstCb, pDstCr) || anyNull(dstRect) || anyNull(pSpec))
        return kelStsNullPtrErr;
    WarpSpec spec;
    if (!loadSpec(pSpec, spec)) return kelStsContextErr;
    const KeliRect part = loadRect(dstRect);
    if (!isPartOf(part, spec.picture)) return kelStsSizeErr;
    const Plane planes[2] = {{pSrcCb, srcCbStep, pDstCb, dstCbStep}, {pSrcCr, srcCrStep, pDstCr, dstCrStep}};
    const Area area = {chromaRect(fromFirst(part, spec.picture)), chromaRect(spec.sprite)};
    for (const Plane &plane : planes) {
        const KelStatus status = checkPlane(plane, area);
        if (status != kelStsNoErr) return status;
    }
    if (part.x % 2 != 0 || part.y % 2 != 0) return kelStsRangeErr;
    for (const Plane &plane : planes) warp(plane, area, spec, spec.chroma);
    return kelStsNoErr;
}
