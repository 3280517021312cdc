// intraborder.h - the samples around a block that ITU-T H.264 predicts it from.

#ifndef KELVARA_INTRABORDER_H
#define KELVARA_INTRABORDER_H

#include "../common/neighbours.h"
#include "../common/predictedblock.h"

namespace kelvara {

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
