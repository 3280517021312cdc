// dct4x4.cpp - blocks of DV at half their width and height.

#include "../common/block8x8.h"
#include "../common/checks.h"
#include "../common/cosines.h"
#include "kelvc.h"

namespace kelvara {

static constexpr DctBasis<4> basis;

// One direction of the transform, along the second index; the result is transposed.
static void transformAndTranspose(const float (&input)[4][4], float (&result)[4][4]) {
    for (int n = 0; n < 4; ++n) {
        for (int i = 0; i < 4; ++i) {
            float sum = 0;
            for (int k = 0; k < 4; ++k) sum += basis.at[k][n] * input[i][k];
            result[n][i] = sum;
        }
    }
}

// Two lines become their mean instead of an orthonormal sum, and 8 points across become 4: each takes the
// root of a half, together one half.
static KelStatus inverse4x4(Kel16s *pSrcDst) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    Block8x8<Kel16s> block(pSrcDst);
    float coeffs[4][4], columns[4][4], samples[4][4];
    for (int v = 0; v < 4; ++v) {
        for (int h = 0; h < 4; ++h) coeffs[v][h] = 0.5f * block.at[8 * v + h];
    }
    transformAndTranspose(coeffs, columns);
    transformAndTranspose(columns, samples);
    for (int i = 0; i < 16; ++i) block.at[i] = roundTo<Kel16s>(samples[i / 4][i % 4]);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliDCT8x4x2To4x4Inv_DV_16s_C1I(Kel16s *pSrcDst) {
    return inverse4x4(pSrcDst);
}
