// interpolate.h - samples between samples of H.264: kernels.

#ifndef KELVARA_INTERPOLATE_H
#define KELVARA_INTERPOLATE_H

#include "../common/samples.h"

#include <algorithm>

namespace kelvara {

const int maxBlock = 16; // samples across and down

inline bool isBlock(KeliSize size) {
    return size.width >= 1 && size.width <= maxBlock && size.height >= 1 && size.height <= maxBlock;
}

// A block between two steps of its prediction.
struct PredictedBlock {
    int operator()(int row, int col) const { return at[row][col]; }

    Kel8u at[maxBlock][maxBlock];
};

template <class Src, class Dst>
inline void copyBlock(Src src, Dst dst, KeliSize size) {
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col) dst.set(row, col, src(row, col));
    }
}

// A block with rows outside of the picture, which have the samples of the nearest row in it.
template <class Block>
class BoundedRows {
public:
    BoundedRows(Block block, int first, int last) : m_block(block), m_first(first), m_last(last) {}

    int operator()(int row, int col) const { return m_block(std::clamp(row, m_first, m_last), col); }

private:
    Block m_block;
    int m_first, m_last; // rows of the block that are the picture's first and last one
};

// ---- luma ------------------------------------------------------------------------

// at(0) and at(1) are the neighbours of the position.
template <class At>
inline int sixTaps(At at) {
    return at(-2) - 5 * at(-1) + 20 * at(0) + 20 * at(1) - 5 * at(2) + at(3);
}

inline Kel8u roundedSample(int sum, int shift) {
    return static_cast<Kel8u>(std::clamp((sum + (1 << (shift - 1))) >> shift, 0, 255));
}

// ITU-T H.264 8.4.2.2.1: the samples b, h and j. In the clause's order of the sums, which are exact, the rows
// come first.
template <class Src>
inline void halfRight(Src src, KeliSize size, PredictedBlock &out) {
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col)
            out.at[row][col] = roundedSample(sixTaps([&](int k) { return src(row, col + k); }), 5);
    }
}

template <class Src>
inline void halfDown(Src src, KeliSize size, PredictedBlock &out) {
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col)
            out.at[row][col] = roundedSample(sixTaps([&](int k) { return src(row + k, col); }), 5);
    }
}

template <class Src>
inline void halfBoth(Src src, KeliSize size, PredictedBlock &out) {
    Kel16s across[maxBlock + 5][maxBlock]; // from 2 rows above the block on
    for (int row = 0; row < size.height + 5; ++row) {
        for (int col = 0; col < size.width; ++col)
            across[row][col] = static_cast<Kel16s>(sixTaps([&](int k) { return src(row - 2, col + k); }));
    }
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col)
            out.at[row][col] = roundedSample(sixTaps([&](int k) { return across[row + 2 + k][col]; }), 10);
    }
}

// x and y are 0, 2 or 4 quarters of a sample, so that the position is a full or a half sample.
template <class Src>
inline void atHalfSample(Src src, int x, int y, KeliSize size, PredictedBlock &out) {
    const int right = x / 4, down = y / 4;
    const auto moved = [=](int row, int col) { return src(row + down, col + right); };
    if (x == 2 && y == 2) {
        halfBoth(moved, size, out);
    } else if (x == 2) {
        halfRight(moved, size, out);
    } else if (y == 2) {
        halfDown(moved, size, out);
    } else {
        for (int row = 0; row < size.height; ++row) {
            for (int col = 0; col < size.width; ++col) out.at[row][col] = static_cast<Kel8u>(moved(row, col));
        }
    }
}

inline void meanInto(PredictedBlock &block, const PredictedBlock &other, KeliSize size) {
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col)
            block.at[row][col] = static_cast<Kel8u>((block.at[row][col] + other.at[row][col] + 1) >> 1);
    }
}

// Samples at odd quarters are the mean of two at half samples: of the neighbours to both sides, and where
// both directions are odd, of the nearest b (or s) and h (or m).
template <class Src, class Dst>
inline void interpolateLuma(Src src, Dst dst, int dx, int dy, KeliSize size) {
    if (dx == 0 && dy == 0) return copyBlock(src, dst, size);
    PredictedBlock first, second;
    if (dx % 2 && dy % 2) {
        atHalfSample(src, 2, dy / 2 * 4, size, first);
        atHalfSample(src, dx / 2 * 4, 2, size, second);
    } else {
        atHalfSample(src, dx / 2 * 2, dy / 2 * 2, size, first);
        if (dx % 2 || dy % 2) atHalfSample(src, (dx + 1) / 2 * 2, (dy + 1) / 2 * 2, size, second);
    }
    if (dx % 2 || dy % 2) meanInto(first, second, size);
    copyBlock(first, dst, size);
}

// ---- chroma ----------------------------------------------------------------------

// ITU-T H.264 8.4.2.2.2. What would have the weight 0 is not read.
template <class Src, class Dst>
inline void interpolateChroma(Src src, Dst dst, int dx, int dy, KeliSize size) {
    const int right = dx != 0, down = dy != 0;
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col) {
            const int upper = (8 - dx) * src(row, col) + dx * src(row, col + right);
            const int lower = (8 - dx) * src(row + down, col) + dx * src(row + down, col + right);
            dst.set(row, col, ((8 - dy) * upper + dy * lower + 32) >> 6);
        }
    }
}

} // namespace kelvara

#endif
