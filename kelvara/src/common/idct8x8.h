// idct8x8.h - the inverse 8x8 DCT.

#ifndef KELVARA_IDCT8X8_H
#define KELVARA_IDCT8X8_H

#include "block8x8.h"
#include "cosines.h"

namespace kelvara {

// What the transform of Arai, Agui and Nakajima expects its inputs to be multiplied by, the factor of the
// orthonormal transform included; symmetric.
struct AanScale {
    constexpr AanScale() : at() {
        for (int u = 0; u < 8; ++u) {
            for (int v = 0; v < 8; ++v) at[8 * u + v] = static_cast<float>(factor(u) * factor(v) / 8);
        }
    }
    static constexpr double factor(int k) { return k == 0 ? 1 : cosine16(k) / cosine16(4); }

    float at[64];
};

// One-dimensional inverse transform of the scaled coefficients x[0][i] to x[7][i] for each i, in place: the
// flow graph of Y. Arai, T. Agui and M. Nakajima, "A fast DCT-SQ scheme for images", Trans. IEICE E71 (1988),
// run backwards, with 5 multiplications.
inline void aanInverse8(float (&x)[8][8]) {
    constexpr float root2 = static_cast<float>(2 * cosine16(4));
    constexpr float twoC2 = static_cast<float>(2 * cosine16(2));
    constexpr float sumC26 = static_cast<float>(2 * (cosine16(2) + cosine16(6)));
    constexpr float diffC26 = static_cast<float>(2 * (cosine16(2) - cosine16(6)));
    for (int i = 0; i < 8; ++i) {
        const float sum04 = x[0][i] + x[4][i], diff04 = x[0][i] - x[4][i];
        const float sum26 = x[2][i] + x[6][i];
        const float diff26 = (x[2][i] - x[6][i]) * root2 - sum26;
        const float even[4] = {sum04 + sum26, diff04 + diff26, diff04 - diff26, sum04 - sum26};

        const float sum17 = x[1][i] + x[7][i], diff17 = x[1][i] - x[7][i];
        const float sum53 = x[5][i] + x[3][i], diff53 = x[5][i] - x[3][i];
        const float rotated = (diff17 + diff53) * twoC2;
        const float odd0 = sum17 + sum53;
        const float odd1 = rotated - diff53 * sumC26 - odd0;
        const float odd2 = (sum17 - sum53) * root2 - odd1;
        const float odd3 = rotated - diff17 * diffC26 - odd2;

        x[0][i] = even[0] + odd0;
        x[7][i] = even[0] - odd0;
        x[1][i] = even[1] + odd1;
        x[6][i] = even[1] - odd1;
        x[2][i] = even[2] + odd2;
        x[5][i] = even[2] - odd2;
        x[3][i] = even[3] + odd3;
        x[4][i] = even[3] - odd3;
    }
}

// Sample (y, x) is sample[y][x].
struct Samples8x8 {
    float sample[8][8];
};

// Of a block whose element 8 * u + v has horizontal frequency u and vertical frequency v: the first pass then
// runs across without a transposition.
inline Samples8x8 inverseDctOfTransposed(const Block8x8<Kel16s> &coeffs) {
    static constexpr AanScale scale;
    float across[8][8];
    for (int i = 0; i < 64; ++i) across[i / 8][i % 8] = coeffs.at[i] * scale.at[i];
    aanInverse8(across);
    Samples8x8 result;
    for (int v = 0; v < 8; ++v) {
        for (int x = 0; x < 8; ++x) result.sample[v][x] = across[x][v];
    }
    aanInverse8(result.sample);
    return result;
}

inline Samples8x8 inverseDctOfDc(int dc) {
    Samples8x8 result;
    std::fill_n(&result.sample[0][0], 64, dc * 0.125f);
    return result;
}

} // namespace kelvara

#endif
