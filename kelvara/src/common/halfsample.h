// halfsample.h - reference blocks at half-sample positions.

#ifndef KELVARA_HALFSAMPLE_H
#define KELVARA_HALFSAMPLE_H

#include "samples.h"

namespace kelvara {

// ISO/IEC 13818-2 7.6.4: the mean of the two or four samples around the position, halves rounded up.
template <class T, bool right, bool down>
class HalfSamples {
public:
    explicit HalfSamples(Samples<T> full) : m_full(full) {}

    int operator()(int row, int col) const {
        if constexpr (right && down) {
            const int upper = m_full(row, col) + m_full(row, col + 1);
            const int lower = m_full(row + 1, col) + m_full(row + 1, col + 1);
            return (upper + lower + 2) >> 2;
        } else {
            return (m_full(row, col) + m_full(row + down, col + right) + 1) >> 1;
        }
    }

    HalfSamples from(int row, int col) const { return HalfSamples(m_full.from(row, col)); }

private:
    Samples<T> m_full;
};

// The codes of the sample position; the first letter is the horizontal one.
enum McType { McFF = 0, McFH = 4, McHF = 8, McHH = 12 };

inline bool isMcType(int mcType) {
    return mcType == McFF || mcType == McFH || mcType == McHF || mcType == McHH;
}

// Calls kernel(block) with the block at the position of a valid code.
template <class T, class Kernel>
inline void atPosition(int mcType, Samples<T> ref, Kernel kernel) {
    switch (mcType) {
        case McFF:
            return kernel(ref);
        case McFH:
            return kernel(HalfSamples<T, false, true>(ref));
        case McHF:
            return kernel(HalfSamples<T, true, false>(ref));
        case McHH:
            return kernel(HalfSamples<T, true, true>(ref));
    }
}

} // namespace kelvara

#endif
