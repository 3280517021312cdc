// walk.h - all values of a parameter, one after the other.

#ifndef RAKOVA_TESTS_WALK_H
#define RAKOVA_TESTS_WALK_H

#include "text.h"

const int walkBound = 1000;

// The values of a walk, each followed by a blank; "..." if it goes on beyond the bound.
template <class Parm>
std::string walk(Parm &parm) {
    std::string values;
    int steps = 0;
    for (bool ok = parm.firstValue(); ok; ok = parm.nextValue()) {
        if (++steps > walkBound) return "...";
        values += str(parm.valueString()) + " ";
    }
    return values;
}

#endif
