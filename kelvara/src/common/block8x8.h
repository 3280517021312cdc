// block8x8.h - blocks of 64 elements, their rounding and limits.

#ifndef KELVARA_BLOCK8X8_H
#define KELVARA_BLOCK8X8_H

#include "keltypes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace kelvara {

// A copy of 64 elements without a gap, as callers may place them at any byte.
template <class T>
struct Block8x8 {
    Block8x8() = default;
    explicit Block8x8(const T *p) { std::memcpy(at, static_cast<const void *>(p), sizeof at); }
    void storeTo(T *p) const { std::memcpy(static_cast<void *>(p), at, sizeof at); }

    T at[64];
};

// Nearest integer within the range of T, halves away from zero. REQUIRES: a value within the range of int, as
// limiting before the conversion keeps compilers from vectorising it.
template <class T>
inline T roundTo(float value) {
    const int rounded = static_cast<int>(value + std::copysign(0.5f, value));
    return static_cast<T>(
        std::clamp<int>(rounded, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
}

} // namespace kelvara

#endif
