// dvtest.h - what the tests of DV share.

#ifndef RAKOVA_DVTEST_H
#define RAKOVA_DVTEST_H

#include "kmvc.h"

const int dvBlockLength = 64; // coefficients

// The functions are short: a result is the clocks of a whole call, by many calls.
class rkDvTest : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override {
        if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
        return true;
    }
    rkString getUnit() override { return "all"; }
};

#endif
