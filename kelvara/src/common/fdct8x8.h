// fdct8x8.h - the forward 8x8 DCT.

#ifndef KELVARA_FDCT8X8_H
#define KELVARA_FDCT8X8_H

#include "block8x8.h"
#include "cosines.h"

namespace kelvara {

// Eight points down each column; result k is the sum of the inputs times their weights in coefficient k.
inline void forwardColumns8(const float (&samples)[8][8], float (&coeffs)[8][8]) {
    static constexpr DctBasis<8> basis;
    for (int k = 0; k < 8; ++k) {
        float sum[8] = {};
        for (int n = 0; n < 8; ++n) {
            for (int x = 0; x < 8; ++x) sum[x] += basis.at[k][n] * samples[n][x];
        }
        std::copy(sum, sum + 8, coeffs[k]);
    }
}

inline void transposeInto(const float (&from)[8][8], float (&to)[8][8]) {
    for (int i = 0; i < 8; ++i) {
        for (int j = 0; j < 8; ++j) to[j][i] = from[i][j];
    }
}

// Coefficient (v, u) of the block goes to 8 * v + u.
template <class Src>
inline Block8x8<Kel16s> forwardDct(Src src) {
    float samples[8][8], down[8][8], across[8][8];
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) samples[y][x] = static_cast<float>(src(y, x));
    }
    forwardColumns8(samples, down);
    transposeInto(down, samples);
    forwardColumns8(samples, across);
    Block8x8<Kel16s> result;
    for (int i = 0; i < 64; ++i) result.at[i] = roundTo<Kel16s>(across[i % 8][i / 8]);
    return result;
}

} // namespace kelvara

#endif
