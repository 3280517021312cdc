// vc1model.h - the matrices of VC-1 worked out from the angles of the cosine transform, and both transforms
// in whole numbers of any size.

#ifndef KELVARA_VC1MODEL_H
#define KELVARA_VC1MODEL_H

#include <cmath>
#include <vector>

namespace vc1model {

// By row, then column.
using Plane = std::vector<std::vector<long long>>;

inline Plane plane(int width, int height) {
    return Plane(height, std::vector<long long>(width));
}

// floor(x / 2^n)
inline long long cut(long long x, int n) {
    return static_cast<long long>(std::floor(static_cast<double>(x) / static_cast<double>(1LL << n)));
}

// The whole number in the place of the cosine of step * pi / 16 for 8 points and of step * pi / 8 for 4.
inline int cosine(int points, int step) {
    static const int of8[] = {12, 16, 16, 15, 12, 9, 6, 4, 0}, of4[] = {17, 22, 17, 10, 0};
    const int turn = 4 * points;
    step %= turn;
    if (step > turn / 2) step = turn - step;
    const int sign = step > turn / 4 ? -1 : 1;
    if (sign < 0) step = turn / 2 - step;
    return sign * (points == 8 ? of8[step] : of4[step]);
}

// Sample n of the basis function of coefficient k.
inline int basis(int points, int k, int n) {
    return cosine(points, (2 * n + 1) * k);
}

inline long long norm(int points, int k) {
    long long sum = 0;
    for (int n = 0; n < points; ++n) sum += basis(points, k, n) * basis(points, k, n);
    return sum;
}

// SMPTE 421M Annex A with its two roundings.
inline Plane inverse(const Plane &coeffs) {
    const int height = static_cast<int>(coeffs.size()), width = static_cast<int>(coeffs[0].size());
    Plane e = plane(width, height), r = plane(width, height);
    for (int v = 0; v < height; ++v) {
        for (int x = 0; x < width; ++x) {
            for (int u = 0; u < width; ++u) e[v][x] += coeffs[v][u] * basis(width, u, x);
            e[v][x] = cut(e[v][x] + 4, 3);
        }
    }
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int v = 0; v < height; ++v) r[y][x] += basis(height, v, y) * e[v][x];
            r[y][x] = cut(r[y][x] + (height == 8 && y > 3 ? 65 : 64), 7);
        }
    }
    return r;
}

// The product with both matrices.
inline Plane product(const Plane &block) {
    const int height = static_cast<int>(block.size()), width = static_cast<int>(block[0].size());
    Plane sums = plane(width, height);
    for (int v = 0; v < height; ++v) {
        for (int u = 0; u < width; ++u) {
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x)
                    sums[v][u] += block[y][x] * basis(height, v, y) * basis(width, u, x);
            }
        }
    }
    return sums;
}

// a / b to the nearest integer.
inline long long nearest(long long a, long long b) {
    const long long magnitude = (2 * std::llabs(a) + b) / (2 * b);
    return a < 0 ? -magnitude : magnitude;
}

inline Plane forward(const Plane &block) {
    Plane result = product(block);
    const int height = static_cast<int>(block.size()), width = static_cast<int>(block[0].size());
    for (int v = 0; v < height; ++v) {
        for (int u = 0; u < width; ++u)
            result[v][u] = nearest(1024 * result[v][u], norm(height, v) * norm(width, u));
    }
    return result;
}

} // namespace vc1model

#endif
