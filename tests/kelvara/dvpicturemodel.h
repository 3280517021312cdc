// dvpicturemodel.h - macroblocks of DV as pictures, told sample by sample: for each one, the pixels it is
// for.

#ifndef KELVARA_DVPICTUREMODEL_H
#define KELVARA_DVPICTUREMODEL_H

#include "keltypes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <vector>

namespace dvpicture {

enum Structure { Four11, Edge411, Four20, Four20Mixed, Four22, UpperHalf100, LowerHalf100 };

enum Plane { Luma, Blue, Red };

struct Size {
    int width, height;
};

// Of the picture that blocks of side x side samples make.
inline Size sizeOf(Structure structure, int side) {
    switch (structure) {
        case Four11:
            return {4 * side, side};
        case Edge411:
        case Four20:
        case Four20Mixed:
            return {2 * side, 2 * side};
        default:
            return {2 * side, side};
    }
}

using Sample = std::function<int(int)>; // element of a macroblock

// All pixels of a macroblock, each with a value of luma and of both colours.
class Canvas {
public:
    Canvas(Structure structure, int side, const Sample &sample)
        : m_structure(structure), m_side(side), m_size(sizeOf(structure, side)) {
        for (auto &plane : m_planes) plane.assign(static_cast<size_t>(m_size.width * m_size.height), 1e9);
        const bool eight = structure == UpperHalf100 || structure == LowerHalf100;
        for (int block = 0; block < (eight ? 8 : 6); ++block) {
            for (int i = 0; i < side * side; ++i) paint(block, i / side, i % side, sample(64 * block + i));
        }
    }

    // A byte of the picture at 1 / zoom of the size: Y CB Y CR for two pixels.
    int byteAt(int row, int col, int zoom) const {
        if (col % 2 == 0) return level(Luma, row * zoom, col / 2 * zoom, zoom, zoom);
        return level(col % 4 == 1 ? Blue : Red, row * zoom, col / 4 * 2 * zoom, zoom, 2 * zoom);
    }

private:
    void paint(int block, int row, int col, double value) {
        switch (m_structure) {
            case Four11:
                if (block < 4) return set(Luma, m_side * block + col, row, value);
                return fill(colourOf(block), 4 * col, 4, row, value);
            case Edge411:
                if (block < 4) return square(block, row, col, value);
                if (col < m_side / 2) return fill(colourOf(block), 4 * col, 4, row, value);
                return fill(colourOf(block), 4 * (col - m_side / 2), 4, m_side + row, value);
            case Four20:
                if (block < 4) return square(block, row, col, value);
                fill(colourOf(block), 2 * col, 2, 4 * (row / 2) + row % 2, value);
                return fill(colourOf(block), 2 * col, 2, 4 * (row / 2) + row % 2 + 2, value);
            case Four20Mixed:
                if (block < 4) return square(block, row, col, value);
                fill(colourOf(block), 2 * col, 2, 2 * row, value);
                return fill(colourOf(block), 2 * col, 2, 2 * row + 1, value);
            case Four22:
                if (block == 0 || block == 2) return set(Luma, m_side / 2 * block + col, row, value);
                if (block >= 4) fill(colourOf(block), 2 * col, 2, row, value);
                return;
            case UpperHalf100:
                if (block < 2) set(Luma, m_side * block + col, row, value);
                if (block == 4) fill(Red, 2 * col, 2, row, value);
                if (block == 6) fill(Blue, 2 * col, 2, row, value);
                return;
            case LowerHalf100:
                if (block == 2 || block == 3) set(Luma, m_side * (block - 2) + col, row, value);
                if (block == 5) fill(Red, 2 * col, 2, row, value);
                if (block == 7) fill(Blue, 2 * col, 2, row, value);
                return;
        }
    }

    static Plane colourOf(int block) { return block == 4 ? Red : Blue; }

    void square(int block, int row, int col, double value) {
        set(Luma, block % 2 * m_side + col, block / 2 * m_side + row, value);
    }
    void fill(Plane plane, int x, int width, int y, double value) {
        for (int i = 0; i < width; ++i) set(plane, x + i, y, value);
    }
    void set(Plane plane, int x, int y, double value) {
        m_planes[plane].at(static_cast<size_t>(y * m_size.width + x)) = value;
    }

    int level(Plane plane, int top, int left, int rows, int cols) const {
        double sum = 0;
        for (int y = top; y < top + rows; ++y) {
            for (int x = left; x < left + cols; ++x)
                sum += m_planes[plane].at(static_cast<size_t>(y * m_size.width + x));
        }
        return static_cast<int>(std::clamp(std::floor(sum / (rows * cols) + 0.5) + 128, 0.0, 255.0));
    }

    Structure m_structure;
    int m_side;
    Size m_size;
    std::array<std::vector<double>, 3> m_planes; // a pixel that no sample is for stays far out of range
};

} // namespace dvpicture

#endif
