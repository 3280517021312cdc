// quantise.h - an encoder's quantiser for H.264: factors, levels, what is counted of them.

#ifndef KELVARA_H264_QUANTISE_H
#define KELVARA_H264_QUANTISE_H

#include "dequantise.h"
#include "../common/checks.h"

#include <cstdlib>

namespace kelvara {

// ---- factors --------------------------------------------------------------------------

// 2^15 over the step and the norm of the transform; also LevelScale2 of ITU-T H.264 8.6.1.
inline int forwardFactor4x4(int qpRem, int i) {
    static const Kel16s factors[6][3] = {{13107, 5243, 8066}, {11916, 4660, 7490}, {10082, 4194, 6554},
                                         {9362, 3647, 5825},  {8192, 3355, 5243},  {7282, 2893, 4559}};
    return factors[qpRem][factorClass4x4(i)];
}

// The same with 2^16 for 8x8.
inline int forwardFactor8x8(int qpRem, int i) {
    static const Kel16s factors[6][6] = {
        {13107, 11428, 20972, 12222, 16777, 15481}, {11916, 10826, 19174, 11058, 14980, 14290},
        {10082, 8943, 15978, 9675, 12710, 11985},   {9362, 8228, 14913, 8931, 11984, 11259},
        {8192, 7346, 13159, 7740, 10486, 9777},     {7282, 6428, 11570, 6830, 9118, 8640}};
    return factors[qpRem][factorClass8x8(i)];
}

// The caller's forward levels or, for a null pointer, those of the flat list at qp.
inline Words<16> forwardScale(int qp, const Kel16s *pLevels) {
    if (pLevels) return Words<16>(pLevels);
    Words<16> levels;
    for (int i = 0; i < 16; ++i) levels.at[i] = static_cast<Kel32u>(forwardFactor4x4(qp % 6, i));
    return levels;
}

// ---- levels ---------------------------------------------------------------------------

// sign(x) * ((|x| * factor + addend) >> shift), limited to the range of T
template <class T>
inline T levelOf(Kel32s x, Kel32s factor, Kel64s addend, int shift) {
    const Kel64s magnitude = (std::llabs(x) * factor + addend) >> shift;
    const Kel64s low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
    return static_cast<T>(std::clamp(x < 0 ? -magnitude : magnitude, low, high));
}

// What is added to all magnitudes: the wider the interval of zero, the fewer bits an inter residual takes.
inline Kel64s addendOf(int shift, bool intra) {
    return (Kel64s(1) << shift) / (intra ? 3 : 6);
}

// N levels of type T.
template <class T, int N>
struct Levels {
    int count() const {
        return static_cast<int>(std::count_if(at, at + N, [](T level) { return level != 0; }));
    }
    // The highest place in the scan of a level other than 0, from the places of all positions; -1: there is
    // none.
    int last(const Words<N> &places) const {
        int last = -1;
        for (int i = 0; i < N; ++i) last = std::max(last, at[i] ? places(i) : -1);
        return last;
    }
    void storeTo(T *p) const { std::memcpy(static_cast<void *>(p), at, sizeof at); }

    T at[N];
};

// Coefficient i has factor i.
template <class T, int N>
inline Levels<T, N> quantised(const Words<N> &x, const Words<N> &factors, int shift, bool intra) {
    const Kel64s addend = addendOf(shift, intra);
    Levels<T, N> levels;
    for (int i = 0; i < N; ++i) levels.at[i] = levelOf<T>(x(i), factors(i), addend, shift);
    return levels;
}

// ---- arguments ------------------------------------------------------------------------

// A 32s form serves samples of up to 14 bits.
template <class T>
inline int maxQP() {
    return sizeof(T) == sizeof(Kel32s) ? 51 + 6 * 6 : 51;
}

template <class T>
inline bool isQP(int qp) {
    return qp >= 0 && qp <= maxQP<T>();
}

template <int N>
inline bool isScan(const Words<N> &places) {
    return std::all_of(places.at, places.at + N, [](Kel32u place) { return place < N; });
}

} // namespace kelvara

#endif
