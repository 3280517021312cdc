// predictedblock.h - predicted blocks, and what intra predictions of several standards share.

#ifndef KELVARA_PREDICTEDBLOCK_H
#define KELVARA_PREDICTEDBLOCK_H

#include "neighbours.h"
#include "samples.h"

#include <algorithm>

namespace kelvara {

// (1 2 1) / 4, rounded
inline int smooth(int before, int at, int behind) {
    return (before + 2 * at + behind + 2) >> 2;
}

template <int N>
struct Square {
    Square() = default;
    template <class Value>
    explicit Square(Value value) {
        for (int row = 0; row < N; ++row) {
            for (int col = 0; col < N; ++col) at[row][col] = static_cast<Kel8u>(value(row, col));
        }
    }
    int operator()(int row, int col) const { return at[row][col]; }
    void storeTo(Target<Kel8u> dst) const {
        for (int row = 0; row < N; ++row) {
            for (int col = 0; col < N; ++col) dst.set(row, col, at[row][col]);
        }
    }

    Kel8u at[N][N];
};

// ---- predictions of N x N samples ---------------------------------------------------------

// A border has the samples `upper` of the block from left to right, `left` from the top down, and `corner`.

template <int N, class Border>
Square<N> fromAbove(const Border &b) {
    return Square<N>([&b](int, int col) { return b.upper[col]; });
}
template <int N, class Border>
Square<N> fromLeft(const Border &b) {
    return Square<N>([&b](int row, int) { return b.left[row]; });
}

// A plane through the border, its slopes from weighted differences of mirrored samples: ITU-T H.264 8.3.3.4
// and 8.3.4.4, the latter the same as that of GB/T 20090.2.
template <int N, class Border>
Square<N> planeThrough(const Border &b) {
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

// ---- modes of chroma ------------------------------------------------------------------------

// The numbers are those of ITU-T H.264 and of GB/T 20090.2.
enum ChromaMode { ChromaMean, ChromaHorizontal, ChromaVertical, ChromaPlane };

// The neighbours that each mode cannot do without.
const int chromaNeeds[4] = {0, Left, Upper, AllAround};

} // namespace kelvara

#endif
