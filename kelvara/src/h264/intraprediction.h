// intraprediction.h - the intra prediction of ITU-T H.264, 8.3.

#ifndef KELVARA_INTRAPREDICTION_H
#define KELVARA_INTRAPREDICTION_H

#include "intradirections.h"

namespace kelvara {

// ---- which modes are allowed --------------------------------------------------------

// The neighbours that each mode cannot do without.
const int blockNeeds[9] = {Upper, Left, 0, Upper, AllAround, AllAround, AllAround, Upper, Left};
const int lumaNeeds[4] = {Upper, Left, 0, AllAround};

// ---- means ----------------------------------------------------------------------------

// The rounded mean of `count` samples each of those two that are there; mid-grey if none is.
inline int meanOf(const int *upper, const int *left, int count) {
    int sum = 0, total = 0;
    for (const int *side : {upper, left}) {
        if (!side) continue;
        for (int i = 0; i < count; ++i) sum += side[i];
        total += count;
    }
    return total ? (sum + total / 2) / total : 128;
}

template <int N>
Square<N> meanAround(const Border<N> &b) {
    const int mean = meanOf(b.has(Upper) ? b.upper : nullptr, b.has(Left) ? b.left : nullptr, N);
    return Square<N>([mean](int, int) { return mean; });
}

// ---- one block --------------------------------------------------------------------------

// REQUIRES: a mode that the neighbours allow. The border of an 8x8 block is smoothed already.
template <int N>
Square<N> predictedBlock(const Border<N> &border, int mode) {
    switch (mode) {
        case Vertical:
            return fromAbove<N>(border);
        case Horizontal:
            return fromLeft<N>(border);
        case Mean:
            return meanAround(border);
        default:
            return directed(BorderLine<N>(border), mode);
    }
}

inline Square<16> predictedLuma(const Border<16> &border, int mode) {
    return mode == LumaPlane ? planeThrough<16>(border) : predictedBlock(border, mode);
}

// 8.3.4.1 to 8.3.4.3: each quarter has a mean of its own. The upper right one asks first the samples above
// it, the lower left one first those to its left, the others both.
inline Square<8> quarterMeans(const Border<8> &b) {
    int means[2][2];
    for (int down = 0; down < 2; ++down) {
        for (int right = 0; right < 2; ++right) {
            const int *upper = b.has(Upper) ? b.upper + 4 * right : nullptr;
            const int *left = b.has(down ? LowerLeftHalf : UpperLeftHalf) ? b.left + 4 * down : nullptr;
            if (right && !down && upper) left = nullptr;
            if (down && !right && left) upper = nullptr;
            means[down][right] = meanOf(upper, left, 4);
        }
    }
    return Square<8>([&](int row, int col) { return means[row / 4][col / 4]; });
}

inline Square<8> predictedChroma(const Border<8> &border, int mode) {
    switch (mode) {
        case ChromaMean:
            return quarterMeans(border);
        case ChromaHorizontal:
            return fromLeft<8>(border);
        case ChromaVertical:
            return fromAbove<8>(border);
        default:
            return planeThrough<8>(border);
    }
}

} // namespace kelvara

#endif
