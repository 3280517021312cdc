// transform.h - the transforms of VC-1 (SMPTE 421M Annex A).

#ifndef KELVARA_VC1_TRANSFORM_H
#define KELVARA_VC1_TRANSFORM_H

#include "../common/samples.h"

#include <algorithm>
#include <cmath>

namespace kelvara {
namespace vc1 {

// ---- matrices --------------------------------------------------------------------

// Row k is the basis function of coefficient k.
template <int N>
struct Basis;

template <>
struct Basis<8> {
    static constexpr int at[8][8] = {
        {12, 12, 12, 12, 12, 12, 12, 12},     {16, 15, 9, 4, -4, -9, -15, -16},
        {16, 6, -6, -16, -16, -6, 6, 16},     {15, -4, -16, -9, 9, 16, 4, -15},
        {12, -12, -12, 12, 12, -12, -12, 12}, {9, -16, 4, 15, -15, -4, 16, -9},
        {6, -16, 16, -6, -6, 16, -16, 6},     {4, -9, 15, -16, 16, -15, 9, -4},
    };
};

template <>
struct Basis<4> {
    static constexpr int at[4][4] = {
        {17, 17, 17, 17},
        {22, 10, -10, -22},
        {17, -17, -17, 17},
        {10, -22, 22, -10},
    };
};

template <int N>
constexpr int norm(int k) {
    int sum = 0;
    for (int i = 0; i < N; ++i) sum += Basis<N>::at[k][i] * Basis<N>::at[k][i];
    return sum;
}

// ---- inverse ---------------------------------------------------------------------

// The residual of W x H coefficients, of which all outside nz are taken as 0. Sums stay within 26 bits for
// any coefficients.
template <int W, int H>
class Residual {
public:
    Residual(Samples<Kel16s> coeffs, KeliSize nz) {
        int lines[H][W];
        for (int row = 0; row < nz.height; ++row) inverseRow(coeffs.from(row, 0), nz.width, lines[row]);
        for (int row = 0; row < H / 2; ++row) inverseColumns(lines, nz.height, row);
    }

    int operator()(int row, int col) const { return m_values[row][col]; }

private:
    static void inverseRow(Samples<Kel16s> coeffs, int count, int (&line)[W]) {
        int sum[W];
        for (int col = 0; col < W; ++col) sum[col] = 4;
        for (int k = 0; k < count; ++k) {
            const int coeff = coeffs(0, k);
            for (int col = 0; col < W; ++col) sum[col] += coeff * Basis<W>::at[k][col];
        }
        for (int col = 0; col < W; ++col) line[col] = sum[col] >> 3;
    }

    // Rows `row` and H - 1 - row of all columns: basis functions are even and odd in turn. The lower half of
    // columns of 8 is rounded up a little more (C8).
    void inverseColumns(const int (&lines)[H][W], int count, int row) {
        int sums[2][W] = {}; // of the even and odd ones
        for (int k = 0; k < count; ++k) {
            const int factor = Basis<H>::at[k][row];
            for (int col = 0; col < W; ++col) sums[k % 2][col] += factor * lines[k][col];
        }
        for (int col = 0; col < W; ++col) {
            m_values[row][col] = (sums[0][col] + sums[1][col] + 64) >> 7;
            m_values[H - 1 - row][col] = (sums[0][col] - sums[1][col] + (H == 8 ? 65 : 64)) >> 7;
        }
    }

    int m_values[H][W];
};

// ---- forward ---------------------------------------------------------------------

// What the products with the basis functions of W x H blocks are multiplied by. All quotients have an odd
// denominator below 2^17, so that none falls on a half, and doubles are exact enough to round every one.
template <int W, int H>
struct Scales {
    constexpr Scales() : at() {
        for (int v = 0; v < H; ++v) {
            for (int u = 0; u < W; ++u) at[v][u] = 1024.0 / (norm<H>(v) * norm<W>(u));
        }
    }
    double at[H][W];
};

// Nearest integer; the value is no half.
inline int rounded(double value) {
    return static_cast<int>(value + std::copysign(0.5, value));
}

// The coefficients of a block of W x H differences. Sums stay within 30 bits.
template <int W, int H>
class Coefficients {
public:
    explicit Coefficients(Samples<Kel16s> block) {
        int lines[H][W];
        for (int row = 0; row < H; ++row) forwardRow(block.from(row, 0), lines[row]);
        for (int v = 0; v < H; ++v) forwardColumns(lines, v);
    }

    int operator()(int row, int col) const { return m_values[row][col]; }

private:
    static void forwardRow(Samples<Kel16s> block, int (&line)[W]) {
        int samples[W];
        for (int col = 0; col < W; ++col) samples[col] = block(0, col);
        for (int u = 0; u < W; ++u) {
            int sum = 0;
            for (int col = 0; col < W; ++col) sum += samples[col] * Basis<W>::at[u][col];
            line[u] = sum;
        }
    }

    void forwardColumns(const int (&lines)[H][W], int v) {
        static constexpr Scales<W, H> scales;
        int sum[W] = {};
        for (int row = 0; row < H; ++row) {
            for (int u = 0; u < W; ++u) sum[u] += Basis<H>::at[v][row] * lines[row][u];
        }
        for (int u = 0; u < W; ++u) m_values[v][u] = rounded(sum[u] * scales.at[v][u]);
    }

    int m_values[H][W];
};

} // namespace vc1
} // namespace kelvara

#endif
