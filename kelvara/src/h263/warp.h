// warp.h - where the samples of a resampled picture of H.263 come from.

#ifndef KELVARA_H263_WARP_H
#define KELVARA_H263_WARP_H

#include "keltypes.h"

#include <cstdint>

namespace kelvara {

// One component of the displacement, in 1/32 luma sample, at the corners of the picture or of the virtual
// one.
struct CornerDisplacements {
    std::int64_t upperLeft, upperRight, lowerLeft, lowerRight;
};

// The displacement of ITU-T H.263 Annex P over the picture, in one component. Division by the size of the
// picture would be slow; so the corners are moved out to the next powers of two (P.3.1), and what is left is
// a shift.
class WarpComponent {
public:
    WarpComponent(const CornerDisplacements &corners, KeliSize size)
        : m_log2Width(log2Above(size.width)), m_log2Height(log2Above(size.height)) {
        const std::int64_t w = size.width, h = size.height;
        const std::int64_t vw = std::int64_t(1) << m_log2Width, vh = std::int64_t(1) << m_log2Height;
        const auto right = [=](std::int64_t at0, std::int64_t atW) { return (w - vw) * at0 + vw * atW; };
        const std::int64_t upper = right(corners.upperLeft, corners.upperRight);
        const std::int64_t lower = right(corners.lowerLeft, corners.lowerRight);
        m_virtual.upperLeft = corners.upperLeft;
        m_virtual.upperRight = nearest(upper, w);
        m_virtual.lowerLeft = nearest((h - vh) * corners.upperLeft + vh * corners.lowerLeft, h);
        m_virtual.lowerRight = nearest((h - vh) * upper + vh * lower, w * h);
    }

    // The displacement along a row of a plane, in 1/16 of its samples: the value at column col is
    // (start + (2 * col + 1) * slope) >> shift.
    struct AlongRow {
        std::int64_t start, slope;
        int shift;

        int operator()(int col) const { return static_cast<int>((start + (2 * col + 1) * slope) >> shift); }
    };

    // sampling: luma samples of a sample of the plane, 1 or 2. Samples stand in the middle of the area that
    // they cover (P.1); half units are counted to have these places as integers.
    AlongRow alongRow(int row, int sampling) const {
        const std::int64_t below = std::int64_t(2 * row + 1) * sampling;
        const std::int64_t above = (std::int64_t(2) << m_log2Height) - below;
        const std::int64_t left = above * m_virtual.upperLeft + below * m_virtual.lowerLeft;
        const std::int64_t right = above * m_virtual.upperRight + below * m_virtual.lowerRight;
        // 2 + widths and heights for the weights, 1 from 1/32 to 1/16, and a chroma sample is twice as wide
        const int shift = m_log2Width + m_log2Height + 2 + sampling;
        const std::int64_t half = std::int64_t(1) << (shift - 1);
        return {left * (std::int64_t(2) << m_log2Width) + half, (right - left) * sampling, shift};
    }

private:
    static int log2Above(int size) {
        int log2 = 0;
        while ((1 << log2) < size) ++log2;
        return log2;
    }

    // The nearest integer, halves away from zero. REQUIRES: d > 0
    static std::int64_t nearest(std::int64_t n, std::int64_t d) {
        return n < 0 ? -((-n + d / 2) / d) : (n + d / 2) / d;
    }

    int m_log2Width, m_log2Height;
    CornerDisplacements m_virtual;
};

} // namespace kelvara

#endif
