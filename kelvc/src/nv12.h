// nv12.h - what the tests of interleaved chroma share: rows of pairs of samples, U in front of V.

#ifndef RAKOVA_NV12_H
#define RAKOVA_NV12_H

#include "kmvc.h"

const int nv12Step = 16; // bytes of a row of 8 pairs

// A call is the unit, and the auto method a statistic, as the functions are short.
class NV12Test : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override {
        if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
        return true;
    }
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "all"; }

protected:
    static bool makeDefault(kmVector &vector, int length) {
        return vector.createVectorExt(length, rkGetVectorShift(), SetDefault, 0, 0);
    }
    static bool makeRandom(kmVector &vector, int length, double low, double high) {
        return vector.createVectorExt(length, rkGetVectorShift(), SetRandom, low, high);
    }
    static bool makeSamples(kmVector &vector, int length) { return makeRandom(vector, length, 0.0, 255.0); }
};

#endif
