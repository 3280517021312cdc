// residual.h - what the coefficients of ITU-T H.264 macroblocks add to their predictions.

#ifndef KELVARA_H264_RESIDUAL_H
#define KELVARA_H264_RESIDUAL_H

#include "../common/macroblock.h"
#include "dequantise.h"

namespace kelvara {

// ---- coefficients -------------------------------------------------------------------

// How the coefficients of a plane become differences.
struct Scaling {
    int qp;
    const Kel16s *pLevels; // null: flat
    bool bypass;           // coefficients are differences already
};

inline bool isQp(int qp) {
    return qp >= 0 && qp <= 51;
}

// ---- differences ----------------------------------------------------------------------

// 8.5.15: of a block without a transform that is predicted along one direction, the differences are those
// from the neighbour in that direction.
template <int N>
void addUpDown(Differences<N> &differences) {
    for (int row = 1; row < N; ++row) {
        for (int col = 0; col < N; ++col) differences.at[row][col] += differences.at[row - 1][col];
    }
}
template <int N>
void addUpToTheRight(Differences<N> &differences) {
    for (int row = 0; row < N; ++row) {
        for (int col = 1; col < N; ++col) differences.at[row][col] += differences.at[row][col - 1];
    }
}

inline Differences<4> differencesOf(const Words<16> &coeffs, const Scaling &scaling) {
    Differences<4> result;
    if (scaling.bypass) {
        result.set<4>(0, 0, [&](int row, int col) { return coeffs(4 * row + col); });
    } else {
        result.set<4>(0, 0, Residual4x4(dequantised4x4(coeffs, scaling.qp, scaling.pLevels)));
    }
    return result;
}

inline Differences<8> differencesOf(const Words<64> &coeffs, const Scaling &scaling) {
    Differences<8> result;
    if (scaling.bypass) {
        result.set<8>(0, 0, [&](int row, int col) { return coeffs(8 * row + col); });
    } else {
        result.set<8>(0, 0, Residual8x8(dequantised8x8(coeffs, scaling.qp, scaling.pLevels)));
    }
    return result;
}

// The same for the next block of 4x4, whose DC coefficient came by another way and is scaled. Without others
// it raises all samples alike.
inline Differences<4> differencesOf(CodedBlocks &coded, int bit, int dc, const Scaling &scaling) {
    Differences<4> result;
    if (scaling.bypass) {
        Words<16> coeffs = coded.take<Words<16>>(bit);
        coeffs.at[0] = static_cast<Kel32u>(dc);
        return differencesOf(coeffs, scaling);
    }
    if (coded.has(bit)) {
        const Words<16> coeffs = coded.take<Words<16>>(bit);
        result.set<4>(0, 0, Residual4x4(dequantised4x4(coeffs, scaling.qp, scaling.pLevels, dc)));
    } else {
        const int same = static_cast<Kel32s>(halved(static_cast<Kel32u>(dc) + 32, 6));
        result.set<4>(0, 0, [same](int, int) { return same; });
    }
    return result;
}

// DC coefficients of all blocks of a plane, in raster order of the blocks.
template <int N>
Words<N> scaledDC(const Words<N> &coeffs, const Scaling &scaling) {
    if (scaling.bypass) return coeffs;
    return dequantisedDC(coeffs, scaling.qp, dcLevelScale(scaling.qp, scaling.pLevels));
}

} // namespace kelvara

#endif
