// h264model.h - the transforms and quantisers of H.264 as matrices and exact fractions, and data for them.

#ifndef KELVARA_H264MODEL_H
#define KELVARA_H264MODEL_H

#include "kelvara_test.h"

#include <cmath>
#include <vector>

namespace h264 {

using Numbers = std::vector<long long>; // a block in raster order

// ---- tables -----------------------------------------------------------------------------

// By QP modulo 6 and raster position.
const int normAdjust4x4[6][16] = {{10, 13, 10, 13, 13, 16, 13, 16, 10, 13, 10, 13, 13, 16, 13, 16},
                                  {11, 14, 11, 14, 14, 18, 14, 18, 11, 14, 11, 14, 14, 18, 14, 18},
                                  {13, 16, 13, 16, 16, 20, 16, 20, 13, 16, 13, 16, 16, 20, 16, 20},
                                  {14, 18, 14, 18, 18, 23, 18, 23, 14, 18, 14, 18, 18, 23, 18, 23},
                                  {16, 20, 16, 20, 20, 25, 20, 25, 16, 20, 16, 20, 20, 25, 20, 25},
                                  {18, 23, 18, 23, 23, 29, 23, 29, 18, 23, 18, 23, 23, 29, 23, 29}};

const int forward4x4[6][16] = {
    {13107, 8066, 13107, 8066, 8066, 5243, 8066, 5243, 13107, 8066, 13107, 8066, 8066, 5243, 8066, 5243},
    {11916, 7490, 11916, 7490, 7490, 4660, 7490, 4660, 11916, 7490, 11916, 7490, 7490, 4660, 7490, 4660},
    {10082, 6554, 10082, 6554, 6554, 4194, 6554, 4194, 10082, 6554, 10082, 6554, 6554, 4194, 6554, 4194},
    {9362, 5825, 9362, 5825, 5825, 3647, 5825, 3647, 9362, 5825, 9362, 5825, 5825, 3647, 5825, 3647},
    {8192, 5243, 8192, 5243, 5243, 3355, 5243, 3355, 8192, 5243, 8192, 5243, 5243, 3355, 5243, 3355},
    {7282, 4559, 7282, 4559, 4559, 2893, 4559, 2893, 7282, 4559, 7282, 4559, 4559, 2893, 4559, 2893}};

// The first four rows and columns; both repeat.
const int normAdjust8x8[6][16] = {{20, 19, 25, 19, 19, 18, 24, 18, 25, 24, 32, 24, 19, 18, 24, 18},
                                  {22, 21, 28, 21, 21, 19, 26, 19, 28, 26, 35, 26, 21, 19, 26, 19},
                                  {26, 24, 33, 24, 24, 23, 31, 23, 33, 31, 42, 31, 24, 23, 31, 23},
                                  {28, 26, 35, 26, 26, 25, 33, 25, 35, 33, 45, 33, 26, 25, 33, 25},
                                  {32, 30, 40, 30, 30, 28, 38, 28, 40, 38, 51, 38, 30, 28, 38, 28},
                                  {36, 34, 46, 34, 34, 32, 43, 32, 46, 43, 58, 43, 34, 32, 43, 32}};

const int forward8x8[6][16] = {
    {13107, 12222, 16777, 12222, 12222, 11428, 15481, 11428, 16777, 15481, 20972, 15481, 12222, 11428, 15481,
     11428},
    {11916, 11058, 14980, 11058, 11058, 10826, 14290, 10826, 14980, 14290, 19174, 14290, 11058, 10826, 14290,
     10826},
    {10082, 9675, 12710, 9675, 9675, 8943, 11985, 8943, 12710, 11985, 15978, 11985, 9675, 8943, 11985, 8943},
    {9362, 8931, 11984, 8931, 8931, 8228, 11259, 8228, 11984, 11259, 14913, 11259, 8931, 8228, 11259, 8228},
    {8192, 7740, 10486, 7740, 7740, 7346, 9777, 7346, 10486, 9777, 13159, 9777, 7740, 7346, 9777, 7346},
    {7282, 6830, 9118, 6830, 6830, 6428, 8640, 6428, 9118, 8640, 11570, 8640, 6830, 6428, 8640, 6428}};

inline int of8x8(const int (&quarter)[16], int i) {
    return quarter[4 * (i / 8 % 4) + i % 4];
}

// ---- transforms -------------------------------------------------------------------------

// A matrix of `size` columns, by rows.
struct Matrix {
    int size;
    Numbers at;
};

const Matrix core = {4, {1, 1, 1, 1, 2, 1, -1, -2, 1, -1, -1, 1, 1, -2, 2, -1}};
const Matrix hadamard4 = {4, {1, 1, 1, 1, 1, 1, -1, -1, 1, -1, -1, 1, 1, -1, 1, -1}};
const Matrix hadamard2 = {2, {1, 1, 1, -1}};

// left * block * right transposed
inline Numbers product(const Matrix &left, const Numbers &block, const Matrix &right) {
    const int rows = left.size, cols = right.size;
    Numbers result(block.size());
    for (int v = 0; v < rows; ++v) {
        for (int u = 0; u < cols; ++u) {
            for (int i = 0; i < rows * cols; ++i)
                result[v * cols + u] +=
                    left.at[v * rows + i / cols] * block[i] * right.at[u * cols + i % cols];
        }
    }
    return result;
}

inline Numbers transformedDC(const Numbers &dc) {
    if (dc.size() == 16) return product(hadamard4, dc, hadamard4);
    return product(dc.size() == 8 ? hadamard4 : hadamard2, dc, hadamard2);
}

inline long long floorOf(double x) {
    return static_cast<long long>(std::floor(x));
}

// The equations of the inverse transform, by the numbers of ITU-T H.264 8.5.12.2.
inline void inverseLine(long long *d, int step) {
    const long long e[4] = {d[0] + d[2 * step], d[0] - d[2 * step], floorOf(d[step] / 2.0) - d[3 * step],
                            d[step] + floorOf(d[3 * step] / 2.0)};
    d[0] = e[0] + e[3];
    d[step] = e[1] + e[2];
    d[2 * step] = e[1] - e[2];
    d[3 * step] = e[0] - e[3];
}

// Scaled coefficients to the residual.
inline Numbers residual4x4(Numbers d) {
    for (int row = 0; row < 4; ++row) inverseLine(&d[4 * row], 1);
    for (int col = 0; col < 4; ++col) inverseLine(&d[col], 4);
    for (long long &x : d) x = floorOf((x + 32) / 64.0);
    return d;
}

// ---- scaling ----------------------------------------------------------------------------

inline double power(int qp) {
    return std::pow(2.0, qp / 6);
}

// The level of a coefficient: a third or a sixth of the step is added to its magnitude.
inline long long level(long long c, long long factor, int shift, bool intra) {
    const long long step = 1LL << shift, magnitude = (std::llabs(c) * factor + step / (intra ? 3 : 6)) / step;
    return c < 0 ? -magnitude : magnitude;
}

// scale holds 16 times the steps of a flat list, or those of any other list.
inline Numbers scaled4x4(Numbers c, int qp, const Numbers &scale) {
    for (int i = 0; i < 16; ++i) c[i] = floorOf(c[i] * scale[i] * power(qp) / 16 + 0.5);
    return c;
}

inline Numbers scaled8x8(Numbers c, int qp, const Numbers &scale) {
    for (int i = 0; i < 64; ++i) c[i] = floorOf(c[i] * scale[i] * power(qp) / 64 + 0.5);
    return c;
}

// Luma DC, chroma DC of 4:2:2 and, with its other rounding, of 4:2:0.
inline Numbers scaledDC(const Numbers &levels, int qp, long long scale) {
    Numbers dc = transformedDC(levels);
    for (long long &x : dc)
        x = dc.size() == 4 ? floorOf(x * scale * power(qp) / 32) : floorOf(x * scale * power(qp) / 64 + 0.5);
    return dc;
}

inline Numbers flat4x4(int qp) {
    Numbers scale(16);
    for (int i = 0; i < 16; ++i) scale[i] = 16 * normAdjust4x4[qp % 6][i];
    return scale;
}

inline Numbers forwardFlat4x4(int qp) {
    return Numbers(forward4x4[qp % 6], forward4x4[qp % 6] + 16);
}

inline long long limited(long long x, long long low, long long high) {
    return x < low ? low : x > high ? high : x;
}

template <class T>
long long limitedTo(long long x) {
    return limited(x, std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
}

// ---- data -------------------------------------------------------------------------------

// Uniform between -limit and limit.
inline Numbers randomNumbers(std::mt19937 &generator, int n, long long limit) {
    Numbers numbers(n);
    for (long long &x : numbers)
        x = static_cast<long long>(generator() % static_cast<unsigned long long>(2 * limit + 1)) - limit;
    return numbers;
}

// The places of all positions of a block in a scan: a permutation.
inline Numbers randomScan(std::mt19937 &generator, int n) {
    Numbers scan(n);
    for (int i = 0; i < n; ++i) scan[i] = i;
    for (int i = n - 1; i > 0; --i) std::swap(scan[i], scan[generator() % static_cast<unsigned>(i + 1)]);
    return scan;
}

// A read-only block that ends `slack` bytes before a forbidden page.
template <class T>
class Given : public Source<T> {
public:
    explicit Given(const Numbers &numbers, int slack = 0)
        : Source<T>(1, static_cast<int>(numbers.size()), static_cast<int>(numbers.size() * sizeof(T)),
                    slack) {
        this->fill([&](int, int col) { return static_cast<int>(numbers[col]); });
    }
};

// A block that a function changes, between marks.
template <class T>
class Changed : public Destination<T> {
public:
    explicit Changed(const Numbers &numbers, int offset = 0)
        : Destination<T>(static_cast<int>(numbers.size()), offset), m_count(numbers.size()) {
        for (size_t i = 0; i < m_count; ++i) {
            const T value = static_cast<T>(numbers[i]);
            std::memcpy(static_cast<void *>(this->data() + i), &value, sizeof value);
        }
    }
    Numbers numbers() const {
        Numbers result;
        for (size_t i = 0; i < m_count; ++i) result.push_back((*this)[static_cast<int>(i)]);
        return result;
    }

private:
    size_t m_count;
};

template <class T>
Numbers numbersOf(const Destination<T> &block, int n) {
    Numbers result;
    for (int i = 0; i < n; ++i) result.push_back(block[i]);
    return result;
}

inline int countOf(const Numbers &levels) {
    int count = 0;
    for (long long x : levels) count += x != 0;
    return count;
}

inline int lastOf(const Numbers &levels, const Numbers &places) {
    const int n = static_cast<int>(levels.size());
    std::vector<int> order(levels.size()); // positions in the order of the scan
    for (int i = 0; i < n; ++i) order[places[i]] = i;
    int last = n - 1;
    while (last >= 0 && !levels[order[last]]) --last;
    return last;
}

} // namespace h264

#endif
