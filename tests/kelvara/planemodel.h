// planemodel.h - a plane with what lies outside of it, and values between its samples in exact fractions.

#ifndef KELVARA_PLANEMODEL_H
#define KELVARA_PLANEMODEL_H

#include "predictionmodel.h"

#include <algorithm>
#include <optional>

using Plane = Source<Kel8u>;

// A sample of a plane, also outside: the color, or without one the nearest sample.
struct View {
    const Plane &plane;
    KeliSize size;
    std::optional<int> color;

    int operator()(int row, int col) const {
        const int y = std::clamp(row, 0, size.height - 1), x = std::clamp(col, 0, size.width - 1);
        return color && (x != col || y != row) ? *color : plane(y, x);
    }
};

inline std::unique_ptr<Plane> planeOf(KeliSize size, int step, const Pattern &pattern, int slack = 0) {
    auto plane = std::make_unique<Plane>(size.height, size.width, size.width + step, slack);
    plane->fill(pattern);
    return plane;
}

// The value at a place in samples; halves go down for rounding type 0, up for 1.
inline int interpolated(const View &src, double y, double x, int rounding) {
    const double row = std::floor(y), col = std::floor(x), down = y - row, right = x - col;
    const int r = static_cast<int>(row), c = static_cast<int>(col);
    const double upper = (1 - right) * src(r, c) + right * src(r, c + 1);
    const double lower = (1 - right) * src(r + 1, c) + right * src(r + 1, c + 1);
    const double value = (1 - down) * upper + down * lower;
    return static_cast<int>(rounding ? std::floor(value + 0.5) : std::ceil(value - 0.5));
}

#endif
