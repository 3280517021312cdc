// dvcodes.h - the variable-length codes of DV as texts of zeros and ones.

#ifndef RAKOVA_TESTS_DVCODES_H
#define RAKOVA_TESTS_DVCODES_H

#include <map>
#include <string>
#include <utility>

namespace dv {

using Bits = std::string;

// value in `count` bits, two's complement.
Bits bitsOf(int value, int count);

// Codes by run of zeros and amplitude, without signs. Amplitude 0 is one zero more, for run 127 the end of a
// block.
using Codes = std::map<std::pair<int, int>, Bits>;
Codes const &codes();
Bits const &endOfBlock();

// What stands for a level behind `run` zeros: one code or, for an event without one, two.
Bits event(int run, int level);

} // namespace dv

#endif
