// intraprediction.h - the intra prediction of AVS (GB/T 20090.2) from the samples around a block of 8x8.

#ifndef KELVARA_AVS_INTRAPREDICTION_H
#define KELVARA_AVS_INTRAPREDICTION_H

#include "../common/predictedblock.h"

namespace kelvara {

namespace avs {

enum LumaMode { Vertical, Horizontal, Mean, DownLeft, DownRight };

// The neighbours that each mode cannot do without.
const int lumaNeeds[5] = {Upper, Left, 0, Upper | Left, AllAround};

// Beside UpperRight of the common bits: the samples to the lower left of the block have been decoded.
const int LowerLeft = 128;

// Block k of a macroblock. Below its left neighbour there is something for the first block alone: the lower
// half of the macroblock to the left.
inline int neighboursOf(int k, int macroblock) {
    const int around = kelvara::neighboursOf(BlockPlace<8>(k), macroblock);
    return k == 0 && around & Left ? around | LowerLeft : around;
}

// ---- samples ----------------------------------------------------------------------------

// The samples along one side of a block: 0 to 7 beside it, 8 to 15 beyond its end. -1 is the corner.
class Side {
public:
    int operator[](int i) const { return m_at[i + 1]; }
    int around(int i) const { return smooth(m_at[i], m_at[i + 1], m_at[i + 2]); }

    // Reads sample(0) to sample(count - 1); those that are missing are the nearest one.
    template <class Sample>
    void read(int count, Sample sample) {
        for (int i = 0; i < count; ++i) m_at[i + 1] = sample(i);
        m_at[0] = m_at[1];
        for (int i = count; i <= 16; ++i) m_at[i + 1] = m_at[count];
    }
    void setCorner(int corner) { m_at[0] = corner; }

private:
    int m_at[18] = {}; // zeros if the side is not available
};

// Only what is available is read.
struct Border {
    Border(Samples<Kel8u> block, int available) : neighbours(available) {
        if (available & Upper)
            upper.read(available & UpperRight ? 16 : 8, [&](int i) { return block(-1, i); });
        if (available & Left) left.read(available & LowerLeft ? 16 : 8, [&](int i) { return block(i, -1); });
        if (!(available & Corner)) return;
        corner = block(-1, -1);
        upper.setCorner(corner);
        left.setCorner(corner);
    }

    bool has(int bits) const { return (neighbours & bits) == bits; }

    int neighbours;
    Side upper, left;
    int corner = 0;
};

// ---- predictions ------------------------------------------------------------------------

// DC: each sample is the mean of the smoothed ones at the head of its column and of its row, or the one that
// there is; mid-grey without both.
inline Square<8> meanAround(const Border &b) {
    if (b.has(Upper | Left))
        return Square<8>([&b](int row, int col) { return (b.upper.around(col) + b.left.around(row)) >> 1; });
    if (b.has(Upper)) return Square<8>([&b](int, int col) { return b.upper.around(col); });
    if (b.has(Left)) return Square<8>([&b](int row, int) { return b.left.around(row); });
    return Square<8>([](int, int) { return 128; });
}

inline Square<8> downLeft(const Border &b) {
    return Square<8>([&b](int row, int col) {
        const int i = row + col + 1;
        return (b.upper.around(i) + b.left.around(i)) >> 1;
    });
}

inline Square<8> downRight(const Border &b) {
    const int middle = smooth(b.left[0], b.corner, b.upper[0]);
    return Square<8>([&b, middle](int row, int col) {
        if (row == col) return middle;
        return col > row ? b.upper.around(col - row - 1) : b.left.around(row - col - 1);
    });
}

// REQUIRES: a mode that the neighbours allow.
inline Square<8> predictedLuma(const Border &border, int mode) {
    switch (mode) {
        case Vertical:
            return fromAbove<8>(border);
        case Horizontal:
            return fromLeft<8>(border);
        case Mean:
            return meanAround(border);
        case DownLeft:
            return downLeft(border);
        default:
            return downRight(border);
    }
}

// Of the samples beyond the ends of the sides none is looked at: REQUIRES a border without UpperRight and
// LowerLeft.
inline Square<8> predictedChroma(const Border &border, int mode) {
    switch (mode) {
        case ChromaMean:
            return meanAround(border);
        case ChromaHorizontal:
            return fromLeft<8>(border);
        case ChromaVertical:
            return fromAbove<8>(border);
        default:
            return planeThrough<8>(border);
    }
}

} // namespace avs

} // namespace kelvara

#endif
