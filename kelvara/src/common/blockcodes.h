// blockcodes.h - what the coders of H.261 and H.263 blocks share.

#ifndef KELVARA_BLOCKCODES_H
#define KELVARA_BLOCKCODES_H

#include "bitposition.h"
#include "intradc.h"
#include "runlevel.h"
#include "samples.h"

#include <cstdlib>

namespace kelvara {

// ---- levels ----------------------------------------------------------------------

// The level of 8 bits in escape codes. 0 and -128 stand for no level.
enum { EscapedBits = 8, NoEscapedLevel = -128 };

inline int readEscapedLevel(BitReader &reader) {
    return static_cast<Kel8s>(reader.read(EscapedBits));
}

// ---- DC of intra blocks -------------------------------------------------------------

inline void putDc(BitWriter &writer, int level) {
    writer.put(dcCode(limitedDcLevel(level)), DcBits);
}

// 0 if there is no such code.
inline int readDc(BitReader &reader) {
    return dcLevel(reader.read(DcBits));
}

} // namespace kelvara

#endif
