// vlctable.h - tables for decoding variable-length codes.

#ifndef KELVARA_VLCTABLE_H
#define KELVARA_VLCTABLE_H

#include "keltypes.h"

#include <vector>

namespace kelvara {

struct VlcCode {
    int length; // bits, 1 to maxVlcLength
    Kel32u code;
    Kel32s value; // 24 bits signed
};

constexpr int maxVlcLength = 20;
constexpr int vlcRootBits = 8; // looked at first
constexpr int vlcLink = 128;   // in the low byte of an entry: the code goes on

// A run and a level as one value.
constexpr Kel32s runLevelValue(int run, int level) {
    return run * 65536 + (level & 65535);
}

// The table in the form that kelvc_coeffs.h tells, from malloc. kelStsRangeErr for an empty list and a code
// that does not fit its length, kelStsBitStreamErr if one begins another, kelStsMemAllocErr.
KelStatus buildVlcTable(const std::vector<VlcCode> &codes, Kel32s **ppTable);

// The entry of the code at the top of the next maxVlcLength bits, which are the low ones of `bits`; 0 if
// there is none. Its low byte is the number of bits to skip in all.
inline Kel32s lookUpVlc(const Kel32s *table, Kel32u bits) {
    const int n = table[0];
    const Kel32s first = table[1 + (bits >> (maxVlcLength - n))];
    if (!(first & vlcLink)) return first;
    const int more = first & (vlcLink - 1);
    const Kel32u rest = (bits >> (maxVlcLength - n - more)) & ((1u << more) - 1);
    return table[(first >> 8) + rest];
}

} // namespace kelvara

#endif
