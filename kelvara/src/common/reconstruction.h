// reconstruction.h - how H.261 and H.263 turn levels back into coefficients.

#ifndef KELVARA_RECONSTRUCTION_H
#define KELVARA_RECONSTRUCTION_H

#include "block8x8.h"

#include <cstdlib>

namespace kelvara {

// The step of DC of intra blocks, whatever QUANT is (ITU-T H.263 Table 15, H.261 Table 6).
enum { DcStep = 8 };

inline bool isQuant(int QP) {
    return QP >= 1 && QP <= 31;
}

// -1: the block is empty.
inline bool isLastIndex(int last) {
    return last >= -1 && last <= 63;
}

// The range of coefficients, ITU-T H.263 6.2.2 and H.261 4.2.4.1.
inline Kel16s limitedCoefficient(int value) {
    return static_cast<Kel16s>(std::clamp(value, -2048, 2047));
}

// The middle of the level's interval, ITU-T H.263 6.2.1 and H.261 4.2.4.1. An even QUANT takes 1 off: all
// results but 0 are odd, so that inverse transforms of different make stay together.
inline int reconstructed(int level, int QP) {
    const int magnitude = QP * (2 * std::abs(level) + 1) - (QP % 2 == 0);
    return level > 0 ? magnitude : level < 0 ? -magnitude : 0;
}

// Elements first to last.
inline void reconstruct(Block8x8<Kel16s> &block, int first, int last, int QP) {
    for (int i = first; i <= last; ++i) block.at[i] = limitedCoefficient(reconstructed(block.at[i], QP));
}

// The same with a DC coefficient in element 0.
inline void reconstructIntra(Block8x8<Kel16s> &block, int last, int QP) {
    reconstruct(block, 1, last, QP);
    if (last >= 0) block.at[0] = limitedCoefficient(DcStep * block.at[0]);
}

} // namespace kelvara

#endif
