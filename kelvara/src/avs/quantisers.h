// quantisers.h - the quantisers of AVS (GB/T 20090.2), both ways.

#ifndef KELVARA_AVS_QUANTISERS_H
#define KELVARA_AVS_QUANTISERS_H

#include "transform.h"

#include <limits>

namespace kelvara {

namespace avs {

inline bool isQp(int qp) {
    return qp >= 0 && qp <= 63;
}

// The step is about 2^(QP / 8). The factors back and their shifts are the table of 9.6.2, those forward are
// 2^15 over the step.
struct Quantiser {
    Kel16u factor;
    Kel8u shift;
    Kel16u forward;
};

inline const Quantiser &quantiserOf(int qp) {
    static const Quantiser quantisers[64] = {
        {32768, 14, 32768}, {36061, 14, 29775}, {38968, 14, 27554}, {42495, 14, 25268}, {46341, 14, 23170},
        {50535, 14, 21247}, {55437, 14, 19369}, {60424, 14, 17770}, {32932, 13, 16302}, {35734, 13, 15024},
        {38968, 13, 13777}, {42495, 13, 12634}, {46177, 13, 11626}, {50535, 13, 10624}, {55109, 13, 9742},
        {59933, 13, 8958},  {65535, 13, 8192},  {35734, 12, 7512},  {38968, 12, 6889},  {42577, 12, 6305},
        {46341, 12, 5793},  {50617, 12, 5303},  {55027, 12, 4878},  {60097, 12, 4467},  {32809, 11, 4091},
        {35734, 11, 3756},  {38968, 11, 3444},  {42454, 11, 3161},  {46382, 11, 2894},  {50576, 11, 2654},
        {55109, 11, 2435},  {60056, 11, 2235},  {65535, 11, 2048},  {35734, 10, 1878},  {38968, 10, 1722},
        {42495, 10, 1579},  {46320, 10, 1449},  {50515, 10, 1329},  {55109, 10, 1218},  {60076, 10, 1117},
        {65535, 10, 1024},  {35744, 9, 939},    {38968, 9, 861},    {42495, 9, 790},    {46341, 9, 724},
        {50535, 9, 664},    {55099, 9, 609},    {60087, 9, 558},    {65535, 9, 512},    {35734, 8, 470},
        {38973, 8, 430},    {42500, 8, 395},    {46341, 8, 362},    {50535, 8, 332},    {55109, 8, 304},
        {60097, 8, 279},    {32771, 7, 256},    {35734, 7, 235},    {38965, 7, 215},    {42497, 7, 197},
        {46341, 7, 181},    {50535, 7, 166},    {55109, 7, 152},    {60099, 7, 140}};
    return quantisers[qp];
}

template <class T>
inline Kel16s limitedTo16s(T value) {
    const T low = std::numeric_limits<Kel16s>::min(), high = std::numeric_limits<Kel16s>::max();
    return static_cast<Kel16s>(std::clamp(value, low, high));
}

// 9.6.2
inline Block8x8<Kel16s> dequantised(const Block8x8<Kel16s> &levels, int qp) {
    const Quantiser &q = quantiserOf(qp);
    const int factor = q.factor, shift = q.shift, half = 1 << (shift - 1);
    Block8x8<Kel16s> coeffs;
    for (int i = 0; i < 64; ++i) coeffs.at[i] = limitedTo16s((levels.at[i] * factor + half) >> shift);
    return coeffs;
}

// ---- forward ------------------------------------------------------------------------------

// Rows of the transform have three lengths: what brings the coefficients to that of the first one, times
// 2^15. Both directions repeat with a period of four.
inline Kel64s normOf(int row, int col) {
    static const int norms[3][3] = {{32768, 37958, 36158}, {37958, 43969, 41884}, {36158, 41884, 39898}};
    static const int kinds[4] = {0, 1, 2, 1};
    return norms[kinds[row % 4]][kinds[col % 4]];
}

// What is added to all magnitudes, of 2^15: the wider the interval of zero, the fewer bits an inter block
// takes.
inline Kel64s addendOf(bool intra) {
    return (1 << 15) * 10 / (intra ? 31 : 62);
}

inline Block8x8<Kel16s> quantised(const Block8x8<Kel32s> &coeffs, int qp, bool intra) {
    const Kel64s forward = quantiserOf(qp).forward, addend = addendOf(intra);
    Block8x8<Kel16s> levels;
    for (int i = 0; i < 64; ++i) {
        const Kel64s x = coeffs.at[i], magnitude = x < 0 ? -x : x;
        const Kel64s normed = (magnitude * normOf(i / 8, i % 8) + (1 << 18)) >> 19;
        const Kel64s level = (normed * forward + addend) >> 15;
        levels.at[i] = limitedTo16s(x < 0 ? -level : level);
    }
    return levels;
}

} // namespace avs

} // namespace kelvara

#endif
