// intradirections.h - intra prediction of ITU-T H.264 along the slanting directions.

#ifndef KELVARA_INTRADIRECTIONS_H
#define KELVARA_INTRADIRECTIONS_H

#include "intraborder.h"

#include <algorithm>

namespace kelvara {

// Blocks of 4x4 and 8x8 have all nine modes, a luma macroblock the first three and its plane.
enum IntraMode {
    Vertical,
    Horizontal,
    Mean,
    DiagonalDownLeft,
    DiagonalDownRight,
    VerticalRight,
    HorizontalDown,
    VerticalLeft,
    HorizontalUp
};
const int LumaPlane = 3;

// ---- directions -----------------------------------------------------------------------

// The border as one line from the lower left over the corner, which is 0, to the upper right. Beyond its ends
// the last sample goes on.
template <int N>
class BorderLine {
public:
    explicit BorderLine(const Border<N> &b) {
        for (int i = 1; i <= below; ++i) m_at[below - i] = b.left[std::min(i, N) - 1];
        m_at[below] = b.corner;
        for (int i = 1; i <= above; ++i) m_at[below + i] = b.upper[std::min(i, 2 * N) - 1];
    }

    int between(int i) const { return (sample(i) + sample(i + 1) + 1) >> 1; }
    int around(int i) const { return smooth(sample(i - 1), sample(i), sample(i + 1)); }

private:
    static constexpr int below = 3 * N / 2 + 1, above = 2 * N + 1;

    int sample(int i) const { return m_at[below + i]; }

    int m_at[below + 1 + above];
};

// 8.3.1.2.4 to 8.3.1.2.9 and their likes of 8.3.2.2
template <int N>
Square<N> directed(const BorderLine<N> &line, int mode) {
    switch (mode) {
        case DiagonalDownLeft:
            return Square<N>([&](int row, int col) { return line.around(row + col + 2); });
        case DiagonalDownRight:
            return Square<N>([&](int row, int col) { return line.around(col - row); });
        case VerticalRight:
            return Square<N>([&](int row, int col) {
                const int z = 2 * col - row, k = col - (row >> 1);
                return z < 0 ? line.around(z + 1) : z % 2 ? line.around(k) : line.between(k);
            });
        case HorizontalDown:
            return Square<N>([&](int row, int col) {
                const int z = 2 * row - col, k = row - (col >> 1);
                return z < 0 ? line.around(-z - 1) : z % 2 ? line.around(-k) : line.between(-k - 1);
            });
        case VerticalLeft:
            return Square<N>([&](int row, int col) {
                const int k = col + (row >> 1);
                return row % 2 ? line.around(k + 2) : line.between(k + 1);
            });
        default: // HorizontalUp
            return Square<N>([&](int row, int col) {
                const int k = row + (col >> 1);
                return col % 2 ? line.around(-k - 2) : line.between(-k - 2);
            });
    }
}

} // namespace kelvara

#endif
