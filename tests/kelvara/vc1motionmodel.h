// vc1motionmodel.h - the samples between samples of VC-1, each from SMPTE 421M's equation in fractions.

#ifndef KELVARA_VC1MOTIONMODEL_H
#define KELVARA_VC1MOTIONMODEL_H

#include <algorithm>
#include <cmath>
#include <functional>

namespace vc1model {

// The sample so many rows below and columns to the right of the full-sample position.
using Around = std::function<int(int, int)>;

// All values are multiples of 1/4096 at most, exact in a double.
inline int wholePart(double value) {
    return static_cast<int>(std::floor(value));
}

inline int bilinear(const Around &at, int dx, int dy, int roundControl) {
    const double x = dx / 4.0, y = dy / 4.0;
    double sum = (8 - roundControl) / 16.0;
    const double weights[2][2] = {{(1 - x) * (1 - y), x * (1 - y)}, {(1 - x) * y, x * y}};
    for (int row = 0; row < 2; ++row) {
        for (int col = 0; col < 2; ++col) {
            if (weights[row][col] != 0) sum += weights[row][col] * at(row, col);
        }
    }
    return wholePart(sum);
}

// Of the sample k places from the one before the position, in 64ths.
inline int cubicWeight(int quarters, int k) {
    switch (quarters) {
        case 1:
            return k == -1 ? -4 : k == 0 ? 53 : k == 1 ? 18 : -3;
        case 2:
            return k == -1 || k == 2 ? -4 : 36;
        default:
            return cubicWeight(1, 1 - k);
    }
}

inline double cubic(const std::function<double(int)> &at, int quarters) {
    double sum = 0;
    for (int k = -1; k <= 2; ++k) sum += cubicWeight(quarters, k) * at(k) / 64.0;
    return sum;
}

inline int limitedSample(double value) {
    return std::clamp(wholePart(value), 0, 255);
}

inline int bicubic(const Around &at, int dx, int dy, int roundControl) {
    if (dx == 0 && dy == 0) return at(0, 0);
    // One direction: the 64ths of a filter at an odd quarter, the 16ths of one at a half.
    const double unitX = dx == 2 ? 1 / 16.0 : 1 / 64.0, unitY = dy == 2 ? 1 / 16.0 : 1 / 64.0;
    if (dy == 0) {
        return limitedSample(cubic([&](int k) { return at(0, k); }, dx) + 0.5 - roundControl * unitX);
    }
    if (dx == 0) {
        return limitedSample(cubic([&](int k) { return at(k, 0); }, dy) + 0.5 - unitY + roundControl * unitY);
    }
    // Both: columns first, kept in units of which the second filter makes 128ths.
    const double kept = 1 / 128.0 / unitX; // of a sample
    const auto column = [&](int col) {
        const double value = cubic([&](int k) { return at(k, col); }, dy) / kept;
        const double step = unitY / kept;
        return kept * wholePart(value + 0.5 - step + roundControl * step);
    };
    return limitedSample(cubic(column, dx) + (64 - roundControl) / 128.0);
}

} // namespace vc1model

#endif
