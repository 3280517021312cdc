// intradc.h - the code of 8 bits for DC of intra blocks of H.261 and H.263.

#ifndef KELVARA_INTRADC_H
#define KELVARA_INTRADC_H

#include "keltypes.h"

#include <algorithm>

namespace kelvara {

enum { DcBits = 8 };

// Levels that have a code.
inline int limitedDcLevel(int level) {
    return std::clamp(level, 1, 254);
}

// ITU-T H.263 Table 15, H.261 Table 6: a level is its own code, but 128 is 11111111. 00000000 and 10000000
// are not used.
inline Kel32u dcCode(int level) {
    return level == 128 ? 255u : static_cast<Kel32u>(level);
}

// 0 for a code that stands for no level.
inline int dcLevel(Kel32u code) {
    return code == 255 ? 128 : code == 128 ? 0 : static_cast<int>(code);
}

} // namespace kelvara

#endif
