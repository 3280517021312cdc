// block8x8.h - blocks of 64 elements, their rounding and limits.

#ifndef KELVARA_BLOCK8X8_H
#define KELVARA_BLOCK8X8_H

#include "keltypes.h"

#include <algorithm>
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

// Nearest integer within the range of T, halves away from zero.
template <class T>
inline T roundTo(float value) {
    constexpr float low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
    const float limited = std::min(std::max(value, low), high);
    return static_cast<T>(static_cast<int>(limited + (limited < 0 ? -0.5f : 0.5f)));
}

} // namespace kelvara

#endif
