// intramodel.h - the equations of ITU-T H.264 8.3, sample by sample, x to the right and y down.

#ifndef KELVARA_INTRAMODEL_H
#define KELVARA_INTRAMODEL_H

#include <stdexcept>

#include "keltypes.h"

// The bits of an availability; the left neighbour has two halves.
const int hasUpper = 1, hasLeftTop = 2, hasLeftBottom = 4, hasCorner = 32, hasUpperRight = 64;
const int hasLeft = hasLeftTop | hasLeftBottom;

// Neighbours of a block by (x, y): a row at y -1 from the corner on, and a column at x -1. Those that have
// been set are "available for intra prediction".
class Neighbours {
public:
    Neighbours() {
        for (int &sample : m_samples) sample = missing;
    }
    void set(int x, int y, int value) { m_samples[index(x, y)] = value; }
    bool has(int x, int y) const { return m_samples[index(x, y)] != missing; }
    int operator()(int x, int y) const {
        if (!has(x, y)) throw std::logic_error("a neighbour that is not available");
        return m_samples[index(x, y)];
    }

private:
    static constexpr int missing = -1, widest = 32, highest = 16;

    static int index(int x, int y) {
        const bool inRow = y == -1 && x >= -1 && x < widest, inColumn = x == -1 && y >= 0 && y < highest;
        if (!inRow && !inColumn) throw std::logic_error("no neighbour");
        return inRow ? x + 1 : 1 + widest + y;
    }

    int m_samples[1 + widest + highest];
};

// Of a block of n x n with all its neighbours outside of it, by the bits.
inline Neighbours neighboursBy(int bits, int n, const Kel8u *p, int step) {
    Neighbours result;
    for (int x = 0; x < 2 * n; ++x) {
        if (bits & (x < n ? hasUpper : hasUpperRight)) result.set(x, -1, p[x - step]);
    }
    for (int y = 0; y < n; ++y) {
        if (bits & (y < n / 2 ? hasLeftTop : hasLeftBottom)) result.set(-1, y, p[y * step - 1]);
    }
    if (bits & hasCorner) result.set(-1, -1, p[-step - 1]);
    return result;
}

inline bool hasRow(const Neighbours &p, int from, int to) {
    for (int x = from; x < to; ++x) {
        if (!p.has(x, -1)) return false;
    }
    return true;
}
inline bool hasColumn(const Neighbours &p, int from, int to) {
    for (int y = from; y < to; ++y) {
        if (!p.has(-1, y)) return false;
    }
    return true;
}

// ---- blocks of 4x4 and 8x8 -------------------------------------------------------------

inline bool blockModeAllowed(const Neighbours &p, int n, int mode) {
    switch (mode) {
        case 0:
        case 3:
        case 7:
            return hasRow(p, 0, n);
        case 1:
        case 8:
            return hasColumn(p, 0, n);
        case 2:
            return true;
        case 4:
        case 5:
        case 6:
            return hasRow(p, 0, n) && hasColumn(p, 0, n) && p.has(-1, -1);
        default:
            return false;
    }
}

// The last paragraph of 8.3.1.2 and of 8.3.2.2
inline Neighbours withUpperRight(Neighbours p, int n) {
    if (!hasRow(p, n, 2 * n) && hasRow(p, 0, n)) {
        for (int x = n; x < 2 * n; ++x) p.set(x, -1, p(n - 1, -1));
    }
    return p;
}

// 8.3.2.2.1
inline Neighbours filtered8x8(const Neighbours &p) {
    Neighbours f;
    if (hasRow(p, 0, 16)) {
        f.set(0, -1,
              p.has(-1, -1) ? (p(-1, -1) + 2 * p(0, -1) + p(1, -1) + 2) >> 2
                            : (3 * p(0, -1) + p(1, -1) + 2) >> 2);
        for (int x = 1; x < 15; ++x) f.set(x, -1, (p(x - 1, -1) + 2 * p(x, -1) + p(x + 1, -1) + 2) >> 2);
        f.set(15, -1, (p(14, -1) + 3 * p(15, -1) + 2) >> 2);
    }
    if (p.has(-1, -1)) {
        const bool upper = p.has(0, -1), left = p.has(-1, 0);
        int corner = p(-1, -1);
        if (upper && left) corner = (p(0, -1) + 2 * p(-1, -1) + p(-1, 0) + 2) >> 2;
        if (upper && !left) corner = (3 * p(-1, -1) + p(0, -1) + 2) >> 2;
        if (!upper && left) corner = (3 * p(-1, -1) + p(-1, 0) + 2) >> 2;
        f.set(-1, -1, corner);
    }
    if (hasColumn(p, 0, 8)) {
        f.set(-1, 0,
              p.has(-1, -1) ? (p(-1, -1) + 2 * p(-1, 0) + p(-1, 1) + 2) >> 2
                            : (3 * p(-1, 0) + p(-1, 1) + 2) >> 2);
        for (int y = 1; y < 7; ++y) f.set(-1, y, (p(-1, y - 1) + 2 * p(-1, y) + p(-1, y + 1) + 2) >> 2);
        f.set(-1, 7, (p(-1, 6) + 3 * p(-1, 7) + 2) >> 2);
    }
    return f;
}

inline int dcSample(const Neighbours &p, int n, int log2n) {
    int upper = 0, left = 0;
    const bool above = hasRow(p, 0, n), beside = hasColumn(p, 0, n);
    for (int i = 0; i < n; ++i) {
        if (above) upper += p(i, -1);
        if (beside) left += p(-1, i);
    }
    if (above && beside) return (upper + left + n) >> (log2n + 1);
    if (beside) return (left + n / 2) >> log2n;
    if (above) return (upper + n / 2) >> log2n;
    return 1 << 7;
}

inline int verticalRight(const Neighbours &p, int x, int y) {
    const int z = 2 * x - y, i = x - (y >> 1);
    if (z >= 0 && z % 2 == 0) return (p(i - 1, -1) + p(i, -1) + 1) >> 1;
    if (z >= 0) return (p(i - 2, -1) + 2 * p(i - 1, -1) + p(i, -1) + 2) >> 2;
    if (z == -1) return (p(-1, 0) + 2 * p(-1, -1) + p(0, -1) + 2) >> 2;
    return (p(-1, y - 2 * x - 1) + 2 * p(-1, y - 2 * x - 2) + p(-1, y - 2 * x - 3) + 2) >> 2;
}

inline int horizontalDown(const Neighbours &p, int x, int y) {
    const int z = 2 * y - x, i = y - (x >> 1);
    if (z >= 0 && z % 2 == 0) return (p(-1, i - 1) + p(-1, i) + 1) >> 1;
    if (z >= 0) return (p(-1, i - 2) + 2 * p(-1, i - 1) + p(-1, i) + 2) >> 2;
    if (z == -1) return (p(-1, 0) + 2 * p(-1, -1) + p(0, -1) + 2) >> 2;
    return (p(x - 2 * y - 1, -1) + 2 * p(x - 2 * y - 2, -1) + p(x - 2 * y - 3, -1) + 2) >> 2;
}

inline int diagonalDownRight(const Neighbours &p, int x, int y) {
    if (x > y) return (p(x - y - 2, -1) + 2 * p(x - y - 1, -1) + p(x - y, -1) + 2) >> 2;
    if (x < y) return (p(-1, y - x - 2) + 2 * p(-1, y - x - 1) + p(-1, y - x) + 2) >> 2;
    return (p(0, -1) + 2 * p(-1, -1) + p(-1, 0) + 2) >> 2;
}

inline int horizontalUp(const Neighbours &p, int n, int x, int y) {
    const int z = x + 2 * y, i = y + (x >> 1), last = 2 * n - 3;
    if (z > last) return p(-1, n - 1);
    if (z == last) return (p(-1, n - 2) + 3 * p(-1, n - 1) + 2) >> 2;
    if (z % 2 == 0) return (p(-1, i) + p(-1, i + 1) + 1) >> 1;
    return (p(-1, i) + 2 * p(-1, i + 1) + p(-1, i + 2) + 2) >> 2;
}

// 8.3.1.2.1 to 8.3.1.2.9, and with n 8 and filtered neighbours those of 8.3.2.2
inline int blockSample(const Neighbours &p, int n, int mode, int x, int y) {
    const int i = x + (y >> 1);
    switch (mode) {
        case 0:
            return p(x, -1);
        case 1:
            return p(-1, y);
        case 2:
            return dcSample(p, n, n == 4 ? 2 : 3);
        case 3:
            if (x == n - 1 && y == n - 1) return (p(2 * n - 2, -1) + 3 * p(2 * n - 1, -1) + 2) >> 2;
            return (p(x + y, -1) + 2 * p(x + y + 1, -1) + p(x + y + 2, -1) + 2) >> 2;
        case 4:
            return diagonalDownRight(p, x, y);
        case 5:
            return verticalRight(p, x, y);
        case 6:
            return horizontalDown(p, x, y);
        case 7:
            if (y % 2 == 0) return (p(i, -1) + p(i + 1, -1) + 1) >> 1;
            return (p(i, -1) + 2 * p(i + 1, -1) + p(i + 2, -1) + 2) >> 2;
        default:
            return horizontalUp(p, n, x, y);
    }
}

// ---- macroblocks ---------------------------------------------------------------------------

inline int clip1(int value) {
    return value < 0 ? 0 : value > 255 ? 255 : value;
}

inline bool hasAll(const Neighbours &p, int n) {
    return hasRow(p, 0, n) && hasColumn(p, 0, n) && p.has(-1, -1);
}

// 8.3.3
inline bool lumaModeAllowed(const Neighbours &p, int mode) {
    return mode == 0   ? hasRow(p, 0, 16)
           : mode == 1 ? hasColumn(p, 0, 16)
                       : mode == 2 || (mode == 3 && hasAll(p, 16));
}

inline int lumaPlaneSample(const Neighbours &p, int x, int y) {
    int h = 0, v = 0;
    for (int k = 0; k <= 7; ++k) {
        h += (k + 1) * (p(8 + k, -1) - p(6 - k, -1));
        v += (k + 1) * (p(-1, 8 + k) - p(-1, 6 - k));
    }
    const int a = 16 * (p(-1, 15) + p(15, -1)), b = (5 * h + 32) >> 6, c = (5 * v + 32) >> 6;
    return clip1((a + b * (x - 7) + c * (y - 7) + 16) >> 5);
}

inline int lumaSample(const Neighbours &p, int mode, int x, int y) {
    return mode == 0   ? p(x, -1)
           : mode == 1 ? p(-1, y)
           : mode == 2 ? dcSample(p, 16, 4)
                       : lumaPlaneSample(p, x, y);
}

// 8.3.4 for 4:2:0
inline bool chromaModeAllowed(const Neighbours &p, int mode) {
    return mode == 0 || (mode == 1 && hasColumn(p, 0, 8)) || (mode == 2 && hasRow(p, 0, 8)) ||
           (mode == 3 && hasAll(p, 8));
}

inline int chromaDcSample(const Neighbours &p, int x, int y) {
    const int xO = x / 4 * 4, yO = y / 4 * 4;
    const bool above = hasRow(p, xO, xO + 4), beside = hasColumn(p, yO, yO + 4);
    int upper = 0, left = 0;
    for (int i = 0; i < 4; ++i) {
        if (above) upper += p(xO + i, -1);
        if (beside) left += p(-1, yO + i);
    }
    const int fromUpper = (upper + 2) >> 2, fromLeft = (left + 2) >> 2;
    if (xO > 0 && yO == 0) return above ? fromUpper : beside ? fromLeft : 128;
    if (xO == 0 && yO > 0) return beside ? fromLeft : above ? fromUpper : 128;
    if (above && beside) return (upper + left + 4) >> 3;
    return beside ? fromLeft : above ? fromUpper : 128;
}

inline int chromaPlaneSample(const Neighbours &p, int x, int y) {
    int h = 0, v = 0;
    for (int k = 0; k <= 3; ++k) {
        h += (k + 1) * (p(4 + k, -1) - p(2 - k, -1));
        v += (k + 1) * (p(-1, 4 + k) - p(-1, 2 - k));
    }
    const int a = 16 * (p(-1, 7) + p(7, -1)), b = (34 * h + 32) >> 6, c = (34 * v + 32) >> 6;
    return clip1((a + b * (x - 3) + c * (y - 3) + 16) >> 5);
}

inline int chromaSample(const Neighbours &p, int mode, int x, int y) {
    return mode == 0   ? chromaDcSample(p, x, y)
           : mode == 1 ? p(-1, y)
           : mode == 2 ? p(x, -1)
                       : chromaPlaneSample(p, x, y);
}

#endif
