// avsmodel.h - the equations of AVS (GB/T 20090.2) as matrices and sample by sample, x to the right and y
// down.

#ifndef KELVARA_AVSMODEL_H
#define KELVARA_AVSMODEL_H

#include "modelplane.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace avsmodel {

using Numbers = std::vector<long long>; // a block in raster order

// ---- transform and quantisers ---------------------------------------------------------

const int matrix[8][8] = {{8, 8, 8, 8, 8, 8, 8, 8},         {10, 9, 6, 2, -2, -6, -9, -10},
                          {10, 4, -4, -10, -10, -4, 4, 10}, {9, -2, -10, -6, 6, 10, 2, -9},
                          {8, -8, -8, 8, 8, -8, -8, 8},     {6, -10, 2, 9, -9, -2, 10, -6},
                          {4, -10, 10, -4, -4, 10, -10, 4}, {2, -6, 9, -10, 10, -9, 6, -2}};

// By QP.
const long long factors[64] = {32768, 36061, 38968, 42495, 46341, 50535, 55437, 60424, 32932, 35734, 38968,
                               42495, 46177, 50535, 55109, 59933, 65535, 35734, 38968, 42577, 46341, 50617,
                               55027, 60097, 32809, 35734, 38968, 42454, 46382, 50576, 55109, 60056, 65535,
                               35734, 38968, 42495, 46320, 50515, 55109, 60076, 65535, 35744, 38968, 42495,
                               46341, 50535, 55099, 60087, 65535, 35734, 38973, 42500, 46341, 50535, 55109,
                               60097, 32771, 35734, 38965, 42497, 46341, 50535, 55109, 60099};
const long long forwardFactors[64] = {
    32768, 29775, 27554, 25268, 23170, 21247, 19369, 17770, 16302, 15024, 13777, 12634, 11626,
    10624, 9742,  8958,  8192,  7512,  6889,  6305,  5793,  5303,  4878,  4467,  4091,  3756,
    3444,  3161,  2894,  2654,  2435,  2235,  2048,  1878,  1722,  1579,  1449,  1329,  1218,
    1117,  1024,  939,   861,   790,   724,   664,   609,   558,   512,   470,   430,   395,
    362,   332,   304,   279,   256,   235,   215,   197,   181,   166,   152,   140};

// The last QP of each shift of the factors.
inline int shiftOf(int qp) {
    int shift = 14;
    for (int last : {7, 16, 23, 32, 40, 48, 55}) shift -= qp > last;
    return shift;
}

inline long long floorOf(double x) {
    return static_cast<long long>(std::floor(x));
}

inline long long limited16(long long x) {
    return std::clamp(x, -32768LL, 32767LL);
}

inline Numbers dequantised(Numbers levels, int qp) {
    for (long long &x : levels)
        x = limited16(floorOf(static_cast<double>(x * factors[qp]) / (1 << shiftOf(qp)) + 0.5));
    return levels;
}

// Along the rows, rounded to eighths, then along the columns.
inline Numbers residual(const Numbers &coeffs) {
    Numbers half(64), result(64);
    for (int i = 0; i < 64; ++i) {
        long long sum = 0;
        for (int k = 0; k < 8; ++k) sum += matrix[k][i % 8] * coeffs[static_cast<size_t>(i / 8 * 8 + k)];
        half[static_cast<size_t>(i)] = floorOf(sum / 8.0 + 0.5);
    }
    for (int i = 0; i < 64; ++i) {
        long long sum = 0;
        for (int k = 0; k < 8; ++k) sum += matrix[k][i / 8] * half[static_cast<size_t>(8 * k + i % 8)];
        result[static_cast<size_t>(i)] = floorOf(sum / 128.0 + 0.5);
    }
    return result;
}

inline Numbers transformed(const Numbers &block) {
    Numbers coeffs(64);
    for (int i = 0; i < 64; ++i) {
        long long sum = 0;
        for (int k = 0; k < 64; ++k)
            sum += matrix[i / 8][k / 8] * matrix[i % 8][k % 8] * block[static_cast<size_t>(k)];
        coeffs[static_cast<size_t>(i)] = floorOf(sum / 32.0 + 0.5);
    }
    return coeffs;
}

// The norm of a row is the sum of its squares; the correction is the first norm over those of both rows.
inline long long norm(int v, int u) {
    double product = 1;
    for (int k : {v, u}) {
        double sum = 0;
        for (int x : matrix[k]) sum += x * x;
        product *= 512 / sum;
    }
    return std::llround(32768 * product);
}

inline long long level(long long coeff, int i, int qp, bool intra) {
    const long long magnitude = (std::llabs(coeff) * norm(i / 8, i % 8) + 262144) / 524288;
    const long long sum = magnitude * forwardFactors[qp] + (intra ? 327680 / 31 : 327680 / 62);
    return limited16(coeff < 0 ? -(sum / 32768) : sum / 32768);
}

inline Numbers quantised(Numbers coeffs, int qp, bool intra) {
    for (int i = 0; i < 64; ++i) {
        long long &x = coeffs[static_cast<size_t>(i)];
        x = level(x, i, qp, intra);
    }
    return coeffs;
}

// ---- reference samples ------------------------------------------------------------------

const int hasUpper = 1, hasLeft = 2, hasCorner = 32, hasUpperRight = 64;

// r is the row above the block, c the column to its left; 0 is the corner, 1 to 8 stand beside the block.
struct References {
    std::optional<int> r[18], c[18];
    bool corner = false;
};

// May block k of a luma macroblock use the sample at (x, y) of the macroblock?
inline bool mayUse(int k, int x, int y, int bits) {
    if (y < 0) return (bits & (x < 0 ? hasCorner : x < 16 ? hasUpper : hasUpperRight)) != 0;
    if (x < 0) return y < 16 && bits & hasLeft;
    return x < 16 && y < 16 && y / 8 * 2 + x / 8 < k;
}

inline void extend(std::optional<int> (&side)[18], std::optional<int> corner) {
    for (int i = 9; i < 18; ++i) {
        if (!side[i]) side[i] = side[i - 1];
    }
    side[0] = corner ? corner : side[1];
}

// far: the samples beyond the block's ends count; chroma has none.
template <class MayUse>
References referencesAt(const ModelPlane &plane, int x0, int y0, bool far, MayUse mayUse) {
    References p;
    for (int i = 1; i <= (far ? 16 : 8); ++i) {
        if (mayUse(x0 + i - 1, y0 - 1)) p.r[i] = plane.at(x0 + i - 1, y0 - 1);
        if (mayUse(x0 - 1, y0 + i - 1)) p.c[i] = plane.at(x0 - 1, y0 + i - 1);
    }
    std::optional<int> corner;
    if (mayUse(x0 - 1, y0 - 1)) corner = plane.at(x0 - 1, y0 - 1);
    p.corner = corner.has_value();
    extend(p.r, corner);
    extend(p.c, corner);
    return p;
}

inline References lumaReferences(const ModelPlane &plane, int k, int bits) {
    return referencesAt(plane, k % 2 * 8, k / 2 * 8, true,
                        [=](int x, int y) { return mayUse(k, x, y, bits); });
}

inline References chromaReferences(const ModelPlane &plane) {
    return referencesAt(plane, 0, 0, false, [](int, int) { return true; });
}

// ---- prediction -------------------------------------------------------------------------

inline bool lumaAllowed(const References &p, int mode) {
    const bool upper = p.r[1].has_value(), left = p.c[1].has_value();
    switch (mode) {
        case 0:
            return upper;
        case 1:
            return left;
        case 2:
            return true;
        case 3:
            return upper && left;
        case 4:
            return upper && left && p.corner;
        default:
            return false;
    }
}

inline int filtered(const std::optional<int> (&side)[18], int i) {
    return (side[i - 1].value() + 2 * side[i].value() + side[i + 1].value() + 2) >> 2;
}

inline int dcSample(const References &p, int x, int y) {
    const bool upper = p.r[1].has_value(), left = p.c[1].has_value();
    if (upper && left) return (filtered(p.r, x + 1) + filtered(p.c, y + 1)) >> 1;
    return upper ? filtered(p.r, x + 1) : left ? filtered(p.c, y + 1) : 128;
}

inline int lumaSample(const References &p, int mode, int x, int y) {
    switch (mode) {
        case 0:
            return p.r[x + 1].value();
        case 1:
            return p.c[y + 1].value();
        case 2:
            return dcSample(p, x, y);
        case 3: {
            const int i = x + y + 2; // the last one stands at the end of both sides
            return (filtered(p.r, i) + filtered(p.c, i)) >> 1;
        }
        default:
            if (x == y) return (p.c[1].value() + 2 * p.r[0].value() + p.r[1].value() + 2) >> 2;
            return x > y ? filtered(p.r, x - y) : filtered(p.c, y - x);
    }
}

inline int planeSample(const References &p, int x, int y) {
    int ih = 0, iv = 0;
    for (int i = 0; i < 4; ++i) {
        ih += (i + 1) * (p.r[5 + i].value() - p.r[3 - i].value());
        iv += (i + 1) * (p.c[5 + i].value() - p.c[3 - i].value());
    }
    const int ia = (p.r[8].value() + p.c[8].value()) * 16;
    const int ib = (17 * ih + 16) >> 5, ic = (17 * iv + 16) >> 5;
    return std::clamp((ia + (x - 3) * ib + (y - 3) * ic + 16) >> 5, 0, 255);
}

inline int chromaSample(const References &p, int mode, int x, int y) {
    return mode == 0   ? dcSample(p, x, y)
           : mode == 1 ? p.c[y + 1].value()
           : mode == 2 ? p.r[x + 1].value()
                       : planeSample(p, x, y);
}

} // namespace avsmodel

#endif
