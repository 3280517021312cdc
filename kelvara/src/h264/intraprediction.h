// intraprediction.h - the intra prediction of ITU-T H.264, 8.3.

#ifndef KELVARA_INTRAPREDICTION_H
#define KELVARA_INTRAPREDICTION_H

#include "intradirections.h"

namespace kelvara {

// ---- which modes are allowed --------------------------------------------------------

// The neighbours that each mode cannot do without.
const int blockNeeds[9] = {Upper, Left, 0, Upper, AllAround, AllAround, AllAround, Upper, Left};
const int lumaNeeds[4] = {Upper, Left, 0, AllAround};
const int chromaNeeds[4] = {0, Left, Upper, AllAround};

template <int modes>
inline bool allows(const int (&needs)[modes], int mode, int available) {
    return mode >= 0 && mode < modes && (needs[mode] & ~available) == 0;
}

// ---- predictions along rows and columns, means and planes ------------------------------

template <int N>
Square<N> fromAbove(const Border<N> &b) {
    return Square<N>([&b](int, int col) { return b.upper[col]; });
}
template <int N>
Square<N> fromLeft(const Border<N> &b) {
    return Square<N>([&b](int row, int) { return b.left[row]; });
}

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

// 8.3.3.4 and 8.3.4.4: a plane through the border, its slopes from weighted differences of mirrored samples.
template <int N>
Square<N> planeThrough(const Border<N> &b) {
    const int half = N / 2;
    int right = 0, down = 0;
    for (int i = 1; i <= half; ++i) {
        const bool last = i == half;
        right += i * (b.upper[half - 1 + i] - (last ? b.corner : b.upper[half - 1 - i]));
        down += i * (b.left[half - 1 + i] - (last ? b.corner : b.left[half - 1 - i]));
    }
    const int factor = N == 16 ? 5 : 34;
    const int rightSlope = (factor * right + 32) >> 6, downSlope = (factor * down + 32) >> 6;
    const int middle = 16 * (b.left[N - 1] + b.upper[N - 1]) + 16;
    return Square<N>([=](int row, int col) {
        return std::clamp((middle + rightSlope * (col - half + 1) + downSlope * (row - half + 1)) >> 5, 0,
                          255);
    });
}

// ---- one block --------------------------------------------------------------------------

// REQUIRES: a mode that the neighbours allow. The border of an 8x8 block is smoothed already.
template <int N>
Square<N> predictedBlock(const Border<N> &border, int mode) {
    switch (mode) {
        case Vertical:
            return fromAbove(border);
        case Horizontal:
            return fromLeft(border);
        case Mean:
            return meanAround(border);
        default:
            return directed(BorderLine<N>(border), mode);
    }
}

inline Square<16> predictedLuma(const Border<16> &border, int mode) {
    return mode == LumaPlane ? planeThrough(border) : predictedBlock(border, mode);
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
            return fromLeft(border);
        case ChromaVertical:
            return fromAbove(border);
        default:
            return planeThrough(border);
    }
}

} // namespace kelvara

#endif
