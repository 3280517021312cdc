// dct248.cpp - the 2-4-8 transform of DV, for blocks with motion between the fields.

#include "../common/block8x8.h"
#include "../common/checks.h"
#include "../common/cosines.h"
#include "kelvc.h"

namespace kelvara {

static constexpr DctBasis<8> across;
static constexpr DctBasis<4> down;
static constexpr TransposedDctBasis<8> acrossForward;
static constexpr TransposedDctBasis<4> downForward;
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

static void transpose(Rows &rows) {
    for (int i = 0; i < 8; ++i) {
        for (int j = 0; j < i; ++j) std::swap(rows[i][j], rows[j][i]);
    }
}

// N points down, each set of N rows by itself; weights[n][k] is that of input n in result k.
template <int N>
static void transformColumns(Rows &rows, const float (&weights)[N][N]) {
    Rows result = {};
    for (int k = 0; k < 8; ++k) {
        for (int n = 0; n < N; ++n) {
            const float weight = weights[n][k % N];
            const float(&input)[8] = rows[k / N * N + n];
            for (int x = 0; x < 8; ++x) result[k][x] += weight * input[x];
        }
    }
    std::copy(&result[0][0], &result[0][0] + 64, &rows[0][0]);
}

static void transformRows(Rows &rows, const float (&weights)[8][8]) {
    transpose(rows);
    transformColumns(rows, weights);
    transpose(rows);
}

// Row of the block at place i of the rows: of the even lines first, then of the odd ones.
static int lineAt(int i) {
    return i % 4 * 2 + i / 4;
}

static int sameRow(int i) {
    return i;
}

// Row i of the rows is row place(i) of the block.
template <int (*place)(int)>
static void loadRows(const Kel16s (&block)[64], Rows &rows) {
    for (int i = 0; i < 8; ++i) {
        for (int x = 0; x < 8; ++x) rows[i][x] = orthonormal * block[8 * place(i) + x];
    }
}

template <int (*place)(int)>
static void storeRows(const Rows &rows, Kel16s (&block)[64]) {
    for (int i = 0; i < 8; ++i) {
        for (int x = 0; x < 8; ++x) block[8 * place(i) + x] = roundTo<Kel16s>(rows[i][x]);
    }
}

// SMPTE 314M and IEC 61834-2, 2-4-8-DCT.
static KelStatus forward248(Kel16s *pSrcDst) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    Block8x8<Kel16s> block(pSrcDst);
    Rows rows;
    loadRows<lineAt>(block.at, rows);
    butterflies(rows);
    transformRows(rows, acrossForward.at);
    transformColumns(rows, downForward.at);
    storeRows<sameRow>(rows, block.at);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

static KelStatus inverse248(Kel16s *pSrcDst) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    Block8x8<Kel16s> block(pSrcDst);
    Rows rows;
    loadRows<sameRow>(block.at, rows);
    transformRows(rows, across.at);
    transformColumns(rows, down.at);
    butterflies(rows);
    storeRows<lineAt>(rows, block.at);
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
