// transform4x4.h - the 4x4 transforms of H.264 and those of its DC coefficients.

#ifndef KELVARA_TRANSFORM4X4_H
#define KELVARA_TRANSFORM4X4_H

#include "transform8x8.h"

namespace kelvara {

// N elements in raster order; sums wrap around. A block of 4x4 has 16, chroma DC has 4 or, in two columns, 8.
template <int N>
struct Words {
    Words() = default;
    template <class T>
    explicit Words(const T *p) {
        T copy[N];
        std::memcpy(copy, static_cast<const void *>(p), sizeof copy);
        for (int i = 0; i < N; ++i) at[i] = static_cast<Kel32u>(copy[i]);
    }

    int operator()(int i) const { return static_cast<Kel32s>(at[i]); }

    // Values out of the range of T become its limits.
    template <class T>
    void storeTo(T *p) const {
        T copy[N];
        for (int i = 0; i < N; ++i) {
            const int low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
            copy[i] = static_cast<T>(std::clamp((*this)(i), low, high));
        }
        std::memcpy(static_cast<void *>(p), copy, sizeof copy);
    }

    Kel32u at[N];
};

using Words4x4 = Words<16>;

// ---- one line of four, its elements `step` apart ------------------------------------

// ITU-T H.264 8.5.12.2
inline void inverseLine(Kel32u *x, int step) {
    const Kel32u e0 = x[0] + x[2 * step], e1 = x[0] - x[2 * step];
    const Kel32u e2 = halved(x[step], 1) - x[3 * step], e3 = x[step] + halved(x[3 * step], 1);
    x[0] = e0 + e3;
    x[step] = e1 + e2;
    x[2 * step] = e1 - e2;
    x[3 * step] = e0 - e3;
}

// The products with (1 1 1 1), (2 1 -1 -2), (1 -1 -1 1), (1 -2 2 -1).
inline void forwardLine(Kel32u *x, int step) {
    const Kel32u sum = x[0] + x[3 * step], diff = x[0] - x[3 * step];
    const Kel32u innerSum = x[step] + x[2 * step], innerDiff = x[step] - x[2 * step];
    x[0] = sum + innerSum;
    x[step] = 2 * diff + innerDiff;
    x[2 * step] = sum - innerSum;
    x[3 * step] = diff - 2 * innerDiff;
}

// The products with the lines of the matrix of 8.5.10, ordered by their changes of sign.
inline void hadamardLine(Kel32u *x, int step) {
    const Kel32u sum = x[0] + x[3 * step], diff = x[0] - x[3 * step];
    const Kel32u innerSum = x[step] + x[2 * step], innerDiff = x[step] - x[2 * step];
    x[0] = sum + innerSum;
    x[step] = diff + innerDiff;
    x[2 * step] = sum - innerSum;
    x[3 * step] = diff - innerDiff;
}

inline void hadamardPair(Kel32u *x, int step) {
    const Kel32u sum = x[0] + x[step], diff = x[0] - x[step];
    x[0] = sum;
    x[step] = diff;
}

// ---- blocks -------------------------------------------------------------------------

// Rows, then columns: the halves that the inverse drops depend on the order.
template <void (*line)(Kel32u *, int)>
inline Words4x4 transformed4x4(Words4x4 x) {
    for (int row = 0; row < 4; ++row) line(x.at + 4 * row, 1);
    for (int col = 0; col < 4; ++col) line(x.at + col, 4);
    return x;
}

inline Words4x4 forward4x4(const Words4x4 &block) {
    return transformed4x4<forwardLine>(block);
}
inline Words4x4 inverse4x4(const Words4x4 &coeffs) {
    return transformed4x4<inverseLine>(coeffs);
}

// The transforms of DC coefficients, each its own inverse but for a factor: 16 for luma (8.5.10), 4 and 8 for
// chroma of 4:2:0 and, with its four rows of two, 4:2:2 (8.5.11.1).
inline Words<16> transformedDC(const Words<16> &dc) {
    return transformed4x4<hadamardLine>(dc);
}

inline Words<4> transformedDC(Words<4> dc) {
    for (int row = 0; row < 2; ++row) hadamardPair(dc.at + 2 * row, 1);
    for (int col = 0; col < 2; ++col) hadamardPair(dc.at + col, 2);
    return dc;
}

inline Words<8> transformedDC(Words<8> dc) {
    for (int row = 0; row < 4; ++row) hadamardPair(dc.at + 2 * row, 1);
    for (int col = 0; col < 2; ++col) hadamardLine(dc.at + col, 2);
    return dc;
}

// The residual of a block of scaled coefficients: 8.5.12.2 with its rounding to whole samples.
class Residual4x4 {
public:
    explicit Residual4x4(const Words4x4 &scaled) : m_x(inverse4x4(scaled)) {
        for (Kel32u &x : m_x.at) x = halved(x + 32, 6);
    }

    int operator()(int row, int col) const { return m_x(4 * row + col); }
    const Words4x4 &words() const { return m_x; }

private:
    Words4x4 m_x;
};

} // namespace kelvara

#endif
