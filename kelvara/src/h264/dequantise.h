// dequantise.h - level scales of H.264 and the coefficients that they give back.

#ifndef KELVARA_H264_DEQUANTISE_H
#define KELVARA_H264_DEQUANTISE_H

#include "transform4x4.h"
#include "transform8x8.h"

namespace kelvara {

// ---- positions that share a factor ---------------------------------------------------

// ITU-T H.264 8.5.9: both even, both odd, or one of each.
inline int factorClass4x4(int i) {
    const int odd = (i / 4 % 2) + (i % 2);
    return odd == 0 ? 0 : odd == 2 ? 1 : 2;
}

// The same for 8x8, by row and column modulo 4: 0, odd, 2.
inline int factorClass8x8(int i) {
    static const int classes[3][3] = {{0, 3, 4}, {3, 1, 5}, {4, 5, 2}};
    static const int kind[4] = {0, 1, 2, 1};
    return classes[kind[i / 8 % 4]][kind[i % 4]];
}

// normAdjust of 8.5.9, by QP modulo 6 and class
inline int normAdjust4x4(int qpRem, int i) {
    static const Kel8u factors[6][3] = {{10, 16, 13}, {11, 18, 14}, {13, 20, 16},
                                        {14, 23, 18}, {16, 25, 20}, {18, 29, 23}};
    return factors[qpRem][factorClass4x4(i)];
}

inline int normAdjust8x8(int qpRem, int i) {
    static const Kel8u factors[6][6] = {{20, 18, 32, 19, 25, 24}, {22, 19, 35, 21, 28, 26},
                                        {26, 23, 42, 24, 33, 31}, {28, 25, 45, 26, 35, 33},
                                        {32, 28, 51, 30, 40, 38}, {36, 32, 58, 34, 46, 43}};
    return factors[qpRem][factorClass8x8(i)];
}

// ---- scaling --------------------------------------------------------------------------

// LevelScale of 8.5.9 for the remainder of one QP: the caller's levels or, for a null pointer, those of the
// flat list of 16. N is 16 or 64.
template <int N>
inline Words<N> levelScale(int qp, const Kel16s *pLevels) {
    if (pLevels) return Words<N>(pLevels);
    Words<N> levels;
    for (int i = 0; i < N; ++i) {
        levels.at[i] =
            16u * static_cast<Kel32u>(N == 16 ? normAdjust4x4(qp % 6, i) : normAdjust8x8(qp % 6, i));
    }
    return levels;
}

// product * 2^(shift - bits), rounded to the nearest, halves up.
inline Kel32u scaledUp(Kel32u product, int shift, int bits) {
    if (shift >= bits) return product << (shift - bits);
    return halved(product + (1u << (bits - 1 - shift)), bits - shift);
}

// 8.5.12.1 for all 16 coefficients; a DC coefficient that has been scaled with its likes goes in afterwards.
inline Words4x4 dequantised4x4(Words4x4 x, int qp, const Kel16s *pLevels) {
    const Words4x4 levels = levelScale<16>(qp, pLevels);
    for (int i = 0; i < 16; ++i) x.at[i] = scaledUp(x.at[i] * levels.at[i], qp / 6, 4);
    return x;
}

inline Words4x4 dequantised4x4(const Words4x4 &x, int qp, const Kel16s *pLevels, int scaledDC) {
    Words4x4 scaled = dequantised4x4(x, qp, pLevels);
    scaled.at[0] = static_cast<Kel32u>(scaledDC);
    return scaled;
}

// 8.5.13.1
inline Words<64> scaledWords8x8(Words<64> x, int qp, const Kel16s *pLevels) {
    const Words<64> levels = levelScale<64>(qp, pLevels);
    for (int i = 0; i < 64; ++i) x.at[i] = scaledUp(x.at[i] * levels.at[i], qp / 6, 6);
    return x;
}

// The same in the form that Residual8x8 takes.
inline Block8x8<Kel32s> dequantised8x8(const Words<64> &x, int qp, const Kel16s *pLevels) {
    const Words<64> scaled = scaledWords8x8(x, qp, pLevels);
    Block8x8<Kel32s> block;
    for (int i = 0; i < 64; ++i) block.at[i] = scaled(i);
    return block;
}

// 8.5.10 and, with QP'c,dc of 4:2:2 as qp, 8.5.11.2: N is 16 or 8. dcLevel is the level scale of position 0.
template <int N>
inline Words<N> dequantisedDC(const Words<N> &quantised, int qp, Kel32u dcLevel) {
    Words<N> dc = transformedDC(quantised);
    for (Kel32u &x : dc.at) x = scaledUp(x * dcLevel, qp / 6, 6);
    return dc;
}

// 8.5.11.2 for 4:2:0, which drops the last bit and never rounds.
inline Words<4> dequantisedDC(const Words<4> &quantised, int qp, Kel32u dcLevel) {
    Words<4> dc = transformedDC(quantised);
    for (Kel32u &x : dc.at) x = halved((x * dcLevel) << (qp / 6), 5);
    return dc;
}

// The level scale of the DC coefficients that are scaled at qp.
inline Kel32u dcLevelScale(int qp, const Kel16s *pLevels) {
    return levelScale<16>(qp, pLevels).at[0];
}

} // namespace kelvara

#endif
