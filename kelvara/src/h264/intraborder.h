// intraborder.h - the samples around a block that ITU-T H.264 predicts it from.

#ifndef KELVARA_INTRABORDER_H
#define KELVARA_INTRABORDER_H

#include "../common/samples.h"

namespace kelvara {

// ---- availability -----------------------------------------------------------------

// Neighbours that may be used, as a set of bits. The left one of a field macroblock beside two frame
// macroblocks has two halves, which need not be alike.
enum NeighbourBits { Upper = 1, UpperLeftHalf = 2, LowerLeftHalf = 4, Corner = 32, UpperRight = 64 };

const int Left = UpperLeftHalf | LowerLeftHalf;
const int AllAround = Upper | Left | Corner;

// Both halves of the left neighbour are what the upper one is in `bits`.
inline int withWholeLeft(int bits) {
    return bits & UpperLeftHalf ? bits | LowerLeftHalf : bits & ~LowerLeftHalf;
}

// The lower half of the left neighbour is the left neighbour of `lowerBits`.
inline int withLowerLeft(int bits, int lowerBits) {
    return lowerBits & UpperLeftHalf ? bits | LowerLeftHalf : bits & ~LowerLeftHalf;
}

// A block of N x N within a luma macroblock, its place among its likes in the order of 6.4.3.
template <int N>
struct BlockPlace {
    explicit BlockPlace(int k)
        : row(N == 4 ? 8 * (k / 8) + 4 * (k / 2 % 2) : 8 * (k / 2)),
          col(N == 4 ? 8 * (k / 4 % 2) + 4 * (k % 2) : 8 * (k % 2)) {}

    int row, col;
};

// Where a block of the macroblock that holds the sample stands in that order, in units of 4x4 blocks.
inline int codingOrder(int row, int col) {
    return 8 * (row / 8) + 4 * (col / 8) + 2 * (row / 4 % 2) + col / 4 % 2;
}

// 6.4.11: the neighbours of a block, by those of its macroblock and by what has been decoded before it.
template <int N>
int neighboursOf(BlockPlace<N> at, int macroblock) {
    const auto leftAt = [macroblock](int row) {
        return macroblock & (row < 8 ? UpperLeftHalf : LowerLeftHalf);
    };
    const bool hasUpper = at.row > 0 || macroblock & Upper;
    const bool hasLeft = at.col > 0 || leftAt(at.row);
    const bool hasCorner =
        at.row > 0 ? at.col > 0 || leftAt(at.row - 1) : macroblock & (at.col > 0 ? Upper : Corner);
    const bool endsInside = at.col + N < 16;
    const bool hasUpperRight =
        at.row > 0 ? endsInside && codingOrder(at.row - 1, at.col + N) < codingOrder(at.row, at.col)
                   : macroblock & (endsInside ? Upper : UpperRight);
    return (hasUpper ? Upper : 0) | (hasLeft ? Left : 0) | (hasCorner ? Corner : 0) |
           (hasUpperRight ? UpperRight : 0);
}

// ---- samples ----------------------------------------------------------------------

// The samples around a block of N x N. Only what is available is read, the rest is mid-grey and counts for
// nothing; samples to the upper right that are missing are the last one above the block (8.3.1.2).
template <int N>
struct Border {
    Border(Samples<Kel8u> block, int available) : neighbours(available), corner(128) {
        for (int i = 0; i < N; ++i) {
            upper[i] = available & Upper ? block(-1, i) : 128;
            left[i] = available & (2 * i < N ? UpperLeftHalf : LowerLeftHalf) ? block(i, -1) : 128;
        }
        for (int i = N; i < 2 * N; ++i) {
            upper[i] = (available & Upper) && (available & UpperRight) ? block(-1, i) : upper[N - 1];
        }
        if (available & Corner) corner = block(-1, -1);
    }

    bool has(int bits) const { return (neighbours & bits) == bits; }

    int neighbours;
    int upper[2 * N], left[N], corner;
};

// (1 2 1) / 4, rounded
inline int smooth(int before, int at, int behind) {
    return (before + 2 * at + behind + 2) >> 2;
}

// 8.3.2.2.1: 8x8 blocks are predicted from smoothed neighbours. At an end a sample is its own neighbour.
inline Border<8> smoothed(const Border<8> &raw) {
    Border<8> result(raw);
    const bool corner = raw.has(Corner);
    for (int i = 0; i < 16; ++i) {
        const int before = i > 0 ? raw.upper[i - 1] : corner ? raw.corner : raw.upper[0];
        result.upper[i] = smooth(before, raw.upper[i], raw.upper[i < 15 ? i + 1 : 15]);
    }
    for (int i = 0; i < 8; ++i) {
        const int before = i > 0 ? raw.left[i - 1] : corner ? raw.corner : raw.left[0];
        result.left[i] = smooth(before, raw.left[i], raw.left[i < 7 ? i + 1 : 7]);
    }
    result.corner = smooth(raw.upper[0], raw.corner, raw.left[0]); // modes that take it have all three
    return result;
}

} // namespace kelvara

#endif
