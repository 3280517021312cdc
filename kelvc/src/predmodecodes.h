// predmodecodes.h - intra modes of H.264 with the neighbours that a stream has for them, by one number.

#ifndef RAKOVA_PREDMODECODES_H
#define RAKOVA_PREDMODECODES_H

#include "kmvc.h"

// Mode and neighbours of the codes up to `last` from that of the run before. A mode weighs as many codes as
// it has in the list. Bits of the availability: 1 upper, 2 left, 32 upper left, 64 upper right.
struct PredModeRun {
    int last, mode, availability;
};

const PredModeRun predModes4x4[] = {
    {1, 0, 1},   {3, 1, 2},   {4, 2, 0},   {5, 2, 2},   {6, 2, 1},  {7, 2, 3},   {10, 3, 1},
    {11, 3, 65}, {19, 4, 35}, {27, 5, 35}, {35, 6, 35}, {37, 7, 1}, {39, 7, 65}, {41, 8, 2},
};
const int lastPredMode4x4 = 41;

// Modes of luma and of chroma have different numbers; the cases are the same.
const PredModeRun predModes16x16[] = {
    {0, 0, 1}, {1, 1, 2}, {2, 2, 0}, {3, 2, 2}, {4, 2, 1}, {5, 2, 3}, {6, 3, 35},
};
const PredModeRun predModesChroma[] = {
    {0, 2, 1}, {1, 1, 2}, {2, 0, 0}, {3, 0, 2}, {4, 0, 1}, {5, 0, 3}, {6, 3, 35},
};
const int lastPredModeMacroblock = 6;

// A mode and its neighbours. What a test starts with is allowed in luma and in chroma.
struct PredMode {
    // A code beyond the list changes nothing.
    template <int runs>
    void take(PredModeRun const (&list)[runs], int code) {
        if (code < 0) return;
        for (PredModeRun const &run : list) {
            if (code > run.last) continue;
            mode = run.mode;
            availability = run.availability;
            return;
        }
    }

    int mode = 0;
    int availability = 1;
};

#endif
