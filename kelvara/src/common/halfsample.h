// halfsample.h - reference blocks at half-sample positions.

#ifndef KELVARA_HALFSAMPLE_H
#define KELVARA_HALFSAMPLE_H

#include "samples.h"

namespace kelvara {

// The mean of the two or four samples around the position, halves rounded up (ISO/IEC 13818-2 7.6.4), with
// roundControl 1 down (ISO/IEC 14496-2 7.6.2.1). In interleaved rows the neighbour to the right is the next
// sample of the same channel.
template <class T, bool right, bool down, int roundControl = 0, int channels = 1>
class HalfSamples {
public:
    explicit HalfSamples(Samples<T> full) : m_full(full) {}

    int operator()(int row, int col) const {
        constexpr int toTheRight = right ? channels : 0;
        if constexpr (right && down) {
            const int upper = m_full(row, col) + m_full(row, col + toTheRight);
            const int lower = m_full(row + 1, col) + m_full(row + 1, col + toTheRight);
            return (upper + lower + 2 - roundControl) >> 2;
        } else {
            return (m_full(row, col) + m_full(row + down, col + toTheRight) + 1 - roundControl) >> 1;
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
template <int roundControl = 0, int channels = 1, class T, class Kernel>
inline void atPosition(int mcType, Samples<T> ref, Kernel kernel) {
    switch (mcType) {
        case McFF:
            return kernel(ref);
        case McFH:
            return kernel(HalfSamples<T, false, true, roundControl, channels>(ref));
        case McHF:
            return kernel(HalfSamples<T, true, false, roundControl, channels>(ref));
        case McHH:
            return kernel(HalfSamples<T, true, true, roundControl, channels>(ref));
    }
}

} // namespace kelvara

#endif
