// neighbours.h - the blocks around a block that it may be predicted from.

#ifndef KELVARA_NEIGHBOURS_H
#define KELVARA_NEIGHBOURS_H

namespace kelvara {

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

// A block of N x N within a luma macroblock, its place among its likes in the order of coding.
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

// The neighbours of a block, by those of its macroblock and by what has been decoded before it.
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

// Whether all neighbours that the mode cannot do without are available.
template <int modes>
inline bool allows(const int (&needs)[modes], int mode, int available) {
    return mode >= 0 && mode < modes && (needs[mode] & ~available) == 0;
}

} // namespace kelvara

#endif
