// dct248.cpp - the 2-4-8 transform of DV, for blocks with motion between the fields.

#include "../common/block8x8.h"
#include "../common/checks.h"
#include "../common/cosines.h"
#include "kelvc.h"

namespace kelvara {

static constexpr DctBasis<8> across;
static constexpr DctBasis<4> down;
static constexpr float orthonormal = static_cast<float>(cosine16(4)); // of a sum or difference of two lines

using Rows = float[8][8];

// Rows z and z + 4 become sum and difference of each other.
static void butterflies(Rows &rows) {
    for (int z = 0; z < 4; ++z) {
        for (int x = 0; x < 8; ++x) {
            const float a = rows[z][x], b = rows[z + 4][x];
            rows[z][x] = a + b;
            rows[z + 4][x] = a - b;
        }
    }
}

// Weight of sample n in coefficient k forward, of coefficient n in sample k backward.
template <bool forward, int N>
static float weight(const DctBasis<N> &basis, int k, int n) {
    return forward ? basis.at[k][n] : basis.at[n][k];
}

template <bool forward>
static void transformRows(Rows &rows) {
    for (auto &row : rows) {
        float result[8] = {};
        for (int n = 0; n < 8; ++n) {
            for (int k = 0; k < 8; ++k) result[k] += weight<forward>(across, k, n) * row[n];
        }
        std::copy(result, result + 8, row);
    }
}

// The upper and the lower four rows, each set by itself.
template <bool forward>
static void transformColumns(Rows &rows) {
    Rows result = {};
    for (int k = 0; k < 8; ++k) {
        for (int n = 0; n < 4; ++n) {
            const float factor = weight<forward>(down, k % 4, n);
            for (int x = 0; x < 8; ++x) result[k][x] += factor * rows[k / 4 * 4 + n][x];
        }
    }
    std::copy(&result[0][0], &result[0][0] + 64, &rows[0][0]);
}

// Row of the block at place i of the rows: of the even lines first, then of the odd ones.
static int lineAt(int i) {
    return i % 4 * 2 + i / 4;
}

// SMPTE 314M and IEC 61834-2, 2-4-8-DCT.
static KelStatus forward248(Kel16s *pSrcDst) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    Block8x8<Kel16s> block(pSrcDst);
    Rows rows;
    for (int i = 0; i < 64; ++i) rows[i / 8][i % 8] = block.at[8 * lineAt(i / 8) + i % 8];
    butterflies(rows);
    transformRows<true>(rows);
    transformColumns<true>(rows);
    for (int i = 0; i < 64; ++i) block.at[i] = roundTo<Kel16s>(rows[i / 8][i % 8] * orthonormal);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

static KelStatus inverse248(Kel16s *pSrcDst) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    Block8x8<Kel16s> block(pSrcDst);
    Rows rows;
    for (int i = 0; i < 64; ++i) rows[i / 8][i % 8] = block.at[i] * orthonormal;
    transformRows<false>(rows);
    transformColumns<false>(rows);
    butterflies(rows);
    for (int i = 0; i < 64; ++i) block.at[8 * lineAt(i / 8) + i % 8] = roundTo<Kel16s>(rows[i / 8][i % 8]);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliDCT2x4x8Frw_16s_C1I(Kel16s *pSrcDst) {
    return forward248(pSrcDst);
}

KelStatus keliDCT2x4x8Inv_16s_C1I(Kel16s *pSrcDst) {
    return inverse248(pSrcDst);
}
