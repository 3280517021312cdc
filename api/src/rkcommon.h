// rkcommon.h - the two settings of vector placement that a user enters.

#ifndef RAKOVA_RKCOMMON_H
#define RAKOVA_RKCOMMON_H

#include "rkmapdefault.h"

// Misalignment: taken modulo 64, with its sign.
class DefaultAlign : public rkDefault<int> {
public:
    using rkDefault<int>::rkDefault;
    int validItem(rkString text) override;
};

// Shift: its low six bits are cut.
class DefaultShift : public rkDefault<int> {
public:
    using rkDefault<int>::rkDefault;
    int validItem(rkString text) override;
};

void readAccuracy(int method); // asks, and sets the accuracy of g_tool

#endif
