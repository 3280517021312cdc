// mpeg4spec.h - quantisers of MPEG-4 that suites make: their size, and what they are made of.

#ifndef RAKOVA_TESTS_MPEG4SPEC_H
#define RAKOVA_TESTS_MPEG4SPEC_H

#include "kelvc.h"
#include "seenbits.h"

const int specBytes = 76;

// What the Init functions were handed: the weights, and the number of bits.
struct SeenInit {
    std::string function;
    int block, bits;
};
inline std::vector<SeenInit> g_inits;

inline KelStatus seenInit(char const *function, const Kel8u *matrix, int bits) {
    SeenInit init = {function, -1, bits};
    roomAt(matrix, &init.block);
    g_inits.push_back(init);
    return g_answered == function ? g_answer : kelStsNoErr;
}

inline KelStatus seenGetSize(char const *function) {
    return g_answered == function ? g_answer : kelStsNoErr;
}

// The spies of the two functions that make a quantiser.
// clang-format off
#define SPY_SPEC(getSize, init) \
    KelStatus getSize(int *size) { \
        KelStatus status = seenGetSize(#getSize); \
        return status ? status : callLibrary(&getSize, #getSize, size); \
    } \
    KelStatus init(const Kel8u *matrix, KeliQuantSpec_MPEG4 *spec, int bits) { \
        KelStatus status = seenInit(#init, matrix, bits); \
        return status ? status : callLibrary(&init, #init, matrix, spec, bits); \
    }
// clang-format on

#endif
