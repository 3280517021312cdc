// transform8x8.h - the 8x8 transforms of H.264.

#ifndef KELVARA_TRANSFORM8X8_H
#define KELVARA_TRANSFORM8X8_H

#include "../common/block8x8.h"

#include <utility>

namespace kelvara {

// Element (row, col) is at[row][col]; sums wrap around.
using Words8x8 = Kel32u[8][8];

inline Kel32u halved(Kel32u x, int times) {
    return static_cast<Kel32u>(static_cast<Kel32s>(x) >> times);
}

inline void transpose(Words8x8 &x) {
    for (int row = 1; row < 8; ++row) {
        for (int col = 0; col < row; ++col) std::swap(x[row][col], x[col][row]);
    }
}

// ITU-T H.264 8.5.13, the one-dimensional transform, of x[0][i] to x[7][i] for each i, in place.
inline void inverseColumns(Words8x8 &x) {
    for (int i = 0; i < 8; ++i) {
        const Kel32u sum04 = x[0][i] + x[4][i], diff04 = x[0][i] - x[4][i];
        const Kel32u sum26 = x[2][i] + halved(x[6][i], 1), diff26 = halved(x[2][i], 1) - x[6][i];
        const Kel32u even[4] = {sum04 + sum26, diff04 + diff26, diff04 - diff26, sum04 - sum26};

        const Kel32u x1 = x[1][i], x3 = x[3][i], x5 = x[5][i], x7 = x[7][i];
        const Kel32u a1 = x5 - x3 - x7 - halved(x7, 1);
        const Kel32u a3 = x1 + x7 - x3 - halved(x3, 1);
        const Kel32u a5 = x7 - x1 + x5 + halved(x5, 1);
        const Kel32u a7 = x3 + x5 + x1 + halved(x1, 1);
        const Kel32u odd[4] = {a7 - halved(a1, 2), halved(a3, 2) - a5, a3 + halved(a5, 2),
                               a1 + halved(a7, 2)};

        for (int k = 0; k < 4; ++k) {
            x[k][i] = even[k] + odd[k];
            x[7 - k][i] = even[k] - odd[k];
        }
    }
}

// The transposed flow graph, so that the coefficients are the products with the inverse's basis.
inline void forwardColumns(Words8x8 &x) {
    for (int i = 0; i < 8; ++i) {
        Kel32u sum[4], diff[4];
        for (int k = 0; k < 4; ++k) {
            sum[k] = x[k][i] + x[7 - k][i];
            diff[k] = x[k][i] - x[7 - k][i];
        }
        const Kel32u outer = sum[0] + sum[3], inner = sum[1] + sum[2];
        const Kel32u outerDiff = sum[0] - sum[3], innerDiff = sum[1] - sum[2];
        x[0][i] = outer + inner;
        x[2][i] = outerDiff + halved(innerDiff, 1);
        x[4][i] = outer - inner;
        x[6][i] = halved(outerDiff, 1) - innerDiff;

        const Kel32u b1 = diff[1] + diff[2] + diff[0] + halved(diff[0], 1);
        const Kel32u b3 = diff[0] - diff[3] - diff[2] - halved(diff[2], 1);
        const Kel32u b5 = diff[0] + diff[3] - diff[1] - halved(diff[1], 1);
        const Kel32u b7 = diff[1] - diff[2] + diff[3] + halved(diff[3], 1);
        x[1][i] = b1 + halved(b7, 2);
        x[3][i] = b3 + halved(b5, 2);
        x[5][i] = b5 - halved(b3, 2);
        x[7][i] = halved(b1, 2) - b7;
    }
}

// The transform of the rows, then of the columns, of a block. It is loaded transposed: the rows lie down
// then.
template <void (*columns)(Words8x8 &)>
class Transformed8x8 {
public:
    template <class T>
    explicit Transformed8x8(const Block8x8<T> &block) {
        for (int row = 0; row < 8; ++row) {
            for (int col = 0; col < 8; ++col) m_x[col][row] = static_cast<Kel32u>(block.at[8 * row + col]);
        }
        columns(m_x);
        transpose(m_x);
        columns(m_x);
    }

    int operator()(int row, int col) const { return static_cast<Kel32s>(m_x[row][col]); }

private:
    Words8x8 m_x;
};

// The residual of a block of scaled coefficients: the end of 8.5.13, with its rounding to whole samples.
class Residual8x8 {
public:
    template <class T>
    explicit Residual8x8(const Block8x8<T> &coeffs) : m_x(coeffs) {}

    int operator()(int row, int col) const {
        return static_cast<Kel32s>(static_cast<Kel32u>(m_x(row, col)) + 32) >> 6;
    }

private:
    Transformed8x8<inverseColumns> m_x;
};

} // namespace kelvara

#endif
