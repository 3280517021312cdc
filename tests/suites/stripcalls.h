// stripcalls.h - what the suites of reconstruction pass to the library that walk a strip of macroblocks.

#ifndef RAKOVA_TESTS_STRIPCALLS_H
#define RAKOVA_TESTS_STRIPCALLS_H

#include "reconstructcalls.h"

const int coeffBytes = 2 * 278528, planeBytes = 279072;

// By "block_type".
const std::vector<int> patterns = {1, 0, 103591, 131071};

inline int coeffsOf(Behind const &behind) {
    return placeOf(behind.coeffs).offset / 2;
}

// The plane of an argument is at the macroblock of the position, whose neighbours above lie in one row, and
// all of whose rows lie in the plane.
inline void expectMacroblock(SeenArgument const &plane, int block, int position, int size) {
    const int offset = 16432 + 16 * position;
    ASSERT_EQ(placeOf(plane), (Place{block, offset}));
    ASSERT_GE(offset - 16416 - 1, 0);
    ASSERT_LE(offset - 16416 + size + 8, 16416) << "the upper right neighbour is in the row";
    ASSERT_LE(offset + (size - 1) * 16416 + size, planeBytes);
}

#endif
