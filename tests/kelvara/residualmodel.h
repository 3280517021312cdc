// residualmodel.h - the equations of ITU-T H.264 8.5 for the residual of a block, in wide integers.

#ifndef KELVARA_RESIDUALMODEL_H
#define KELVARA_RESIDUALMODEL_H

#include <vector>

#include "keltypes.h"

using Numbers = std::vector<long long>; // a square matrix, row by row

struct ModelScaling {
    int qp;
    const Kel16s *table; // null: flat
    bool bypass;
};

// ---- 8.5.9 -----------------------------------------------------------------------------

inline int normAdjust(int n, int m, int i, int j) {
    static const int v4[6][3] = {{10, 16, 13}, {11, 18, 14}, {13, 20, 16},
                                 {14, 23, 18}, {16, 25, 20}, {18, 29, 23}};
    static const int v8[6][6] = {{20, 18, 32, 19, 25, 24}, {22, 19, 35, 21, 28, 26},
                                 {26, 23, 42, 24, 33, 31}, {28, 25, 45, 26, 35, 33},
                                 {32, 28, 51, 30, 40, 38}, {36, 32, 58, 34, 46, 43}};
    if (n == 4) return v4[m][i % 2 == 0 && j % 2 == 0 ? 0 : i % 2 == 1 && j % 2 == 1 ? 1 : 2];
    if (i % 4 == 0 && j % 4 == 0) return v8[m][0];
    if (i % 2 == 1 && j % 2 == 1) return v8[m][1];
    if (i % 4 == 2 && j % 4 == 2) return v8[m][2];
    if ((i % 4 == 0 && j % 2 == 1) || (i % 2 == 1 && j % 4 == 0)) return v8[m][3];
    if ((i % 4 == 0 && j % 4 == 2) || (i % 4 == 2 && j % 4 == 0)) return v8[m][4];
    return v8[m][5];
}

inline long long levelScaleAt(int n, const ModelScaling &s, int i, int j) {
    return s.table ? s.table[n * i + j] : 16 * normAdjust(n, s.qp % 6, i, j);
}

inline long long times2To(long long value, int power) {
    return value * (1ll << power);
}

// ---- transforms ------------------------------------------------------------------------

inline void inverse4(long long *d, int step) {
    const long long e0 = d[0] + d[2 * step], e1 = d[0] - d[2 * step];
    const long long e2 = (d[step] >> 1) - d[3 * step], e3 = d[step] + (d[3 * step] >> 1);
    d[0] = e0 + e3;
    d[step] = e1 + e2;
    d[2 * step] = e1 - e2;
    d[3 * step] = e0 - e3;
}

inline void inverse8(long long *d, int step) {
    const auto in = [&](int k) { return d[k * step]; };
    long long a[8], b[8];
    a[0] = in(0) + in(4);
    a[1] = -in(3) + in(5) - in(7) - (in(7) >> 1);
    a[2] = in(0) - in(4);
    a[3] = in(1) + in(7) - in(3) - (in(3) >> 1);
    a[4] = (in(2) >> 1) - in(6);
    a[5] = -in(1) + in(7) + in(5) + (in(5) >> 1);
    a[6] = in(2) + (in(6) >> 1);
    a[7] = in(3) + in(5) + in(1) + (in(1) >> 1);
    b[0] = a[0] + a[6];
    b[1] = a[1] + (a[7] >> 2);
    b[2] = a[2] + a[4];
    b[3] = a[3] + (a[5] >> 2);
    b[4] = a[2] - a[4];
    b[5] = (a[3] >> 2) - a[5];
    b[6] = a[0] - a[6];
    b[7] = a[7] - (a[1] >> 2);
    for (int k = 0; k < 4; ++k) {
        d[k * step] = b[2 * k] + b[7 - 2 * k];
        d[(7 - k) * step] = b[2 * k] - b[7 - 2 * k];
    }
}

// Rows, columns, rounding.
inline Numbers inverseTransformed(int n, Numbers d) {
    for (int i = 0; i < n; ++i) n == 4 ? inverse4(&d[n * i], 1) : inverse8(&d[n * i], 1);
    for (int i = 0; i < n; ++i) n == 4 ? inverse4(&d[i], n) : inverse8(&d[i], n);
    for (long long &x : d) x = (x + 32) >> 6;
    return d;
}

// c times the matrix from both sides; 8.5.10 and 8.5.11.1.
inline Numbers hadamard(int n, const Numbers &c) {
    static const int four[4][4] = {{1, 1, 1, 1}, {1, 1, -1, -1}, {1, -1, -1, 1}, {1, -1, 1, -1}};
    const auto h = [n](int i, int j) { return n == 4 ? four[i][j] : i && j ? -1 : 1; };
    Numbers f(c.size());
    for (int i = 0; i < n * n; ++i) {
        for (int k = 0; k < n * n; ++k) f[i] += h(i / n, k / n) * c[k] * h(k % n, i % n);
    }
    return f;
}

// ---- residuals -------------------------------------------------------------------------

// 8.5.12 and 8.5.13. dc: the scaled DC coefficient that came by another way, or null.
inline Numbers residualOf(int n, Numbers c, const ModelScaling &s, const long long *dc) {
    if (s.bypass) {
        if (dc) c[0] = *dc;
        return c;
    }
    const int bits = n == 4 ? 4 : 6;
    for (int i = 0; i < n * n; ++i) {
        const long long product = c[i] * levelScaleAt(n, s, i / n, i % n);
        c[i] = s.qp / 6 >= bits ? times2To(product, s.qp / 6 - bits)
                                : (product + (1 << (bits - 1 - s.qp / 6))) >> (bits - s.qp / 6);
    }
    if (dc) c[0] = *dc;
    return inverseTransformed(n, c);
}

// 8.5.10
inline Numbers scaledLumaDC(const Numbers &c, const ModelScaling &s) {
    if (s.bypass) return c;
    Numbers dc = hadamard(4, c);
    for (long long &x : dc) {
        const long long product = x * levelScaleAt(4, s, 0, 0);
        x = s.qp >= 36 ? times2To(product, s.qp / 6 - 6)
                       : (product + (1 << (5 - s.qp / 6))) >> (6 - s.qp / 6);
    }
    return dc;
}

// 8.5.11.2 for 4:2:0
inline Numbers scaledChromaDC(const Numbers &c, const ModelScaling &s) {
    if (s.bypass) return c;
    Numbers dc = hadamard(2, c);
    for (long long &x : dc) x = times2To(x * levelScaleAt(4, s, 0, 0), s.qp / 6) >> 5;
    return dc;
}

// 8.5.15
inline void addUp(int n, Numbers &r, bool vertical, bool horizontal) {
    const Numbers from = r;
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            long long sum = 0;
            for (int k = 0; k <= (vertical ? i : horizontal ? j : -1); ++k)
                sum += vertical ? from[n * k + j] : from[n * i + k];
            if (vertical || horizontal) r[n * i + j] = sum;
        }
    }
}

#endif
