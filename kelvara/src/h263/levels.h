// levels.h - the range of H.263 levels, and levels of advanced intra coding back to coefficients.

#ifndef KELVARA_H263_LEVELS_H
#define KELVARA_H263_LEVELS_H

#include "../common/reconstruction.h"

namespace kelvara {

inline bool isFlag(int flag) {
    return flag == 0 || flag == 1;
}

// What the escape codes carry: 8 bits without -128 (ITU-T H.263 5.4.2), or 11 bits with modified quantisation
// (T.4).
struct LevelRange {
    explicit LevelRange(bool modQuant) : low(modQuant ? -1024 : -127), high(modQuant ? 1023 : 127) {}

    bool holds(int level) const { return level >= low && level <= high; }

    int low, high;
};

// ITU-T H.263 Annex I: multiples of the step, DC like the others. The limits of coefficients come behind the
// prediction that is added to these, so that only the type limits here.
inline void reconstructAdvanced(Block8x8<Kel16s> &block, int last, int QP) {
    for (int i = 0; i <= last; ++i) {
        block.at[i] = static_cast<Kel16s>(std::clamp(2 * QP * block.at[i], -32768, 32767));
    }
}

inline void reconstructIntra(Block8x8<Kel16s> &block, int last, int QP, bool advIntra) {
    if (advIntra) {
        reconstructAdvanced(block, last, QP);
    } else {
        reconstructIntra(block, last, QP);
    }
}

} // namespace kelvara

#endif
