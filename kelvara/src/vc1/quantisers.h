// quantisers.h - what the quantisers of VC-1 and their inverses share.

#ifndef KELVARA_VC1_QUANTISERS_H
#define KELVARA_VC1_QUANTISERS_H

#include "../common/checks.h"
#include "../common/samples.h"

#include "kelvc.h"

namespace kelvara {
namespace vc1 {

enum Quantiser { Uniform, Nonuniform };
enum BlockKind { Intra, Inter };

constexpr KeliSize intraSize = {8, 8};

// 2 * MQUANT + HALFQP of a stream is 2 to 63.
inline bool isDoubleQuant(int doubleQuant) {
    return doubleQuant >= 2 && doubleQuant <= 64;
}

inline int mquant(int doubleQuant) {
    return doubleQuant / 2;
}

// A block whose pointers are not null.
inline KelStatus checkBlock(KeliSize size, int srcStep, int dstStep, int doubleQuant) {
    const auto isSide = [](int side) { return side == 4 || side == 8; };
    if (!isSide(size.width) || !isSide(size.height)) return kelStsSizeErr;
    if (tooNarrow<Kel16s>(srcStep, size.width) || tooNarrow<Kel16s>(dstStep, size.width))
        return kelStsStepErr;
    return isDoubleQuant(doubleQuant) ? kelStsNoErr : kelStsRangeErr;
}

} // namespace vc1
} // namespace kelvara

#endif
