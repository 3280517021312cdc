// transform.h - the 8x8 integer transform of AVS (GB/T 20090.2), both ways.

#ifndef KELVARA_AVS_TRANSFORM_H
#define KELVARA_AVS_TRANSFORM_H

#include "../common/block8x8.h"

#include <utility>

namespace kelvara {

namespace avs {

// Rows 1, 3, 5 and 7 of the transform matrix, of which the right half is the left one mirrored and negative.
// The even rows are 8 8 8 8, 10 4 -4 -10, 8 -8 -8 8 and 4 -10 10 -4.
const int oddBasis[4][4] = {{10, 9, 6, 2}, {9, -2, -10, -6}, {6, -10, 2, 9}, {2, -6, 9, -10}};

// Element (row, col) is at[row][col]. From 16-bit elements no sum leaves 32 bits.
struct Elements {
    template <class T>
    explicit Elements(const Block8x8<T> &block) {
        for (int i = 0; i < 64; ++i) at[i / 8][i % 8] = block.at[i];
    }
    void transpose() {
        for (int row = 1; row < 8; ++row) {
            for (int col = 0; col < row; ++col) std::swap(at[row][col], at[col][row]);
        }
    }

    int at[8][8];
};

// The transform of each column; sums are divided by 2^shift and rounded.
inline void inverseColumns(Elements &x, int shift) {
    const int half = 1 << (shift - 1);
    for (int i = 0; i < 8; ++i) {
        const int x2 = x.at[2][i], x6 = x.at[6][i];
        const int sum04 = 8 * (x.at[0][i] + x.at[4][i]) + half, diff04 = 8 * (x.at[0][i] - x.at[4][i]) + half;
        const int outer = 10 * x2 + 4 * x6, inner = 4 * x2 - 10 * x6;
        const int even[4] = {sum04 + outer, diff04 + inner, diff04 - inner, sum04 - outer};
        int odd[4];
        for (int n = 0; n < 4; ++n) {
            odd[n] = oddBasis[0][n] * x.at[1][i] + oddBasis[1][n] * x.at[3][i] + oddBasis[2][n] * x.at[5][i] +
                     oddBasis[3][n] * x.at[7][i];
        }
        for (int n = 0; n < 4; ++n) {
            x.at[n][i] = (even[n] + odd[n]) >> shift;
            x.at[7 - n][i] = (even[n] - odd[n]) >> shift;
        }
    }
}

// The products of each column with the rows of the matrix.
inline void forwardColumns(Elements &x) {
    for (int i = 0; i < 8; ++i) {
        int sum[4], diff[4];
        for (int n = 0; n < 4; ++n) {
            sum[n] = x.at[n][i] + x.at[7 - n][i];
            diff[n] = x.at[n][i] - x.at[7 - n][i];
        }
        const int outer = sum[0] - sum[3], inner = sum[1] - sum[2];
        x.at[0][i] = 8 * (sum[0] + sum[3] + sum[1] + sum[2]);
        x.at[2][i] = 10 * outer + 4 * inner;
        x.at[4][i] = 8 * (sum[0] + sum[3] - sum[1] - sum[2]);
        x.at[6][i] = 4 * outer - 10 * inner;
        for (int k = 0; k < 4; ++k) {
            x.at[2 * k + 1][i] = oddBasis[k][0] * diff[0] + oddBasis[k][1] * diff[1] +
                                 oddBasis[k][2] * diff[2] + oddBasis[k][3] * diff[3];
        }
    }
}

// Rows first, then columns: the rounding depends on the order.
class Residual {
public:
    explicit Residual(const Block8x8<Kel16s> &coeffs) : m_x(coeffs) {
        m_x.transpose();
        inverseColumns(m_x, 3);
        m_x.transpose();
        inverseColumns(m_x, 7);
    }

    int operator()(int row, int col) const { return m_x.at[row][col]; }

private:
    Elements m_x;
};

// T * X * T' without the bits that the inverse, which divides by 2^10, does not need: the quantiser divides
// by the rest.
inline Block8x8<Kel32s> forwardTransformed(const Block8x8<Kel16s> &block) {
    Elements x(block);
    forwardColumns(x);
    x.transpose();
    forwardColumns(x);
    x.transpose();
    Block8x8<Kel32s> coeffs;
    for (int i = 0; i < 64; ++i) coeffs.at[i] = (x.at[i / 8][i % 8] + 16) >> 5;
    return coeffs;
}

} // namespace avs

} // namespace kelvara

#endif
