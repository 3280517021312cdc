// vc1block.h - blocks in the tests of VC-1: filled from planes and compared with them.

#ifndef KELVARA_VC1BLOCK_H
#define KELVARA_VC1BLOCK_H

#include "predictionmodel.h"
#include "vc1model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace vc1model {

inline int widthOf(const Plane &plane) {
    return static_cast<int>(plane[0].size());
}
inline int heightOf(const Plane &plane) {
    return static_cast<int>(plane.size());
}

inline Plane planeOf(int width, int height, const Pattern &pattern) {
    Plane result = plane(width, height);
    for (int row = 0; row < height; ++row) {
        for (int col = 0; col < width; ++col) result[row][col] = pattern(row, col);
    }
    return result;
}

// The plane's values, step bytes from row to row, between and around them marks.
inline DstBlock<Kel16s> blockOf(const Plane &values, int step, int slack = 0) {
    DstBlock<Kel16s> block(heightOf(values), widthOf(values), step, slack);
    for (int row = 0; row < heightOf(values); ++row) {
        for (int col = 0; col < widthOf(values); ++col) {
            const Kel16s value = static_cast<Kel16s>(values[row][col]);
            std::memcpy(reinterpret_cast<unsigned char *>(block.data()) + row * step + 2 * col, &value, 2);
        }
    }
    return block;
}

// The block holds the plane's values, limited to their type, and the marks are intact.
inline void expectBlock(DstBlock<Kel16s> &block, const Plane &expected, const std::string &what = "") {
    EXPECT_TRUE(block.surroundingsIntact()) << what;
    for (int row = 0; row < heightOf(expected); ++row) {
        for (int col = 0; col < widthOf(expected); ++col) {
            ASSERT_EQ(block(row, col), std::clamp<long long>(expected[row][col], -32768, 32767))
                << what << ", row " << row << ", column " << col;
        }
    }
}

} // namespace vc1model

#endif
