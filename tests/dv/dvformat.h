// dvformat.h - what DV fixes about a compressed segment, beside its codes: areas, scans, weights, steps.

#ifndef RAKOVA_TESTS_DVFORMAT_H
#define RAKOVA_TESTS_DVFORMAT_H

#include <array>
#include <cmath>

namespace dv {

constexpr int macroblocks = 5, blocksOfMacroblock = 6, blocks = macroblocks * blocksOfMacroblock;
constexpr int difBytes = 80, segmentBytes = macroblocks * difBytes;
constexpr int headBytes = 4;    // of a DIF block: ID, status and quantisation number
constexpr int headBits = 12;    // of an area: DC, mode, class number
constexpr int longestCode = 16; // with its sign

// Bytes of the area of block i of a macroblock: four of luma, then CR and CB.
constexpr int areaBytes(int i) {
    return i < 4 ? 14 : 10;
}

using Block = std::array<int, 64>; // raster order
using Coefficients = std::array<double, 64>;

// Raster index at each place of the scan: zigzag of the 8-8 mode, then that of the 2-4-8 mode, where rows 0
// to 3 are sums of the fields and 4 to 7 differences.
// clang-format off
inline constexpr int scans[2][64] = {
    { 0,  1,  8, 16,  9,  2,  3, 10, 17, 24, 32, 25, 18, 11,  4,  5,
     12, 19, 26, 33, 40, 48, 41, 34, 27, 20, 13,  6,  7, 14, 21, 28,
     35, 42, 49, 56, 57, 50, 43, 36, 29, 22, 15, 23, 30, 37, 44, 51,
     58, 59, 52, 45, 38, 31, 39, 46, 53, 60, 61, 54, 47, 55, 62, 63},
    { 0, 32,  1, 33,  8, 40,  2, 34,  9, 41, 16, 48, 24, 56, 17, 49,
     10, 42,  3, 35,  4, 36, 11, 43, 18, 50, 25, 57, 26, 58, 19, 51,
     12, 44,  5, 37,  6, 38, 13, 45, 20, 52, 27, 59, 28, 60, 21, 53,
     14, 46,  7, 39, 15, 47, 22, 54, 29, 61, 30, 62, 23, 55, 31, 63}};

// SMPTE 314M and IEC 61834-2, quantisation steps by class number, quantisation number and area. Those of class
// number 3 have its initial scaling in them.
inline constexpr int steps[4][16][4] = {
    {{2, 4, 4, 8}, {2, 4, 4, 8}, {2, 2, 4, 4}, {2, 2, 4, 4},
     {1, 2, 2, 4}, {1, 2, 2, 4}, {1, 1, 2, 2}, {1, 1, 2, 2},
     {1, 1, 1, 2}, {1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1},
     {1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}},
    {{4, 8, 8, 16}, {4, 4, 8, 8}, {4, 4, 8, 8}, {2, 4, 4, 8},
     {2, 4, 4, 8}, {2, 2, 4, 4}, {2, 2, 4, 4}, {1, 2, 2, 4},
     {1, 2, 2, 4}, {1, 1, 2, 2}, {1, 1, 2, 2}, {1, 1, 1, 2},
     {1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}},
    {{8, 8, 16, 16}, {8, 8, 16, 16}, {4, 8, 8, 16}, {4, 8, 8, 16},
     {4, 4, 8, 8}, {4, 4, 8, 8}, {2, 4, 4, 8}, {2, 4, 4, 8},
     {2, 2, 4, 4}, {2, 2, 4, 4}, {1, 2, 2, 4}, {1, 2, 2, 4},
     {1, 1, 2, 2}, {1, 1, 2, 2}, {1, 1, 1, 2}, {1, 1, 1, 1}},
    {{16, 16, 32, 32}, {8, 16, 16, 32}, {8, 16, 16, 32}, {8, 8, 16, 16},
     {8, 8, 16, 16}, {4, 8, 8, 16}, {4, 8, 8, 16}, {4, 4, 8, 8},
     {4, 4, 8, 8}, {2, 4, 4, 8}, {2, 4, 4, 8}, {2, 2, 4, 4},
     {2, 2, 4, 4}, {2, 2, 2, 4}, {2, 2, 2, 2}, {2, 2, 2, 2}}};
// clang-format on

// The area of a place of the scan behind DC.
constexpr int areaOf(int place) {
    return place < 6 ? 0 : place < 21 ? 1 : place < 43 ? 2 : 3;
}

constexpr int stepOf(int place, int classNumber, int quantiser) {
    return place == 0 ? 1 : steps[classNumber][quantiser][areaOf(place)];
}

// w of the weighting formulas of SMPTE 314M and IEC 61834-2, index 0 to 7.
inline double lineWeight(int index) {
    const auto c = [](int m) { return std::cos(m * M_PI / 16); };
    const double w[8] = {1,
                         c(4) / (4 * c(7) * c(2)),
                         c(4) / (2 * c(6)),
                         1 / (2 * c(5)),
                         7 / 8.0,
                         c(4) / c(3),
                         c(4) / c(2),
                         c(4) / c(1)};
    return w[index];
}

// The weight of the coefficient at a raster index; mode 1 is 2-4-8.
inline double weightOf(int index, int mode) {
    const int row = mode == 0 ? index / 8 : index / 8 % 4 * 2;
    if (index == 0) return 0.25;
    return lineWeight(row) * lineWeight(index % 8) / 2;
}

} // namespace dv

#endif
